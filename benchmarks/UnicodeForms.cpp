// Conversions between the Unicode encoding forms, beside a plain scalar loop, by script and size.

#include <mcmem/UnicodeForms.h>

#include <cstring>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "Cases.h"
#include "ScriptTexts.h"
#include "Suite.h"

namespace bench {
namespace {

using MCMEM_NAMESPACE::strictConversion;
using MCMEM_NAMESPACE::UNALIGNED16;

// ---- The scalar loops ----
//
// One character at a time, as an engineer writes it who cares for speed but not for vectors: a
// ladder by the lead byte, ASCII first, with every check that the conversions make in strict mode.
// They are calls as the library's are.

inline bool IsTrail(unsigned int byte) { return (byte & 0xC0) == 0x80; }

struct Sequence {
  unsigned int value;
  int length;
  int code;  // 0, or why there is no character: as in ConversionResult
};

inline std::ptrdiff_t PromisedTrails(unsigned int lead) {
  return lead < 0xC0   ? 0
         : lead < 0xE0 ? 1
         : lead < 0xF0 ? 2
         : lead < 0xF8 ? 3
         : lead < 0xFC ? 4
                       : 5;
}

inline Sequence Refuse(const unsigned char* s, const unsigned char* sEnd) {
  return {0, 0, PromisedTrails(*s) >= sEnd - s ? 1 : 3};
}

inline Sequence Next(const unsigned char* s, const unsigned char* sEnd) {
  const unsigned int lead = *s;
  if (lead < 0x80) return {lead, 1, 0};
  if (lead < 0xE0) {
    if (sEnd - s < 2 || lead < 0xC2 || !IsTrail(s[1])) return Refuse(s, sEnd);
    return {(lead & 0x1F) << 6 | (s[1] & 0x3Fu), 2, 0};
  }
  if (lead < 0xF0) {
    if (sEnd - s < 3 || !IsTrail(s[1]) || !IsTrail(s[2])) return Refuse(s, sEnd);
    const unsigned int value = (lead & 0x0F) << 12 | (s[1] & 0x3Fu) << 6 | (s[2] & 0x3Fu);
    if (value < 0x800 || (value >= 0xD800 && value <= 0xDFFF)) return {0, 0, 3};
    return {value, 3, 0};
  }
  if (sEnd - s < 4 || lead > 0xF4 || !IsTrail(s[1]) || !IsTrail(s[2]) || !IsTrail(s[3]))
    return Refuse(s, sEnd);
  const unsigned int value =
      (lead & 0x07) << 18 | (s[1] & 0x3Fu) << 12 | (s[2] & 0x3Fu) << 6 | (s[3] & 0x3Fu);
  if (value < 0x10000 || value > 0x10FFFF) return {0, 0, 3};
  return {value, 4, 0};
}

inline void PutPair(UNALIGNED16* unit, unsigned int value) {
  unit->byte[0] = static_cast<unsigned char>(value);
  unit->byte[1] = static_cast<unsigned char>(value >> 8);
}

inline unsigned int GetPair(const UNALIGNED16* unit) {
  return unit->byte[0] | static_cast<unsigned int>(unit->byte[1]) << 8;
}

[[gnu::noinline]] int Scalar8To16(const unsigned char*& s, const unsigned char* sEnd,
                                  UNALIGNED16*& d, UNALIGNED16* dEnd) {
  while (s < sEnd) {
    const Sequence next = Next(s, sEnd);
    if (next.code != 0) return next.code;
    if (d >= dEnd) return 2;
    if (next.value <= 0xFFFF) {
      PutPair(d, next.value);
      s += next.length;
      if (next.value == 0) return 0;
      ++d;
    } else {
      if (dEnd - d < 2) return 2;
      PutPair(d, ((next.value - 0x10000) >> 10) + 0xD800);
      PutPair(d + 1, ((next.value - 0x10000) & 0x3FF) + 0xDC00);
      d += 2;
      s += next.length;
    }
  }
  return 0;
}

[[gnu::noinline]] int Scalar8To32(const unsigned char*& s, const unsigned char* sEnd,
                                  unsigned int*& d, unsigned int* dEnd) {
  while (s < sEnd) {
    const Sequence next = Next(s, sEnd);
    if (next.code != 0) return next.code;
    if (d >= dEnd) return 2;
    *d++ = next.value;
    s += next.length;
  }
  return 0;
}

inline int PutBytes(unsigned int value, unsigned char*& d, const unsigned char* dEnd) {
  const auto trail = [value](int shift) {
    return static_cast<unsigned char>(0x80 | ((value >> shift) & 0x3F));
  };
  if (value < 0x80) {
    if (dEnd - d < 1) return 2;
    *d++ = static_cast<unsigned char>(value);
  } else if (value < 0x800) {
    if (dEnd - d < 2) return 2;
    *d++ = static_cast<unsigned char>(0xC0 | value >> 6);
    *d++ = trail(0);
  } else if (value < 0x10000) {
    if (dEnd - d < 3) return 2;
    *d++ = static_cast<unsigned char>(0xE0 | value >> 12);
    *d++ = trail(6);
    *d++ = trail(0);
  } else {
    if (dEnd - d < 4) return 2;
    *d++ = static_cast<unsigned char>(0xF0 | value >> 18);
    *d++ = trail(12);
    *d++ = trail(6);
    *d++ = trail(0);
  }
  return 0;
}

[[gnu::noinline]] int Scalar16To8(const UNALIGNED16*& s, const UNALIGNED16* sEnd, unsigned char*& d,
                                  unsigned char* dEnd) {
  while (s < sEnd) {
    unsigned int value = GetPair(s);
    int units = 1;
    if (value >= 0xD800 && value <= 0xDBFF) {
      if (s + 1 >= sEnd) return 1;
      const unsigned int low = GetPair(s + 1);
      if (low < 0xDC00 || low > 0xDFFF) return 3;
      value = ((value - 0xD800) << 10) + (low - 0xDC00) + 0x10000;
      units = 2;
    } else if (value >= 0xDC00 && value <= 0xDFFF) {
      return 3;
    }
    if (PutBytes(value, d, dEnd) != 0) return 2;
    s += units;
    if (value == 0) return --d, 0;
  }
  return 0;
}

[[gnu::noinline]] int Scalar32To8(const unsigned int*& s, const unsigned int* sEnd,
                                  unsigned char*& d, unsigned char* dEnd) {
  int result = 0;
  while (s < sEnd) {
    unsigned int value = *s;
    if (value >= 0xD800 && value <= 0xDFFF) return 3;
    if (value > 0x10FFFF) {
      value = 0xFFFD;
      result = 3;
    }
    if (PutBytes(value, d, dEnd) != 0) return 2;
    ++s;
  }
  return result;
}

[[gnu::noinline]] int Scalar16To32(const unsigned short*& s, const unsigned short* sEnd,
                                   unsigned int*& d, unsigned int* dEnd) {
  while (s < sEnd) {
    unsigned int value = *s;
    int units = 1;
    if (value >= 0xD800 && value <= 0xDBFF) {
      if (s + 1 >= sEnd) return 1;
      const unsigned int low = s[1];
      if (low < 0xDC00 || low > 0xDFFF) return 3;
      value = ((value - 0xD800) << 10) + (low - 0xDC00) + 0x10000;
      units = 2;
    } else if (value >= 0xDC00 && value <= 0xDFFF) {
      return 3;
    }
    if (d >= dEnd) return 2;
    *d++ = value;
    s += units;
  }
  return 0;
}

[[gnu::noinline]] int Scalar32To16(const unsigned int*& s, const unsigned int* sEnd,
                                   unsigned short*& d, unsigned short* dEnd) {
  int result = 0;
  while (s < sEnd) {
    if (d >= dEnd) return 2;
    const unsigned int value = *s;
    if (value <= 0xFFFF) {
      if (value >= 0xD800 && value <= 0xDFFF) return 3;
      *d++ = static_cast<unsigned short>(value);
    } else if (value > 0x10FFFF) {
      result = 3;
    } else {
      if (d + 1 >= dEnd) return 2;
      *d++ = static_cast<unsigned short>(((value - 0x10000) >> 10) + 0xD800);
      *d++ = static_cast<unsigned short>(((value - 0x10000) & 0x3FF) + 0xDC00);
    }
    ++s;
  }
  return result;
}

// ---- One comparison ----

// Short texts: one run converts a batch of different ones, so that the branch predictor cannot
// learn a single text by heart. Source and target fit into the nearest cache, as a text does that
// has just been made.
constexpr std::size_t kBatchBytes = 4 << 10;

template <class Source, class Target>
struct Batch {
  std::vector<Source> source;
  std::vector<std::size_t> ends;  // of the texts in `source`
  std::size_t room = 0;           // units of target that any text needs at most
};

template <class Source>
std::vector<Source> UnitsOf(const std::string& utf8) {
  std::vector<Source> units;
  if constexpr (sizeof(Source) == 1) {
    units.assign(utf8.begin(), utf8.end());
  } else if constexpr (sizeof(Source) == 2) {
    const auto words = ToUtf16Units(utf8);
    units.resize(words.size());
    std::memcpy(units.data(), words.data(), words.size() * 2);
  } else {
    const auto words = ToUtf32Units(utf8);
    units.assign(words.begin(), words.end());
  }
  return units;
}

template <class Source, class Target>
Batch<Source, Target> MakeBatch(Script script, std::size_t bytes) {
  Batch<Source, Target> batch;
  const std::string text = ScriptText(script, bytes < kBatchBytes ? kBatchBytes : bytes);
  for (std::size_t begin = 0; begin + bytes <= text.size() + 3;) {
    std::size_t end = begin + bytes < text.size() ? begin + bytes : text.size();
    while (end < text.size() && IsTrail(static_cast<unsigned char>(text[end]))) --end;
    const auto units = UnitsOf<Source>(text.substr(begin, end - begin));
    batch.source.insert(batch.source.end(), units.begin(), units.end());
    batch.ends.push_back(batch.source.size());
    begin = end;
    if (begin == text.size()) break;
  }
  batch.room = bytes;  // no form has more units than UTF-8, which all texts come from
  return batch;
}

template <class Source, class Target, class Convert>
Variant ConvertBatch(std::string name, std::shared_ptr<const Batch<Source, Target>> batch,
                     Convert convert) {
  struct State {
    std::vector<Target> target;
    std::vector<int> codes;
  };
  auto state = std::make_shared<State>();
  state->target.resize(batch->ends.size() * batch->room);
  state->codes.resize(batch->ends.size());
  return {std::move(name),
          [batch, state, convert] {
            const Source* const source = batch->source.data();
            const std::size_t* const ends = batch->ends.data();
            const std::size_t count = batch->ends.size();
            const std::size_t room = batch->room;
            Target* const target = state->target.data();
            int* const codes = state->codes.data();
            for (std::size_t i = 0; i < count; ++i) {
              const Source* s = source + (i == 0 ? 0 : ends[i - 1]);
              Target* d = target + i * room;  // each text has a place of its own
              codes[i] = convert(s, source + ends[i], d, d + room);
            }
            Keep(target);
          },
          [state] {
            const auto bytesOf = [](const auto& values) {
              return std::string(reinterpret_cast<const char*>(values.data()),
                                 values.size() * sizeof values[0]);
            };
            return bytesOf(state->codes) + bytesOf(state->target);
          }};
}

template <class Source, class Target, class Ours, class Scalar>
Comparison Compare(Script script, std::size_t bytes, const char* name, std::optional<Limit> limit,
                   Ours ours, Scalar scalar) {
  auto batch =
      std::make_shared<const Batch<Source, Target>>(MakeBatch<Source, Target>(script, bytes));
  Comparison comparison;
  if (bytes < kBatchBytes)
    comparison.operations = batch->ends.size();
  else
    comparison.bytes = bytes;
  comparison.ours = ConvertBatch<Source, Target>(name, batch, ours);
  comparison.peers = {{ConvertBatch<Source, Target>("scalar loop", batch, scalar), limit}};
  return comparison;
}

// ---- The cases ----

struct Size {
  std::size_t bytes;
  const char* name;
};
constexpr Size kSizes[] = {
    {8, "8 bytes"}, {16, "16 bytes"}, {64, "64 bytes"}, {1024, "1 KB"}, {1 << 20, "1 MB"}};

// What is asked for: times faster than the scalar loop, from 64 bytes on. Shorter texts are not to
// be slower, but for a few nanoseconds of the call.
struct Aims {
  double ascii;
  double french;
  double others;
};

Limit LimitFor(const Aims& aims, Script script, std::size_t bytes) {
  if (bytes < 64) return Limit{1, 4};
  if (script == Script::kAscii) return Limit{1 / aims.ascii};
  return Limit{1 / (script == Script::kFrench ? aims.french : aims.others)};
}

template <class Source, class Target, class Ours, class Scalar>
void AddOperation(Suite& suite, const char* name, const Aims& aims, Ours ours, Scalar scalar) {
  for (const Script script : kScripts) {
    for (const Size& size : kSizes) {
      const std::size_t bytes = size.bytes;
      const Limit limit = LimitFor(aims, script, bytes);
      suite.Add("Unicode forms", name, std::string(NameOf(script)) + ", " + size.name,
                [=] { return Compare<Source, Target>(script, bytes, name, limit, ours, scalar); });
    }
  }
}

template <class Source, class Target, class Function>
auto Strict(Function function) {
  return [function](const Source*& s, const Source* sEnd, Target*& d, Target* dEnd) {
    return static_cast<int>(function(&s, sEnd, &d, dEnd, strictConversion));
  };
}

}  // namespace

void AddUnicodeFormCases(Suite& suite) {
  using namespace MCMEM_NAMESPACE;
  using Byte = unsigned char;
  using Word = unsigned short;
  using Wide = unsigned int;
  AddOperation<Byte, UNALIGNED16>(suite, "ConvertUTF8toUTF16", {15, 3, 1.2},
                                  Strict<Byte, UNALIGNED16>(ConvertUTF8toUTF16), Scalar8To16);
  AddOperation<UNALIGNED16, Byte>(suite, "ConvertUTF16toUTF8", {6, 1, 1},
                                  Strict<UNALIGNED16, Byte>(ConvertUTF16toUTF8), Scalar16To8);
  AddOperation<Byte, Wide>(suite, "ConvertUTF8toUTF32", {5, 1, 1},
                           Strict<Byte, Wide>(ConvertUTF8toUTF32), Scalar8To32);
  AddOperation<Wide, Byte>(suite, "ConvertUTF32toUTF8", {5, 1, 1},
                           Strict<Wide, Byte>(ConvertUTF32toUTF8), Scalar32To8);
  AddOperation<Word, Wide>(suite, "ConvertUTF16toUTF32", {5, 1, 1},
                           Strict<Word, Wide>(ConvertUTF16toUTF32), Scalar16To32);
  AddOperation<Wide, Word>(suite, "ConvertUTF32toUTF16", {5, 1, 1},
                           Strict<Wide, Word>(ConvertUTF32toUTF16), Scalar32To16);
}

}  // namespace bench
