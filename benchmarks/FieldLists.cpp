// Filling a variable list from a data model and from a settings document, against bare walks.

#include <mccommon/MCVarList.h>
#include <mcxprsutil/MCDataModelParser.h>
#include <mcxprsutil/MCSettingsParser.h>

#include <memory>
#include <sstream>
#include <stdexcept>
#include <string>

#include "BareXerces.h"
#include "Cases.h"
#include "FieldWalks.h"
#include "ListVariant.h"
#include "ReaderDocuments.h"
#include "Suite.h"

namespace bench {
namespace {

using MCMTD_NAMESPACE::MCVarList;
using MCXPrsUtil::MCDataModelParser;
using MCXPrsUtil::MCSettingsParser;

constexpr int kRangeCount = 5;

MCCommon::MCStatus Parse(MCDataModelParser& reader, const std::string& text) {
  return reader.ParseToDOM(text);
}

MCCommon::MCStatus Parse(MCSettingsParser& reader, const std::string& text) {
  std::istringstream stream(text);
  return reader.ParseToDOM(stream);
}

// One document, parsed by the reader and by the XML library's own parser.
template <class Reader>
struct Input {
  explicit Input(const std::string& text) : parser(BareParseText(text)) {
    if (!Parse(reader, text).IsOK()) throw std::runtime_error("cannot read the document");
  }

  Reader reader;
  std::unique_ptr<xercesc::XercesDOMParser> parser;
};

template <class Reader, class Fill, class Walk>
Comparison FillAgainstWalk(const std::string& text, Fill fill, Walk walk) {
  auto input = std::make_shared<Input<Reader>>(text);
  Comparison comparison;
  comparison.ours = WithList(
      "ours",
      [input, fill](MCVarList& list) {
        if (!fill(input->reader, list).IsOK()) throw std::runtime_error("filling failed");
      },
      DescribeWithRanges);
  comparison.peers = {
      {WithList(
           "bare walk",
           [input, walk](MCVarList& list) { walk(*input->parser->getDocument(), list); },
           DescribeWithRanges),
       Limit{1.5}}};
  return comparison;
}

Comparison FillFromDataModel() {
  return FillAgainstWalk<MCDataModelParser>(
      MakeDataModel(),
      [](const MCDataModelParser& reader, MCVarList& list) {
        return reader.FillVarList(list, false, true, kRangeCount);
      },
      [](const xercesc::DOMDocument& document, MCVarList& list) {
        WalkDataModel(document, kRangeCount, list);
      });
}

Comparison FillFromSettings() {
  return FillAgainstWalk<MCSettingsParser>(
      MakeSettingsWithFields(),
      [](const MCSettingsParser& reader, MCVarList& list) {
        return reader.FillVarList(list, false);
      },
      WalkSettingsFields);
}

Comparison FillFromSettingsTransformations() {
  return FillAgainstWalk<MCSettingsParser>(
      MakeSettingsWithFields(),
      [](const MCSettingsParser& reader, MCVarList& list) { return reader.FillTransDict(list); },
      WalkSettingsDerivedFields);
}

}  // namespace

void AddFieldListCases(Suite& suite) {
  suite.Add("readers", "FillVarList, data model", "1650 fields", FillFromDataModel);
  suite.Add("readers", "FillVarList, settings", "1650 fields", FillFromSettings);
  suite.Add("readers", "FillTransDict, settings", "1652 derived fields",
            FillFromSettingsTransformations);
}

}  // namespace bench
