// What AddModel accepts, what it refuses, and what it leaves behind.
#include "combiner/CombinerTest.h"
#include "xml/PlatformFault.h"

namespace {

using combiner_test::AttributeOf;
using combiner_test::FakeVarList;
using combiner_test::FindElement;
using combiner_test::kOK;
using combiner_test::OwnedCombiner;
using combiner_test::Pmml;
using combiner_test::TextOf;
using MCCommon::MCStatus;
using MCXPrsUtil::MCXMLReadWrite;
using xercesc::DOMDocument;
using xml_test::PlatformFault;
using xml_test::PlatformFaultScope;

class CombinerIntake : public combiner_test::CombinerTest {
 protected:
  CombinerIntake() { list_.Add("region", {"North", "South"}); }

  // Built on first use, so that a test may add variables.
  OwnedCombiner& Combiner() {
    if (combiner_ == nullptr) combiner_ = std::make_unique<OwnedCombiner>(list_);
    return *combiner_;
  }
  std::string Output() { return TextOf(Combiner().Document()->getDocumentElement()); }

  FakeVarList list_;
  std::unique_ptr<OwnedCombiner> combiner_;
};

TEST_F(CombinerIntake, AnEmptyPathOrNoValuesChangeNothing) {
  const std::string path = Write("a.pmml", Pmml());
  EXPECT_EQ(Combiner().AddModel("", {"North"}).GetCode(), kOK);
  EXPECT_EQ(Combiner().AddModel(path, {}).GetCode(), kOK);
  EXPECT_EQ(Combiner().AddModel(path, {"a", "b"}).GetCode(), 126);
  EXPECT_EQ(Combiner().AddModel("", {"North"}).GetCode(), 126) << "the previous status";
  EXPECT_EQ(Combiner().AddModel(path, {}).GetCode(), 126) << "the previous status";
  EXPECT_EQ(Combiner().GetNModels(), 0);
  bool created = false;
  Combiner().CreateEmptyMiningModel(created);
  EXPECT_TRUE(created) << "no call has made a document";
}

TEST_F(CombinerIntake, TheNumberOfValuesIsCheckedBeforeTheFile) {
  list_.Add("sex", {});
  list_.Add("age", {});
  EXPECT_EQ(Combiner().AddModel(PathOf("missing.pmml"), {"1", "2"}), MCStatus(126, false));
  EXPECT_EQ(Combiner().GetStatus(), MCStatus(126, false));
  EXPECT_EQ(Combiner().AddModel(PathOf("missing.pmml"), {"1", "2", "3"}).GetCode(), 104);
}

TEST_F(CombinerIntake, AMissingFileIs104) {
  EXPECT_EQ(Combiner().AddModel(PathOf("missing.pmml"), {"North"}), MCStatus(104, false));
  EXPECT_EQ(Combiner().GetStatus(), MCStatus(104, false));
}

TEST_F(CombinerIntake, AMalformedFileIs104AndLeavesTheOutput) {
  ASSERT_TRUE(Add(Combiner(), Pmml(), {"North"}).IsOK());
  const std::string before = Output();
  Pmml pmml;
  pmml.fields = combiner_test::Field("new", {"a"});
  const std::string text = pmml.Text();
  const std::string broken[] = {
      text.substr(0, text.size() - 3),           // no end tag
      text.substr(0, text.find("<Node/>") + 7),  // breaks off in the model
      text + "<more/>",                          // two roots
      "",
      "no XML",
  };
  for (const std::string& file : broken) {
    EXPECT_EQ(Combiner().AddModel(Write("b.pmml", file), {"South"}), MCStatus(104, false)) << file;
    EXPECT_EQ(Output(), before) << file;
    EXPECT_EQ(Combiner().GetNModels(), 1);
  }
  EXPECT_TRUE(Combiner().AddModel(Write("c.pmml", text), {"South"}).IsOK());
  EXPECT_TRUE(Combiner().GetStatus().IsOK()) << "the status is that of the last call";
}

TEST_F(CombinerIntake, AMalformedFirstFileLeavesNoDocument) {
  EXPECT_EQ(Combiner().AddModel(Write("a.pmml", "<PMML><TreeModel"), {"North"}).GetCode(), 104);
  bool created = false;
  Combiner().CreateEmptyMiningModel(created);
  EXPECT_TRUE(created);
}

TEST_F(CombinerIntake, GetFunctionNameAttReadsTheAttribute) {
  std::string name = "kept";
  EXPECT_EQ(Combiner().GetFunctionNameAtt(nullptr, name), MCStatus(108, false));
  EXPECT_EQ(Combiner().GetFunctionNameAtt(ParseRoot("<TreeModel/>"), name), MCStatus(108, false));
  EXPECT_EQ(Combiner().GetFunctionNameAtt(ParseRoot("<MiningModel functionName='a'/>"), name),
            MCStatus(125, false));
  EXPECT_EQ(name, "kept");
  EXPECT_TRUE(
      Combiner().GetFunctionNameAtt(ParseRoot("<T functionName='\xC3\xA4'/>"), name).IsOK());
  EXPECT_EQ(name, "\xC3\xA4");
  EXPECT_TRUE(Combiner().GetFunctionNameAtt(ParseRoot("<T functionName=''/>"), name).IsOK());
  EXPECT_EQ(name, "");
}

TEST_F(CombinerIntake, IsConsistentFunctionNameComparesWithTheFirst) {
  const auto* regression = ParseRoot("<TreeModel functionName='regression'/>");
  EXPECT_TRUE(Combiner().IsConsistentFunctionName(nullptr).IsOK());
  EXPECT_TRUE(Combiner().IsConsistentFunctionName(regression).IsOK()) << "no first model";
  EXPECT_TRUE(Combiner().IsConsistentFunctionName(ParseRoot("<MiningModel/>")).IsOK());
  ASSERT_TRUE(Add(Combiner(), Pmml(), {"North"}).IsOK());
  EXPECT_TRUE(Combiner().IsConsistentFunctionName(nullptr).IsOK());
  EXPECT_EQ(Combiner().IsConsistentFunctionName(regression), MCStatus(124, false));
  const auto code = [&](const char* text) {
    return Combiner().IsConsistentFunctionName(ParseRoot(text)).GetCode();
  };
  EXPECT_EQ(code("<TreeModel functionName='classification'/>"), kOK);
  EXPECT_EQ(code("<RegressionModel functionName='classification'/>"), kOK);
  EXPECT_EQ(code("<TreeModel functionName='Classification'/>"), 124);
  EXPECT_EQ(code("<TreeModel functionName=''/>"), 124);
  EXPECT_EQ(code("<TreeModel/>"), 108);
  EXPECT_EQ(code("<MiningModel functionName='classification'/>"), 125);
}

TEST_F(CombinerIntake, ALaterModelThatIsRefusedAddsNothing) {
  ASSERT_TRUE(Add(Combiner(), Pmml(), {"North"}).IsOK());
  const std::string before = Output();
  const struct {
    const char* tag;
    const char* attributes;
    int status;
  } kRows[] = {
      {"TreeModel", "functionName='regression'", 124},
      {"TreeModel", "", 108},
      {"MiningModel", "functionName='classification'", 125},
  };
  for (const auto& row : kRows) {
    Pmml pmml;
    pmml.fields = "<DataField name='new'/>";
    pmml.schema = "<MiningField name='new'/>";
    pmml.model_tag = row.tag;
    pmml.model_attributes = row.attributes;
    EXPECT_EQ(Add(Combiner(), pmml, {"South"}), MCStatus(row.status, false));
    EXPECT_EQ(Output(), before);
    EXPECT_EQ(Combiner().GetNModels(), 1);
  }
}

TEST_F(CombinerIntake, AFirstModelThatIsRefusedLeavesAnEmptyDocument) {
  const std::string files[] = {
      Pmml{"4.1", "", "", "", "MiningModel"}.Text(),
      Pmml{"4.1", "", "", "", "TreeModel", ""}.Text(),
      "<PMML><DataDictionary/></PMML>",
      "<PMML/>",
      "<NotPMML/>",
  };
  const int statuses[] = {125, 108, 108, 108, 108};
  for (std::size_t i = 0; i < std::size(files); ++i) {
    OwnedCombiner combiner(list_);
    EXPECT_EQ(combiner.AddModel(Write("first.pmml", files[i]), {"North"}),
              MCStatus(statuses[i], false))
        << files[i];
    bool created = true;
    const DOMDocument* document = combiner.CreateEmptyMiningModel(created);
    EXPECT_FALSE(created);
    EXPECT_TRUE(Add(combiner, Pmml(), {"South"}).IsOK()) << "later models add nothing";
    EXPECT_EQ(document->getFirstChild(), nullptr);
    EXPECT_EQ(combiner.GetNModels(), 0);
  }
}

TEST_F(CombinerIntake, ALaterFileWithoutAModelMergesItsDictionary) {
  ASSERT_TRUE(Add(Combiner(), Pmml(), {"North"}).IsOK());
  const std::string text = "<PMML><DataDictionary><DataField name='new'/></DataDictionary></PMML>";
  EXPECT_TRUE(Combiner().AddModel(Write("b.pmml", text), {"South"}).IsOK());
  EXPECT_EQ(Combiner().GetNModels(), 1);
  const auto names = combiner_test::ChildAttributes(
      FindElement(Combiner().Document(), "DataDictionary"), "DataField", "name");
  EXPECT_EQ(names, (std::vector<std::string>{"x", "region", "new"}));
  EXPECT_TRUE(Combiner().AddModel(Write("c.pmml", "<other/>"), {"South"}).IsOK());
  EXPECT_EQ(Combiner().GetNModels(), 1);
}

TEST_F(CombinerIntake, GetNModelsCountsSegmentsNotCalls) {
  EXPECT_EQ(Combiner().GetNModels(), 0);
  for (int i = 1; i <= 3; ++i) {
    EXPECT_TRUE(Add(Combiner(), Pmml(), {"North"}).IsOK());
    EXPECT_EQ(Combiner().GetNModels(), i);
    EXPECT_EQ(Combiner().AddModel(PathOf("missing.pmml"), {"North"}).GetCode(), 104);
    EXPECT_EQ(Combiner().GetNModels(), i);
  }
}

TEST_F(CombinerIntake, AFirstModelWithAnEmptyFunctionNameGivesNoSegmentation) {
  Pmml pmml;
  pmml.model_attributes = "functionName=''";
  EXPECT_TRUE(Add(Combiner(), pmml, {"North"}).IsOK());
  EXPECT_EQ(Output(),
            "<PMML version=\"4.1\"><Header copyright=\"us\"/><DataDictionary><DataField "
            "dataType=\"double\" name=\"x\" optype=\"continuous\"/></DataDictionary></PMML>");
  EXPECT_EQ(Combiner().GetNModels(), 0);
}

TEST_F(CombinerIntake, ParseSplitModelXMLTellsFirstFromLater) {
  const MCXMLReadWrite reader;
  EXPECT_TRUE(Combiner().ParseSplitModelXML(nullptr, reader, {"North"}).IsOK());
  EXPECT_TRUE(Combiner().ParseSplitModelXML(Parse(Pmml().Text()), reader, {"North"}).IsOK());
  Pmml second;
  second.header = "<Header copyright='them'/>";
  EXPECT_TRUE(Combiner().ParseSplitModelXML(Parse(second.Text()), reader, {"South"}).IsOK());
  EXPECT_EQ(Combiner().GetNModels(), 2);
  EXPECT_EQ(AttributeOf(FindElement(Combiner().Document(), "Header"), "copyright"), "us");
  second.model_attributes = "functionName='regression'";
  EXPECT_EQ(Combiner().ParseSplitModelXML(Parse(second.Text()), reader, {"South"}).GetCode(), 124);
  EXPECT_TRUE(Combiner().GetStatus().IsOK()) << "the stored status is AddModel's and Export's";
}

TEST_F(CombinerIntake, TheDriversDoNothingWithoutTheirArguments) {
  DOMDocument* source = Parse(Pmml().Text());
  EXPECT_TRUE(Combiner().FillCommonToMiningModel(source, {"North"}).IsOK()) << "no document";
  EXPECT_TRUE(Combiner().MergeModelToMiningModel(source, {"North"}).IsOK()) << "no document";
  EXPECT_TRUE(Combiner().MergeModelToMiningModel(nullptr, {"North"}).IsOK());
  DOMDocument* document = Combiner().Document();
  EXPECT_TRUE(Combiner().FillCommonToMiningModel(nullptr, {"North"}).IsOK());
  EXPECT_TRUE(Combiner().MergeModelToMiningModel(source, {}).IsOK());
  EXPECT_EQ(document->getFirstChild(), nullptr);
  EXPECT_EQ(Combiner().GetNModels(), 0);
  EXPECT_TRUE(Combiner().FillCommonToMiningModel(source, {}).IsOK());
  EXPECT_NE(FindElement(document, "Segmentation"), nullptr);
  EXPECT_EQ(FindElement(document, "Segment"), nullptr) << "no values, no segment";
  EXPECT_EQ(Combiner().GetNModels(), 0);
}

TEST_F(CombinerIntake, ASecondFillOfOneDocumentAddsNothing) {
  ASSERT_TRUE(Add(Combiner(), Pmml(), {"North"}).IsOK());
  const std::string before = Output();
  Pmml other;
  other.model_attributes = "functionName='regression'";
  EXPECT_TRUE(Combiner().FillCommonToMiningModel(Parse(other.Text()), {"South"}).IsOK());
  EXPECT_EQ(Output(), before);
  other.model_tag = "MiningModel";
  EXPECT_TRUE(Combiner().FillCommonToMiningModel(Parse(other.Text()), {"South"}).IsOK());
  Pmml later;
  later.fields = combiner_test::Field("new", {"1"});
  EXPECT_TRUE(Add(Combiner(), later, {"South"}).IsOK())
      << "the functionName is still that of the first";
  EXPECT_EQ(Combiner().GetNModels(), 2) << "and the parts of the document are still known";
  EXPECT_EQ(combiner_test::ChildAttributes(FindElement(Combiner().Document(), "DataDictionary"),
                                           "DataField", "name"),
            (std::vector<std::string>{"x", "region", "new"}));
}

TEST_F(CombinerIntake, APlatformThatDoesNotStartIs103) {
  const std::string path = Write("a.pmml", Pmml());
  {
    const PlatformFaultScope fault(PlatformFault::kXMLException);
    EXPECT_EQ(Combiner().AddModel(path, {"North"}), MCStatus(103, false));
  }
  EXPECT_EQ(Combiner().GetStatus(), MCStatus(103, false));
  EXPECT_EQ(Combiner().GetDiagnostics().size(), 1U);
  EXPECT_TRUE(Combiner().AddModel(path, {"North"}).IsOK()) << "as if it had not been tried";
  EXPECT_EQ(Combiner().GetNModels(), 1);
}

TEST(CombinerWithoutDocument, TheDestructorDoesNotReleaseTheDocument) {
  const MCXMLReadWrite platform;
  DOMDocument* document = nullptr;
  {
    const FakeVarList list;
    MCXPrsUtil::MCXSplitPMMLCombiner combiner(list);
    bool created = false;
    document = combiner.CreateEmptyMiningModel(created);
    document->appendChild(document->createElement(u"alive"));
  }
  EXPECT_EQ(TextOf(document->getDocumentElement()), "<alive/>");
  document->release();
}

}  // namespace
