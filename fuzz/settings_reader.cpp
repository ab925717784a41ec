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
#include "FilledList.h"
#include "XmlPlatform.h"

namespace {

using MCCommon::MCStatus;
using MCMTD_NAMESPACE::MCVarList;
using MCXPrsUtil::GetFirstChildElmt;
using MCXPrsUtil::GetNextSiblingElmt;
using MCXPrsUtil::MCSettingsParser;
using xercesc::DOMElement;

constexpr int kNoAttribute = 108;
constexpr int kNotThatType = 109;
constexpr int kNoBins = 110;
constexpr int kNoSettings = 119;
constexpr int kNoParameter = 120;
constexpr int kNoList = 122;
constexpr int kNoValue = 123;
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

bool IsFound(const MCStatus& status) {
  return status.IsOK() || status.GetCode() == kNotThatType || status.GetCode() == kNoValue ||
         status.GetCode() == kNoAttribute || status.GetCode() == kNoList;
}

template <class Value>
void ReadArray(MCSettingsParser& parser, const char* name, void* scope) {
  const std::vector<Value> preset(3);
  std::vector<Value> values = preset;
  std::vector<Value> again;
  const MCStatus status = parser.GetArray(name, values, scope);
  if (!IsFound(status)) {
    FUZZ_CHECK(values == preset);
    values.clear();
  }
  FUZZ_CHECK(parser.GetArray(name, again, scope) == status && again == values);
  FUZZ_CHECK(status.GetFlag() ==
             (status.GetCode() == kNoParameter || status.GetCode() == kNoValue));
  std::vector<std::string> texts;
  const MCStatus as_text = parser.GetArray(name, texts, scope);
  FUZZ_CHECK(as_text.GetCode() != kNotThatType);
  FUZZ_CHECK(status == as_text || status.GetCode() == kNotThatType);
}

template <class Value>
void ReadMatrix(MCSettingsParser& parser, const char* name, void* scope) {
  std::vector<std::vector<Value>> rows;
  std::vector<std::vector<std::string>> texts = {{"preset"}};
  const MCStatus found = parser.GetMatrix(name, rows, scope);
  FUZZ_CHECK(parser.GetMatrix(name, texts, scope) == found);
  std::vector<std::vector<Value>> second(2, std::vector<Value>(5));
  FUZZ_CHECK(parser.GetMatrix(name, second, scope) == found);
  if (!found.IsOK()) {
    FUZZ_CHECK(rows.empty() && texts.size() == 1 && texts[0][0] == "preset");
    FUZZ_CHECK(second.size() == 2 && second[1].size() == 5);
    return;
  }
  FUZZ_CHECK(rows.size() >= texts.size() && second.size() == rows.size());
  for (std::size_t i = 0; i < texts.size(); ++i) {
    const std::size_t row = rows.size() - texts.size() + i;
    FUZZ_CHECK(rows[row].size() <= texts[i].size() && second[row] == rows[row]);
  }
}

template <class Value>
void ReadLists(MCSettingsParser& parser, const char* name, void* scope) {
  ReadArray<Value>(parser, name, scope);
  ReadMatrix<Value>(parser, name, scope);
}

void ReadNamesOfVariables(MCSettingsParser& parser, const char* name) {
  std::vector<std::string> names = {"preset"};
  const MCStatus listed = parser.GetVariables(name, names);
  if (!IsFound(listed)) {
    FUZZ_CHECK(names.size() == 1 && names[0] == "preset");
    names.clear();
  }
  std::vector<std::string> again;
  FUZZ_CHECK(parser.GetVariables(name, again) == listed && again == names);
  std::string variable = "preset";
  FUZZ_CHECK(parser.GetVariables(name, variable).IsOK() || variable == "preset");
}

void ReadName(MCSettingsParser& parser, const char* name, void* scope) {
  const int type = parser.GetParameterType(name, scope);
  FUZZ_CHECK(type >= MCSettingsParser::ParamString && type <= MCSettingsParser::ParamUnknown);
  ReadValues(parser, name, scope);
  ReadLists<int>(parser, name, scope);
  ReadLists<double>(parser, name, scope);
  ReadLists<std::string>(parser, name, scope);
  ReadNamesOfVariables(parser, name);
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

void Fill(const MCSettingsParser& parser, bool bins, const fuzz::Filler& fill) {
  const fuzz::Filled filled = fuzz::Fill(fill);
  FUZZ_CHECK(parser.GetStatus().IsOK() ||
             (filled.status == parser.GetStatus() && filled.calls.empty()));
  FUZZ_CHECK(bins || filled.status.GetCode() != kNoBins);
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
  Fill(parser, false, [&](MCVarList& list) { return parser.FillVarList(list, false); });
  Fill(parser, true, [&](MCVarList& list) { return parser.FillVarList(list, true); });
  Fill(parser, false, [&](MCVarList& list) { return parser.FillTransDict(list); });
  Fill(parser, true,
       [&](MCVarList& list) { return parser.MCPMMLParser::FillVarList(list, {}, true); });
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
  fuzz::StartXmlPlatform();
  const std::string text(reinterpret_cast<const char*>(data), size);
  if (!fuzz::IsModest(text)) return 0;
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

  std::istringstream in(second);
  FUZZ_CHECK(parser.MCPMMLParser::ParseToDOM(in).IsOK() ==
             (alone.IsOK() || alone.GetCode() == kNoSettings));
  ReadAll(parser);
  return 0;
}
