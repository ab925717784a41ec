// The converter of one conversion, and whether it replaces anything.
#ifndef MCMEM_ENCODING_WATCHEDCONVERTER_H
#define MCMEM_ENCODING_WATCHEDCONVERTER_H

#include <unicode/ucnv.h>

#include "encoding/SubstitutionWatch.h"
#include "encoding/WorkingConverter.h"

namespace MCMEM_NAMESPACE {

// The caller's converter or a clone of the default one, reset in the direction that it is for.
class WatchedConverter {
 public:
  // `given` is borrowed; null asks for a clone.
  WatchedConverter(void* given, SubstitutionWatch::Direction direction)
      : working_(given, WorkingConverter::NotReset()) {
    if (working_.Get() == nullptr) return;
    watch_.Attach(*working_.Get(), direction);
    if (working_.IsClone()) watch_.Release();
    if (direction == SubstitutionWatch::kToUnicode) {
      ucnv_resetToUnicode(working_.Get());
    } else {
      ucnv_resetFromUnicode(working_.Get());
    }
  }

  WatchedConverter(const WatchedConverter&) = delete;
  WatchedConverter& operator=(const WatchedConverter&) = delete;

  // Null when there is none; see WorkingConverter.
  UConverter* Get() const { return working_.Get(); }

  bool HasReplaced() const { return watch_.HasSeen(); }

 private:
  SubstitutionWatch watch_;  // ends last: a clone calls it when it is closed
  WorkingConverter working_;
};

}  // namespace MCMEM_NAMESPACE

#endif  // MCMEM_ENCODING_WATCHEDCONVERTER_H
