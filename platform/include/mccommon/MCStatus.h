/// @file
/// The result of every operation that can fail.
#ifndef MCCOMMON_MCSTATUS_H
#define MCCOMMON_MCSTATUS_H

namespace MCCommon {

/// A numeric code and a flag, passed by value.
///
/// Code 0 is success. With any other code the flag tells two cases apart: false is an error, true
/// says that the document does not give the item, so the caller's output keeps the value that it
/// had before the call. Callers can therefore load defaults first and ignore flagged results.
///
/// Each operation lists the codes that it gives. Nothing here allocates or throws. Objects share
/// nothing: each thread may have its own.
class [[nodiscard]] MCStatus {
 public:
  /// Success: code 0, flag false.
  constexpr MCStatus() noexcept = default;

  /// A status as given; MCStatus(0, false) equals MCStatus().
  constexpr MCStatus(int code, bool flag) noexcept : code_(code), flag_(flag) {}

  /// True for code 0, whatever the flag.
  constexpr bool IsOK() const noexcept { return code_ == 0; }

  constexpr int GetCode() const noexcept { return code_; }

  /// True: the document does not give the item.
  constexpr bool GetFlag() const noexcept { return flag_; }

 private:
  int code_ = 0;
  bool flag_ = false;
};

/// Equal when both the codes and the flags are.
constexpr bool operator==(const MCStatus& a, const MCStatus& b) noexcept {
  return a.GetCode() == b.GetCode() && a.GetFlag() == b.GetFlag();
}

constexpr bool operator!=(const MCStatus& a, const MCStatus& b) noexcept { return !(a == b); }

}  // namespace MCCommon

#endif  // MCCOMMON_MCSTATUS_H
