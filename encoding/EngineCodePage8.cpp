// Code pages and UTF-8.

#include "encoding/CodePageDriver.h"
#include "encoding/CodePageStart.h"
#include "encoding/Conversions.h"
#include "encoding/OutputRules.h"
#include "encoding/Utf8And16.h"
#include "encoding/Utf8Sequence.h"
#include "mcmem/Transcoding.h"

namespace MCMEM_NAMESPACE {
namespace transcoding {

namespace {

using Unit = unsigned short;

constexpr std::size_t kPivotUnits = 1024;

// UTF-16 on its way to UTF-8. A surrogate without its other half, which some converters let
// through, becomes U+FFFD.
class Utf8Writer final : public Target<Unit> {
 public:
  explicit Utf8Writer(Target<char>& target) : target_(target) { Rewind(0); }

  // The other half of a pair may be still to come.
  bool More() override {
    const bool isOpen = next != pivot_ && IsHighSurrogate(next[-1]);
    const Unit open = isOpen ? *--next : Unit{0};
    if (!Write()) return false;
    pivot_[0] = open;
    Rewind(isOpen ? 1 : 0);
    return true;
  }

  Verdict Finish() {
    if (!Write()) return Verdict::kNoMemory;
    return lossy_ ? Verdict::kLossy : Verdict::kExact;
  }

 private:
  bool Write() {
    const Unit* s = pivot_;
    for (;;) {
      const Stop stop = EncodeUtf8(s, next, target_.next, target_.end);
      if (stop == Stop::kSourceEnd) return true;
      if (stop == Stop::kMalformed && target_.Room() >= 3) {
        WriteReplacement();
        ++s;
      } else if (!target_.More()) {
        return false;
      }
    }
  }

  void WriteReplacement() {
    PutUtf8(kReplacement, reinterpret_cast<unsigned char*>(target_.next));
    target_.next += Utf8Length(kReplacement);
    lossy_ = true;
  }

  void Rewind(std::size_t kept) {
    next = pivot_ + kept;
    end = pivot_ + kPivotUnits;
  }

  Target<char>& target_;
  bool lossy_ = false;
  Unit pivot_[kPivotUnits];
};

// UTF-16 on its way to a code page.
class CodePageWriter final : public Target<Unit> {
 public:
  CodePageWriter(UConverter& converter, Target<char>& target)
      : converter_(converter), target_(target) {
    Rewind();
  }

  bool More() override {
    trouble_ = EncodeWith(converter_, {pivot_, next}, false, target_);
    Rewind();
    return trouble_ == Verdict::kExact;
  }

  Verdict Finish() { return EncodeWith(converter_, {pivot_, next}, true, target_); }

  // Why there is no more room.
  Verdict Trouble() const { return trouble_; }

 private:
  void Rewind() {
    next = pivot_;
    end = pivot_ + kPivotUnits;
  }

  UConverter& converter_;
  Target<char>& target_;
  Verdict trouble_ = Verdict::kExact;
  Unit pivot_[kPivotUnits];
};

// Malformed sequences become U+FFFD, as ICU's own converter would have it, and are noted. False
// when the target gives no more room.
bool DecodeReplacing(Text<char> text, Target<Unit>& target, bool& lossy) {
  for (;;) {
    const Stop stop = DecodeUtf8(text.first, text.last, target.next, target.end);
    if (stop == Stop::kSourceEnd) return true;
    if (stop == Stop::kMalformed && target.Room() != 0) {
      *target.next++ = static_cast<Unit>(kReplacement);
      text.first += MalformedLength(text.first, text.last);
      lossy = true;
    } else if (!target.More()) {
      return false;
    }
  }
}

Verdict EncodeByPivot(UConverter& converter, Text<char> text, Target<char>& target) {
  CodePageWriter writer(converter, target);
  bool lossy = false;
  if (!DecodeReplacing(text, writer, lossy)) return writer.Trouble();
  return Worse(writer.Finish(), lossy ? Verdict::kLossy : Verdict::kExact);
}

// What needs no converter. False without memory.
bool MoveUtf8Head(const CodePageTraits& traits, Text<char>& text, Target<char>& target) {
  if (!MovePlainHead(traits, text, target)) return false;
  if (traits.Table() != nullptr) return MoveTabledUtf8(*traits.Table(), text, target);
  if (!traits.IsUtf8()) return true;
  Utf8Writer writer(target);
  return MoveKnownHead(traits, text, writer) && writer.Finish() != Verdict::kNoMemory;
}

}  // namespace

Verdict CodePageTo8(void* converter, const CodePageTraits* traits, Text<char> text,
                    Target<char>& target) {
  Utf8Writer writer(target);
  if (traits != nullptr) {
    if (!MovePlainHead(*traits, text, target)) return Verdict::kNoMemory;
    if (!MoveKnownHead(*traits, text, writer)) return Verdict::kNoMemory;
  }
  const Verdict verdict = DecodeRest(converter, text, writer);
  return verdict >= Verdict::kFailed ? verdict : Worse(verdict, writer.Finish());
}

Verdict Utf8ToCodePage(void* converter, const CodePageTraits* traits, Text<char> text,
                       Target<char>& target) {
  if (traits != nullptr) {
    if (!MoveUtf8Head(*traits, text, target)) return Verdict::kNoMemory;
  }
  if (text.IsEmpty()) {
    EndEncoding(converter);
    return Verdict::kExact;
  }
  WatchedConverter watched(converter, SubstitutionWatch::kFromUnicode);
  if (watched.Get() == nullptr) return Verdict::kFailed;
  const Verdict verdict = EncodeByPivot(*watched.Get(), text, target);
  return Worse(verdict, VerdictOf(watched));
}

}  // namespace transcoding

int TULKMBCodePageAnd8(int dir, void* converter, void* dst, int dstCapacity, const void* src,
                       int srcLength, int* status) {
  using namespace transcoding;
  CodePageStart<char, char> decodeStart(converter, EndDecoding);
  const auto decode = [converter, &decodeStart](Text<char> text, BufferTarget<char>& target) {
    return CodePageTo8(converter, decodeStart.Traits(), text, target);
  };
  CodePageStart<char, char> encodeStart(converter, EndEncoding);
  const auto encode = [converter, &encodeStart](Text<char> text, BufferTarget<char>& target) {
    const Verdict verdict = Utf8ToCodePage(converter, encodeStart.Traits(), text, target);
    TrimCodePage(converter, target);
    return verdict;
  };
  return dir != 0
             ? FillBuffer<char, char>(dst, dstCapacity, src, srcLength, status, decodeStart, decode)
             : FillBuffer<char, char>(dst, dstCapacity, src, srcLength, status, encodeStart,
                                      encode);
}

}  // namespace MCMEM_NAMESPACE
