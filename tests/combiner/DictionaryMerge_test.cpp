// The merge of data dictionaries and mining schemas.
#include <sstream>

#include "combiner/CombinerTest.h"

namespace {

using combiner_test::AttributeOf;
using combiner_test::ChildAttributes;
using combiner_test::FakeVarList;
using combiner_test::Field;
using combiner_test::FindElement;
using combiner_test::OwnedCombiner;
using combiner_test::Pmml;
using combiner_test::TextOf;
using xercesc::DOMElement;
using xercesc::DOMNode;

using Strings = std::vector<std::string>;

class CombinerMerge : public combiner_test::CombinerTest {
 protected:
  CombinerMerge() { list_.Add("region", {"North"}); }

  // Adds a model with these fields in its dictionary.
  void AddFields(const std::string& fields) {
    Pmml pmml;
    pmml.fields = fields;
    ASSERT_TRUE(Add(Combiner(), pmml, {"North"}).IsOK());
  }
  // Adds a model with these fields in its schema.
  void AddSchema(const std::string& fields) {
    Pmml pmml;
    pmml.schema = fields;
    ASSERT_TRUE(Add(Combiner(), pmml, {"North"}).IsOK());
  }

  OwnedCombiner& Combiner() {
    if (combiner_ == nullptr) combiner_ = std::make_unique<OwnedCombiner>(list_);
    return *combiner_;
  }
  DOMElement* Dictionary() { return FindElement(Combiner().Document(), "DataDictionary"); }
  DOMElement* Schema() { return FindElement(Combiner().Document(), "MiningSchema"); }
  Strings FieldNames() { return ChildAttributes(Dictionary(), "DataField", "name"); }
  Strings SchemaNames() { return ChildAttributes(Schema(), "MiningField", "name"); }
  std::string Count() { return AttributeOf(Dictionary(), "numberOfFields"); }

  // The values of the n-th field of the output.
  Strings ValuesAt(std::size_t n) {
    std::vector<DOMNode*> nodes;
    Strings names;
    Combiner().EnumDataFields(Dictionary(), nodes, names);
    if (n >= nodes.size()) return {"(no field)"};
    return ChildAttributes(static_cast<DOMElement*>(nodes[n]), "Value", "value");
  }

  FakeVarList list_;
  std::unique_ptr<OwnedCombiner> combiner_;
};

TEST_F(CombinerMerge, EqualDictionariesChangeNothing) {
  AddFields(Field("a", {"1", "2"}) + Field("b", {"x"}));
  const std::string before = TextOf(Dictionary());
  EXPECT_EQ(Count(), "3");
  AddFields(Field("a", {"1", "2"}) + Field("b", {"x"}));
  EXPECT_EQ(TextOf(Dictionary()), before);
}

TEST_F(CombinerMerge, NewValuesAreAppendedInOrder) {
  AddFields(Field("a", {"A", "B"}));
  AddFields(Field("a", {"B", "C"}));
  EXPECT_EQ(ValuesAt(0), (Strings{"A", "B", "C"}));
  AddFields(Field("a", {"E", "A", "D", "C"}));
  EXPECT_EQ(ValuesAt(0), (Strings{"A", "B", "C", "E", "D"}));
  EXPECT_EQ(Count(), "2");
}

TEST_F(CombinerMerge, ANewFieldFollowsTheSplitVariables) {
  AddFields(Field("a", {"1"}));
  AddFields(Field("a", {"1"}) +
            "<DataField name='n' optype='continuous'><Interval "
            "closure='closedClosed'/><Extension/></DataField>");
  EXPECT_EQ(FieldNames(), (Strings{"a", "region", "n"}));
  EXPECT_EQ(Count(), "3");
  EXPECT_EQ(TextOf(Dictionary()->getLastChild()),
            "<DataField name=\"n\" optype=\"continuous\"><Interval closure=\"closedClosed\"/>"
            "<Extension/></DataField>");
}

TEST_F(CombinerMerge, ANewFieldTakesPartInLaterMerges) {
  AddFields(Field("a", {}));
  AddFields(Field("a", {}) + "<DataField name='region'/>" + Field("n", {"1"}));
  AddFields(Field("a", {}) + "<DataField name='region'/>" + Field("n", {"2"}));
  EXPECT_EQ(FieldNames(), (Strings{"a", "region", "n"}));
  EXPECT_EQ(ValuesAt(2), (Strings{"1", "2"}));
}

TEST_F(CombinerMerge, AKnownFieldKeepsItsFirstDescription) {
  AddFields(
      "<DataField name='a' optype='continuous' dataType='double'><Interval "
      "closure='openOpen' leftMargin='1'/></DataField>");
  const std::string before = TextOf(Dictionary());
  AddFields(
      "<DataField name='a' optype='ordinal' dataType='string' displayName='d'><Interval "
      "closure='openOpen' leftMargin='0'/></DataField>");
  EXPECT_EQ(TextOf(Dictionary()), before);
}

TEST_F(CombinerMerge, ValuesAreComparedAsTexts) {
  AddFields(Field("a", {"1", "x", "y"}));
  AddFields(Field("a", {"1.0", " x", "X", "01", ""}));
  EXPECT_EQ(ValuesAt(0), (Strings{"1", "x", "y", "1.0", " x", "X", "01", ""}));
  AddFields(Field("a", {"", "X"}));
  EXPECT_EQ(ValuesAt(0).size(), 8U);
}

TEST_F(CombinerMerge, ValuesMayHoldAnyCharacter) {
  AddFields(Field("a", {"&amp;", "\xE4\xB8\xAD"}));
  AddFields(
      Field("a", {"&lt;&quot;'&gt;", "\xE4\xB8\xAD\xE6\x96\x87", "&amp;", "\xF0\x9F\x98\x80"}));
  EXPECT_EQ(ValuesAt(0), (Strings{"&", "\xE4\xB8\xAD", "<\"'>", "\xE4\xB8\xAD\xE6\x96\x87",
                                  "\xF0\x9F\x98\x80"}));
}

TEST_F(CombinerMerge, AValueTwiceInOneSourceFieldIsAppendedTwice) {
  AddFields(Field("a", {"A"}));
  AddFields(Field("a", {"B", "A", "B"}));
  EXPECT_EQ(ValuesAt(0), (Strings{"A", "B", "B"}));
  AddFields(Field("a", {"B", "B"}));
  EXPECT_EQ(ValuesAt(0), (Strings{"A", "B", "B"}));
}

TEST_F(CombinerMerge, ValuesGoByPositionNotByName) {
  AddFields(Field("a", {"1"}) + Field("b", {"x"}));
  AddFields(Field("b", {"x", "y"}) + Field("a", {"1", "2"}));
  EXPECT_EQ(FieldNames(), (Strings{"a", "b", "region"}));
  EXPECT_EQ(ValuesAt(0), (Strings{"1", "x", "y"})) << "got those of b";
  EXPECT_EQ(ValuesAt(1), (Strings{"x", "1", "2"})) << "got those of a";
}

TEST_F(CombinerMerge, AMissingFieldShiftsThePositions) {
  AddFields(Field("a", {"1"}) + Field("b", {"x"}));
  AddFields(Field("b", {"z"}));
  EXPECT_EQ(ValuesAt(0), (Strings{"1", "z"}));
  EXPECT_EQ(ValuesAt(1), (Strings{"x"}));
}

TEST_F(CombinerMerge, APositionBeyondTheRecordMergesNothing) {
  AddFields(Field("a", {"1"}));
  AddFields("<DataField name='region'/><DataField name='a'/>" + Field("a", {"2"}));
  EXPECT_EQ(FieldNames(), (Strings{"a", "region"}));
  EXPECT_EQ(ValuesAt(0), (Strings{"1"}));
}

TEST_F(CombinerMerge, AFieldTwiceInOneSourceIsInsertedOnce) {
  AddFields(Field("a", {}));
  AddFields(Field("n", {"1"}) + Field("n", {"2"}));
  EXPECT_EQ(FieldNames(), (Strings{"a", "region", "n"}));
  EXPECT_EQ(ValuesAt(1), (Strings{"North", "2"})) << "position 1 is the split variable";
}

TEST_F(CombinerMerge, AFieldWithoutANameIsSkippedButHoldsItsPosition) {
  AddFields("<DataField/>" + Field("a", {"1"}));
  EXPECT_EQ(Count(), "2") << "only names count";
  AddFields("<DataField><Value value='0'/></DataField>" + Field("a", {"2"}));
  EXPECT_EQ(ValuesAt(0), Strings{});
  EXPECT_EQ(ValuesAt(1), (Strings{"1", "2"}));
  EXPECT_EQ(Count(), "2");
}

TEST_F(CombinerMerge, AnEmptyNameIsAName) {
  AddFields(Field("a", {}));
  AddFields(Field("", {"1"}));
  EXPECT_EQ(FieldNames(), (Strings{"a", "region", ""}));
  AddFields("<DataField name='a'/><DataField name='region'/>" + Field("", {"2"}));
  EXPECT_EQ(ValuesAt(2), (Strings{"1", "2"}));
  EXPECT_EQ(Count(), "3");
}

TEST_F(CombinerMerge, AValueWithoutTextIsSkipped) {
  AddFields("<DataField name='a'><Value/><Value value='1'/></DataField>");
  AddFields("<DataField name='a'><Value displayValue='d'/><Value value='2'/></DataField>");
  EXPECT_EQ(ValuesAt(0), (Strings{"(absent)", "1", "2"}));
}

TEST_F(CombinerMerge, AValueKeepsAllItsAttributesAndChildren) {
  AddFields(Field("a", {}));
  AddFields(
      "<DataField name='a'><Value value='1' property='missing' displayValue='one'>"
      "<Extension name='e'/></Value></DataField>");
  EXPECT_EQ(TextOf(Dictionary()->getFirstChild()->getFirstChild()),
            "<Value displayValue=\"one\" property=\"missing\" value=\"1\"><Extension "
            "name=\"e\"/></Value>");
}

TEST_F(CombinerMerge, ManyValuesInAnotherOrderAreFound) {
  Strings forward, backward;
  for (int i = 0; i < 500; ++i) forward.push_back("v" + std::to_string(i));
  backward.assign(forward.rbegin(), forward.rend());
  backward.insert(backward.begin() + 250, "new");
  AddFields(Field("a", forward));
  AddFields(Field("a", backward));
  forward.push_back("new");
  EXPECT_EQ(ValuesAt(0), forward);
}

TEST_F(CombinerMerge, EnumDataFieldsFindsDescendantsInDocumentOrder) {
  const DOMElement* dictionary = ParseRoot(
      "<D><DataField name='1'><DataField name='2'/></DataField><!--c-->t<DataField/>"
      "<e><DataField name=''/></e><datafield name='no'/></D>");
  std::vector<DOMNode*> nodes;
  Strings names = {"before"};
  Combiner().EnumDataFields(dictionary, nodes, names);
  EXPECT_EQ(nodes.size(), 4U);
  EXPECT_EQ(names, (Strings{"before", "1", "2", ""}));
  Combiner().EnumDataFields(nullptr, nodes, names);
  EXPECT_EQ(nodes.size(), 4U);
  Combiner().EnumDataFields(dictionary->getOwnerDocument(), nodes, names);
  EXPECT_EQ(nodes.size(), 8U) << "any node will do";
}

TEST_F(CombinerMerge, EnumValuesOfDataFieldFindsDescendantsInDocumentOrder) {
  const DOMElement* field =
      ParseRoot("<F><Value value='1'/><e><Value value='2'/></e><Value/><Value value=''/></F>");
  std::vector<DOMNode*> nodes;
  Strings texts = {"before"};
  Combiner().EnumValuesOfDataField(field, nodes, texts);
  EXPECT_EQ(nodes.size(), 4U);
  EXPECT_EQ(texts, (Strings{"before", "1", "2", ""}));
  Combiner().EnumValuesOfDataField(nullptr, nodes, texts);
  EXPECT_EQ(nodes.size(), 4U);
}

TEST_F(CombinerMerge, ReadNamesTakesNamedChildrenOnly) {
  std::vector<const DOMElement*> elements;
  Strings names = {"before"};
  Combiner().ReadNamesOfMiningFields(
      ParseRoot("<S><MiningField name='1'/><MiningField/><e><MiningField name='no'/></e>"
                "<DataField name='no'/><MiningField name=''/></S>"),
      elements, names);
  EXPECT_EQ(names, (Strings{"before", "1", ""}));
  EXPECT_EQ(elements.size(), 2U);
  Combiner().ReadNamesOfDataFields(
      ParseRoot("<D><DataField name='2'/><DataField/><MiningField name='no'/></D>"), elements,
      names);
  EXPECT_EQ(names, (Strings{"before", "1", "", "2"}));
  EXPECT_EQ(elements.size(), 3U);
  Combiner().ReadNamesOfMiningFields(nullptr, elements, names);
  Combiner().ReadNamesOfDataFields(nullptr, elements, names);
  EXPECT_EQ(elements.size(), 3U);
}

TEST_F(CombinerMerge, InsertDataFieldRecordsTheCopy) {
  AddFields(Field("a", {}));
  const DOMElement* field = ParseRoot(Field("n", {"1"}));
  const DOMNode* copy = Combiner().InsertDataField(field, Dictionary());
  EXPECT_EQ(copy, Dictionary()->getLastChild());
  EXPECT_EQ(TextOf(copy), TextOf(field));
  EXPECT_EQ(Count(), "2") << "the number follows with the next merge";
  AddFields(Field("a", {}) + "<DataField name='region'/>" + Field("n", {"2"}));
  EXPECT_EQ(ValuesAt(2), (Strings{"1", "2"}));
  EXPECT_EQ(Count(), "3");
}

TEST_F(CombinerMerge, InsertsOfNothingAreNull) {
  Strings list;
  DOMElement* foreign = ParseRoot("<D/>");
  const auto all_null = [&](const DOMNode* source, DOMNode* dest) {
    EXPECT_EQ(Combiner().InsertDataField(source, dest), nullptr);
    EXPECT_EQ(Combiner().InsertValueOfDataField(source, dest, list), nullptr);
    EXPECT_EQ(Combiner().InsertMiningField(source, dest), nullptr);
  };
  all_null(foreign, foreign);  // no combined document
  AddFields(Field("a", {}));
  all_null(nullptr, Dictionary());
  all_null(foreign, nullptr);
  all_null(nullptr, nullptr);
  all_null(foreign, foreign);  // a destination in another document
  EXPECT_EQ(TextOf(foreign), "<D/>");
  EXPECT_TRUE(list.empty());
}

TEST_F(CombinerMerge, InsertValueOfDataFieldAppendsNodeAndText) {
  AddFields(Field("a", {"1"}));
  DOMNode* field = Dictionary()->getFirstChild();
  Strings list = {"1"};
  EXPECT_EQ(TextOf(Combiner().InsertValueOfDataField(ParseRoot("<Value value='2'/>"), field, list)),
            "<Value value=\"2\"/>");
  EXPECT_EQ(TextOf(Combiner().InsertValueOfDataField(ParseRoot("<Value/>"), field, list)),
            "<Value/>");
  EXPECT_EQ(list, (Strings{"1", "2"}));
  EXPECT_EQ(ValuesAt(0), (Strings{"1", "2", "(absent)"}));
}

TEST_F(CombinerMerge, UpdateNumOfDataFieldsWritesAWholeNumber) {
  DOMElement* dictionary = ParseRoot("<D numberOfFields='old'/>");
  Combiner().UpdateNumOfDataFields(dictionary, -1);
  EXPECT_EQ(AttributeOf(dictionary, "numberOfFields"), "old");
  Combiner().UpdateNumOfDataFields(dictionary, 0);
  EXPECT_EQ(AttributeOf(dictionary, "numberOfFields"), "0");
  Combiner().UpdateNumOfDataFields(dictionary, 2147483647);
  EXPECT_EQ(AttributeOf(dictionary, "numberOfFields"), "2147483647");
  Combiner().UpdateNumOfDataFields(nullptr, 1);
  Combiner().UpdateNumOfDataFields(dictionary->getOwnerDocument(), 1);
  EXPECT_EQ(AttributeOf(dictionary, "numberOfFields"), "2147483647");
}

TEST_F(CombinerMerge, UpdatesOfNothingDoNothing) {
  AddFields(Field("a", {}));
  const std::string before = TextOf(Combiner().Document()->getDocumentElement());
  const DOMElement* source = ParseRoot("<D><DataField name='n'/><MiningField name='n'/></D>");
  Combiner().UpdateDataDict(nullptr, Dictionary());
  Combiner().UpdateDataDict(source, nullptr);
  Combiner().UpdateMiningSchema(nullptr, Schema());
  Combiner().UpdateMiningSchema(source, nullptr);
  EXPECT_EQ(TextOf(Combiner().Document()->getDocumentElement()), before);
}

TEST_F(CombinerMerge, ADictionaryMergedIntoItselfEnds) {
  OwnedCombiner& combiner = Combiner();
  auto* document = combiner.Document();
  document->appendChild(document->importNode(
      ParseRoot("<PMML><DataDictionary><DataField name='a'/></DataDictionary></PMML>"), true));
  combiner.UpdateDataDict(Dictionary(), Dictionary());
  EXPECT_EQ(FieldNames(), (Strings{"a", "a"})) << "nothing was recorded, so all fields are new";
}

TEST_F(CombinerMerge, ASchemaAddsOnlyUnknownFields) {
  AddSchema("<MiningField name='a'/><MiningField name='b' usageType='active'/>");
  EXPECT_EQ(SchemaNames(), (Strings{"a", "b", "region"}));
  AddSchema("<MiningField name='a'/><MiningField name='b'/>");
  AddSchema("<MiningField name='b'/>");
  AddSchema("<MiningField name='b'/><MiningField name='a'/>");
  AddSchema("<MiningField name='region'/><MiningField name='a'/>");
  AddSchema("");
  EXPECT_EQ(SchemaNames(), (Strings{"a", "b", "region"}));
  AddSchema(
      "<MiningField name='a'/><MiningField name='b'/><MiningField name='c' "
      "missingValueReplacement='0' optype='x' usageType='predicted'/>");
  EXPECT_EQ(SchemaNames(), (Strings{"a", "b", "region", "c"}));
  EXPECT_EQ(TextOf(Schema()->getLastChild()),
            "<MiningField missingValueReplacement=\"0\" name=\"c\" optype=\"x\" "
            "usageType=\"predicted\"/>");
}

TEST_F(CombinerMerge, AKnownMiningFieldKeepsItsFirstUsage) {
  AddSchema("<MiningField name='a' usageType='active'/>");
  AddSchema("<MiningField name='a' usageType='predicted'/><MiningField name='n'/>");
  EXPECT_EQ(ChildAttributes(Schema(), "MiningField", "usageType"),
            (Strings{"active", "active", "(absent)"}));
}

TEST_F(CombinerMerge, ANewMiningFieldTwiceIsInsertedOnce) {
  AddSchema("<MiningField name='a'/>");
  AddSchema("<MiningField name='n' usageType='active'/><MiningField name='n'/><MiningField/>");
  EXPECT_EQ(SchemaNames(), (Strings{"a", "region", "n"}));
}

TEST_F(CombinerMerge, InsertMiningFieldRecordsTheName) {
  AddSchema("<MiningField name='a'/>");
  EXPECT_NE(Combiner().InsertMiningField(ParseRoot("<MiningField name='n'/>"), Schema()), nullptr);
  EXPECT_NE(Combiner().InsertMiningField(ParseRoot("<MiningField/>"), Schema()), nullptr);
  AddSchema("<MiningField name='n'/>");
  EXPECT_EQ(SchemaNames(), (Strings{"a", "region", "n", "(absent)"}));
}

TEST_F(CombinerMerge, WithoutDictionaryOrSchemaNoSplitVariableIsDeclared) {
  const std::string model =
      "<TreeModel functionName='f'><MiningSchema><MiningField name='a'/>"
      "</MiningSchema></TreeModel>";
  const std::string dictionary = "<DataDictionary><DataField name='a'/></DataDictionary>";
  ASSERT_TRUE(Combiner().AddModel(Write("a.pmml", "<PMML>" + model + "</PMML>"), {"North"}).IsOK());
  EXPECT_EQ(Dictionary(), nullptr);
  EXPECT_EQ(SchemaNames(), (Strings{"a"}));
  OwnedCombiner other(list_);
  const std::string bare = "<TreeModel functionName='f'/>";
  const std::string path = Write("b.pmml", "<PMML>" + dictionary + bare + "</PMML>");
  ASSERT_TRUE(other.AddModel(path, {"North"}).IsOK());
  EXPECT_EQ(TextOf(FindElement(other.Document(), "DataDictionary")),
            "<DataDictionary><DataField name=\"a\"/></DataDictionary>");
  ASSERT_TRUE(other.AddModel(path, {"North"}).IsOK());
  EXPECT_EQ(ChildAttributes(FindElement(other.Document(), "DataDictionary"), "DataField", "name"),
            (Strings{"a", "a"}))
      << "nothing was recorded, so every field of a later file is new";
  EXPECT_EQ(other.GetNModels(), 2);
}

// Far too slow if the known values of a field were gone through for each model.
TEST_F(CombinerMerge, NewValuesOfManyModelsAreMergedInOrder) {
  constexpr int kModels = 1500;
  constexpr int kNew = 20;
  MCXPrsUtil::MCXMLReadWrite reader;
  Strings expected;
  for (int model = 0; model < kModels; ++model) {
    Pmml pmml;
    Strings values;
    for (int i = 0; i < kNew; ++i) values.push_back(std::to_string(model * kNew + i));
    expected.insert(expected.end(), values.begin(), values.end());
    if (model > 0) values.insert(values.begin() + kNew / 2, "0");
    pmml.fields = Field("a", values);
    std::istringstream in(pmml.Text());
    ASSERT_TRUE(reader.ParseToDOM(in).IsOK());
    ASSERT_TRUE(Combiner().ParseSplitModelXML(reader.GetDocument(), reader, {"North"}).IsOK());
  }
  EXPECT_EQ(ValuesAt(0), expected);
}

TEST_F(CombinerMerge, AListOfTheCallerIsNotTheRecordOfTheField) {
  AddFields(Field("a", {"1"}));
  Strings mine;
  DOMElement* field = FindElement(Combiner().Document(), "DataField");
  ASSERT_NE(Combiner().InsertValueOfDataField(ParseRoot("<Value value='2'/>"), field, mine),
            nullptr);
  AddFields(Field("a", {"2", "1"}));
  AddFields(Field("a", {"3", "2"}));
  EXPECT_EQ(mine, (Strings{"2"}));
  EXPECT_EQ(ValuesAt(0), (Strings{"1", "2", "2", "3"})) << "2 was not recorded";
}

}  // namespace
