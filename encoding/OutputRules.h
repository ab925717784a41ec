// What the engines do with a caller's buffer, once for all of them.
#ifndef MCMEM_ENCODING_OUTPUTRULES_H
#define MCMEM_ENCODING_OUTPUTRULES_H

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <limits>
#include <optional>
#include <string>

#include "encoding/ConversionTarget.h"
#include "encoding/Utf16Length.h"

namespace MCMEM_NAMESPACE {
namespace transcoding {

// The statuses of every conversion.
enum StatusCode : int {
  kStatusExact = 0,
  kStatusCut = 1,       // the target was too small
  kStatusNoMemory = 2,  // string forms only
  kStatusFailed = 3,    // any other failure, or something else stands for a character
};

// How a result is laid out in a buffer of `capacity` units:
// - a terminated result leaves one unit of a positive capacity to its terminator;
// - a cut result is followed by blanks up to the units that were its own;
// - behind a result of explicit length that leaves room stands one blank, which is not counted;
// - then the terminator is written right behind the result, maybe over the first of the blanks.
// A capacity of 0 asks for the length only: nothing is written.
template <class Unit>
class OutputRules {
 public:
  OutputRules(Unit* buffer, int capacity, bool isTerminated)
      : buffer_(buffer), capacity_(capacity), is_terminated_(isTerminated) {}

  bool AcceptBuffer() const { return capacity_ == 0 || (capacity_ > 0 && buffer_ != nullptr); }

  std::size_t Room() const {
    return static_cast<std::size_t>(is_terminated_ && capacity_ > 0 ? capacity_ - 1 : capacity_);
  }

  struct Result {
    int length;
    int status;
  };

  Result Finish(const BufferTarget<Unit>& target, Verdict verdict) const {
    if (verdict >= Verdict::kFailed) return Failed();
    if (capacity_ == 0) return Length(target, verdict);
    const std::size_t length = target.Kept();
    if (target.IsCut()) std::fill(buffer_ + length, buffer_ + Room(), kBlank);
    Close(length);
    return {static_cast<int>(length), Status(target, verdict)};
  }

  // All of the result is in the buffer.
  Result Exact(std::size_t length) const {
    if (capacity_ != 0) Close(length);
    return {static_cast<int>(length), kStatusExact};
  }

  Result Failed() const {
    if (capacity_ != 0) Close(0);
    return kRefused;
  }

  // Where the result goes; null for a capacity of 0.
  Unit* Buffer() const { return capacity_ == 0 ? nullptr : buffer_; }

  static constexpr Result kRefused = {0, kStatusFailed};

 private:
  static constexpr Unit kBlank = 0x20;

  void Close(std::size_t length) const {
    if (is_terminated_) {
      buffer_[length] = 0;
    } else if (length < Room()) {
      buffer_[length] = kBlank;
    }
  }

  // A length that the result cannot express is a failure.
  static Result Length(const BufferTarget<Unit>& target, Verdict verdict) {
    if (target.Beyond() > std::numeric_limits<int>::max()) return kRefused;
    return {static_cast<int>(target.Beyond()), Status(target, verdict)};
  }

  static int Status(const BufferTarget<Unit>& target, Verdict verdict) {
    if (verdict != Verdict::kExact) return kStatusFailed;
    return target.IsCut() ? kStatusCut : kStatusExact;
  }

  Unit* const buffer_;
  const int capacity_;
  const bool is_terminated_;
};

inline std::size_t TerminatedLength(const char* s) { return std::strlen(s); }
inline std::size_t TerminatedLength(const unsigned short* s) { return Utf16Length(s); }
inline std::size_t TerminatedLength(const unsigned int* s) {
  return std::char_traits<unsigned int>::length(s);
}

// The source of an engine; nothing when it is null although it has a length.
template <class Unit>
std::optional<Text<Unit>> TakeText(const void* src, int length) {
  const auto first = static_cast<const Unit*>(src);
  if (first == nullptr && length != 0) return std::nullopt;
  return Text<Unit>{
      first, first + (length < 0 ? TerminatedLength(first) : static_cast<std::size_t>(length))};
}

// What an engine does when the result may be too long or the text is not easy.
template <class From, class To, class Convert>
[[gnu::noinline]] typename OutputRules<To>::Result FillRest(const OutputRules<To>& rules,
                                                            Text<From> text, To* next,
                                                            const Convert& convert) {
  BufferTarget<To> target(rules.Buffer(), rules.Room());
  target.next = next;
  const Verdict verdict = convert(text, target);
  return rules.Finish(target, verdict);
}

// Runs one engine: `convert` takes a Text<From> and a BufferTarget<To>& and returns a Verdict.
// `start(text, next, end)` is a quick beginning: it moves text.first and `next` past what it could
// convert exactly and returns whether that was all. A negative length stands for a terminated
// source and asks for a terminated result.
template <class From, class To, class Start, class Convert>
int FillBuffer(void* dst, int capacity, const void* src, int srcLength, int* status, Start&& start,
               const Convert& convert) {
  const OutputRules<To> rules(static_cast<To*>(dst), capacity, srcLength < 0);
  auto result = OutputRules<To>::kRefused;
  if (rules.AcceptBuffer()) {
    if (auto text = TakeText<From>(src, srcLength)) {
      To* next = rules.Buffer();
      const bool isDone = start(*text, next, next + rules.Room());
      result = isDone ? rules.Exact(static_cast<std::size_t>(next - rules.Buffer()))
                      : FillRest(rules, *text, next, convert);
    } else {
      result = rules.Failed();
    }
  }
  if (status != nullptr) *status = result.status;
  return result.length;
}

// For engines without a quick beginning.
struct StartNothing {
  template <class From, class To>
  bool operator()(const Text<From>&, To*, To*) const {
    return false;
  }
};

}  // namespace transcoding
}  // namespace MCMEM_NAMESPACE

#endif  // MCMEM_ENCODING_OUTPUTRULES_H
