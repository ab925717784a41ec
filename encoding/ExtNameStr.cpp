#include "mcmem/ExtNameStr.h"

#include <cstdint>
#include <memory>
#include <utility>

#include "encoding/ConverterNew.h"
#include "encoding/ConverterPtr.h"
#include "mcmem/ConverterRegistry.h"
#include "mcmem/Transcoding.h"

namespace MCMEM_NAMESPACE {

struct ExtNameStr::Record {
  // No number of a default converter, so that the first reading converts.
  static constexpr std::uint32_t kNeverConverted = 0xFFFFFFFF;

  void RefreshCodePage();
  void RefreshSystem();
  void Refresh();
  int Note(int status);
  void TellShortage();
  void Derive(std::string master, int status);
  int TakeSystem(std::string text);

  bool IsStale() const { return sequence != TULKMBDefaultConverterID(); }

  std::string utf8;  // the master; every other text is made from it
  std::string code_page;
  std::uint32_t sequence = kNeverConverted;  // of the default converter that made code_page
  int error = 0;
  U16String utf16;
  std::string system;
  bool was_short = false;  // of memory, in the operation that is under way
};

namespace {

constexpr int kStatusNoMemory = 2;

// The first status that is not exact wins, whatever its number.
int WorstOf(int a, int b) { return a != 0 ? a : b; }

}  // namespace

int ExtNameStr::Record::Note(int status) {
  was_short = was_short || status == kStatusNoMemory;
  return status;
}

// A status may be overwritten by that of a later conversion, but not this one: texts are missing.
// The next reading makes those anew that can be made from the master.
void ExtNameStr::Record::TellShortage() {
  if (!std::exchange(was_short, false)) return;
  error = kStatusNoMemory;
  sequence = kNeverConverted;
}

// The number is read before the conversion, which may be what makes the default converter: the text
// is then stale at once, and the next reading converts it once more.
void ExtNameStr::Record::RefreshCodePage() {
  sequence = TULKMBDefaultConverterID();
  error = Note(TULKMBU8ToCodePage(nullptr, code_page, utf8));
}

// Where the system encoding has no converter, the default converter stands in. It must not do so
// where there is one that had no memory.
void ExtNameStr::Record::RefreshSystem() {
  bool has_no_memory = false;
  const ConverterPtr converter = NewConverter(SystemEncoding(), has_no_memory);
  if (has_no_memory) {
    system.clear();
    if (!utf8.empty()) Note(kStatusNoMemory);
    return;
  }
  error = WorstOf(error, Note(TULKMBU8ToCodePage(converter.get(), system, utf8)));
}

void ExtNameStr::Record::Refresh() {
  RefreshCodePage();
  RefreshSystem();
}

// It looks as if two of the three statuses got lost here. That is on purpose: what a setter leaves
// is the status of the last conversion, the one to UTF-16. How the text fared in a code page is
// told by GetCP().
void ExtNameStr::Record::Derive(std::string master, int status) {
  utf8 = std::move(master);
  error = Note(status);
  Refresh();
  error = Note(TULKMBU8ToU16(utf16, utf8));
  TellShortage();
}

// Not a mirror image of Derive(), on purpose: the UTF-16 text stays that of the previous master,
// the system text stays as given, and the status of the code page is the one that counts. Taking
// the old master through the code page first would leave nothing but its converter number.
int ExtNameStr::Record::TakeSystem(std::string text) {
  system = std::move(text);
  sequence = TULKMBDefaultConverterID();
  bool has_no_memory = false;
  const ConverterPtr converter = NewConverter(SystemEncoding(), has_no_memory);
  if (has_no_memory) {
    utf8.clear();
    if (!system.empty()) Note(kStatusNoMemory);
  } else {
    Note(TULKMBCodePageToU8(converter.get(), utf8, system));
  }
  error = Note(TULKMBU8ToCodePage(nullptr, code_page, utf8));
  TellShortage();
  return error;
}

ExtNameStr::ExtNameStr() : record_(new Record) {}

ExtNameStr::ExtNameStr(const ExtNameStr& other) : record_(new Record(*other.record_)) {}

ExtNameStr& ExtNameStr::operator=(const ExtNameStr& other) {
  if (this != &other) *record_ = Record(*other.record_);
  return *this;
}

ExtNameStr::~ExtNameStr() { delete record_; }

bool ExtNameStr::Empty() const { return record_->utf8.empty(); }

const std::string& ExtNameStr::GetU8() const { return record_->utf8; }

const std::basic_string<unsigned short>& ExtNameStr::GetU16() const { return record_->utf16; }

const std::string& ExtNameStr::GetSystem() const { return record_->system; }

int ExtNameStr::ErrorCode() const { return record_->error; }

const std::string& ExtNameStr::GetCP() const {
  if (record_->IsStale()) {
    record_->Refresh();
    record_->TellShortage();
  }
  return record_->code_page;
}

std::string ExtNameStr::GetCP(void* converter) const {
  std::string text;
  record_->error = TULKMBU8ToCodePage(converter, text, record_->utf8);
  return text;
}

const std::string& ExtNameStr::GetGeneric() const { return qUTF8mode() ? GetU8() : GetCP(); }

// Each setter makes the new master apart from the record, so that it may be given one of the
// record's own texts.
void ExtNameStr::SetU8(const std::string& s) { record_->Derive(s, 0); }

void ExtNameStr::SetU16(const std::basic_string<unsigned short>& s) {
  std::string master;
  const int status = TULKMBU16ToU8(master, s);
  record_->Derive(std::move(master), status);
}

void ExtNameStr::SetCP(const std::string& s, void* converter) {
  std::string master;
  const int status = TULKMBCodePageToU8(converter, master, s);
  record_->Derive(std::move(master), status);
}

void ExtNameStr::SetGeneric(const std::string& s) {
  std::string master;
  const int status = TULKMBGenericToU8(master, s);
  record_->Derive(std::move(master), status);
}

int ExtNameStr::SetSystem(const std::string& s) { return record_->TakeSystem(s); }

void ExtNameStr::Clear() { record_->Derive(std::string(), 0); }

}  // namespace MCMEM_NAMESPACE
