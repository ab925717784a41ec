// A code page of single bytes, as a table.
#ifndef MCMEM_ENCODING_SINGLEBYTETABLE_H
#define MCMEM_ENCODING_SINGLEBYTETABLE_H

#include <array>
#include <cstddef>

namespace MCMEM_NAMESPACE {
namespace transcoding {

// Holds the bytes that stand for one UTF-16 unit, and the units that stand for such a byte. What is
// not there is for the converter to decide: it may replace it, or know a one-way entry.
class SingleByteTable {
 public:
  using Unit = unsigned short;
  using Byte = unsigned char;

  // To be filled in once, before use. U+FFFF cannot be added.
  void AddDecoded(Byte byte, Unit unit) { units_[byte] = unit; }
  void AddEncoded(Unit unit, Byte byte);

  // Convert up to the end of the source or of the target, or to what is not there; both move their
  // pointers.
  void Decode(const char*& s, const char* srcEnd, Unit*& t, const Unit* dstEnd) const;
  void Encode(const Unit*& s, const Unit* srcEnd, char*& t, const char* dstEnd) const;

  SingleByteTable() { units_.fill(kNone); }

 private:
  static constexpr Unit kNone = 0xFFFF;
  static constexpr std::size_t kDirect = 0x800;
  static constexpr std::size_t kSlots = 512;  // at least twice as many as there can be entries

  // A slot is free when it is of U+0000, which is never looked up here.
  struct Slot {
    Unit unit = 0;
    Byte byte = 0;
  };

  static std::size_t FirstSlot(Unit unit) { return (unit * 0x9E5Fu >> 7) % kSlots; }

  // False when it is not there.
  bool Find(Unit unit, Byte& byte) const;

  std::array<Unit, 256> units_;
  std::array<Byte, kDirect> direct_ = {};  // 0: not there; only U+0000 itself is the byte 0
  std::array<Slot, kSlots> slots_;
  bool has_zero_ = false;
};

}  // namespace transcoding
}  // namespace MCMEM_NAMESPACE

#endif  // MCMEM_ENCODING_SINGLEBYTETABLE_H
