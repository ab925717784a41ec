// Each finding, by its sentence, and that ordinary merges have none.
#include <gmock/gmock.h>

#include "combiner/CombinerTest.h"

namespace {

using combiner_test::FakeVarList;
using combiner_test::Field;
using combiner_test::OwnedCombiner;
using combiner_test::Pmml;
using testing::ElementsAre;
using testing::IsEmpty;

using Strings = std::vector<std::string>;

class CombinerDiagnostics : public combiner_test::CombinerTest {
 protected:
  CombinerDiagnostics() { list_.Add("region", {"North", "South", "West"}); }

  OwnedCombiner& Combiner() {
    if (combiner_ == nullptr) combiner_ = std::make_unique<OwnedCombiner>(list_);
    return *combiner_;
  }
  void AddText(const std::string& name, const std::string& text, const Strings& values) {
    static_cast<void>(Combiner().AddModel(Write(name, text), values));
  }
  void AddPmml(const std::string& name, const Pmml& pmml, const Strings& values) {
    AddText(name, pmml.Text(), values);
  }
  // Adds an ordinary first model, or one with these fields.
  void AddFirst(const std::string& fields = Pmml().fields) {
    Pmml pmml;
    pmml.fields = fields;
    AddPmml("first", pmml, {"North"});
  }
  void AddSecond(const std::string& fields) {
    Pmml pmml;
    pmml.fields = fields;
    AddPmml("second", pmml, {"South"});
  }
  // The findings, with the directory taken out of them.
  Strings Findings() {
    Strings findings = Combiner().GetDiagnostics();
    const std::string prefix = directory_.string() + "/";
    for (std::string& text : findings) {
      for (std::size_t at = text.find(prefix); at != std::string::npos; at = text.find(prefix)) {
        text.erase(at, prefix.size());
      }
    }
    return findings;
  }

  FakeVarList list_;
  std::unique_ptr<OwnedCombiner> combiner_;
};

TEST_F(CombinerDiagnostics, AnOrdinaryMergeHasNone) {
  AddFirst(Field("a", {"1"}));
  AddSecond(Field("a", {"2", "1"}) + Field("b", {"x"}));
  EXPECT_TRUE(Combiner().ExportMiningModel(PathOf("out.pmml")).IsOK());
  EXPECT_THAT(Findings(), IsEmpty());
}

TEST_F(CombinerDiagnostics, ValuesThatWentToAnotherField) {
  AddFirst(Field("a", {"1"}) + Field("b", {"x"}));
  AddSecond(Field("b", {"x", "y"}) + Field("a", {"x"}));
  EXPECT_THAT(
      Findings(),
      ElementsAre("second: field \"b\" stands at position 1, where the combined dictionary has "
                  "\"a\", so its values were merged into that field, which got \"x\", \"y\".",
                  "second: field \"a\" stands at position 2, where the combined dictionary has "
                  "\"b\", so its values were merged into that field (none was new there)."));
}

TEST_F(CombinerDiagnostics, ALongListOfValuesIsCut) {
  AddFirst(Field("a", {}) + Field("b", {"7"}));
  AddSecond(Field("b", {"1", "2", "3", "4", "5", "6", "7"}));
  EXPECT_THAT(Findings(),
              ElementsAre("second: field \"b\" stands at position 1, where the combined dictionary "
                          "has \"a\", so its values were merged into that field, which got \"1\", "
                          "\"2\", \"3\", \"4\", \"5\" and 2 more."));
}

TEST_F(CombinerDiagnostics, AnotherOrderWithoutValuesIsToldOnce) {
  const std::string a = "<DataField name='a'/>", b = "<DataField name='b'/>";
  AddFirst(a + b);
  AddSecond(b + a);
  EXPECT_THAT(Findings(),
              ElementsAre("second: the dictionary lists its fields in another order: it has \"b\" "
                          "at position 1, where the combined dictionary has \"a\"; no values were "
                          "concerned."));
}

TEST_F(CombinerDiagnostics, ADifferentType) {
  AddFirst("<DataField name='a' optype='continuous' dataType='double'/><DataField name='b'/>");
  AddSecond("<DataField name='a' optype='ordinal' dataType='string'/><DataField name='b'/>");
  EXPECT_THAT(Findings(),
              ElementsAre("second: the optype of field \"a\" is \"ordinal\", but the combined "
                          "dictionary keeps \"continuous\".",
                          "second: the dataType of field \"a\" is \"string\", but the combined "
                          "dictionary keeps \"double\"."));
}

TEST_F(CombinerDiagnostics, ADifferentTypeIsFoundAtAnotherPosition) {
  AddFirst("<DataField name='a' optype='continuous'/><DataField name='b' optype='ordinal'/>");
  AddSecond("<DataField name='b' optype='continuous'/>");
  EXPECT_THAT(Findings(),
              ElementsAre("second: the optype of field \"b\" is \"continuous\", but the combined "
                          "dictionary keeps \"ordinal\".",
                          testing::HasSubstr("another order")));
}

TEST_F(CombinerDiagnostics, ValuesWithoutAFieldToGoTo) {
  AddFirst(Field("a", {"1"}));
  AddSecond("<DataField name='a'/><DataField name='region'/>" + Field("a", {"2"}));
  EXPECT_THAT(Findings(),
              ElementsAre(testing::HasSubstr("optype"), testing::HasSubstr("dataType"),
                          testing::HasSubstr("lists no values"), testing::HasSubstr("optype"),
                          testing::HasSubstr("dataType"),
                          "second: the dictionary declares the split variable \"region\" itself, "
                          "which the combined dictionary declares already.",
                          testing::HasSubstr("lists no values"),
                          "second: the values of field \"a\" were not merged, because the combined "
                          "dictionary has no field at position 3."));
}

TEST_F(CombinerDiagnostics, AValueThatWasAddedTwice) {
  AddFirst(Field("a", {"1"}));
  AddSecond(Field("a", {"2", "1", "2", "2"}));
  EXPECT_THAT(Findings(), ElementsAre("second: field \"a\" lists the new value \"2\" more than "
                                      "once, and it was added each time."));
}

TEST_F(CombinerDiagnostics, ASplitVariableThatIsDeclaredAlready) {
  Pmml pmml;
  pmml.fields = Field("region", {"North"});
  pmml.schema = "<MiningField name='region'/>";
  AddPmml("first", pmml, {"North"});
  EXPECT_THAT(Findings(),
              ElementsAre("first: the dictionary declares the split variable \"region\" already, "
                          "so the combined dictionary declares it twice.",
                          "first: the schema declares the split variable \"region\" already, so "
                          "the combined schema declares it twice."));
}

TEST_F(CombinerDiagnostics, ASplitValueThatIsNoCategoryOfItsVariable) {
  list_.Add("sex", {"f", "m"});
  AddPmml("a", Pmml(), {"f", "North"});
  EXPECT_THAT(Findings(),
              ElementsAre("a: the split value \"f\" is no category of the split variable "
                          "\"region\".",
                          "a: the split value \"North\" is no category of the split variable "
                          "\"sex\"."));
}

TEST_F(CombinerDiagnostics, ACategoricalSplitVariableWithoutCategoriesKnowsNoValue) {
  FakeVarList list;
  list.Add("region", {});
  combiner_ = std::make_unique<OwnedCombiner>(list);
  AddPmml("a", Pmml(), {"North"});
  EXPECT_THAT(Findings(), ElementsAre("a: the split value \"North\" is no category of the split "
                                      "variable \"region\"."));
  combiner_.reset();
}

TEST_F(CombinerDiagnostics, AContinuousSplitVariableAcceptsEveryValue) {
  FakeVarList list;
  list.variables.push_back(std::make_unique<combiner_test::FakeVariable>("size", 1));
  combiner_ = std::make_unique<OwnedCombiner>(list);
  AddPmml("a", Pmml(), {"17"});
  EXPECT_THAT(Findings(), IsEmpty());
  combiner_.reset();
}

TEST_F(CombinerDiagnostics, TheSameSplitValuesTwice) {
  AddFirst();
  AddPmml("second", Pmml(), {"South"});
  AddPmml("third", Pmml(), {"North"});
  EXPECT_THAT(Findings(), ElementsAre("third: the split values \"North\" were added before from "
                                      "first; this later segment can never be selected."));
}

TEST_F(CombinerDiagnostics, SplitValuesThatOnlyReadAlikeAreNotTheSame) {
  FakeVarList list;
  list.Add("a", {"1", "11"});
  list.Add("b", {"1", "11"});
  combiner_ = std::make_unique<OwnedCombiner>(list);
  AddPmml("a", Pmml(), {"1", "11"});
  AddPmml("b", Pmml(), {"11", "1"});
  EXPECT_THAT(Findings(), IsEmpty());
  combiner_.reset();
}

TEST_F(CombinerDiagnostics, AnEmptySplitValue) {
  AddPmml("a", Pmml(), {""});
  EXPECT_THAT(Findings(), ElementsAre("a: the split value of \"region\" is empty, so the segment "
                                      "has no predicate."));
}

TEST_F(CombinerDiagnostics, AnEmptySplitValueAmongOthers) {
  list_.Add("sex", {"f", "m"});
  AddPmml("a", Pmml(), {"North", ""});
  EXPECT_THAT(Findings(), ElementsAre("a: the split value of \"sex\" is empty, so the predicate of "
                                      "the segment does not test it."));
}

TEST_F(CombinerDiagnostics, ASplitValueThatIsNotUTF8) {
  AddPmml("a", Pmml(), {"\xFF"});
  AddPmml("b", Pmml(), {"\xFE"});
  EXPECT_THAT(Findings(),
              ElementsAre("a: the split value of \"region\" is not well-formed UTF-8 and was "
                          "written as an empty text.",
                          testing::HasSubstr("not well-formed"),
                          "b: the split values \"\" were added before from a; this later segment "
                          "can never be selected."))
      << "what is written counts";
}

TEST_F(CombinerDiagnostics, AVariableThatIsMissingOrHasNoName) {
  list_.AddNull();
  list_.Add("", {});
  EXPECT_THAT(Findings(),
              ElementsAre("the variable list has no variable at position 2, so no predicate tests "
                          "the split value given there.",
                          "the split variable at position 3 has no name, so no predicate tests its "
                          "values."));
}

TEST_F(CombinerDiagnostics, AFirstFileWithoutDictionary) {
  AddText("a", "<PMML>" + Pmml().Model() + "</PMML>", {"North"});
  EXPECT_THAT(Findings(),
              ElementsAre("a: the document has no DataDictionary.",
                          "a: the combined document does not declare the split variables, because "
                          "the first file lacks a DataDictionary or its model a MiningSchema; "
                          "nothing is recorded of this file, so the fields of later files are "
                          "appended even where its MiningSchema has them, and no later dictionary "
                          "is taken over."));
}

TEST_F(CombinerDiagnostics, AFirstFileWithoutSchema) {
  const std::string model = "<TreeModel functionName='classification'/>";
  AddText("a", "<PMML>" + Pmml().Dictionary() + model + "</PMML>", {"North"});
  EXPECT_THAT(Findings(),
              ElementsAre("a: the model has no MiningSchema.",
                          "a: the combined document does not declare the split variables, because "
                          "the first file lacks a DataDictionary or its model a MiningSchema; "
                          "nothing is recorded of this file, so the fields of later files are "
                          "appended even where its DataDictionary has them, numberOfFields counts "
                          "only those, and no later schema is taken over."));
  AddPmml("b", Pmml(), {"South"});
  EXPECT_EQ(
      combiner_test::AttributeOf(
          combiner_test::FindElement(Combiner().Document(), "DataDictionary"), "numberOfFields"),
      "1")
      << "as the finding says";
}

TEST_F(CombinerDiagnostics, AFirstFileWithNeither) {
  AddText("a", "<PMML><TreeModel functionName='classification'/></PMML>", {"North"});
  EXPECT_THAT(Findings(),
              testing::Contains(testing::EndsWith(
                  "so the dictionaries and schemas of later files are not taken over.")));
}

TEST_F(CombinerDiagnostics, ALaterFileWithoutDictionaryOrSchema) {
  AddFirst();
  AddText("b", "<PMML version='4.1'><TreeModel functionName='classification'/></PMML>", {"South"});
  EXPECT_THAT(Findings(), ElementsAre("b: the document has no DataDictionary.",
                                      "b: the model has no MiningSchema."));
}

TEST_F(CombinerDiagnostics, FieldsWithoutAName) {
  Pmml pmml;
  pmml.fields = "<DataField/><DataField name='x'/>";
  pmml.schema = "<MiningField name='x'/>";
  AddPmml("a", pmml, {"North"});
  pmml.fields = "<DataField/><DataField name='x'/><DataField/>";
  pmml.schema = "<MiningField/>";
  AddPmml("b", pmml, {"South"});
  EXPECT_THAT(
      Findings(),
      ElementsAre("a: the dictionary holds 1 field without a name, which takes no part in a merge.",
                  "b: the dictionary holds 2 fields without a name, which take no part in a merge.",
                  "b: the schema holds 1 field without a name, which takes no part in a merge."));
}

TEST_F(CombinerDiagnostics, SeveralModelsInOneFile) {
  AddText("a", "<PMML>" + Pmml().Dictionary() + "<TextModel/>" + Pmml().Model() + "</PMML>",
          {"North"});
  EXPECT_THAT(Findings(),
              ElementsAre("a: the document holds 2 model elements; only its first TextModel was "
                          "looked at.",
                          "a: the model was kept out: its TextModel has no functionName."))
      << "also when the file is refused";
  combiner_.reset();
  AddText("b", "<PMML>" + Pmml().Dictionary() + Pmml().Model() + Pmml().Model() + "</PMML>",
          {"North"});
  EXPECT_THAT(Findings(), ElementsAre("b: the document holds 2 model elements; only its first "
                                      "TreeModel was looked at."));
}

TEST_F(CombinerDiagnostics, AnotherVersion) {
  AddFirst();
  Pmml pmml;
  pmml.version = "4.3";
  AddPmml("b", pmml, {"South"});
  EXPECT_THAT(Findings(), ElementsAre("b: the PMML version is \"4.3\", but the combined document "
                                      "declares \"4.1\"."));
}

TEST_F(CombinerDiagnostics, TransformationsThatAreNotTakenOver) {
  Pmml pmml;
  pmml.transformations =
      "<TransformationDictionary><DefineFunction/><DerivedField name='d'/>"
      "<DefineFunction/></TransformationDictionary>";
  pmml.body = "<LocalTransformations/><Node/>";
  AddPmml("a", pmml, {"North"});
  EXPECT_THAT(Findings(),
              ElementsAre("a: derived fields are put into LocalTransformations at the end of the "
                          "model, where the PMML schema does not allow them; a validating reader "
                          "will refuse the combined document.",
                          "a: the model has LocalTransformations of its own, so its segment has "
                          "two.",
                          "a: the TransformationDictionary holds DefineFunction, which is not "
                          "taken over into the segment."));
}

TEST_F(CombinerDiagnostics, LocalTransformationsLastAreToldOncePerDocument) {
  Pmml pmml;
  pmml.transformations =
      "<TransformationDictionary><DerivedField name='d'/></TransformationDictionary>";
  const auto last = testing::HasSubstr("a validating reader will refuse");
  AddPmml("a", pmml, {"North"});
  AddPmml("b", pmml, {"South"});
  EXPECT_THAT(Findings(), ElementsAre(last));
  static_cast<void>(Combiner().ExportMiningModel(""));
  AddPmml("c", pmml, {"North"});
  EXPECT_THAT(Findings(), ElementsAre(last, testing::HasSubstr("exported"), last));
}

TEST_F(CombinerDiagnostics, AModelIsKeptOutForEachRefusal) {
  AddFirst();
  Pmml pmml;
  AddPmml("a", pmml, {"South", "extra"});
  AddText("b", "<PMML>\n<broken></PMML>", {"South"});
  pmml.model_attributes = "functionName='regression'";
  AddPmml("c", pmml, {"South"});
  pmml.model_attributes = "";
  AddPmml("d", pmml, {"South"});
  pmml.model_tag = "MiningModel";
  AddPmml("e", pmml, {"South"});
  EXPECT_THAT(
      Findings(),
      ElementsAre("a: the model was kept out: the number of its split values is 2, that of the "
                  "split variables 1.",
                  testing::StartsWith(
                      "b: the model was kept out: it is not well-formed XML (line 2, column "),
                  "c: the model was kept out: its functionName is \"regression\", that of the "
                  "first model \"classification\".",
                  "d: the model was kept out: its TreeModel has no functionName.",
                  "e: the model was kept out: it is a MiningModel itself."));
}

TEST_F(CombinerDiagnostics, AFileThatCannotBeRead) {
  static_cast<void>(Combiner().AddModel(PathOf("missing"), {"North"}));
  EXPECT_THAT(
      Findings(),
      ElementsAre(testing::StartsWith("missing: the model was kept out: it cannot be read (")));
}

TEST_F(CombinerDiagnostics, FilesWithoutAModel) {
  AddFirst();
  AddText("b", "<PMML version='4.1'>" + Pmml().Dictionary() + "</PMML>", {"South"});
  EXPECT_THAT(Findings(), ElementsAre("b: no segment was added for this file: it has no model "
                                      "element that can be combined."));
}

TEST_F(CombinerDiagnostics, ModelsAfterARefusedFirstOne) {
  AddText("a", "<PMML/>", {"North"});
  AddPmml("b", Pmml(), {"South"});
  EXPECT_THAT(Findings(),
              ElementsAre("a: the model was kept out: it has no model element that can be "
                          "combined.",
                          "b: the model was kept out: the combined document has no Segmentation, "
                          "as its first model was refused or has an empty functionName."));
}

TEST_F(CombinerDiagnostics, AFirstModelWithAnEmptyFunctionName) {
  Pmml pmml;
  pmml.model_attributes = "functionName=''";
  AddPmml("a", pmml, {"North"});
  Pmml later;
  later.fields = Field("new", {"1"});
  AddPmml("b", later, {"South"});
  AddText("c", "<PMML version='4.1'>" + Pmml().Model() + "</PMML>", {"South"});
  EXPECT_THAT(
      Findings(),
      ElementsAre("a: no segment was added for this file: its functionName is empty, so the "
                  "combined document has no MiningModel.",
                  "b: no segment was added for this file: the combined document has no "
                  "Segmentation, as its first model was refused or has an empty functionName.",
                  "c: the document has no DataDictionary.",
                  "c: the model was kept out: the combined document has no Segmentation, as its "
                  "first model was refused or has an empty functionName."))
      << "the dictionary of b was merged, so it was not kept out";
}

TEST_F(CombinerDiagnostics, DifferencesFromTheFirstOccurrence) {
  const struct {
    const char* rule;
    const char* first;
    const char* second;
    Strings findings;
  } kRows[] = {
      {"equal intervals",
       "<DataField name='a'><Interval closure='openOpen' leftMargin='0' "
       "rightMargin='1'/></DataField>",
       "<DataField name='a'>\n<Interval rightMargin='1' leftMargin='0' "
       "closure='openOpen'/></DataField>",
       {}},
      {"another margin",
       "<DataField name='a'><Interval closure='openOpen' leftMargin='0'/></DataField>",
       "<DataField name='a'><Interval closure='openOpen' leftMargin='1'/></DataField>",
       {"second: the intervals of field \"a\" differ from those in the combined dictionary, which "
        "are kept."}},
      {"no intervals any more",
       "<DataField name='a'><Interval leftMargin='0'/></DataField>",
       "<DataField name='a'/>",
       {"second: the intervals of field \"a\" differ from those in the combined dictionary, which "
        "are kept."}},
      {"values only here",
       "<DataField name='a'/>",
       "<DataField name='a'><Value value='1'/></DataField>",
       {"second: field \"a\" lists values, but the file that brought it into the combined "
        "dictionary listed none."}},
      {"values only there",
       "<DataField name='a'><Value value='1'/></DataField>",
       "<DataField name='a'/>",
       {"second: field \"a\" lists no values, but the file that brought it into the combined "
        "dictionary listed some."}},
      {"a property only here",
       "<DataField name='a'><Value value='1'/><Value value='2'/></DataField>",
       "<DataField name='a'><Value value='1' property='missing'/><Value value='2' "
       "property='invalid'/></DataField>",
       {"second: the property of value \"1\" of field \"a\" is \"missing\", but the combined "
        "dictionary keeps \"valid\"."}},
      {"a property only there",
       "<DataField name='a'><Value value='1' property='missing'/></DataField>",
       "<DataField name='a'><Value value='1'/></DataField>",
       {"second: the property of value \"1\" of field \"a\" is \"valid\", but the combined "
        "dictionary keeps \"missing\"."}},
      {"the default property is written here",
       "<DataField name='a'><Value value='1'/></DataField>",
       "<DataField name='a'><Value value='1' property='valid' displayValue='one'/></DataField>",
       {}},
      {"a new value brings its property",
       "<DataField name='a'><Value value='1'/></DataField>",
       "<DataField name='a'><Value value='2' property='missing'/></DataField>",
       {}},
      {"an unknown field is not compared",
       "<DataField name='b'/>",
       "<DataField name='b'/><DataField name='c' optype='ordinal'><Value value='1'/></DataField>",
       {}},
  };
  for (const auto& row : kRows) {
    combiner_.reset();
    AddFirst(row.first);
    AddSecond(row.second);
    EXPECT_EQ(Findings(), row.findings) << row.rule;
  }
}

TEST_F(CombinerDiagnostics, TheFirstOccurrenceOfAPropertyStays) {
  const std::string open = "<DataField name='a'>", close = "</DataField>";
  AddFirst(open + "<Value value='1'/>" + close);
  AddSecond(open + "<Value value='2' property='missing'/>" + close);
  Pmml third;
  third.fields = open + "<Value value='2'/>" + close;
  AddPmml("third", third, {"West"});
  EXPECT_THAT(Findings(),
              ElementsAre("third: the property of value \"2\" of field \"a\" is \"valid\", but "
                          "the combined dictionary keeps \"missing\"."));
}

TEST_F(CombinerDiagnostics, ARepeatedNameIsComparedWithItsFirstOccurrence) {
  AddFirst("<DataField name='a' optype='ordinal'/><DataField name='a' optype='continuous'/>");
  AddSecond("<DataField name='a' optype='ordinal'/><DataField name='a' optype='continuous'/>");
  EXPECT_THAT(Findings(), ElementsAre("second: the optype of field \"a\" is \"continuous\", but "
                                      "the combined dictionary keeps \"ordinal\"."));
}

TEST_F(CombinerDiagnostics, AnotherUsageType) {
  Pmml pmml;
  pmml.schema =
      "<MiningField name='a'/><MiningField name='b' usageType='predicted'/>"
      "<MiningField name='c' usageType='active'/><MiningField name='d'/><MiningField name='d' "
      "usageType='supplementary'/>";
  AddPmml("a", pmml, {"North"});
  AddPmml("b", pmml, {"South"});
  pmml.schema =
      "<MiningField name='b'/><MiningField name='a' usageType='supplementary'/><MiningField "
      "name='c'/>";
  AddPmml("c", pmml, {"West"});
  EXPECT_THAT(Findings(),
              ElementsAre("b: the usageType of field \"d\" is \"supplementary\", but the combined "
                          "schema keeps \"active\".",
                          "c: the usageType of field \"b\" is \"active\", but the combined schema "
                          "keeps \"predicted\".",
                          "c: the usageType of field \"a\" is \"supplementary\", but the combined "
                          "schema keeps \"active\"."));
}

TEST_F(CombinerDiagnostics, ALaterFileThatDeclaresTheSplitVariable) {
  AddFirst();
  Pmml pmml;
  pmml.fields += Field("region", {"South"});
  pmml.schema += "<MiningField name='region'/>";
  AddPmml("b", pmml, {"South"});
  EXPECT_THAT(Findings(),
              ElementsAre("b: the dictionary declares the split variable \"region\" "
                          "itself, which the combined dictionary declares already.",
                          "b: the schema declares the split variable \"region\" itself, "
                          "which the combined schema declares already."));
}

TEST_F(CombinerDiagnostics, NamespacesThatTheCombinedDocumentLacks) {
  AddText("a",
          "<PMML version='4.1' xmlns='urn:1' xmlns:p='urn:p' xmlnsx='1'>" + Pmml().Dictionary() +
              Pmml().Model() + "</PMML>",
          {"North"});
  AddText("b",
          "<PMML version='4.1' xmlns='urn:2' xmlns:p='urn:p' xmlns:q='urn:q' xmlnsx='2'>" +
              Pmml().Dictionary() + Pmml().Model() + "</PMML>",
          {"South"});
  EXPECT_THAT(Findings(),
              ElementsAre("b: the document declares xmlns as \"urn:2\", but the combined "
                          "document keeps \"urn:1\".",
                          "b: the document declares xmlns:q as \"urn:q\", but the "
                          "combined document does not declare it, so names that need it "
                          "have no namespace there."));
}

TEST_F(CombinerDiagnostics, AnEntityThatTheCombinedDocumentDoesNotDeclare) {
  Pmml pmml;
  pmml.body = "<Node>&e;</Node><Node>&e;&lt;</Node>";
  AddText("a", "<!DOCTYPE PMML [<!ENTITY e 'text'>]>" + pmml.Text(), {"North"});
  EXPECT_THAT(
      Findings(),
      ElementsAre("a: a copied part refers to the entity \"e\", which the combined document "
                  "does not declare, so a reader will refuse it."));
  EXPECT_TRUE(Combiner().ExportMiningModel(PathOf("out.pmml")).IsOK());
  MCXPrsUtil::MCXMLReadWrite reader;
  static_cast<void>(reader.ParseToDOM(PathOf("out.pmml")));
  EXPECT_FALSE(reader.IsWellFormed()) << "as the finding says";
}

TEST_F(CombinerDiagnostics, AttributesThatTheDocumentTypeSupplies) {
  AddText("a", "<!DOCTYPE PMML [<!ATTLIST Node score CDATA '1'>]>" + Pmml().Text(), {"North"});
  EXPECT_THAT(Findings(), ElementsAre("a: attributes whose values come from the document type only "
                                      "are missing in the combined document."));
}

TEST_F(CombinerDiagnostics, AModelThatIsNestedVeryDeep) {
  // The model element stands on level 5, below PMML, MiningModel, Segmentation and Segment.
  constexpr int kFits = 10'000 - 5;
  Pmml pmml;
  const auto nested = [](int levels) {
    std::string text;
    for (int i = 0; i < levels; ++i) text += "<N>";
    for (int i = 0; i < levels; ++i) text += "</N>";
    return text;
  };
  pmml.body = nested(kFits);
  AddPmml("a", pmml, {"North"});
  EXPECT_THAT(Findings(), IsEmpty());
  EXPECT_TRUE(Combiner().ExportMiningModel(PathOf("fits.pmml")).IsOK());
  combiner_.reset();
  pmml.body = nested(kFits + 1);
  AddPmml("b", pmml, {"North"});
  EXPECT_THAT(Findings(), ElementsAre("b: a copied part is nested deeper than level 10000 of the "
                                      "combined document; writing it may take more stack than "
                                      "the thread has."));
}

TEST_F(CombinerDiagnostics, ACharacterThatXMLCannotHold) {
  for (const char* value : {"a\x01", "\x1F", "\xEF\xBF\xBE", "\xEF\xBF\xBF"}) {
    FakeVarList list;
    list.variables.push_back(std::make_unique<combiner_test::FakeVariable>("size", 1));
    combiner_ = std::make_unique<OwnedCombiner>(list);
    AddPmml("a", Pmml(), {value});
    EXPECT_THAT(
        Findings(),
        ElementsAre("a: the split value of \"size\" holds a character that XML cannot hold, "
                    "so the combined document cannot be written."));
    EXPECT_EQ(Combiner().ExportMiningModel(PathOf("out.pmml")).GetCode(), 118) << value;
    combiner_.reset();
  }
}

TEST_F(CombinerDiagnostics, ACategoryThatXMLCannotHold) {
  list_.variables.front()->values.front() = "\x02";
  AddPmml("a", Pmml(), {"South"});
  EXPECT_THAT(Findings(),
              ElementsAre("a: the name, the label or a category of the split variable \"region\" "
                          "holds a character that XML cannot hold, so the combined document cannot "
                          "be written."));
  EXPECT_EQ(Combiner().ExportMiningModel(PathOf("out.pmml")).GetCode(), 118);
}

TEST_F(CombinerDiagnostics, ASplitValueIsCutAtAZeroByte) {
  AddPmml("a", Pmml(), {"North"});
  AddPmml("b", Pmml(), {std::string("North\0West", 10)});
  EXPECT_THAT(Findings(),
              ElementsAre("b: the split value of \"region\" was cut off at its first zero byte.",
                          "b: the split value \"North\" is no category of the split variable "
                          "\"region\".",
                          "b: the split values \"North\" were added before from a; this later "
                          "segment can never be selected."));
}

TEST_F(CombinerDiagnostics, AnEarlierSegmentThatTestsFewerVariables) {
  list_.Add("sex", {"f", "m"});
  AddPmml("a", Pmml(), {"North", "f"});
  AddPmml("b", Pmml(), {"North", ""});
  AddPmml("c", Pmml(), {"South", "m"});
  AddPmml("d", Pmml(), {"North", "m"});
  const auto empty = testing::HasSubstr("is empty");
  EXPECT_THAT(Findings(),
              ElementsAre(empty,
                          "d: an earlier segment from b does not test every split variable "
                          "and accepts the split values \"North\", \"m\" too; this later "
                          "segment can never be selected."));
}

TEST_F(CombinerDiagnostics, AFieldWithoutANameIsCalledThat) {
  AddFirst(
      "<DataField/><DataField name='a' optype='categorical' dataType='string'><Value "
      "value='1'/></DataField>");
  AddSecond(Field("a", {"1"}));
  EXPECT_THAT(Findings(),
              ElementsAre(testing::HasSubstr("1 field without a name"),
                          "second: field \"a\" stands at position 1, where the combined dictionary "
                          "has a field without a name, so its values were merged into that field, "
                          "which got \"1\"."));
}

TEST_F(CombinerDiagnostics, WhatIsFoundOutsideAddModelNamesNoFile) {
  AddFirst();
  const MCXPrsUtil::MCXMLReadWrite reader;
  static_cast<void>(Combiner().ParseSplitModelXML(Parse(Pmml().Text()), reader, {"North"}));
  EXPECT_THAT(Findings(), ElementsAre(testing::StartsWith("the split values \"North\"")));
}

TEST_F(CombinerDiagnostics, ACombinerThatIsUsedAgainWithoutASchema) {
  AddFirst();
  static_cast<void>(Combiner().ExportMiningModel(""));
  AddText("b", "<PMML>" + Pmml().Dictionary() + "<TreeModel functionName='classification'/></PMML>",
          {"North"});
  EXPECT_THAT(Findings(),
              ElementsAre(testing::StartsWith("b: this combiner has exported a document before"),
                          "b: the model has no MiningSchema.",
                          testing::HasSubstr("does not declare the split variables")));
}

TEST_F(CombinerDiagnostics, ACombinerThatIsUsedAgain) {
  AddFirst(Field("a", {"1"}));
  static_cast<void>(Combiner().ExportMiningModel(""));
  AddPmml("second", Pmml(), {"North"});
  AddSecond(Field("a", {"2"}));
  EXPECT_THAT(
      Findings(),
      ElementsAre(
          "second: this combiner has exported a document before, whose fields still count "
          "as known and hold their positions; values may be missing from the combined "
          "dictionary and its numberOfFields is too large.",
          "second: the values of field \"a\" were not merged, because the recorded field at "
          "position 1 belongs to a document that was exported."))
      << "and the values of the exported segment are not told as used twice";
}

TEST_F(CombinerDiagnostics, WorkWithoutAFileNameToo) {
  const MCXPrsUtil::MCXMLReadWrite reader;
  for (int i = 0; i < 2; ++i) {
    static_cast<void>(Combiner().ParseSplitModelXML(Parse(Pmml().Text()), reader, {"North"}));
  }
  EXPECT_THAT(Findings(), ElementsAre("the split values \"North\" were added before; this later "
                                      "segment can never be selected."));
}

}  // namespace
