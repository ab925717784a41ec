// The combined document as it is written, and what an export leaves behind.
#include <xercesc/util/XMLException.hpp>

#include "combiner/CombinerTest.h"
#include "xml/PlatformFault.h"

namespace {

using combiner_test::AttributeOf;
using combiner_test::ChildAttributes;
using combiner_test::FakeVarList;
using combiner_test::Field;
using combiner_test::FindElement;
using combiner_test::OwnedCombiner;
using combiner_test::Pmml;
using combiner_test::ReadFile;
using combiner_test::TextOf;
using MCCommon::MCStatus;
using xercesc::DOMDocument;
using xml_test::PlatformFault;
using xml_test::PlatformFaultScope;

using Strings = std::vector<std::string>;

class CombinerExport : public combiner_test::CombinerTest {
 protected:
  CombinerExport() { list_.Add("region", {"North", "South"}); }

  OwnedCombiner& Combiner() {
    if (combiner_ == nullptr) combiner_ = std::make_unique<OwnedCombiner>(list_);
    return *combiner_;
  }
  bool HasDocument() {
    bool created = false;
    Combiner().CreateEmptyMiningModel(created);
    return !created;
  }
  // The document of an exported file.
  DOMDocument* Reread(const std::string& path) { return Parse(ReadFile(path)); }
  Strings FieldNames(DOMDocument* document) {
    return ChildAttributes(FindElement(document, "DataDictionary"), "DataField", "name");
  }

  FakeVarList list_;
  std::unique_ptr<OwnedCombiner> combiner_;
};

TEST_F(CombinerExport, TwoSplitFilesGiveThisDocument) {
  Pmml first;
  first.transformations =
      "<TransformationDictionary><DerivedField name='d'/>"
      "</TransformationDictionary><MiningBuildTask/>";
  ASSERT_TRUE(Add(Combiner(), first, {"North"}).IsOK());
  Pmml second;
  second.header = "<Header copyright='them'/>";
  second.body = "<Node score='2'/>";
  ASSERT_TRUE(Add(Combiner(), second, {"South"}).IsOK());
  const std::string path = PathOf("out.pmml");
  ASSERT_TRUE(Combiner().ExportMiningModel(path).IsOK());
  EXPECT_EQ(
      ReadFile(path),
      "<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"no\" ?><PMML version=\"4.1\"><Header "
      "copyright=\"us\"/><DataDictionary numberOfFields=\"2\"><DataField dataType=\"double\" "
      "name=\"x\" optype=\"continuous\"/><DataField dataType=\"string\" displayName=\"Label of "
      "region\" name=\"region\" optype=\"categorical\"><Value value=\"North\"/><Value "
      "value=\"South\"/></DataField></DataDictionary><MiningModel "
      "functionName=\"classification\"><MiningSchema><MiningField name=\"x\"/><MiningField "
      "name=\"region\" usageType=\"active\"/></MiningSchema><Segmentation "
      "multipleModelMethod=\"selectFirst\"><Segment><SimplePredicate field=\"region\" "
      "operator=\"equal\" value=\"North\"/><TreeModel "
      "functionName=\"classification\"><MiningSchema><MiningField "
      "name=\"x\"/></MiningSchema><Node/><LocalTransformations><DerivedField "
      "name=\"d\"/></LocalTransformations></TreeModel></Segment><Segment><SimplePredicate "
      "field=\"region\" operator=\"equal\" value=\"South\"/><TreeModel "
      "functionName=\"classification\"><MiningSchema><MiningField name=\"x\"/></MiningSchema><Node "
      "score=\"2\"/></TreeModel></Segment></Segmentation></MiningModel></PMML>");
}

TEST_F(CombinerExport, TheFirstFileGivesVersionAndNamespace) {
  const std::string attributes =
      "version='4.3' xmlns='http://www.dmg.org/PMML-4_3' xmlns:xsi='urn:i' xsi:schemaLocation='l'";
  const std::string path = Write(
      "first.pmml", "<PMML " + attributes + ">" + Pmml().Dictionary() + Pmml().Model() + "</PMML>");
  ASSERT_TRUE(Combiner().AddModel(path, {"North"}).IsOK());
  ASSERT_TRUE(Add(Combiner(), Pmml(), {"South"}).IsOK());
  ASSERT_TRUE(Combiner().ExportMiningModel(PathOf("out.pmml")).IsOK());
  const auto* root = Reread(PathOf("out.pmml"))->getDocumentElement();
  EXPECT_EQ(AttributeOf(root, "version"), "4.3");
  EXPECT_EQ(AttributeOf(root, "xmlns"), "http://www.dmg.org/PMML-4_3");
  EXPECT_EQ(AttributeOf(root, "xsi:schemaLocation"), "l");
}

TEST_F(CombinerExport, EveryCharacterSurvivesWritingAndReading) {
  const Strings values = {"North & <South>",  "\"double\" 'single'", "\xE4\xB8\xAD\xE6\x96\x87", "",
                          "\xF0\x9F\x98\x80", "tab\tline\nend"};
  FakeVarList list;
  list.Add("v", values);
  OwnedCombiner combiner(list);
  for (const std::string& value : values) ASSERT_TRUE(Add(combiner, Pmml(), {value}).IsOK());
  ASSERT_TRUE(combiner.ExportMiningModel(PathOf("out.pmml")).IsOK());
  DOMDocument* document = Reread(PathOf("out.pmml"));
  const auto* field =
      FindElement(document, "DataDictionary")->getFirstElementChild()->getNextElementSibling();
  EXPECT_EQ(ChildAttributes(field, "Value", "value"), values);
  Strings in_predicates;
  for (auto* segment = FindElement(document, "Segmentation")->getFirstElementChild();
       segment != nullptr; segment = segment->getNextElementSibling()) {
    for (const std::string& value : ChildAttributes(segment, "SimplePredicate", "value")) {
      in_predicates.push_back(value);
    }
  }
  EXPECT_EQ(in_predicates, (Strings{values[0], values[1], values[2], values[4], values[5]}))
      << "the empty value has no predicate";
}

TEST_F(CombinerExport, ContentOfAModelIsTakenOverWhole) {
  Pmml pmml;
  pmml.body =
      "<!-- c --><?pi d?><Node>t<![CDATA[<&]]></Node>\n  <Extension xmlns:e='urn:e' e:a='1'/>";
  ASSERT_TRUE(Add(Combiner(), pmml, {"North"}).IsOK());
  const auto* source = ParseRoot(pmml.Model());
  EXPECT_EQ(TextOf(FindElement(Combiner().Document(), "TreeModel")), TextOf(source));
}

TEST_F(CombinerExport, WithoutAModelNothingIsWritten) {
  EXPECT_TRUE(Combiner().ExportMiningModel(PathOf("out.pmml")).IsOK());
  EXPECT_FALSE(std::filesystem::exists(PathOf("out.pmml")));
  EXPECT_EQ(Combiner().AddModel(PathOf("missing.pmml"), {"North"}).GetCode(), 104);
  EXPECT_EQ(Combiner().ExportMiningModel(PathOf("out.pmml")).GetCode(), 104) << "stored status";
  EXPECT_FALSE(std::filesystem::exists(PathOf("out.pmml")));
}

TEST_F(CombinerExport, AnEmptyPathLosesTheDocument) {
  ASSERT_TRUE(Add(Combiner(), Pmml(), {"North"}).IsOK());
  ASSERT_TRUE(Add(Combiner(), Pmml(), {"South"}).IsOK());
  EXPECT_TRUE(Combiner().ExportMiningModel("").IsOK());
  EXPECT_FALSE(HasDocument());
}

TEST_F(CombinerExport, ASecondExportWritesNothingAndRepeatsTheStatus) {
  ASSERT_TRUE(Add(Combiner(), Pmml(), {"North"}).IsOK());
  ASSERT_EQ(Combiner().ExportMiningModel("/dev/full"), MCStatus(118, false));
  EXPECT_EQ(Combiner().ExportMiningModel(PathOf("second.pmml")), MCStatus(118, false));
  EXPECT_FALSE(std::filesystem::exists(PathOf("second.pmml")));
  EXPECT_FALSE(HasDocument());
}

TEST_F(CombinerExport, ASecondExportAfterASuccessIsOKAndWritesNothing) {
  ASSERT_TRUE(Add(Combiner(), Pmml(), {"North"}).IsOK());
  ASSERT_TRUE(Combiner().ExportMiningModel(PathOf("first.pmml")).IsOK());
  EXPECT_TRUE(Combiner().ExportMiningModel(PathOf("second.pmml")).IsOK());
  EXPECT_TRUE(std::filesystem::exists(PathOf("first.pmml")));
  EXPECT_FALSE(std::filesystem::exists(PathOf("second.pmml")));
}

TEST_F(CombinerExport, APlatformThatDoesNotStartIs103AndReleasesTheDocument) {
  ASSERT_TRUE(Add(Combiner(), Pmml(), {"North"}).IsOK());
  {
    const PlatformFaultScope fault(PlatformFault::kXMLException);
    EXPECT_EQ(Combiner().ExportMiningModel(PathOf("out.pmml")), MCStatus(103, false));
  }
  EXPECT_EQ(Combiner().GetStatus(), MCStatus(103, false));
  EXPECT_FALSE(std::filesystem::exists(PathOf("out.pmml")));
  EXPECT_FALSE(HasDocument());
}

TEST_F(CombinerExport, AModelTooDeepToWriteIs118AndReleasesTheDocument) {
  constexpr int kLevels = 300'000;
  Pmml deep;
  deep.body.clear();
  for (int i = 0; i < kLevels; ++i) deep.body += "<Node>";
  for (int i = 0; i < kLevels; ++i) deep.body += "</Node>";
  ASSERT_TRUE(Add(Combiner(), deep, {"North"}).IsOK());
  EXPECT_EQ(Combiner().ExportMiningModel(PathOf("out.pmml")), MCStatus(118, false));
  EXPECT_FALSE(HasDocument());
}

TEST_F(CombinerExport, AFileThatCannotBeOpenedThrowsAndReleasesTheDocument) {
  ASSERT_TRUE(Add(Combiner(), Pmml(), {"North"}).IsOK());
  EXPECT_THROW(static_cast<void>(Combiner().ExportMiningModel(PathOf("no/such/folder/out.pmml"))),
               xercesc::XMLException);
  EXPECT_TRUE(Combiner().GetStatus().IsOK()) << "as before the call";
  EXPECT_FALSE(HasDocument());
}

TEST_F(CombinerExport, AnEmptyDocumentOfARefusedFirstModelIsReleasedToo) {
  Pmml refused;
  refused.model_tag = "MiningModel";
  ASSERT_EQ(Add(Combiner(), refused, {"North"}).GetCode(), 125);
  EXPECT_TRUE(Combiner().ExportMiningModel("").IsOK());
  EXPECT_FALSE(HasDocument());
}

TEST_F(CombinerExport, WriteDocToPMMLFileNeedsBoth) {
  EXPECT_TRUE(Combiner().WriteDocToPMMLFile(nullptr, PathOf("out.pmml")).IsOK());
  EXPECT_FALSE(std::filesystem::exists(PathOf("out.pmml")));
  const DOMDocument* document = Parse("<a/>");
  EXPECT_TRUE(Combiner().WriteDocToPMMLFile(document, "").IsOK());
  EXPECT_TRUE(Combiner().WriteDocToPMMLFile(document, PathOf("out.pmml")).IsOK());
  EXPECT_EQ(TextOf(Reread(PathOf("out.pmml"))->getDocumentElement()), "<a/>");
  EXPECT_EQ(Combiner().WriteDocToPMMLFile(document, "/dev/full"), MCStatus(118, false));
  EXPECT_THROW(static_cast<void>(Combiner().WriteDocToPMMLFile(document, PathOf("no/out.pmml"))),
               xercesc::XMLException);
}

TEST_F(CombinerExport, AfterAnExportTheNextModelIsAFirstOne) {
  ASSERT_TRUE(Add(Combiner(), Pmml(), {"North"}).IsOK());
  ASSERT_TRUE(Combiner().ExportMiningModel("").IsOK());
  Pmml next;
  next.header = "<Header copyright='next'/>";
  next.model_attributes = "functionName='regression'";
  ASSERT_TRUE(Add(Combiner(), next, {"South"}).IsOK()) << "another functionName is no conflict";
  EXPECT_EQ(Combiner().GetNModels(), 2) << "counts on";
  DOMDocument* document = Combiner().Document();
  EXPECT_EQ(AttributeOf(FindElement(document, "Header"), "copyright"), "next");
  EXPECT_EQ(AttributeOf(FindElement(document, "MiningModel"), "functionName"), "regression");
  EXPECT_EQ(FieldNames(document), (Strings{"x", "region"}));
  EXPECT_EQ(AttributeOf(FindElement(document, "DataDictionary"), "numberOfFields"), "4")
      << "the names of the exported document still count";
}

TEST_F(CombinerExport, AfterAnExportTheFunctionNameStaysUntilTheNextFirstModel) {
  ASSERT_TRUE(Add(Combiner(), Pmml(), {"North"}).IsOK());
  ASSERT_TRUE(Combiner().ExportMiningModel("").IsOK());
  EXPECT_EQ(Combiner()
                .IsConsistentFunctionName(ParseRoot("<TreeModel functionName='regression'/>"))
                .GetCode(),
            124);
}

TEST_F(CombinerExport, AfterAnExportOldFieldsAreKnownButTakeNoValues) {
  Pmml first;
  first.fields = Field("a", {"1"}) + Field("b", {"x"});
  first.schema = "<MiningField name='a'/><MiningField name='b'/>";
  ASSERT_TRUE(Add(Combiner(), first, {"North"}).IsOK());  // records a, b, region
  ASSERT_TRUE(Combiner().ExportMiningModel("").IsOK());
  Pmml second;
  second.fields = Field("a", {"1"});
  second.schema = "<MiningField name='a'/>";
  ASSERT_TRUE(Add(Combiner(), second, {"North"}).IsOK());  // records a, region behind them
  Pmml third;
  third.fields = Field("a", {"2"}) + Field("b", {"y"}) + Field("n", {"3"}) + Field("a", {"4"});
  third.schema = "<MiningField name='b'/><MiningField name='n'/>";
  ASSERT_TRUE(Add(Combiner(), third, {"South"}).IsOK());
  DOMDocument* document = Combiner().Document();
  EXPECT_EQ(FieldNames(document), (Strings{"a", "region", "n"})) << "b still counts as known";
  EXPECT_EQ(AttributeOf(FindElement(document, "DataDictionary"), "numberOfFields"), "6");
  EXPECT_EQ(ChildAttributes(FindElement(document, "DataField"), "Value", "value"),
            (Strings{"1", "4"}))
      << "position 3 is the new document's a; positions 0 to 2 belong to the released one";
  EXPECT_EQ(ChildAttributes(FindElement(document, "MiningSchema"), "MiningField", "name"),
            (Strings{"a", "region", "n"}));
}

TEST_F(CombinerExport, AfterAnExportARefusedFirstModelLeavesTheOldFunctionName) {
  ASSERT_TRUE(Add(Combiner(), Pmml(), {"North"}).IsOK());
  ASSERT_TRUE(Combiner().ExportMiningModel("").IsOK());
  Pmml refused;
  refused.model_tag = "MiningModel";
  EXPECT_EQ(Add(Combiner(), refused, {"North"}).GetCode(), 125);
  Pmml other;
  other.model_attributes = "functionName='regression'";
  EXPECT_EQ(Add(Combiner(), other, {"North"}).GetCode(), 124) << "that of the exported document";
  EXPECT_TRUE(Add(Combiner(), Pmml(), {"North"}).IsOK());
  EXPECT_EQ(Combiner().Document()->getFirstChild(), nullptr);
  EXPECT_EQ(Combiner().GetNModels(), 1);
}

TEST_F(CombinerExport, AfterAnExportAFirstModelWithoutSchemaRecordsNothing) {
  ASSERT_TRUE(Add(Combiner(), Pmml(), {"North"}).IsOK());
  ASSERT_TRUE(Combiner().ExportMiningModel("").IsOK());
  const std::string text =
      "<PMML><DataDictionary><DataField name='y'/></DataDictionary>"
      "<TreeModel functionName='classification'/></PMML>";
  ASSERT_TRUE(Combiner().AddModel(Write("b.pmml", text), {"North"}).IsOK());
  EXPECT_EQ(FieldNames(Combiner().Document()), (Strings{"y"})) << "no split variable";
  Pmml third;
  third.fields = "<DataField name='x'/><DataField name='y'/>";
  ASSERT_TRUE(Add(Combiner(), third, {"South"}).IsOK());
  EXPECT_EQ(FieldNames(Combiner().Document()), (Strings{"y", "y"})) << "x is known from before";
}

TEST_F(CombinerExport, APrefixOfALaterFileIsReadBackAsItStands) {
  ASSERT_TRUE(Add(Combiner(), Pmml(), {"North"}).IsOK());
  Pmml later;
  later.body = "<Node/><e:Note e:by='us'/>";
  std::string text = later.Text();
  text.insert(text.find(" version"), " xmlns:e='urn:e'");
  ASSERT_TRUE(Combiner().AddModel(Write("b.pmml", text), {"South"}).IsOK());
  EXPECT_EQ(Combiner().GetDiagnostics().size(), 1U) << "the missing declaration";
  ASSERT_TRUE(Combiner().ExportMiningModel(PathOf("out.pmml")).IsOK());
  DOMDocument* document = Reread(PathOf("out.pmml"));
  EXPECT_EQ(AttributeOf(FindElement(document, "e:Note"), "e:by"), "us");
  EXPECT_EQ(AttributeOf(document->getDocumentElement(), "xmlns:e"), "(absent)");
}

TEST_F(CombinerExport, AfterAnExportTheDriversFindNoDocument) {
  ASSERT_TRUE(Add(Combiner(), Pmml(), {"North"}).IsOK());
  ASSERT_TRUE(Combiner().ExportMiningModel("").IsOK());
  EXPECT_TRUE(Combiner().MergeModelToMiningModel(Parse(Pmml().Text()), {"South"}).IsOK());
  EXPECT_EQ(Combiner().GetNModels(), 1);
  EXPECT_FALSE(HasDocument());
}

}  // namespace
