// Segments, predicates, and the declarations of the split variables.
#include "combiner/CombinerTest.h"

namespace {

using combiner_test::ChildAttributes;
using combiner_test::FakeVariable;
using combiner_test::FakeVarList;
using combiner_test::FindElement;
using combiner_test::OwnedCombiner;
using combiner_test::Pmml;
using combiner_test::TextOf;
using xercesc::DOMDocument;
using xercesc::DOMElement;
using xercesc::DOMNode;

using Strings = std::vector<std::string>;

class CombinerSegmentation : public combiner_test::CombinerTest {
 protected:
  OwnedCombiner& Combiner() {
    if (combiner_ == nullptr) combiner_ = std::make_unique<OwnedCombiner>(list_);
    return *combiner_;
  }
  // The first segment after one model with these values.
  std::string SegmentOf(const Pmml& pmml, const Strings& values) {
    EXPECT_TRUE(Add(Combiner(), pmml, values).IsOK());
    return TextOf(FindElement(Combiner().Document(), "Segment"));
  }
  // A document with an element that new ones can be put into.
  DOMElement* Root() {
    DOMDocument* document = Combiner().Document();
    if (document->getDocumentElement() == nullptr) {
      document->appendChild(document->createElement(u"root"));
    }
    return document->getDocumentElement();
  }

  FakeVarList list_;
  std::unique_ptr<OwnedCombiner> combiner_;
};

const char kModel[] =
    "<TreeModel functionName=\"classification\"><MiningSchema><MiningField name=\"x\"/>"
    "</MiningSchema><Node/></TreeModel>";

TEST_F(CombinerSegmentation, OneValueGivesASimplePredicate) {
  list_.Add("region", {"North"});
  EXPECT_EQ(SegmentOf(Pmml(), {"North"}),
            std::string("<Segment><SimplePredicate field=\"region\" operator=\"equal\" "
                        "value=\"North\"/>") +
                kModel + "</Segment>");
}

TEST_F(CombinerSegmentation, TwoValuesGiveACompoundPredicate) {
  list_.Add("sex", {"1"});
  list_.Add("agegroup", {"2"});
  EXPECT_EQ(SegmentOf(Pmml(), {"1", "2"}),
            std::string("<Segment><CompoundPredicate booleanOperator=\"and\">"
                        "<SimplePredicate field=\"sex\" operator=\"equal\" value=\"1\"/>"
                        "<SimplePredicate field=\"agegroup\" operator=\"equal\" value=\"2\"/>"
                        "</CompoundPredicate>") +
                kModel + "</Segment>");
}

TEST_F(CombinerSegmentation, ASplitValueIsWrittenAsItIs) {
  list_.Add("v", {});
  for (const char* value : {"1.0", " 1 ", "1e3", "NaN", "North & <South> \"'",
                            "\xE4\xB8\xAD\xE6\x96\x87", "\xF0\x9F\x98\x80"}) {
    const DOMElement* predicate = Combiner().InsertSimplePredicate(Root(), 0, value);
    EXPECT_EQ(combiner_test::AttributeOf(predicate, "value"), value);
  }
}

TEST_F(CombinerSegmentation, AnEmptyValueIsLeftOutOfACompoundPredicate) {
  list_.Add("sex", {});
  list_.Add("age", {});
  EXPECT_EQ(TextOf(Combiner().InsertPredicate(Root(), {"", "2"})),
            "<CompoundPredicate booleanOperator=\"and\"><SimplePredicate field=\"age\" "
            "operator=\"equal\" value=\"2\"/></CompoundPredicate>");
  EXPECT_EQ(TextOf(Combiner().InsertPredicate(Root(), {"", ""})),
            "<CompoundPredicate booleanOperator=\"and\"/>");
}

TEST_F(CombinerSegmentation, ASingleEmptyValueGivesASegmentWithoutPredicate) {
  list_.Add("region", {});
  EXPECT_EQ(SegmentOf(Pmml(), {""}), std::string("<Segment>") + kModel + "</Segment>");
  EXPECT_EQ(Combiner().GetNModels(), 1);
}

TEST_F(CombinerSegmentation, AVariableWithoutANameIsLeftOut) {
  list_.Add("", {});
  list_.AddNull();
  list_.Add("third", {});
  EXPECT_EQ(Combiner().InsertSimplePredicate(Root(), 0, "1"), nullptr);
  EXPECT_EQ(Combiner().InsertSimplePredicate(Root(), 1, "1"), nullptr);
  EXPECT_EQ(Combiner().InsertSimplePredicate(Root(), 3, "1"), nullptr);
  EXPECT_EQ(Combiner().InsertSimplePredicate(Root(), -1, "1"), nullptr);
  EXPECT_EQ(TextOf(Combiner().InsertPredicate(Root(), {"1", "2", "3", "4"})),
            "<CompoundPredicate booleanOperator=\"and\"><SimplePredicate field=\"third\" "
            "operator=\"equal\" value=\"3\"/></CompoundPredicate>");
}

TEST_F(CombinerSegmentation, PredicatesOfNothingAreNull) {
  list_.Add("a", {});
  EXPECT_EQ(Combiner().InsertPredicate(ParseRoot("<a/>"), {"1"}), nullptr) << "no document";
  EXPECT_EQ(Combiner().InsertPredicate(nullptr, {"1"}), nullptr);
  EXPECT_EQ(Combiner().InsertPredicate(nullptr, {"1", "2"}), nullptr);
  EXPECT_EQ(Combiner().InsertPredicate(Root(), {}), nullptr);
  EXPECT_EQ(Combiner().InsertPredicate(Root(), {""}), nullptr);
  EXPECT_EQ(Combiner().InsertSimplePredicate(nullptr, 0, "1"), nullptr);
  EXPECT_EQ(Combiner().InsertSimplePredicate(Root(), 0, ""), nullptr);
  EXPECT_EQ(Combiner().InsertCompoundPredicate(nullptr, {"1", "2"}), nullptr);
  EXPECT_EQ(Combiner().InsertCompoundPredicate(Root(), {"1"}), nullptr);
  EXPECT_EQ(Combiner().InsertCompoundPredicate(Root(), {}), nullptr);
  EXPECT_EQ(Combiner().InsertCompoundPredicate(ParseRoot("<a/>"), {"1", "2"}), nullptr)
      << "another document";
  EXPECT_EQ(TextOf(Root()), "<root/>");
}

TEST_F(CombinerSegmentation, APredicateStandsInItsSegmentOnce) {
  list_.Add("a", {});
  const DOMNode* predicate = Combiner().InsertPredicate(Root(), {"1"});
  EXPECT_EQ(predicate->getParentNode(), Root());
  EXPECT_EQ(Root()->getChildNodes()->getLength(), 1U);
}

TEST_F(CombinerSegmentation, DerivedFieldsBecomeLocalTransformationsAtTheEnd) {
  list_.Add("region", {"North"});
  Pmml pmml;
  pmml.transformations =
      "<TransformationDictionary><Extension/><DerivedField name='d1'><FieldRef field='x'/>"
      "</DerivedField><e><DerivedField name='no'/></e><DerivedField name='d2'/>"
      "</TransformationDictionary>";
  EXPECT_TRUE(Add(Combiner(), pmml, {"North"}).IsOK());
  EXPECT_EQ(TextOf(FindElement(Combiner().Document(), "TreeModel")),
            "<TreeModel functionName=\"classification\"><MiningSchema><MiningField name=\"x\"/>"
            "</MiningSchema><Node/><LocalTransformations><DerivedField name=\"d1\"><FieldRef "
            "field=\"x\"/></DerivedField><DerivedField name=\"d2\"/></LocalTransformations>"
            "</TreeModel>");
  EXPECT_EQ(FindElement(Combiner().Document(), "TransformationDictionary"), nullptr);
}

TEST_F(CombinerSegmentation, AnEmptyTransformationDictionaryGivesEmptyLocalTransformations) {
  list_.Add("region", {"North"});
  Pmml pmml;
  pmml.transformations = "<TransformationDictionary/>";
  EXPECT_TRUE(Add(Combiner(), pmml, {"North"}).IsOK());
  EXPECT_EQ(TextOf(FindElement(Combiner().Document(), "LocalTransformations")),
            "<LocalTransformations/>");
}

TEST_F(CombinerSegmentation, AModelWithLocalTransformationsGetsASecond) {
  list_.Add("region", {"North"});
  Pmml pmml;
  pmml.transformations = "<TransformationDictionary/>";
  pmml.body = "<LocalTransformations n='1'/><Node/>";
  EXPECT_TRUE(Add(Combiner(), pmml, {"North"}).IsOK());
  EXPECT_EQ(
      ChildAttributes(FindElement(Combiner().Document(), "TreeModel"), "LocalTransformations", "n"),
      (Strings{"1", "(absent)"}));
}

TEST_F(CombinerSegmentation, CopyTransDictToLocalOfNothingIsNull) {
  const DOMElement* dictionary = ParseRoot("<T><DerivedField name='d'/></T>");
  EXPECT_EQ(Combiner().CopyTransDictToLocal(dictionary, ParseRoot("<M/>")), nullptr)
      << "no document";
  EXPECT_EQ(Combiner().CopyTransDictToLocal(nullptr, Root()), nullptr);
  EXPECT_EQ(Combiner().CopyTransDictToLocal(dictionary, nullptr), nullptr);
  EXPECT_EQ(TextOf(Root()), "<root/>");
  EXPECT_EQ(TextOf(Combiner().CopyTransDictToLocal(dictionary, Root())),
            "<LocalTransformations><DerivedField name=\"d\"/></LocalTransformations>");
}

TEST_F(CombinerSegmentation, SegmentsFollowTheOrderOfTheCalls) {
  list_.Add("region", {"a", "b", "c"});
  for (const char* value : {"b", "a", "c"}) {
    EXPECT_TRUE(Add(Combiner(), Pmml(), {value}).IsOK());
  }
  Strings values;
  const DOMElement* segmentation = FindElement(Combiner().Document(), "Segmentation");
  for (DOMElement* segment = segmentation->getFirstElementChild(); segment != nullptr;
       segment = segment->getNextElementSibling()) {
    EXPECT_EQ(segment->getAttributes()->getLength(), 0U);
    values.push_back(ChildAttributes(segment, "SimplePredicate", "value").at(0));
  }
  EXPECT_EQ(values, (Strings{"b", "a", "c"}));
  EXPECT_EQ(Combiner().GetNModels(), 3);
}

TEST_F(CombinerSegmentation, InsertSegmentOfNothingIsNullAndDoesNotCount) {
  list_.Add("a", {});
  const DOMElement* model = ParseRoot("<TreeModel/>");
  EXPECT_EQ(Combiner().InsertSegment(ParseRoot("<S/>"), model, nullptr, {"1"}), nullptr);
  EXPECT_EQ(Combiner().InsertSegment(nullptr, model, nullptr, {"1"}), nullptr);
  EXPECT_EQ(Combiner().InsertSegment(Root(), nullptr, nullptr, {"1"}), nullptr);
  EXPECT_EQ(Combiner().InsertSegment(Root(), model, nullptr, {}), nullptr);
  EXPECT_EQ(Combiner().InsertSegment(ParseRoot("<S/>"), model, nullptr, {"1"}), nullptr);
  EXPECT_EQ(Combiner().GetNModels(), 0);
  EXPECT_EQ(TextOf(Combiner().InsertSegment(Root(), model, nullptr, {"1"})),
            "<Segment><SimplePredicate field=\"a\" operator=\"equal\" value=\"1\"/><TreeModel/>"
            "</Segment>");
  EXPECT_EQ(Combiner().GetNModels(), 1);
}

TEST_F(CombinerSegmentation, SplitVariablesAreDeclaredWithTheirCategories) {
  list_.Add("region",
            {"North & <South>", "\"'", "\xE4\xB8\xAD\xE6\x96\x87", "", "North & <South>"});
  list_.variables.push_back(std::make_unique<FakeVariable>("size", 1));
  list_.variables.back()->value_format = 1;
  list_.variables.push_back(std::make_unique<FakeVariable>("odd", 7));
  list_.variables.back()->label = "";
  Combiner().InsertDataFieldElem(Root(), 0);
  Combiner().InsertDataFieldElem(Root(), 1);
  Combiner().InsertDataFieldElem(Root(), 2);
  EXPECT_EQ(TextOf(Root()),
            "<root><DataField dataType=\"string\" displayName=\"Label of region\" name=\"region\" "
            "optype=\"categorical\"><Value value=\"North &amp; &lt;South>\"/><Value "
            "value=\"&quot;'\"/><Value value=\"\xE4\xB8\xAD\xE6\x96\x87\"/><Value value=\"\"/>"
            "<Value value=\"North &amp; &lt;South>\"/></DataField>"
            "<DataField dataType=\"integer\" displayName=\"Label of size\" name=\"size\" "
            "optype=\"continuous\"/>"
            "<DataField dataType=\"\" displayName=\"\" name=\"odd\" optype=\"\"/></root>");
}

TEST_F(CombinerSegmentation, MiningFieldsOfSplitVariablesAreActive) {
  list_.Add("region", {"North"});
  Combiner().InsertMiningFieldElem(Root(), 0);
  EXPECT_EQ(TextOf(Root()), "<root><MiningField name=\"region\" usageType=\"active\"/></root>");
}

TEST_F(CombinerSegmentation, DeclarationsOfNothingDoNothing) {
  list_.Add("region", {"North"});
  Combiner().InsertDataFieldElem(nullptr, 0);
  Combiner().InsertMiningFieldElem(nullptr, 0);
  DOMElement* foreign = ParseRoot("<a/>");
  Combiner().InsertDataFieldElem(foreign, 0);  // no document
  Combiner().InsertMiningFieldElem(foreign, 0);
  for (int position : {-1, 1, 1000}) {
    Combiner().InsertDataFieldElem(Root(), position);
    Combiner().InsertMiningFieldElem(Root(), position);
  }
  EXPECT_EQ(TextOf(Root()), "<root/>");
  EXPECT_EQ(TextOf(foreign), "<a/>");
}

TEST_F(CombinerSegmentation, WhereTheListLacksAVariableTheOthersAreStillDeclaredOnce) {
  list_.AddNull();
  list_.Add("a", {"1"});
  list_.AddNull();
  list_.Add("b", {"2"});
  ASSERT_TRUE(Add(Combiner(), Pmml(), {"w", "1", "y", "2"}).IsOK());
  EXPECT_EQ(
      ChildAttributes(FindElement(Combiner().Document(), "DataDictionary"), "DataField", "name"),
      (Strings{"x", "a", "b"}));
  EXPECT_EQ(ChildAttributes(FindElement(Combiner().Document(), "CompoundPredicate"),
                            "SimplePredicate", "field"),
            (Strings{"a", "b"}));
  EXPECT_EQ(ChildAttributes(FindElement(Combiner().Document(), "CompoundPredicate"),
                            "SimplePredicate", "value"),
            (Strings{"1", "2"}));
}

TEST_F(CombinerSegmentation, InsertSplitVarsNeedsDictionaryAndSchema) {
  list_.Add("region", {"North"});
  DOMElement* dictionary = Root();
  Combiner().InsertSplitVarsToMiningModel(dictionary, nullptr);
  Combiner().InsertSplitVarsToMiningModel(nullptr, dictionary);
  Combiner().InsertSplitVarsToMiningModel(nullptr, nullptr);
  EXPECT_EQ(TextOf(dictionary), "<root/>");
  Combiner().InsertSplitVarsToMiningModel(Combiner().Document(), Combiner().Document());
  EXPECT_EQ(TextOf(dictionary), "<root/>") << "a document is no element";
}

TEST_F(CombinerSegmentation, SplitVariablesThatAreDeclaredAlreadyAreDeclaredAgain) {
  list_.Add("x", {"1"});
  ASSERT_TRUE(Add(Combiner(), Pmml(), {"1"}).IsOK());
  DOMElement* dictionary = FindElement(Combiner().Document(), "DataDictionary");
  EXPECT_EQ(ChildAttributes(dictionary, "DataField", "name"), (Strings{"x", "x"}));
  EXPECT_EQ(combiner_test::AttributeOf(dictionary, "numberOfFields"), "2");
  EXPECT_EQ(ChildAttributes(FindElement(Combiner().Document(), "MiningSchema"), "MiningField",
                            "usageType"),
            (Strings{"(absent)", "active"}));
}

}  // namespace
