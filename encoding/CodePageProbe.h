// Finds out the traits of a code page.
#ifndef MCMEM_ENCODING_CODEPAGEPROBE_H
#define MCMEM_ENCODING_CODEPAGEPROBE_H

#include <unicode/ucnv.h>

#include <memory>
#include <string>

#include "encoding/CodePageTraits.h"
#include "encoding/WorkingConverter.h"

namespace MCMEM_NAMESPACE {
namespace transcoding {

// Converts with a clone that stops at everything that it would replace.
class CodePageProbe {
 public:
  // `converter` is only read.
  explicit CodePageProbe(const UConverter& converter);

  // False when there is no clone or no memory.
  bool Fill(CodePageTraits& traits);

 private:
  void FillExceptions(CodePageTraits& traits);
  bool IsPlain(const std::string& text);
  bool HasSequences();
  std::unique_ptr<SingleByteTable> MakeTable();
  void AddByte(SingleByteTable& table, unsigned char byte);

  WorkingConverter clone_;
};

}  // namespace transcoding
}  // namespace MCMEM_NAMESPACE

#endif  // MCMEM_ENCODING_CODEPAGEPROBE_H
