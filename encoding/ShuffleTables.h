// Byte orders for closing the gaps in a vector, by the mask of what is left out.
#ifndef MCMEM_ENCODING_SHUFFLETABLES_H
#define MCMEM_ENCODING_SHUFFLETABLES_H

#include <array>

namespace MCMEM_NAMESPACE {

struct ShuffleRow {
  unsigned char from[16];
};
using ShuffleTable = std::array<ShuffleRow, 256>;

// Bit i of the row's number: 16-bit lane i is left out. The other lanes move down.
constexpr ShuffleTable MakeLaneDropTable() {
  ShuffleTable table{};
  for (unsigned mask = 0; mask < 256; ++mask) {
    unsigned to = 0;
    for (unsigned lane = 0; lane < 8; ++lane) {
      if ((mask >> lane & 1) != 0) continue;
      table[mask].from[to++] = static_cast<unsigned char>(2 * lane);
      table[mask].from[to++] = static_cast<unsigned char>(2 * lane + 1);
    }
    while (to < 16) table[mask].from[to++] = 0x80;  // makes a zero
  }
  return table;
}

// Bit i of the row's number: both bytes of 16-bit lane i are kept, else only the lower one.
constexpr ShuffleTable MakeByteKeepTable() {
  ShuffleTable table{};
  for (unsigned mask = 0; mask < 256; ++mask) {
    unsigned to = 0;
    for (unsigned lane = 0; lane < 8; ++lane) {
      table[mask].from[to++] = static_cast<unsigned char>(2 * lane);
      if ((mask >> lane & 1) != 0)
        table[mask].from[to++] = static_cast<unsigned char>(2 * lane + 1);
    }
    while (to < 16) table[mask].from[to++] = 0x80;
  }
  return table;
}

}  // namespace MCMEM_NAMESPACE

#endif  // MCMEM_ENCODING_SHUFFLETABLES_H
