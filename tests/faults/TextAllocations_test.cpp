// The text services while memory is short. What they find out once and keep is known here: see
// FirstUse_test.cpp for that.
#include <gtest/gtest.h>
#include <mcmem/ConverterRegistry.h>
#include <mcmem/ExtNameStr.h>
#include <mcmem/MultiByteString.h>
#include <mcmem/Transcoding.h>

#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "encoding/RegistryState.h"
#include "faults/AllocationSweep.h"
#include "support/FailingAllocations.h"

namespace {

using encoding_test::CloseConverter;
using encoding_test::DefaultCodePage;
using encoding_test::NameOf;
using encoding_test::NewConverter;
using encoding_test::OwnedConverter;
using encoding_test::Utf8Mode;
using fault_test::Operation;
using fault_test::Subject;
using fault_test::SweepAllocations;
using fault_test::SweepAndPrint;
using fault_test::Tally;
using namespace MCMEM_NAMESPACE;

constexpr char kUtf8[] =
    "a text that is longer than a string keeps in itself, with d\xC3\xA9j\xC3\xA0 vu in it";
// One that is converted in several pieces.
const std::string kLongUtf8 = std::string(5000, 'x') + kUtf8 + std::string(2000, 'y');

// Tables of single bytes and of more, algorithms, states, and the one that ICU does not reset.
constexpr const char* kCodePages[] = {
    "1252",      "932",         "GB18030", "UTF-8", "UTF-16", "UTF-7",   "BOCU-1",
    "SCSU",      "ISO-2022-JP", "LMBCS-1", "HZ",    "ibm-37", "ibm-930", "x11-compound-text",
    "ISO-8859-1"};

// A text in all forms.
struct Texts {
  Texts(void* converter, std::string text) : utf8(std::move(text)) {
    EXPECT_EQ(TULKMBU8ToU16(utf16, utf8), 0);
    (void)TULKMBU8ToCodePage(converter, bytes, utf8);  // may be lossy
    EXPECT_FALSE(bytes.empty());
  }

  const std::string utf8;
  U16String utf16;
  std::string bytes;
};

// What a conversion made; one of these texts.
struct Made {
  std::string text;
  U16String wide;
  std::unique_ptr<char[]> array;
  std::unique_ptr<unsigned short[]> wide_array;
  std::string buffer = std::string(60000, '#');
  int length = 0;  // in the buffer
  int status = 0;
};

using Convert = std::function<void(void* converter, const Texts& texts, Made& made)>;

struct Conversion {
  const char* name;
  Convert convert;
};

const std::vector<Conversion> kStringForms = {
    {"U8ToCodePage",
     [](void* c, auto& t, Made& m) { m.status = TULKMBU8ToCodePage(c, m.text, t.utf8); }},
    {"CodePageToU8",
     [](void* c, auto& t, Made& m) { m.status = TULKMBCodePageToU8(c, m.text, t.bytes); }},
    {"U16ToCodePage",
     [](void* c, auto& t, Made& m) { m.status = TULKMBU16ToCodePage(c, m.text, t.utf16); }},
    {"CodePageToU16",
     [](void* c, auto& t, Made& m) { m.status = TULKMBCodePageToU16(c, m.wide, t.bytes); }},
    {"U16ToU8", [](void*, auto& t, Made& m) { m.status = TULKMBU16ToU8(m.text, t.utf16); }},
    {"U8ToU16", [](void*, auto& t, Made& m) { m.status = TULKMBU8ToU16(m.wide, t.utf8); }},
    {"U8ToGeneric",
     [](void* c, auto& t, Made& m) { m.status = TULKMBU8ToGeneric(c, m.text, t.utf8); }},
    {"U16ToGeneric",
     [](void* c, auto& t, Made& m) { m.status = TULKMBU16ToGeneric(c, m.text, t.utf16); }},
    {"GenericToU8",
     [](void* c, auto& t, Made& m) { m.status = TULKMBGenericToU8(c, m.text, t.bytes); }},
    {"GenericToU16",
     [](void* c, auto& t, Made& m) { m.status = TULKMBGenericToU16(c, m.wide, t.bytes); }},
    {"CodePageToGeneric",
     [](void* c, auto& t, Made& m) { m.status = TULKMBCodePageToGeneric(c, m.text, t.bytes); }},
    {"GenericToCodePage",
     [](void* c, auto& t, Made& m) { m.status = TULKMBGenericToCodePage(c, m.text, t.bytes); }},
};

// The whole of the buffer, counted in units that may be wide.
int Room(const Made& made) { return static_cast<int>(made.buffer.size() / 2); }

unsigned short* Wide(Made& made) { return reinterpret_cast<unsigned short*>(made.buffer.data()); }

const std::vector<Conversion> kBufferForms = {
    {"8toCodePage",
     [](void* c, auto& t, Made& m) {
       m.length = TULKMB8toCodePage(c, m.buffer.data(), Room(m), t.utf8.c_str(), -1, &m.status);
     }},
    {"8toCodePage, cut",
     [](void* c, auto& t, Made& m) {
       m.length = TULKMB8toCodePage(c, m.buffer.data(), 10, t.utf8.c_str(), -1, &m.status);
     }},
    {"CodePageto8",
     [](void* c, auto& t, Made& m) {
       const auto length = static_cast<int>(t.bytes.size());
       m.length = TULKMBCodePageto8(c, m.buffer.data(), Room(m), t.bytes.data(), length, &m.status);
     }},
    {"16toCodePage",
     [](void* c, auto& t, Made& m) {
       m.length = TULKMB16toCodePage(c, m.buffer.data(), Room(m), t.utf16.c_str(), -1, &m.status);
     }},
    {"CodePageto16",
     [](void* c, auto& t, Made& m) {
       const auto length = static_cast<int>(t.bytes.size());
       m.length = TULKMBCodePageto16(c, Wide(m), Room(m), t.bytes.data(), length, &m.status);
     }},
};

// These convert with the default converter only.
const std::vector<Conversion> kArrayForms = {
    {"TranscodeU8 of UTF-16",
     [](void*, auto& t, Made& m) { m.array.reset(TULKMBTranscodeU8(t.utf16.c_str())); }},
    {"TranscodeU8",
     [](void*, auto& t, Made& m) { m.wide_array.reset(TULKMBTranscodeU8(t.utf8.c_str())); }},
    {"TranscodeCodePage of UTF-16",
     [](void*, auto& t, Made& m) { m.array.reset(TULKMBTranscodeCodePage(t.utf16.c_str())); }},
    {"TranscodeCodePage",
     [](void*, auto& t, Made& m) { m.wide_array.reset(TULKMBTranscodeCodePage(t.bytes.c_str())); }},
    {"TranscodeGeneric of UTF-16",
     [](void*, auto& t, Made& m) { m.array.reset(TULKMBTranscodeGeneric(t.utf16.c_str())); }},
    {"TranscodeGeneric",
     [](void*, auto& t, Made& m) { m.wide_array.reset(TULKMBTranscodeGeneric(t.bytes.c_str())); }},
};

class ConversionRun : public Subject {
 public:
  ConversionRun(const Convert& convert, void* converter, const Texts& texts)
      : convert_(convert), converter_(converter), texts_(texts) {}
  void Prepare() override { made_ = Made(); }
  void Run() override { convert_(converter_, texts_, made_); }
  std::string Result() override {
    const std::string status = std::to_string(made_.status);
    const std::string text = Text();
    if (made_.status == 2) {
      EXPECT_EQ(text, "");
    }
    if (text.empty()) return fault_test::kFailed + (" with " + status);
    // Long texts would bury what a failure has to say.
    return status + ": " + std::to_string(std::hash<std::string>()(text)) + text.substr(0, 20);
  }

 private:
  std::string Text() const {
    std::string text = made_.text + made_.buffer.substr(0, static_cast<std::size_t>(made_.length));
    for (const unsigned short unit : made_.wide) text += std::to_string(unit) + ' ';
    if (made_.array != nullptr) text += made_.array.get();
    for (auto* unit = made_.wide_array.get(); unit != nullptr && *unit != 0; ++unit)
      text += std::to_string(*unit) + ' ';
    return text;
  }

  const Convert convert_;
  void* const converter_;
  const Texts& texts_;
  Made made_;
};

void Sweep(const std::vector<Conversion>& conversions, void* converter, const Texts& texts,
           Tally& tally) {
  for (const auto& [name, convert] : conversions) {
    Operation operation{name, [&convert = convert, converter, &texts] {
                          return std::make_unique<ConversionRun>(convert, converter, texts);
                        }};
    operation.may_throw = false;
    tally.Add(SweepAllocations(operation));
  }
}

TEST(TextAllocations, StringFormsWithAConverter) {
  Tally tally;
  for (const char* name : kCodePages) {
    for (const std::string& text : {std::string(kUtf8), kLongUtf8}) {
      SCOPED_TRACE(name);
      const OwnedConverter converter = NewConverter(name);
      Sweep(kStringForms, converter.get(), Texts(converter.get(), text), tally);
    }
  }
  tally.Print("string forms with a converter");
}

TEST(TextAllocations, BufferForms) {
  Tally tally;
  for (const char* name : kCodePages) {
    SCOPED_TRACE(name);
    const DefaultCodePage standard(name);
    const OwnedConverter converter = NewConverter(name);
    for (const std::string& text : {std::string(kUtf8), kLongUtf8}) {
      const Texts texts(converter.get(), text);
      Sweep(kBufferForms, converter.get(), texts, tally);
      Sweep(kBufferForms, nullptr, texts, tally);
    }
  }
  tally.Print("buffer forms");
}

TEST(TextAllocations, FormsWithTheDefaultConverter) {
  Tally strings;
  Tally arrays;
  for (const char* name : kCodePages) {
    for (const int mode : {0, 1}) {
      SCOPED_TRACE(name);
      const DefaultCodePage standard(name);
      const Utf8Mode utf8_mode(mode);
      for (const std::string& text : {std::string(kUtf8), kLongUtf8}) {
        const Texts texts(nullptr, text);
        Sweep(kStringForms, nullptr, texts, strings);
        Sweep(kArrayForms, nullptr, texts, arrays);
      }
    }
  }
  strings.Print("string forms with the default converter");
  arrays.Print("array forms");
}

// What an operation of the string functions answered.
class Search : public Subject {
 public:
  using Find = int (*)(void* converter, const std::string& text, int& status);
  Search(Find find, void* converter, std::string text)
      : find_(find), converter_(converter), text_(std::move(text)) {}
  void Run() override { answer_ = find_(converter_, text_, status_); }
  std::string Result() override {
    return status_ == 0 ? std::to_string(answer_) : fault_test::kFailed;
  }

 private:
  const Find find_;
  void* const converter_;
  const std::string text_;
  int answer_ = 0;
  int status_ = 0;
};

constexpr Search::Find kSearches[] = {
    [](void* c, const std::string& text, int& status) {
      return TULKMBBinaryCompare_C(1, c, text.data(), static_cast<int>(text.size()), text.data(),
                                   static_cast<int>(text.size()) - 1, &status);
    },
    [](void* c, const std::string& text, int& status) {
      const int count = TULKMBValidCount_C(c, text.data(), static_cast<int>(text.size()));
      status = count == 0 ? 3 : 0;
      return count;
    },
    [](void*, const std::string& text, int& status) {
      unsigned int value = 0;
      const int bytes = TULKMBU32Get_C(&value, text.data(), 0, static_cast<int>(text.size()));
      status = bytes < 0 ? 3 : 0;
      return static_cast<int>(value);
    },
};

TEST(TextAllocations, StringFunctions) {
  Tally tally;
  for (const char* name : kCodePages) {
    SCOPED_TRACE(name);
    const DefaultCodePage standard(name);
    const OwnedConverter converter = NewConverter(name);
    const Texts texts(converter.get(), kUtf8);
    for (void* const given : {static_cast<void*>(converter.get()), static_cast<void*>(nullptr)}) {
      for (const Search::Find find : kSearches) {
        Operation operation{name,
                            [&] { return std::make_unique<Search>(find, given, texts.bytes); }};
        operation.may_throw = false;
        tally.Add(SweepAllocations(operation));
      }
    }
  }
  tally.Print("string functions");
}

// A name, and one of its operations.
class Naming : public Subject {
 public:
  using Change = void (*)(ExtNameStr& name, void* converter);
  Naming(const char* before, Change change, void* converter)
      : before_(before), change_(change), converter_(converter) {}
  void Prepare() override { name_.SetU8(before_); }
  void Run() override { change_(name_, converter_); }
  std::string Result() override {
    const int status = name_.ErrorCode();
    std::string text = std::to_string(status) + '|' + name_.GetU8() + '|' + name_.GetSystem();
    for (const unsigned short unit : name_.GetU16()) text += ' ' + std::to_string(unit);
    return (status == 0 ? "" : fault_test::kFailed) + text + '|' + name_.GetCP();
  }

 private:
  const char* const before_;
  const Change change_;
  void* const converter_;
  ExtNameStr name_;
};

const std::string kName =
    "the name of a variable, \xC3\xA9"
    "crit en entier";
const std::string kLatinName =
    "the name of a variable, \xE9"
    "crit en entier";
const U16String kWideName(50, 'n');

constexpr char kShort[] = "x";
constexpr char kLong[] = "the earlier name, which does not fit into a string object";

struct NamingCase {
  const char* name;
  const char* before;
  Naming::Change change;
};

constexpr NamingCase kNamings[] = {
    {"SetU8", kShort, [](ExtNameStr& n, void*) { n.SetU8(kName); }},
    {"SetU16", kShort, [](ExtNameStr& n, void*) { n.SetU16(kWideName); }},
    {"SetCP", kShort, [](ExtNameStr& n, void* c) { n.SetCP(kLatinName, c); }},
    {"SetCP, default", kShort, [](ExtNameStr& n, void*) { n.SetCP(kLatinName, nullptr); }},
    {"SetGeneric", kShort, [](ExtNameStr& n, void*) { n.SetGeneric(kLatinName); }},
    {"SetSystem", kShort, [](ExtNameStr& n, void*) { (void)n.SetSystem(kLatinName); }},
    {"Clear", kLong, [](ExtNameStr& n, void*) { n.Clear(); }},
    {"GetCP of another", kLong, [](ExtNameStr& n, void* c) { (void)n.GetCP(c); }},
    {"assignment", kLong,
     [](ExtNameStr& n, void*) {
       const ExtNameStr copy(n);
       n = copy;
     }},
    {"GetCP after a change", kLong,
     [](ExtNameStr& n, void*) {
       TULKMBSetDefaultConverter(TULKMBGetDefaultConverter());
       (void)n.GetCP();
     }},
};

TEST(TextAllocations, Names) {
  const DefaultCodePage standard("1252");
  const OwnedConverter converter = NewConverter("ISO-8859-1");
  for (const NamingCase& test : kNamings) {
    SweepAndPrint({test.name, [&] {
                     return std::make_unique<Naming>(test.before, test.change, converter.get());
                   }});
  }
}

TEST(TextAllocations, TextsThatDidNotFitAreMadeWhenTheNameIsRead) {
  const DefaultCodePage standard("1252");
  ExtNameStr name;
  name.SetU8(kName);
  const std::string system = name.GetSystem();
  for (long count = 1;; ++count) {  // the first allocation copies the argument
    fault_test::FailingAllocation failure(count, fault_test::FailingAllocation::kOnce);
    name.SetU8(kName);
    failure.Stop();
    if (!failure.HasFailed()) break;
    EXPECT_EQ(name.ErrorCode(), 2) << count;
    EXPECT_EQ(name.GetU8(), kName);
    EXPECT_EQ(name.GetCP(), kLatinName);
    EXPECT_EQ(name.GetSystem(), system);
  }
}

// A converter that is opened, by a name of each kind.
class Opening : public Subject {
 public:
  using Open = UConverter* (*)(const char* name);
  Opening(Open open, const char* name) : open_(open), name_(name) {}
  void Prepare() override { converter_.reset(); }
  void Run() override { converter_.reset(open_(name_)); }
  std::string Result() override {
    return converter_ == nullptr ? fault_test::kFailed : NameOf(converter_.get());
  }

 private:
  const Open open_;
  const char* const name_;
  OwnedConverter converter_;
};

TEST(TextAllocations, OpeningOfConverters) {
  const DefaultCodePage standard("1252");
  Tally tally;
  for (const char* name : {"932", "01252", "UTF-8", "ISO-2022-JP", "x11-compound-text", "LMBCS-1",
                           "windows-28591", "HZ", "GBK,swaplfnl"}) {
    for (const Opening::Open open :
         {TULKMBConverterNew_C, TULKMBConverterNew_8, TULKMBConverterNew_A}) {
      Operation operation{name, [&] { return std::make_unique<Opening>(open, name); }};
      operation.may_throw = false;
      tally.Add(SweepAllocations(operation));
    }
  }
  tally.Print("opening of converters");
}

}  // namespace
