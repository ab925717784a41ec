// Any two documents (split at a zero byte) as the settings that one reader reads one after the
// other: the getters agree with each other, filling twice gives the same, and the second parse ends
// as that of a new reader does, except where parameters of the first document stay in force.
#include <mccommon/MCVarList.h>
#include <mcxprsutil/MCSettingsParser.h>
#include <mcxprsutil/MCXDOMHelpers.h>
#include <mcxprsutil/MCXTranscoder.h>

#include <cstddef>
#include <cstdint>
#include <sstream>
#include <string>
#include <vector>
#include <xercesc/dom/DOMElement.hpp>

#include "Check.h"

namespace {

using MCCommon::MCStatus;
using MCMTD_NAMESPACE::MCVarList;
using MCXPrsUtil::GetFirstChildElmt;
using MCXPrsUtil::GetNextSiblingElmt;
using MCXPrsUtil::MCSettingsParser;
using xercesc::DOMElement;

constexpr int kNoBins = 110;
constexpr int kNoSettings = 119;
constexpr int kMostLevels = 100;

void ReadValues(MCSettingsParser& parser, const char* name, void* scope) {
  std::string text = "preset";
  const MCStatus status = parser.GetParameter(name, text, scope);
  FUZZ_CHECK(status.IsOK() || text == "preset");
  bool flag = false;
  if (parser.GetParameter(name, flag, scope).IsOK()) {
    FUZZ_CHECK(status.IsOK() && text == (flag ? "true" : "false"));
  }
  double number = 0.5;
  const bool is_number = parser.GetParameter(name, number, scope).IsOK();
  FUZZ_CHECK(!is_number || status.IsOK());
  int count = -1;
  if (parser.GetParameter(name, count, scope).IsOK()) {
    FUZZ_CHECK(is_number && number == count && count >= 0);
  }
}

template <class Value>
void ReadLists(MCSettingsParser& parser, const char* name, void* scope) {
  std::vector<Value> values;
  std::vector<Value> again;
  const MCStatus status = parser.GetArray(name, values, scope);
  FUZZ_CHECK(parser.GetArray(name, again, scope) == status && again == values);
  std::vector<std::vector<Value>> rows;
  std::vector<std::vector<std::string>> texts;
  const MCStatus found = parser.GetMatrix(name, rows, scope);
  FUZZ_CHECK(parser.GetMatrix(name, texts, scope) == found);
  FUZZ_CHECK(rows.size() >= texts.size());
  for (std::size_t i = 0; i < texts.size(); ++i) {
    FUZZ_CHECK(rows[rows.size() - texts.size() + i].size() <= texts[i].size());
  }
}

void ReadName(MCSettingsParser& parser, const char* name, void* scope) {
  const int type = parser.GetParameterType(name, scope);
  FUZZ_CHECK(type >= MCSettingsParser::ParamString && type <= MCSettingsParser::ParamUnknown);
  ReadValues(parser, name, scope);
  ReadLists<int>(parser, name, scope);
  ReadLists<double>(parser, name, scope);
  ReadLists<std::string>(parser, name, scope);
  std::vector<std::string> names;
  std::string variable = "preset";
  (void)parser.GetVariables(name, names);  // whatever it gives, it comes back
  FUZZ_CHECK(parser.GetVariables(name, variable).IsOK() || variable == "preset");
}

// Every name in a scope, and the groups in it as scopes of their own.
void ReadScope(MCSettingsParser& parser, DOMElement& scope, int levels) {
  for (DOMElement* e = GetFirstChildElmt(scope, nullptr); e != nullptr;
       e = GetNextSiblingElmt(*e, nullptr)) {
    const XMLCh* text = MCXPrsUtil::GetAttribute(*e, "name");
    if (text == nullptr) continue;
    const std::string name = MCXPrsUtil::ToUTF8(text);
    ReadName(parser, name.c_str(), &scope);
    ReadName(parser, name.c_str(), nullptr);
    if (parser.GetComplexParameter(name.c_str(), &scope) == e && levels > 0) {
      ReadScope(parser, *e, levels - 1);
    }
  }
}

void ReadRoles(const MCSettingsParser& parser) {
  using Getter = MCStatus (MCSettingsParser::*)(std::vector<std::string>&) const;
  constexpr Getter kGetters[] = {
      &MCSettingsParser::GetPredictors,       &MCSettingsParser::GetTargetVars,
      &MCSettingsParser::GetContPredictors,   &MCSettingsParser::GetCatPredictors,
      &MCSettingsParser::GetContResponseVars, &MCSettingsParser::GetCatResponseVars};
  for (const Getter getter : kGetters) {
    std::vector<std::string> names;
    std::vector<std::string> again;
    const MCStatus status = (parser.*getter)(names);
    FUZZ_CHECK((parser.*getter)(again) == status && again == names);
  }
  std::string weight = "preset";
  FUZZ_CHECK(parser.GetFrequencyWeight(weight).IsOK() || weight == "preset");
}

template <class Fill>
void FillTwice(const MCSettingsParser& parser, bool bins, Fill fill) {
  MCVarList first;
  MCVarList second;
  const MCStatus filled = fill(first);
  FUZZ_CHECK(parser.GetStatus().IsOK() || (filled == parser.GetStatus() && first.Size() == 0));
  FUZZ_CHECK(bins || filled.GetCode() != kNoBins);
  FUZZ_CHECK(fill(second) == filled);
  FUZZ_CHECK(first.Size() == second.Size());
}

void ReadAll(MCSettingsParser& parser) {
  const MCStatus before = parser.GetStatus();
  for (const char* name : {"p", ""}) ReadName(parser, name, nullptr);
  if (DOMElement* root = parser.GetRootElement()) ReadScope(parser, *root, kMostLevels);
  DOMElement* scope = parser.GetRootElement();
  for (const char* name : {"MiningBuildTask", "Extension", "Parameters"}) {
    if (scope != nullptr) scope = GetFirstChildElmt(*scope, name);
  }
  if (scope != nullptr) ReadScope(parser, *scope, kMostLevels);
  ReadRoles(parser);
  FillTwice(parser, false, [&](MCVarList& list) { return parser.FillVarList(list, false); });
  FillTwice(parser, true, [&](MCVarList& list) { return parser.FillVarList(list, true); });
  FillTwice(parser, false, [&](MCVarList& list) { return parser.FillTransDict(list); });
  FUZZ_CHECK(parser.GetStatus() == before);
}

MCStatus Parse(MCSettingsParser& parser, const std::string& text) {
  std::istringstream in(text);
  const MCStatus parsed = parser.ParseToDOM(in);
  const bool held = parsed.IsOK() || parsed.GetCode() == kNoSettings;
  FUZZ_CHECK(held == (parser.GetRootElement() != nullptr));
  return parsed;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string text(reinterpret_cast<const char*>(data), size);
  const std::size_t cut = text.find('\0');
  const std::string second = cut == std::string::npos ? text : text.substr(cut + 1);
  MCSettingsParser parser;
  const MCStatus first = Parse(parser, text.substr(0, cut));
  ReadAll(parser);

  MCSettingsParser fresh;
  const MCStatus alone = Parse(fresh, second);
  const MCStatus parsed = Parse(parser, second);
  const bool kept = first.IsOK() && alone.GetCode() == kNoSettings;
  FUZZ_CHECK(kept ? parsed.IsOK() : parsed == alone);
  ReadAll(parser);
  return 0;
}
