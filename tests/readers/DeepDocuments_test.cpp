// The readers on documents that are nested very deep, or very wide, on a small stack: they give
// what they give without the depth.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>
#include <xercesc/dom/DOM.hpp>

#include "DataModelText.h"
#include "SettingsText.h"
#include "mccommon/MCUniStats.h"
#include "support/Many.h"
#include "support/SmallStack.h"

namespace {

using MCCommon::MCStatus;
using MCMTD_NAMESPACE::MCUniStats;
using MCXPrsUtil::MCDataModelParser;
using MCXPrsUtil::MCSettingsParser;
using test_support::kSmallStack;
using test_support::RunOnStackOf;
using xercesc::DOMElement;

const int kMany = test_support::Many();

// Too many for the small stack, whatever a recursion takes for one of them; there are several of
// these in a document.
constexpr int kLevelsOfEach = 8'000;

// Elements of every name that a reader looks for, each within the one before.
std::string Deep(int levels) {
  const char* const kNames[] = {
      "PMML",           "DataDictionary",   "DataField",      "Value",  "Extension",
      "Interval",       "DerivedField",     "Discretize",     "Fields", "DiscretizeBin",
      "ModelStats",     "UnivariateStats",  "Counts",         "Array",  "NumericInfo",
      "ContStats",      "DiscrStats",       "Parameters",     "Field",  "Parameter",
      "ListValue",      "ComplexParameter", "DataModel",      "Values", "Range",
      "MatrixParmeter", "ArrayParameter",   "MiningBuildTask"};
  const auto name = [&](int level) -> std::string {
    return kNames[static_cast<std::size_t>(level) % std::size(kNames)];
  };
  std::string text = "<deep>";
  for (int i = 0; i < levels; ++i) {
    text += '<' + name(i) + " name='x' value='1'>";
  }
  for (int i = levels; i-- > 0;) text += "</" + name(i) + '>';
  return text + "</deep>";
}

// Replaces each '@' of a text.
std::string Filled(const std::string& text, const std::string& deep) {
  std::string filled;
  for (const char c : text) c == '@' ? filled += deep : filled += c;
  return filled;
}

const char kSettings[] = R"(
<PMML>@<DataDictionary>@
<DataField name='c' optype='categorical' dataType='string'>@<Value value='1'>@</Value></DataField>
<DataField name='n' optype='continuous' dataType='double'>@
 <Extension name='invalidRangeLower' value='1'>@</Extension>
 <Interval leftMargin='0' rightMargin='9' closure='closedClosed'>@</Interval>
 <Value value='9' property='missing'/></DataField>
</DataDictionary><TransformationDictionary>@
<DerivedField name='n_bin' optype='continuous' dataType='double'>@<Discretize field='n'>@
 <DiscretizeBin binValue='a'>@<Interval leftMargin='0' rightMargin='3'>@</Interval></DiscretizeBin>
 <DiscretizeBin binValue='b'><Interval leftMargin='3' rightMargin='9'/></DiscretizeBin>
</Discretize></DerivedField>
</TransformationDictionary>
<MiningBuildTask>@<Extension>@<Parameters>@
<Parameter name='p' value='5'>@</Parameter>
<Parameter name='l'>@<ListValue>@<Value value='1'>@</Value><Value value='2'/></ListValue></Parameter>
<MatrixParmeter name='m'>@<ArrayParameter>@<Value value='1'>@</Value></ArrayParameter></MatrixParmeter>
<ComplexParameter name='g'>@<Parameter name='q' value='6'/></ComplexParameter>
</Parameters></Extension></MiningBuildTask>
<TreeModel>@<ModelStats>@
<UnivariateStats field='n'>@<Counts totalFreq='10'>@</Counts>
 <NumericInfo minimum='0' maximum='9' mean='4' standardDeviation='1'>@</NumericInfo>
 <ContStats>@<Interval leftMargin='0' rightMargin='9' closure='openOpen'>@</Interval>
  <Array type='real' n='1'>10</Array></ContStats></UnivariateStats>
<UnivariateStats field='c'><Counts totalFreq='10'/>
 <DiscrStats>@<Array type='int' n='1'>10</Array></DiscrStats></UnivariateStats>
</ModelStats></TreeModel></PMML>)";

std::string TextOf(const MCStatus& status) { return "status " + std::to_string(status.GetCode()); }

// The outcome of every operation, a line each.
std::vector<std::string> EverythingIn(MCSettingsParser& reader) {
  std::vector<std::string> lines;
  for (const bool bins : {false, true}) {
    RecordingVarList list;
    const MCStatus status = reader.MCPMMLParser::FillVarList(list, {"c", "n"}, bins);
    lines.push_back("PMML: " + TextOf(status));
    lines.insert(lines.end(), list.calls.begin(), list.calls.end());
    RecordingVarList settings_list;
    lines.push_back("settings: " + TextOf(reader.FillVarList(settings_list, bins)));
    lines.insert(lines.end(), settings_list.calls.begin(), settings_list.calls.end());
  }
  RecordingVarList derived;
  lines.push_back("derived: " + TextOf(reader.FillTransDict(derived)));
  lines.insert(lines.end(), derived.calls.begin(), derived.calls.end());

  std::vector<double> numbers;
  std::vector<std::string> texts;
  std::vector<std::vector<double>> rows;
  double number = 0;
  lines.push_back("bins: " + std::to_string(reader.SetBinsFrTransDict("n", numbers, texts)) + ' ' +
                  testing::PrintToString(numbers) + testing::PrintToString(texts));
  lines.push_back("p: " + TextOf(reader.GetParameter("p", number)) + ' ' + std::to_string(number));
  lines.push_back("l: " + TextOf(reader.GetArray("l", numbers)) + testing::PrintToString(numbers));
  lines.push_back("m: " + TextOf(reader.GetMatrix("m", rows)) + testing::PrintToString(rows));
  void* scope = reader.GetComplexParameter("g");
  lines.push_back("q: " + TextOf(reader.GetParameter("q", number, scope)) + ' ' +
                  std::to_string(number));
  lines.push_back("absent: " + TextOf(reader.GetParameter("x", number)));

  for (const DOMElement* model = reader.GetRootElement()->getFirstElementChild(); model != nullptr;
       model = model->getNextElementSibling()) {
    EXPECT_TRUE(reader.SetModelElmt(*model));
    const DOMElement* cursor = nullptr;
    do {
      MCUniStats stats;
      lines.push_back("statistics: " + TextOf(reader.FillUniStats(stats, cursor)));
    } while (cursor != nullptr);
  }
  return lines;
}

std::vector<std::string> EverythingOf(const std::string& document) {
  MCSettingsParser reader;
  std::istringstream in(document);
  const MCStatus status = reader.ParseToDOM(in);
  EXPECT_TRUE(status.IsOK()) << TextOf(status) << reader.GetXercesMessage();
  if (!status.IsOK()) return {TextOf(status)};
  return EverythingIn(reader);
}

TEST(DeepDocuments, EveryOperationOfSettingsAndPmmlPassesTheDepthBy) {
  const std::vector<std::string> expected = EverythingOf(Filled(kSettings, "<deep/>"));
  ASSERT_GT(expected.size(), 25u);
  const std::string document = Filled(kSettings, Deep(kLevelsOfEach));
  RunOnStackOf(kSmallStack, [&] { EXPECT_EQ(EverythingOf(document), expected); });
}

TEST(DeepDocuments, ADeepArrayIsNoListOfNumbers) {
  const std::string document =
      Pmml("",
           "<M><ModelStats><UnivariateStats field='x'><Counts totalFreq='1'/><DiscrStats>"
           "<Array type='int'>" +
               Deep(kMany) + "</Array></DiscrStats></UnivariateStats></ModelStats></M>");
  RunOnStackOf(kSmallStack, [&] {
    MCXPrsUtil::MCPMMLParser reader;
    ASSERT_TRUE(ParseText(reader, document).IsOK());
    ASSERT_TRUE(reader.SetModelElmt(*reader.GetRootElement()->getLastElementChild()));
    MCUniStats stats;
    const DOMElement* cursor = nullptr;
    EXPECT_EQ(reader.FillUniStats(stats, cursor), Error(114));
  });
}

TEST(DeepDocuments, GroupsWithinGroupsAreScopes) {
  std::string open;
  std::string close;
  for (int i = 0; i < kMany; ++i) {
    open += "<ComplexParameter name='g'>";
    close += "</ComplexParameter>";
  }
  const std::string document = Settings(open + Parameter("p", "value='7'") + close);
  RunOnStackOf(kSmallStack, [&] {
    MCSettingsParser reader;
    ASSERT_TRUE(ParseText(reader, document).IsOK());
    void* scope = nullptr;
    int levels = 0;
    for (void* next; (next = reader.GetComplexParameter("g", scope)) != nullptr; scope = next) {
      ++levels;
    }
    EXPECT_EQ(levels, kMany);
    int value = 0;
    EXPECT_TRUE(reader.GetParameter("p", value, scope).IsOK());
    EXPECT_EQ(value, 7);
  });
}

TEST(DeepDocuments, DataModelsPassTheDepthBy) {
  const char kModel[] =
      "<DataModel>@<Fields>@<Field name='a' storage='real' measure='continuous'>@"
      "<Range minValue='1' maxValue='2'>@</Range></Field>"
      "<Field name='b' storage='string' measure='nominal'><Values>@<Value value='x'>@</Value>"
      "</Values></Field></Fields></DataModel>";
  const ModelFill expected = FillModel(Filled(kModel, "<deep/>"), {true, true, 3});
  ASSERT_TRUE(expected.status.IsOK());
  ASSERT_GE(expected.calls.size(), 2u);
  const std::string document = Filled(kModel, Deep(kLevelsOfEach));
  RunOnStackOf(kSmallStack, [&] {
    const ModelFill fill = FillModel(document, {true, true, 3});
    EXPECT_TRUE(fill.status.IsOK());
    EXPECT_EQ(fill.calls, expected.calls);
  });
}

TEST(DeepDocuments, DeepDocumentsOfOtherKindsAreRefusedAsShallowOnes) {
  RunOnStackOf(kSmallStack, [] {
    const std::string deep = Deep(kMany);
    MCXPrsUtil::MCPMMLParser reader;
    EXPECT_EQ(ParseText(reader, deep), Error(105));
    EXPECT_EQ(ParseText(reader, "<PMML>" + deep + "</PMML>"), Error(106));
    EXPECT_EQ(ParseText(reader, deep.substr(0, deep.size() / 2)), Error(104));
    MCDataModelParser model;
    EXPECT_EQ(model.ParseToDOM(deep), Error(105));
    EXPECT_EQ(model.ParseToDOM("<DataModel>" + deep + "</DataModel>"), Error(113));
  });
}

// The XML library calls itself for every level of an entity.
TEST(DeepDocuments, LevelsWithinAnEntityAreRefused) {
  const std::string entity = "[<!ENTITY e \"" + Deep(kMany) + "\">]>";
  RunOnStackOf(kSmallStack, [&] {
    MCXPrsUtil::MCPMMLParser reader;
    EXPECT_EQ(ParseText(reader, "<!DOCTYPE PMML " + entity + Pmml("&e;")), Error(104));
    EXPECT_EQ(reader.GetXercesMessage(),
              "the elements of an entity are nested too deep: reading them would overflow the "
              "stack");
    EXPECT_EQ(reader.GetRootElement(), nullptr);
    EXPECT_TRUE(ParseText(reader, Pmml("")).IsOK());
    MCDataModelParser model;
    EXPECT_EQ(model.ParseToDOM("<!DOCTYPE DataModel " + entity + DataModel("&e;")), Error(104));
    EXPECT_TRUE(model.ParseToDOM(DataModel("")).IsOK());
  });
}

TEST(DeepDocuments, ManyFieldsAndValues) {
  std::string fields;
  for (int i = 0; i < kMany; ++i) {
    fields +=
        "<DataField name='f" + std::to_string(i) + "' optype='continuous' dataType='double'/>";
  }
  RunOnStackOf(kSmallStack, [&] {
    const FillResult result = Fill(Pmml(fields), {"f0", "f99999"});
    EXPECT_TRUE(result.status.IsOK());
    EXPECT_EQ(result.calls,
              (std::vector<std::string>{"AddContVar(f0||role 4)", "AddContVar(f99999||role 4)"}));
  });
}

}  // namespace
