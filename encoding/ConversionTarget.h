// Where the units of a conversion go: a caller's buffer, or a string that grows.
#ifndef MCMEM_ENCODING_CONVERSIONTARGET_H
#define MCMEM_ENCODING_CONVERSIONTARGET_H

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <exception>
#include <string>

namespace MCMEM_NAMESPACE {
namespace transcoding {

// A stretch of source units, borrowed. A conversion moves `first` on.
template <class Unit>
struct Text {
  const Unit* first;
  const Unit* last;

  bool IsEmpty() const { return first == last; }
  std::size_t Size() const { return static_cast<std::size_t>(last - first); }
};

enum class Verdict {
  kExact,
  kLossy,     // everything is converted, with something else in the place of some character
  kFailed,    // what is written is of no use
  kNoMemory,  // the target could not grow
};

inline Verdict Worse(Verdict a, Verdict b) { return std::max(a, b); }

// A conversion writes from `next` on, moves it, and asks for more room when the next character does
// not fit before `end`. It does not look back at what it has written.
template <class Unit>
class Target {
 public:
  Unit* next = nullptr;
  Unit* end = nullptr;

  // Sets `next` and `end` to new room, of at least a few characters; false without memory.
  virtual bool More() = 0;

  std::size_t Room() const { return static_cast<std::size_t>(end - next); }

 protected:
  ~Target() = default;
};

// Keeps what fits into a buffer and counts the rest, which every conversion produces to its end:
// only so are the length needed and a fault behind the cut known.
template <class Unit>
class BufferTarget final : public Target<Unit> {
 public:
  // `buffer` is borrowed; null when `room` is 0.
  BufferTarget(Unit* buffer, std::size_t room) : begin_(buffer) {
    this->next = buffer;
    this->end = buffer + room;
  }

  bool More() override {
    if (!has_left_buffer_) {
      kept_ = BufferUnits();
      has_left_buffer_ = true;
    } else {
      beyond_ += ScratchUnits();
    }
    this->next = scratch_;
    this->end = scratch_ + kScratchUnits;
    return true;
  }

  // Units that are not written anywhere.
  void AddBeyond(std::uint64_t units) { beyond_ += units; }

  const Unit* Begin() const { return begin_; }
  std::size_t Kept() const { return has_left_buffer_ ? kept_ : BufferUnits(); }
  std::uint64_t Beyond() const { return beyond_ + (has_left_buffer_ ? ScratchUnits() : 0); }
  bool IsCut() const { return Beyond() != 0; }

  // Gives up the end of what was kept.
  void CutTo(std::size_t units) {
    AddBeyond(Kept() - units);
    if (!has_left_buffer_) More();
    kept_ = units;
  }

 private:
  static constexpr std::size_t kScratchUnits = 1024;

  std::size_t BufferUnits() const { return static_cast<std::size_t>(this->next - begin_); }
  std::size_t ScratchUnits() const { return static_cast<std::size_t>(this->next - scratch_); }

  Unit* const begin_;
  std::size_t kept_ = 0;
  std::uint64_t beyond_ = 0;
  bool has_left_buffer_ = false;
  Unit scratch_[kScratchUnits];
};

// Appends to a string, by way of a buffer: a string's own memory would have to be filled before it
// can be written to. Nothing is appended to the string while the text fits into the buffer.
template <class Unit>
class StringTarget final : public Target<Unit> {
 public:
  // `string` is borrowed and must outlive the target.
  explicit StringTarget(std::basic_string<Unit>& string) : string_(string) { Rewind(); }

  bool More() override {
    try {
      string_.append(chunk_, static_cast<std::size_t>(this->next - chunk_));
    } catch (const std::exception&) {  // no memory, or longer than a string can be
      return false;
    }
    Rewind();
    return true;
  }

  // Prepares for about that many units. What fits into the buffer needs no preparation.
  bool Expect(std::size_t units) {
    if (units <= kChunkUnits) return true;
    try {
      string_.reserve(units);
    } catch (const std::exception&) {
      return false;
    }
    return true;
  }

 private:
  static constexpr std::size_t kChunkUnits = 4096 / sizeof(Unit);

  void Rewind() {
    this->next = chunk_;
    this->end = chunk_ + kChunkUnits;
  }

  std::basic_string<Unit>& string_;
  Unit chunk_[kChunkUnits];
};

}  // namespace transcoding
}  // namespace MCMEM_NAMESPACE

#endif  // MCMEM_ENCODING_CONVERSIONTARGET_H
