#include "encoding/SingleByteTable.h"

#include <algorithm>

namespace MCMEM_NAMESPACE {
namespace transcoding {

// Byte 0 is taken for U+0000 only: `direct_` has no other way to say that there is none.
void SingleByteTable::AddEncoded(Unit unit, Byte byte) {
  if (byte == 0 || unit == 0) {
    has_zero_ = has_zero_ || (byte == 0 && unit == 0);
    return;
  }
  if (unit < kDirect) {
    direct_[unit] = byte;
    return;
  }
  std::size_t slot = FirstSlot(unit);
  while (slots_[slot].unit != 0 && slots_[slot].unit != unit) slot = (slot + 1) % kSlots;
  slots_[slot] = {unit, byte};
}

bool SingleByteTable::Find(Unit unit, Byte& byte) const {
  if (unit < kDirect) {
    byte = direct_[unit];
    return byte != 0 || (unit == 0 && has_zero_);
  }
  std::size_t slot = FirstSlot(unit);
  while (slots_[slot].unit != unit) {
    if (slots_[slot].unit == 0) return false;
    slot = (slot + 1) % kSlots;
  }
  byte = slots_[slot].byte;
  return true;
}

void SingleByteTable::Decode(const char*& src, const char* srcEnd, Unit*& dst,
                             const Unit* dstEnd) const {
  const char* s = src;
  Unit* t = dst;
  const char* const end = s + std::min<std::ptrdiff_t>(srcEnd - s, dstEnd - t);
  for (; end - s >= 4; s += 4, t += 4) {
    const Unit a = units_[static_cast<Byte>(s[0])];
    const Unit b = units_[static_cast<Byte>(s[1])];
    const Unit c = units_[static_cast<Byte>(s[2])];
    const Unit d = units_[static_cast<Byte>(s[3])];
    if (a == kNone || b == kNone || c == kNone || d == kNone) break;
    t[0] = a;
    t[1] = b;
    t[2] = c;
    t[3] = d;
  }
  for (; s != end; ++s, ++t) {
    const Unit unit = units_[static_cast<Byte>(*s)];
    if (unit == kNone) break;
    *t = unit;
  }
  src = s;
  dst = t;
}

void SingleByteTable::Encode(const Unit*& src, const Unit* srcEnd, char*& dst,
                             const char* dstEnd) const {
  const Unit* s = src;
  char* t = dst;
  const Unit* const end = s + std::min<std::ptrdiff_t>(srcEnd - s, dstEnd - t);
  for (; s != end; ++s, ++t) {
    Byte byte = 0;
    if (!Find(*s, byte)) break;
    *t = static_cast<char>(byte);
  }
  src = s;
  dst = t;
}

}  // namespace transcoding
}  // namespace MCMEM_NAMESPACE
