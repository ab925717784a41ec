#include "mcmem/ConverterRegistry.h"

#include <cstdint>

#include "encoding/ConverterState.h"

namespace MCMEM_NAMESPACE {

namespace {

int g_qUTF8mode = 0;
UConverter* pDfltConverter = nullptr;
std::uint32_t DfltConverterSeqID = 0;

// Kept for the process, never read here.
[[maybe_unused]] UCollator* pDfltCollator = nullptr;

}  // namespace

const UConverter* CurrentDefaultConverter() { return pDfltConverter; }

bool qUTF8mode() { return g_qUTF8mode != 0; }

bool SetUTF8mode(int on) {
  g_qUTF8mode = on != 0 ? 1 : 0;
  return qUTF8mode();
}

// The old converter is not closed: whoever made it may still hold it.
void TULKMBSetDefaultConverter(UConverter* c) {
  pDfltConverter = c;
  ++DfltConverterSeqID;
}

UConverter* TULKMBGetDefaultConverter() {
  if (pDfltConverter != nullptr) return pDfltConverter;
  UConverter* created = TULKMBConverterNew_C(nullptr);
  // Without a new converter there is no change for anybody to detect.
  if (created != nullptr) TULKMBSetDefaultConverter(created);
  return created;
}

unsigned int TULKMBDefaultConverterID() { return DfltConverterSeqID; }

void TULKMBSetDefaultCollator(UCollator* c) { pDfltCollator = c; }

}  // namespace MCMEM_NAMESPACE
