// Any document under a policy that its first bytes choose: it is refused with a message and nothing
// of it is held, or it is the document that is read without limits. Limits that a document keeps to
// refuse nothing, those that it breaks let nothing pass, everything that parses agrees on it, and
// nothing of a policy stays behind. Some documents are made large, so that they are read in
// portions and have long markup.
#include <mccommon/MCVarList.h>
#include <mcxprsutil/MCDataModelParser.h>
#include <mcxprsutil/MCPMMLParser.h>
#include <mcxprsutil/MCSettingsParser.h>
#include <mcxprsutil/MCXMLReadWrite.h>
#include <mcxprsutil/MCXParsePolicy.h>
#include <mcxprsutil/MCXSplitPMMLCombiner.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <sstream>
#include <string>
#include <utility>
#include <vector>
#include <xercesc/dom/DOM.hpp>

#include "Check.h"
#include "DocumentMeasures.h"
#include "DomTree.h"
#include "FilledList.h"
#include "Input.h"
#include "XmlPlatform.h"

namespace {

using fuzz::Input;
using fuzz::Measures;
using MCCommon::MCStatus;
using MCMTD_NAMESPACE::IMCVariable;
using MCMTD_NAMESPACE::MCVarList;
using MCXPrsUtil::MCDataModelParser;
using MCXPrsUtil::MCPMMLParser;
using MCXPrsUtil::MCSettingsParser;
using MCXPrsUtil::MCXMLReadWrite;
using MCXPrsUtil::MCXParsePolicy;
using MCXPrsUtil::MCXSplitPMMLCombiner;
using xercesc::DOMDocument;
using xercesc::DOMElement;
using Names = std::vector<std::string>;

constexpr std::size_t kNone = std::string::npos;
constexpr std::size_t kKiB = 1024;
constexpr std::size_t kLarge = 8 * kKiB;  // a larger document is not read again and again
constexpr MCStatus kParseFailed(104, false);
constexpr MCStatus kThrown(-1, false);  // an XML version other than 1.0 and 1.1

// Puts a policy in force until it goes.
class InForce {
 public:
  explicit InForce(const MCXParsePolicy& policy) {
    MCXParsePolicy::SetForProcess(policy);
    FUZZ_CHECK(MCXParsePolicy::GetForProcess() == policy);
  }
  ~InForce() { MCXParsePolicy::SetForProcess(MCXParsePolicy()); }
  InForce(const InForce&) = delete;
  InForce& operator=(const InForce&) = delete;
};

struct Parsed {
  MCStatus status;
  bool well_formed = false;
  Measures measures;  // of the document, if there is one
  Names lines;        // of it, too
};

// Where a parse stopped within a text, the parser's portions decide how much of that is held.
Names WithoutBrokenText(Names lines) {
  const auto last = std::find_if(lines.rbegin(), lines.rend(),
                                 [](const std::string& line) { return line != ">"; });
  if (last != lines.rend() && last->front() == '\'') lines.erase(std::next(last).base());
  return lines;
}

Parsed Parse(const std::string& text) {
  MCXMLReadWrite reader;
  std::istringstream in(text);
  Parsed parsed;
  try {
    parsed.status = reader.ParseToDOM(in);
  } catch (const xercesc::DOMException&) {
    parsed.status = kThrown;
  }
  const DOMDocument* document = reader.GetDocument();
  FUZZ_CHECK(parsed.status.IsOK() == (document != nullptr));
  if (parsed.status == kParseFailed) FUZZ_CHECK(!reader.GetXercesMessage().empty());
  parsed.well_formed = reader.IsWellFormed();
  if (document == nullptr) return parsed;
  parsed.measures = fuzz::MeasuresOf(*document);
  parsed.lines = fuzz::LinesOf(*document);
  if (!parsed.well_formed && text.size() > kLarge) {
    parsed.lines = WithoutBrokenText(std::move(parsed.lines));
  }
  return parsed;
}

// ---- Policies ----

std::uint64_t Limit(Input& in) {
  constexpr std::uint64_t kLimits[] = {0, 1, 2, 5, 16, 64, 300, 1000, 5000};
  const unsigned choice = in.Below(12);
  return choice < 9 ? kLimits[choice] : MCXParsePolicy::kUnlimited;
}

MCXParsePolicy ChoosePolicy(Input& in) {
  if (in.Byte() % 4 == 0) return MCXParsePolicy::Hardened();
  MCXParsePolicy policy;
  policy.max_document_bytes = Limit(in);
  policy.max_depth = Limit(in);
  policy.max_markup_bytes = Limit(in);
  policy.max_names = Limit(in);
  policy.max_entity_expansions = Limit(in);
  policy.max_entity_characters = Limit(in);
  policy.doctype = static_cast<MCXParsePolicy::Doctype>(in.Below(3));
  return policy;
}

std::uint64_t LeastOf(const MCXParsePolicy& policy) {
  return std::min({policy.max_document_bytes, policy.max_depth, policy.max_markup_bytes,
                   policy.max_names, policy.max_entity_expansions, policy.max_entity_characters});
}

// No piece of markup of a document without a document type declaration is longer.
std::size_t MostMarkupBytes(const Measures& has, const std::string& text) {
  const std::string mark = text.substr(0, 2);
  const bool is_wide = mark == "\xFE\xFF" || mark == "\xFF\xFE";
  const std::size_t unit_bytes = is_wide ? 2 : 1;
  const std::size_t all = text.size() - unit_bytes * has.text_units;
  if (is_wide || text.find("<!") != kNone || text.find("<?") != kNone) return all;
  std::size_t widest = 0;  // from the start of a tag to that of the next one, in UTF-8
  for (std::size_t at = text.find('<'); at != kNone;) {
    const std::size_t next = text.find('<', at + 1);
    widest = std::max(widest, std::min(next, text.size()) - at);
    at = next;
  }
  return std::min(widest, all);
}

// False where a limit may refuse the document.
bool KeepsTo(const MCXParsePolicy& policy, const Parsed& free, const std::string& text) {
  const Measures& has = free.measures;
  const std::size_t size = text.size();
  if (policy == MCXParsePolicy()) return true;
  if (has.has_doctype) return false;
  // Without entities every measure is below the size. What is behind an error is not in the tree.
  if (!free.well_formed) return LeastOf(policy) >= size;
  return size <= policy.max_document_bytes && has.depth <= policy.max_depth &&
         has.names <= policy.max_names && MostMarkupBytes(has, text) <= policy.max_markup_bytes;
}

// A tree does not tell parameter entities. Further behind, the same may stand in a comment.
bool StartsWithParameterEntity(const std::string& text) {
  const std::string start = "[<!ENTITY % ";
  const std::size_t at = text.find('[');
  return text.rfind("<!DOCTYPE ", 0) == 0 && text.find_first_of("'\"") > at && at != kNone &&
         text.compare(at, start.size(), start) == 0;
}

// True where a limit has to refuse the document.
bool Breaks(const MCXParsePolicy& policy, const Parsed& read, const std::string& text) {
  using Doctype = MCXParsePolicy::Doctype;
  constexpr std::size_t kReadAhead = 256 * kKiB;
  const Measures& has = read.measures;
  if (read.well_formed) {  // else there may be bytes, and declarations, that nobody came to
    if (text.size() > policy.max_document_bytes) return true;
    if (StartsWithParameterEntity(text) && policy.doctype != Doctype::kAll) return true;
  }
  return has.depth > policy.max_depth || has.names > policy.max_names ||
         has.expansions > policy.max_entity_expansions ||
         has.entity_units > policy.max_entity_characters ||
         (has.markup_units > kReadAhead &&
          has.markup_units - kReadAhead > policy.max_markup_bytes) ||
         (has.has_doctype && policy.doctype == Doctype::kRefused) ||
         (has.needs_all && policy.doctype != Doctype::kAll);
}

bool AreSame(const Parsed& a, const Parsed& b) {
  return a.status == b.status && a.well_formed == b.well_formed && a.lines == b.lines &&
         a.measures.expansions == b.measures.expansions;
}

// True if the policy refuses the document, or there is none without it either.
bool IsRefused(const MCXParsePolicy& policy, const std::string& text) {
  const Parsed free = Parse(text);
  Parsed limited;
  {
    const InForce force(policy);
    limited = Parse(text);
    if (text.size() <= kLarge) FUZZ_CHECK(AreSame(Parse(text), limited));
  }
  const bool is_refused = limited.status == kParseFailed;
  FUZZ_CHECK(is_refused || AreSame(limited, free));
  if (KeepsTo(policy, free, text)) FUZZ_CHECK(AreSame(limited, free));
  if (Breaks(policy, free, text)) FUZZ_CHECK(is_refused);
  if (text.size() <= kLarge) FUZZ_CHECK(AreSame(Parse(text), free));
  return is_refused;
}

// ---- The readers ----

const std::string kEarlierSettings =
    "<PMML><MiningBuildTask><Extension><Parameters><Parameter name='p' value='earlier'/>"
    "</Parameters></Extension></MiningBuildTask><DataDictionary/></PMML>";
const std::string kEarlierModel = "<DataModel><Fields/></DataModel>";

// What a reader holds that has read a document after another one.
struct Held {
  MCStatus status;
  std::string message;
  Names lines;
  std::string parameter;
  fuzz::Filled filled;
};

bool AreSame(const Held& a, const Held& b) {
  return a.status == b.status && a.message == b.message && a.lines == b.lines &&
         a.parameter == b.parameter && a.filled.status == b.filled.status &&
         a.filled.calls == b.filled.calls;
}

template <class Reader>
Held ReadAfterEarlier(const MCXParsePolicy& policy, const std::string& text, Reader& reader) {
  std::istringstream earlier(kEarlierSettings);
  FUZZ_CHECK(reader.ParseToDOM(earlier).IsOK());
  std::istringstream in(text);
  const InForce force(policy);
  Held held;
  held.status = reader.ParseToDOM(in);
  FUZZ_CHECK(reader.GetStatus() == held.status);
  held.message = reader.GetXercesMessage();
  if (held.status == kParseFailed) FUZZ_CHECK(!held.message.empty());
  if (const DOMElement* root = reader.GetRootElement()) held.lines = fuzz::LinesOf(*root);
  return held;
}

Held ReadPmml(const MCXParsePolicy& policy, const std::string& text) {
  MCPMMLParser reader;
  Held held = ReadAfterEarlier(policy, text, reader);
  held.filled = fuzz::FillOnce([&](MCVarList& list) { return reader.FillVarList(list, {}, true); });
  return held;
}

Held ReadSettings(const MCXParsePolicy& policy, const std::string& text) {
  MCSettingsParser reader;
  Held held = ReadAfterEarlier(policy, text, reader);
  (void)reader.GetParameter("p", held.parameter);
  held.filled = fuzz::FillOnce([&](MCVarList& list) { return reader.FillVarList(list, true); });
  return held;
}

Held ReadDataModel(const MCXParsePolicy& policy, const std::string& text) {
  MCDataModelParser reader;
  FUZZ_CHECK(reader.ParseToDOM(kEarlierModel).IsOK());
  const InForce force(policy);
  Held held;
  held.status = reader.ParseToDOM(text);
  FUZZ_CHECK(reader.GetStatus() == held.status);
  held.filled =
      fuzz::FillOnce([&](MCVarList& list) { return reader.FillVarList(list, true, true, 2); });
  return held;
}

// Refused, nothing of this or of the earlier document is held.
template <class Read>
void CompareReader(const MCXParsePolicy& policy, const std::string& text, bool is_refused,
                   Read read) {
  const Held limited = read(policy, text);
  if (!is_refused) {
    FUZZ_CHECK(AreSame(limited, read(MCXParsePolicy(), text)));
    return;
  }
  FUZZ_CHECK(limited.status == kParseFailed && limited.filled.status == kParseFailed);
  FUZZ_CHECK(limited.lines.empty() && limited.parameter.empty() && limited.filled.calls.empty());
}

// ---- The combiner ----

const std::string kModel =
    "<PMML version='4.2'><Header/><DataDictionary><DataField name='x' optype='categorical'>"
    "<Value value='1'/></DataField></DataDictionary><TreeModel functionName='regression'>"
    "<MiningSchema><MiningField name='x'/></MiningSchema></TreeModel></PMML>";

struct Combined {
  MCStatus status;  // of the document in question
  MCStatus behind;  // of the model behind it
  int n_models = 0;
  Names tree;
  Names diagnostics;
};

bool AreSame(const Combined& a, const Combined& b) {
  return a.status == b.status && a.behind == b.behind && a.n_models == b.n_models &&
         a.tree == b.tree && a.diagnostics == b.diagnostics;
}

MCStatus Add(MCXSplitPMMLCombiner& combiner, const std::string& text) {
  static auto& file = *new fuzz::ScratchFile;  // one path in all findings
  file.SetContent(text);
  try {
    return combiner.AddModel(file.GetPath(), {"a"});
  } catch (const xercesc::DOMException&) {
    return kThrown;
  }
}

// The document, or nothing for null, before a model and perhaps behind one.
Combined Combine(const MCXParsePolicy& policy, const std::string* text, bool is_later) {
  MCVarList splits;
  const auto role = static_cast<IMCVariable::VariableRole>(0);
  FUZZ_CHECK(splits.AddCatVar("split", "", Names{"a"}, role) == 0);
  MCXSplitPMMLCombiner combiner(splits);
  if (is_later) FUZZ_CHECK(Add(combiner, kModel).IsOK());
  Combined result;
  if (text != nullptr) {
    const InForce force(policy);
    result.status = Add(combiner, *text);
  }
  result.behind = Add(combiner, kModel);
  result.n_models = combiner.GetNModels();
  bool is_created = false;
  result.tree = fuzz::LinesOf(*combiner.CreateEmptyMiningModel(is_created));
  result.diagnostics = combiner.GetDiagnostics();
  (void)combiner.ExportMiningModel("");  // or the document would not be released
  return result;
}

// Refused, it only leaves a finding.
void CompareCombiner(const MCXParsePolicy& policy, const std::string& text, bool is_refused,
                     bool is_later) {
  Combined limited = Combine(policy, &text, is_later);
  if (!is_refused) {
    FUZZ_CHECK(AreSame(limited, Combine(MCXParsePolicy(), &text, is_later)));
    return;
  }
  FUZZ_CHECK(limited.status == kParseFailed);
  const Combined without = Combine(MCXParsePolicy(), nullptr, is_later);
  FUZZ_CHECK(limited.diagnostics.size() == without.diagnostics.size() + 1);
  limited.diagnostics.erase(limited.diagnostics.begin());
  limited.status = without.status;
  FUZZ_CHECK(AreSame(limited, without));
}

// ---- Large documents ----

// The XML library loses memory when a parse is given up within a content model.
bool MayGrow(std::string text) {
  text.erase(std::remove(text.begin(), text.end(), '\0'), text.end());  // wide encodings
  return text.find("<!ELEMENT") == std::string::npos;
}

// Repeats a piece of a text until that is larger than one of the portions that the parser fetches
// (48 KiB), or by far than what it may read ahead. Of markup there are no more pieces than can be
// parsed in a moment.
std::string Grow(const std::string& text, std::size_t at, std::size_t length, unsigned choice) {
  constexpr std::size_t kSizes[] = {60 * kKiB, 60 * kKiB, 270 * kKiB, 520 * kKiB};
  constexpr std::size_t kMostMarkup = 1000;
  if (text.empty() || !MayGrow(text)) return text;
  at %= text.size();
  const std::string piece = text.substr(at, length);
  const bool is_markup = piece.find('<') != std::string::npos;
  const std::size_t size = kSizes[choice % std::size(kSizes)];
  const std::size_t times = std::min(size / piece.size(), is_markup ? kMostMarkup : size);
  std::string large = text.substr(0, at);
  for (std::size_t i = 0; i < times; ++i) large += piece;
  return large + text.substr(at + piece.size());
}

std::string ChooseText(Input& in, unsigned growth) {
  constexpr unsigned kFirstThatGrows = 56;
  if (growth < kFirstThatGrows) return in.Rest();
  const std::size_t at = in.Byte();
  const std::size_t length = 1 + in.Byte();
  return Grow(in.Rest(), at, length, growth);
}

// ---- Everything ----

void Compare(const MCXParsePolicy& policy, const std::string& text) {
  const bool is_refused = IsRefused(policy, text);
  switch (text.size() % 4) {  // one of them, to be quick
    case 0:
      return CompareReader(policy, text, is_refused, ReadPmml);
    case 1:
      return CompareReader(policy, text, is_refused, ReadSettings);
    case 2:
      return CompareReader(policy, text, is_refused, ReadDataModel);
    default:
      return CompareCombiner(policy, text, is_refused, text.size() / 4 % 2 != 0);
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  constexpr std::size_t kPolicyBytes = 8;
  fuzz::StartXmlPlatform();
  Input in(data, size);
  Input choices(data, std::min(size, kPolicyBytes));
  (void)in.Take(kPolicyBytes);
  const MCXParsePolicy policy = ChoosePolicy(choices);
  const std::string text = ChooseText(in, size == 0 ? 0 : data[0] / 4);
  if (fuzz::IsModest(text)) {
    Compare(policy, text);
    return 0;
  }
  // Too much to read without limits; with them it must not be.
  const MCXParsePolicy hardened = MCXParsePolicy::Hardened();
  const InForce force(hardened);
  FUZZ_CHECK(!Breaks(hardened, Parse(text), text));
  return 0;
}
