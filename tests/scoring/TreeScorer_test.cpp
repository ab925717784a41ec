// The evaluator itself: what the sample data do not reach.

#include "reference/TreeScorer.h"

#include <gtest/gtest.h>

#include <optional>
#include <sstream>
#include <stdexcept>
#include <string>

namespace {

using reference::DataRow;
using reference::Prediction;
using reference::TreeScorer;

// A tree over x and y (numbers) and t (text) whose root is `nodes` inside of a node that scores 0.
std::string Document(const std::string& nodes, const std::string& treeAttributes = "") {
  return R"(<PMML version="4.4"><DataDictionary>
    <DataField name="x" optype="continuous" dataType="double"/>
    <DataField name="y" optype="continuous" dataType="integer">
      <Interval closure="closedOpen" leftMargin="0" rightMargin="10"/></DataField>
    <DataField name="t" optype="categorical" dataType="string">
      <Value value="a"/><Value value="b c" property="valid"/><Value value="1.0"/></DataField>
    <DataField name="out" optype="continuous" dataType="double"/>
  </DataDictionary>
  <TransformationDictionary><DerivedField name="bin" optype="categorical" dataType="string">
    <Discretize field="x">
      <DiscretizeBin binValue="low"><Interval closure="openClosed" rightMargin="1"/></DiscretizeBin>
      <DiscretizeBin binValue="high"><Interval closure="openOpen" leftMargin="1" rightMargin="9"/>
      </DiscretizeBin>
    </Discretize></DerivedField></TransformationDictionary>
  <TreeModel functionName="regression" )" +
         treeAttributes + R"(><MiningSchema><MiningField name="x"/>
    <MiningField name="y" usageType="active"/><MiningField name="t"/>
    <MiningField name="out" usageType="target"/></MiningSchema>
    <Node score="0"><True/>)" +
         nodes + "</Node></TreeModel></PMML>";
}

std::string Score(const std::string& document, const DataRow& row) {
  std::istringstream in(document);
  const std::optional<Prediction> prediction = TreeScorer(in).Score(row);
  return prediction ? prediction->score : "none";
}

// "yes" where the predicate is true, "no" where it is false, "unknown" where it is neither.
std::string Truth(const std::string& predicate, const DataRow& row) {
  const std::string nodes =
      "<Node score='yes'>" + predicate + "</Node>" + "<Node score='no'><True/></Node>";
  const std::string result = Score(Document(nodes, "missingValueStrategy='lastPrediction'"), row);
  return result == "0" ? "unknown" : result;
}

std::string Simple(const std::string& field, const std::string& op, const std::string& value) {
  return "<SimplePredicate field='" + field + "' operator='" + op + "' value='" + value + "'/>";
}

std::string Compound(const std::string& op, const std::string& first, const std::string& second) {
  return "<CompoundPredicate booleanOperator='" + op + "'>" + first + second +
         "</CompoundPredicate>";
}

TEST(TreeScorer, SimplePredicatesCompareNumbersAsNumbersAndTextAsText) {
  const struct {
    std::string predicate;
    DataRow row;
    const char* truth;
  } kCases[] = {
      {Simple("x", "equal", "1.0"), {{"x", "1"}}, "yes"},
      {Simple("x", "equal", "1"), {{"x", "2"}}, "no"},
      {Simple("x", "notEqual", "1"), {{"x", "2"}}, "yes"},
      {Simple("x", "lessThan", "10"), {{"x", "9"}}, "yes"},  // as text, 9 would be behind 10
      {Simple("x", "lessThan", "10"), {{"x", "10"}}, "no"},
      {Simple("x", "lessOrEqual", "10"), {{"x", "10"}}, "yes"},
      {Simple("x", "lessOrEqual", "10"), {{"x", "11"}}, "no"},
      {Simple("x", "greaterThan", "10"), {{"x", "10"}}, "no"},
      {Simple("x", "greaterThan", "9"), {{"x", "10"}}, "yes"},
      {Simple("x", "greaterOrEqual", "10"), {{"x", "10"}}, "yes"},
      {Simple("x", "greaterOrEqual", "10"), {{"x", "9"}}, "no"},
      {Simple("x", "equal", "1"), {}, "unknown"},
      {Simple("x", "equal", "1"), {{"x", ""}}, "unknown"},
      {Simple("x", "isMissing", ""), {}, "yes"},
      {Simple("x", "isMissing", ""), {{"x", "1"}}, "no"},
      {Simple("x", "isNotMissing", ""), {}, "no"},
      {Simple("x", "isNotMissing", ""), {{"x", "1"}}, "yes"},
      {Simple("t", "equal", "1.0"), {{"t", "1.0"}}, "yes"},
      {Simple("t", "equal", "1"), {{"t", "1.0"}}, "no"},
      {Simple("bin", "equal", "low"), {{"x", "1"}}, "yes"},
      {Simple("bin", "equal", "high"), {{"x", "1.5"}}, "yes"},
      {Simple("bin", "equal", "high"), {{"x", "9"}}, "unknown"},  // in no bin
      {Simple("bin", "equal", "high"), {}, "unknown"},
      {"<True/>", {}, "yes"},
      {"<False/>", {}, "no"},
  };
  for (const auto& c : kCases) EXPECT_EQ(Truth(c.predicate, c.row), c.truth) << c.predicate;
}

TEST(TreeScorer, SetPredicatesKnowQuotedItems) {
  const std::string isIn =
      "<SimpleSetPredicate field='t' booleanOperator='isIn'>"
      "<Array n='2' type='string'>\"b c\" 1.0</Array></SimpleSetPredicate>";
  EXPECT_EQ(Truth(isIn, {{"t", "b c"}}), "yes");
  EXPECT_EQ(Truth(isIn, {{"t", "1.0"}}), "yes");
  EXPECT_EQ(Truth(isIn, {{"t", "a"}}), "no");
  EXPECT_EQ(Truth(isIn, {}), "unknown");
  const std::string isNotIn =
      "<SimpleSetPredicate field='x' booleanOperator='isNotIn'>"
      "<Array n='2' type='int'>1 2</Array></SimpleSetPredicate>";
  EXPECT_EQ(Truth(isNotIn, {{"x", "2.0"}}), "no");
  EXPECT_EQ(Truth(isNotIn, {{"x", "3"}}), "yes");
}

TEST(TreeScorer, CompoundPredicatesFollowThreeValuedLogic) {
  const std::string predicates[] = {"<False/>", "<True/>", Simple("x", "equal", "1")};
  const char* const kAnd[3][3] = {
      {"no", "no", "no"}, {"no", "yes", "unknown"}, {"no", "unknown", "unknown"}};
  const char* const kOr[3][3] = {
      {"no", "yes", "unknown"}, {"yes", "yes", "yes"}, {"unknown", "yes", "unknown"}};
  for (int i = 0; i < 3; ++i) {
    for (int k = 0; k < 3; ++k) {
      EXPECT_EQ(Truth(Compound("and", predicates[i], predicates[k]), {}), kAnd[i][k]);
      EXPECT_EQ(Truth(Compound("or", predicates[i], predicates[k]), {}), kOr[i][k]);
    }
  }
}

TEST(TreeScorer, TreeStrategiesDecideWhereTheWayEnds) {
  const std::string nodes = "<Node score='1'>" + Simple("x", "lessThan", "5") + "</Node>" +
                            "<Node score='2'>" + Simple("y", "lessThan", "5") + "</Node>";
  const DataRow unknown = {{"y", "1"}};
  EXPECT_EQ(Score(Document(nodes, "missingValueStrategy='lastPrediction'"), unknown), "0");
  EXPECT_EQ(Score(Document(nodes, "missingValueStrategy='nullPrediction'"), unknown), "none");
  EXPECT_EQ(Score(Document(nodes, "missingValueStrategy='none'"), unknown), "2");
  EXPECT_EQ(Score(Document(nodes), unknown), "2");
  const DataRow noneTrue = {{"x", "6"}, {"y", "6"}};
  EXPECT_EQ(Score(Document(nodes, "noTrueChildStrategy='returnLastPrediction'"), noneTrue), "0");
  EXPECT_EQ(Score(Document(nodes, "noTrueChildStrategy='returnNullPrediction'"), noneTrue), "none");
  EXPECT_EQ(Score(Document(nodes), noneTrue), "none");
}

TEST(TreeScorer, InvalidValuesGiveNoPrediction) {
  EXPECT_EQ(Score(Document(""), {{"y", "0"}, {"t", "a"}}), "0");
  EXPECT_EQ(Score(Document(""), {{"y", "10"}}), "none");
  EXPECT_EQ(Score(Document(""), {{"y", "-1"}}), "none");
  EXPECT_EQ(Score(Document(""), {{"t", "1"}}), "none");
}

TEST(TreeScorer, WhatIsNotKnownIsRefused) {
  const std::string kNodes[] = {
      "<Node score='1'>" + Simple("z", "equal", "1") + "</Node>",
      "<Node score='1'>" + Simple("out", "equal", "1") + "</Node>",  // not active
      "<Node score='1'>" + Simple("x", "like", "1") + "</Node>",
      "<Node score='1'>" + Simple("x", "equal", "one") + "</Node>",
      "<Node score='1'>" + Compound("xor", "<True/>", "<True/>") + "</Node>",
      "<Node score='1'>" + Compound("surrogate", "<True/>", "<True/>") + "</Node>",
      "<Node score='1'/>",
      "<Node score='1'><True/><False/></Node>",
  };
  for (const std::string& nodes : kNodes) {
    EXPECT_THROW(Score(Document(nodes), {{"x", "1"}}), std::runtime_error) << nodes;
  }
}

TEST(TreeScorer, DocumentsThatAreNotPMMLAreRefused) {
  EXPECT_THROW(Score("<PMML><Header></PMML>", {}), std::runtime_error);
  EXPECT_THROW(Score("", {}), std::runtime_error);
  EXPECT_THROW(Score("<Other/>", {}), std::runtime_error);
  EXPECT_THROW(Score("<PMML/>", {}), std::runtime_error);
}

// Two segments over the split variable s, the second one guarded by `predicate`.
std::string Segmented(const std::string& predicate, const std::string& schema) {
  const std::string tree =
      "<TreeModel><MiningSchema><MiningField name='x'/></MiningSchema><Node score='";
  return "<PMML><DataDictionary><DataField name='x' dataType='double'/>"
         "<DataField name='s' dataType='string'/></DataDictionary>"
         "<MiningModel><MiningSchema>" +
         schema +
         "</MiningSchema>"
         "<Segmentation multipleModelMethod='selectFirst'>"
         "<Segment>" +
         Simple("s", "equal", "A") + tree +
         "1'><True/></Node></TreeModel></Segment>"
         "<Segment>" +
         predicate + tree + "2'>" + Simple("x", "lessThan", "5") +
         "</Node></TreeModel></Segment></Segmentation></MiningModel></PMML>";
}

const char* const kBothFields = "<MiningField name='x'/><MiningField name='s'/>";

TEST(TreeScorer, TheFirstSegmentWhosePredicateIsTrueScores) {
  const std::string always = Segmented("<True/>", kBothFields);
  EXPECT_EQ(Score(always, {{"s", "A"}, {"x", "1"}}), "1");
  EXPECT_EQ(Score(always, {{"s", "B"}, {"x", "1"}}), "2");
  EXPECT_EQ(Score(always, {{"x", "1"}}), "2");
  EXPECT_EQ(Score(always, {{"s", "B"}, {"x", "6"}}), "none");  // the root's predicate is false
  const std::string guarded = Segmented(Simple("s", "equal", "B"), kBothFields);
  EXPECT_EQ(Score(guarded, {{"s", "C"}, {"x", "1"}}), "none");
  EXPECT_EQ(Score(guarded, {{"x", "1"}}), "none");
}

TEST(TreeScorer, SegmentSeesOnlyWhatTheOuterSchemaHandsDown) {
  const std::string document = Segmented("<True/>", "<MiningField name='s'/>");
  EXPECT_THROW(Score(document, {{"s", "A"}, {"x", "1"}}), std::runtime_error);
}

TEST(TreeScorer, OtherMethodsOfSegmentationAreRefused) {
  std::string document = Segmented("<True/>", kBothFields);
  document.replace(document.find("selectFirst"), 11, "selectAll");
  EXPECT_THROW(Score(document, {{"s", "A"}, {"x", "1"}}), std::runtime_error);
}

}  // namespace
