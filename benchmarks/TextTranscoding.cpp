// Transcoding beside ICU called directly and beside the C library's iconv, by script and size.

#include <iconv.h>
#include <mcmem/ConverterRegistry.h>
#include <mcmem/Transcoding.h>
#include <unicode/ucnv.h>
#include <unicode/ustring.h>

#include <algorithm>
#include <cstring>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include "Cases.h"
#include "ScriptTexts.h"
#include "Suite.h"

namespace bench {
namespace {

using Unit = unsigned short;
static_assert(sizeof(UChar) == sizeof(Unit));

constexpr std::size_t kSizes[] = {8, 16, 64, 1024, 1 << 20};  // of the UTF-8 form, in bytes
constexpr std::size_t kBatch = 1 << 16;  // bytes per run at least, in pieces of the size

constexpr double kNotSlower = 1.05;
constexpr double kCallNs = 5;  // what a call of the 8/16 engine may cost on top

// The code-page/16 engine is compared only: it watches its clone for replacements, which ICU called
// directly does not, and has less to make up for that with than the code-page/8 engine.
constexpr std::nullopt_t kNoLimit = std::nullopt;

std::string NameOfSize(std::size_t bytes) {
  return bytes >= 1 << 20 ? "1 MB" : std::to_string(bytes) + " bytes";
}

// ---- Inputs ----

struct CodePage {
  const char* name;
  const char* iconvName;
};

// One that has the script's characters.
CodePage CodePageOf(Script script) {
  switch (script) {
    case Script::kCyrillic:
      return {"windows-1251", "CP1251"};
    case Script::kChinese:
      return {"GBK", "GBK"};
    case Script::kEmoji:
      return {"GB18030", "GB18030"};
    default:
      return {"windows-1252", "CP1252"};
  }
}

// Texts of one size, one behind the other, and where each of them begins and ends.
template <class From>
struct Pieces {
  std::basic_string<From> text;
  std::vector<std::size_t> bounds;
  std::size_t utf8Bytes = 0;

  std::size_t Count() const { return bounds.size() - 1; }
  const From* At(std::size_t i) const { return text.data() + bounds[i]; }
  int Length(std::size_t i) const { return static_cast<int>(bounds[i + 1] - bounds[i]); }
};

bool IsTrail(char byte) { return (static_cast<unsigned char>(byte) & 0xC0) == 0x80; }

Pieces<char> Utf8Pieces(Script script, std::size_t size) {
  Pieces<char> pieces;
  pieces.text = ScriptText(script, std::max(size, kBatch));
  pieces.utf8Bytes = pieces.text.size();
  pieces.bounds.push_back(0);
  while (pieces.bounds.back() < pieces.text.size()) {
    std::size_t end = std::min(pieces.bounds.back() + size, pieces.text.size());
    while (end < pieces.text.size() && IsTrail(pieces.text[end])) --end;
    pieces.bounds.push_back(end);
  }
  return pieces;
}

// The same pieces in another encoding.
template <class To, class Convert>
Pieces<To> Converted(const Pieces<char>& utf8, const Convert& convert) {
  Pieces<To> pieces;
  pieces.utf8Bytes = utf8.utf8Bytes;
  pieces.bounds.push_back(0);
  for (std::size_t i = 0; i < utf8.Count(); ++i) {
    pieces.text += convert(std::string(utf8.At(i), static_cast<std::size_t>(utf8.Length(i))));
    pieces.bounds.push_back(pieces.text.size());
  }
  return pieces;
}

struct CloseConverter {
  void operator()(UConverter* converter) const { ucnv_close(converter); }
};

// The default converter as long as it lives.
class DefaultConverter {
 public:
  explicit DefaultConverter(const char* name)
      : converter_(MCMEM_NAMESPACE::TULKMBConverterNew_C(name)) {
    MCMEM_NAMESPACE::TULKMBSetDefaultConverter(converter_.get());
  }
  ~DefaultConverter() { MCMEM_NAMESPACE::TULKMBSetDefaultConverter(nullptr); }
  DefaultConverter(const DefaultConverter&) = delete;
  DefaultConverter& operator=(const DefaultConverter&) = delete;

  UConverter* Get() const { return converter_.get(); }

 private:
  std::unique_ptr<UConverter, CloseConverter> converter_;
};

// Clones as an engineer would who uses ICU directly.
class Clone {
 public:
  explicit Clone(const UConverter* original) {
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wdeprecated-declarations"
    converter_ = ucnv_safeClone(original, memory_, &bytes_, &error_);
#pragma GCC diagnostic pop
  }
  ~Clone() { ucnv_close(converter_); }
  Clone(const Clone&) = delete;
  Clone& operator=(const Clone&) = delete;

  UConverter* Get() const { return converter_; }

 private:
  alignas(16) char memory_[1040];
  int32_t bytes_ = sizeof memory_;
  UErrorCode error_ = U_ZERO_ERROR;
  UConverter* converter_;
};

class Iconv {
 public:
  Iconv(const char* to, const char* from) : handle_(iconv_open(to, from)) {
    if (handle_ == reinterpret_cast<iconv_t>(-1)) throw std::runtime_error("no iconv");
  }
  ~Iconv() { iconv_close(handle_); }
  Iconv(const Iconv&) = delete;
  Iconv& operator=(const Iconv&) = delete;

  // Bytes written.
  std::size_t Convert(void* dst, std::size_t dstBytes, const void* src, std::size_t srcBytes) {
    iconv(handle_, nullptr, nullptr, nullptr, nullptr);
    auto* in = static_cast<char*>(const_cast<void*>(src));
    auto* out = static_cast<char*>(dst);
    iconv(handle_, &in, &srcBytes, &out, &dstBytes);
    return static_cast<std::size_t>(out - static_cast<char*>(dst));
  }

 private:
  iconv_t handle_;
};

// ---- Comparisons ----

// Converts every piece, each result behind the one before. `convert(dst, capacity, src, length)`
// returns the units written.
template <class From, class To, class Convert>
Variant ConvertAll(std::string name, std::shared_ptr<const Pieces<From>> input, Convert convert) {
  const std::size_t capacity = 4 * input->utf8Bytes + 64;
  auto output = std::make_shared<std::basic_string<To>>(capacity, To{0});
  auto size = std::make_shared<std::size_t>(0);
  auto run = [input, output, size, capacity, convert] {
    std::size_t made = 0;
    for (std::size_t i = 0; i < input->Count(); ++i) {
      To* const dst = output->data() + made;
      made += static_cast<std::size_t>(
          convert(dst, static_cast<int>(capacity - made), input->At(i), input->Length(i)));
    }
    *size = made;
    Keep(output->data());
  };
  auto result = [output, size] {
    return std::string(reinterpret_cast<const char*>(output->data()), *size * sizeof(To));
  };
  return {std::move(name), std::move(run), std::move(result)};
}

template <class From, class To, class Ours, class Icu>
Comparison Compare(std::shared_ptr<const Pieces<From>> input, Ours ours, Icu icu,
                   std::optional<Limit> limit, std::shared_ptr<Iconv> library) {
  const auto byIconv = [library](To* dst, int capacity, const From* src, int length) {
    const auto bytes = library->Convert(dst, static_cast<std::size_t>(capacity) * sizeof(To), src,
                                        static_cast<std::size_t>(length) * sizeof(From));
    return static_cast<int>(bytes / sizeof(To));
  };
  Comparison comparison;
  comparison.ours = ConvertAll<From, To>("mcxprsutil", input, ours);
  comparison.peers.push_back({ConvertAll<From, To>("ICU called directly", input, icu), limit});
  comparison.peers.push_back({ConvertAll<From, To>("iconv", input, byIconv)});
  comparison.bytes = input->utf8Bytes;
  comparison.operations = input->Count();
  return comparison;
}

// Bounds for the 8/16 engine: ASCII is to be far ahead of ICU.
Limit LimitOf8And16(Script script, std::size_t size) {
  if (script == Script::kAscii && size >= 1024) return {1 / 10.0};
  if (script == Script::kAscii && size >= 64) return {1 / 5.0};
  return {kNotSlower, kCallNs};
}

Limit LimitOfCodePageTo8(Script script, std::size_t size) {
  return script == Script::kAscii && size >= 64 ? Limit{1 / 5.0} : Limit{kNotSlower};
}

Comparison Compare8To16(Script script, std::size_t size) {
  auto input = std::make_shared<const Pieces<char>>(Utf8Pieces(script, size));
  const auto ours = [](Unit* dst, int capacity, const char* src, int length) {
    return MCMEM_NAMESPACE::TULKMB8to16(dst, capacity, src, length);
  };
  const auto icu = [](Unit* dst, int capacity, const char* src, int length) {
    int32_t made = 0;
    UErrorCode error = U_ZERO_ERROR;
    u_strFromUTF8(dst, capacity, &made, src, length, &error);
    return made;
  };
  return Compare<char, Unit>(input, ours, icu, LimitOf8And16(script, size),
                             std::make_shared<Iconv>("UTF-16LE", "UTF-8"));
}

Comparison Compare16To8(Script script, std::size_t size) {
  auto input =
      std::make_shared<const Pieces<Unit>>(Converted<Unit>(Utf8Pieces(script, size), ToUtf16Units));
  const auto ours = [](char* dst, int capacity, const Unit* src, int length) {
    return MCMEM_NAMESPACE::TULKMB16to8(dst, capacity, src, length);
  };
  const auto icu = [](char* dst, int capacity, const Unit* src, int length) {
    int32_t made = 0;
    UErrorCode error = U_ZERO_ERROR;
    u_strToUTF8(dst, capacity, &made, src, length, &error);
    return made;
  };
  return Compare<Unit, char>(input, ours, icu, LimitOf8And16(script, size),
                             std::make_shared<Iconv>("UTF-8", "UTF-16LE"));
}

Pieces<char> CodePagePieces(Script script, std::size_t size) {
  const DefaultConverter converter(CodePageOf(script).name);
  return Converted<char>(Utf8Pieces(script, size), [](const std::string& utf8) {
    std::string bytes;
    if (MCMEM_NAMESPACE::TULKMBU8ToCodePage(nullptr, bytes, utf8) != 0) {
      throw std::runtime_error("the code page lacks a character");
    }
    return bytes;
  });
}

Comparison CompareCodePageTo8(Script script, std::size_t size) {
  const CodePage page = CodePageOf(script);
  auto input = std::make_shared<const Pieces<char>>(CodePagePieces(script, size));
  auto converter = std::make_shared<DefaultConverter>(page.name);
  const auto ours = [converter](char* dst, int capacity, const char* src, int length) {
    return MCMEM_NAMESPACE::TULKMBCodePageto8(nullptr, dst, capacity, src, length);
  };
  const auto icu = [converter](char* dst, int capacity, const char* src, int length) {
    const Clone clone(converter->Get());
    UErrorCode error = U_ZERO_ERROR;
    return ucnv_toAlgorithmic(UCNV_UTF8, clone.Get(), dst, capacity, src, length, &error);
  };
  return Compare<char, char>(input, ours, icu, LimitOfCodePageTo8(script, size),
                             std::make_shared<Iconv>("UTF-8", page.iconvName));
}

Comparison Compare8ToCodePage(Script script, std::size_t size) {
  const CodePage page = CodePageOf(script);
  auto input = std::make_shared<const Pieces<char>>(Utf8Pieces(script, size));
  auto converter = std::make_shared<DefaultConverter>(page.name);
  const auto ours = [converter](char* dst, int capacity, const char* src, int length) {
    return MCMEM_NAMESPACE::TULKMB8toCodePage(nullptr, dst, capacity, src, length);
  };
  const auto icu = [converter](char* dst, int capacity, const char* src, int length) {
    const Clone clone(converter->Get());
    UErrorCode error = U_ZERO_ERROR;
    return ucnv_fromAlgorithmic(clone.Get(), UCNV_UTF8, dst, capacity, src, length, &error);
  };
  return Compare<char, char>(input, ours, icu, Limit{kNotSlower},
                             std::make_shared<Iconv>(page.iconvName, "UTF-8"));
}

Comparison CompareCodePageTo16(Script script, std::size_t size) {
  const CodePage page = CodePageOf(script);
  auto input = std::make_shared<const Pieces<char>>(CodePagePieces(script, size));
  auto converter = std::make_shared<DefaultConverter>(page.name);
  const auto ours = [converter](Unit* dst, int capacity, const char* src, int length) {
    return MCMEM_NAMESPACE::TULKMBCodePageto16(nullptr, dst, capacity, src, length);
  };
  const auto icu = [converter](Unit* dst, int capacity, const char* src, int length) {
    const Clone clone(converter->Get());
    UErrorCode error = U_ZERO_ERROR;
    return ucnv_toUChars(clone.Get(), dst, capacity, src, length, &error);
  };
  return Compare<char, Unit>(input, ours, icu, kNoLimit,
                             std::make_shared<Iconv>("UTF-16LE", page.iconvName));
}

Comparison Compare16ToCodePage(Script script, std::size_t size) {
  const CodePage page = CodePageOf(script);
  auto input =
      std::make_shared<const Pieces<Unit>>(Converted<Unit>(Utf8Pieces(script, size), ToUtf16Units));
  auto converter = std::make_shared<DefaultConverter>(page.name);
  const auto ours = [converter](char* dst, int capacity, const Unit* src, int length) {
    return MCMEM_NAMESPACE::TULKMB16toCodePage(nullptr, dst, capacity, src, length);
  };
  const auto icu = [converter](char* dst, int capacity, const Unit* src, int length) {
    const Clone clone(converter->Get());
    UErrorCode error = U_ZERO_ERROR;
    return ucnv_fromUChars(clone.Get(), dst, capacity, src, length, &error);
  };
  return Compare<Unit, char>(input, ours, icu, kNoLimit,
                             std::make_shared<Iconv>(page.iconvName, "UTF-16LE"));
}

struct Operation {
  const char* name;
  Comparison (*compare)(Script, std::size_t);
};

constexpr Operation kOperations[] = {
    {"8 to 16", Compare8To16},
    {"16 to 8", Compare16To8},
    {"code page to 8", CompareCodePageTo8},
    {"8 to code page", Compare8ToCodePage},
    {"code page to 16", CompareCodePageTo16},
    {"16 to code page", Compare16ToCodePage},
};

}  // namespace

void AddTranscodingCases(Suite& suite) {
  for (const Operation& operation : kOperations) {
    for (const Script script : kScripts) {
      for (const std::size_t size : kSizes) {
        suite.Add("Transcoding", std::string(operation.name) + ", " + NameOf(script),
                  NameOfSize(size),
                  [&operation, script, size] { return operation.compare(script, size); });
      }
    }
  }
}

}  // namespace bench
