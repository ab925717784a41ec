/// @file
/// How a fuzz target takes its choices and its text out of the bytes it is given.
#ifndef MCXPRSUTIL_FUZZ_INPUT_H
#define MCXPRSUTIL_FUZZ_INPUT_H

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <string>

namespace fuzz {

/// Hands the bytes of an input out, front to back.
class Input {
 public:
  Input(const std::uint8_t* data, std::size_t size) : next_(data), end_(data + size) {}

  bool IsEmpty() const { return next_ == end_; }

  /// 0 when there is none left.
  unsigned Byte() { return IsEmpty() ? 0u : *next_++; }

  /// One of the numbers below `count`.
  unsigned Below(unsigned count) { return Byte() % count; }

  bool Flag() { return Byte() % 2 != 0; }

  /// The next bytes, `count` at most.
  std::string Take(std::size_t count) {
    const std::size_t n = std::min(count, static_cast<std::size_t>(end_ - next_));
    const std::string bytes(next_, next_ + n);
    next_ += n;
    return bytes;
  }

  std::string Rest() { return Take(static_cast<std::size_t>(end_ - next_)); }

 private:
  const std::uint8_t* next_;
  const std::uint8_t* end_;
};

/// Bytes as units, in the byte order of the machine. What does not fill a unit is dropped.
template <class Unit>
std::basic_string<Unit> UnitsOf(const std::string& bytes) {
  std::basic_string<Unit> units(bytes.size() / sizeof(Unit), Unit{});
  if (!units.empty()) std::memcpy(units.data(), bytes.data(), units.size() * sizeof(Unit));
  return units;
}

/// A copy that ends where its memory does, so that AddressSanitizer sees who reads behind it.
template <class Unit>
class ExactCopy {
 public:
  ExactCopy(const Unit* units, std::size_t count) : memory_(new Unit[count]) {
    std::copy_n(units, count, memory_.get());
  }
  explicit ExactCopy(const std::basic_string<Unit>& text) : ExactCopy(text.data(), text.size()) {}

  const Unit* Get() const { return memory_.get(); }

 private:
  std::unique_ptr<Unit[]> memory_;
};

/// The same with a terminator behind the text.
template <class Unit>
ExactCopy<Unit> TerminatedCopy(const std::basic_string<Unit>& text) {
  return ExactCopy<Unit>(text.c_str(), text.size() + 1);
}

/// The text before the first zero.
template <class Unit>
std::basic_string<Unit> UpToZero(const std::basic_string<Unit>& text) {
  return text.substr(0, text.find(Unit{0}));
}

}  // namespace fuzz

#endif  // MCXPRSUTIL_FUZZ_INPUT_H
