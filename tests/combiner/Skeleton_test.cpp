// The parts of a PMML document and the frame of the combined one.
#include "combiner/CombinerTest.h"

namespace {

using combiner_test::AttributeOf;
using combiner_test::FakeVarList;
using combiner_test::kOK;
using combiner_test::OwnedCombiner;
using combiner_test::TextOf;
using xercesc::DOMDocument;
using xercesc::DOMElement;
using xercesc::DOMNode;

class CombinerSkeleton : public combiner_test::CombinerTest {
 protected:
  FakeVarList list_;
  OwnedCombiner combiner_{list_};
};

TEST_F(CombinerSkeleton, GetPMMLFindsOnlyThatRoot) {
  EXPECT_EQ(TextOf(combiner_.GetPMML(Parse("<PMML a='1'/>"))), "<PMML a=\"1\"/>");
  EXPECT_NE(combiner_.GetPMML(Parse("<!-- c --><PMML/>")), nullptr);
  EXPECT_EQ(combiner_.GetPMML(Parse("<pmml/>")), nullptr);
  EXPECT_EQ(combiner_.GetPMML(Parse("<p:PMML xmlns:p='u'/>")), nullptr);
  EXPECT_EQ(combiner_.GetPMML(combiner_.Document()), nullptr) << "an empty document";
  EXPECT_EQ(combiner_.GetPMML(nullptr), nullptr);
}

TEST_F(CombinerSkeleton, GetStandardModelKnowsThirteenNames) {
  for (const char* name :
       {"MiningModel", "AssociationModel", "ClusteringModel", "GeneralRegressionModel",
        "NaiveBayesModel", "NeuralNetwork", "RegressionModel", "RuleSetModel", "SequenceModel",
        "SupportVectorMachineModel", "TextModel", "TimeSeriesModel", "TreeModel"}) {
    const std::string element = "<" + std::string(name) + "/>";
    EXPECT_EQ(
        TextOf(combiner_.GetStandardModel(ParseRoot("<PMML><Header/>" + element + "</PMML>"))),
        element);
  }
}

TEST_F(CombinerSkeleton, GetStandardModelSearchesNameByName) {
  const struct {
    const char* rule;
    const char* pmml;
    const char* found;
  } kRows[] = {
      {"MiningModel wins from behind", "<PMML><TreeModel/><MiningModel/></PMML>", "<MiningModel/>"},
      {"MiningModel wins from the front", "<PMML><MiningModel/><TreeModel/></PMML>",
       "<MiningModel/>"},
      {"the list decides", "<PMML><TreeModel/><TextModel/><RuleSetModel/></PMML>",
       "<RuleSetModel/>"},
      {"the first of two alike", "<PMML><TreeModel n='1'/><TreeModel n='2'/></PMML>",
       "<TreeModel n=\"1\"/>"},
      {"an unknown name", "<PMML><Scorecard/></PMML>", "(null)"},
      {"no children only descendants", "<PMML><Extension><TreeModel/></Extension></PMML>",
       "(null)"},
      {"nothing", "<PMML/>", "(null)"},
  };
  for (const auto& row : kRows) {
    EXPECT_EQ(TextOf(combiner_.GetStandardModel(ParseRoot(row.pmml))), row.found) << row.rule;
  }
  EXPECT_EQ(combiner_.GetStandardModel(nullptr), nullptr);
}

TEST_F(CombinerSkeleton, DictionariesAreFirstChildren) {
  const DOMElement* pmml = ParseRoot(
      "<PMML><DataDictionary n='1'/><DataDictionary n='2'/><TransformationDictionary "
      "n='3'/></PMML>");
  EXPECT_EQ(TextOf(combiner_.GetDataDict(pmml)), "<DataDictionary n=\"1\"/>");
  EXPECT_EQ(TextOf(combiner_.GetTransDict(pmml)), "<TransformationDictionary n=\"3\"/>");
  const DOMElement* empty = ParseRoot("<PMML/>");
  EXPECT_EQ(combiner_.GetDataDict(empty), nullptr);
  EXPECT_EQ(combiner_.GetTransDict(empty), nullptr);
  EXPECT_EQ(combiner_.GetDataDict(nullptr), nullptr);
  EXPECT_EQ(combiner_.GetTransDict(nullptr), nullptr);
}

TEST_F(CombinerSkeleton, GetMiningSchemaNeedsACombinedDocument) {
  const DOMElement* model = ParseRoot("<TreeModel><MiningSchema/></TreeModel>");
  EXPECT_EQ(combiner_.GetMiningSchema(model), nullptr);
  combiner_.Document();
  EXPECT_EQ(TextOf(combiner_.GetMiningSchema(model)), "<MiningSchema/>");
  EXPECT_EQ(combiner_.GetMiningSchema(ParseRoot("<TreeModel/>")), nullptr);
  EXPECT_EQ(combiner_.GetMiningSchema(nullptr), nullptr);
}

TEST_F(CombinerSkeleton, IsMiningModelRefusesThatNameOnly) {
  EXPECT_EQ(combiner_.IsMiningModel(nullptr).GetCode(), kOK);
  EXPECT_EQ(combiner_.IsMiningModel(ParseRoot("<TreeModel/>")).GetCode(), kOK);
  const MCCommon::MCStatus refused = combiner_.IsMiningModel(ParseRoot("<MiningModel/>"));
  EXPECT_EQ(refused, MCCommon::MCStatus(125, false));
}

TEST_F(CombinerSkeleton, CreateEmptyMiningModelCreatesOnce) {
  bool created = false;
  const DOMDocument* first = combiner_.CreateEmptyMiningModel(created);
  EXPECT_TRUE(created);
  ASSERT_NE(first, nullptr);
  EXPECT_EQ(first->getDocumentElement(), nullptr);
  EXPECT_EQ(first->getDoctype(), nullptr);
  EXPECT_EQ(combiner_.CreateEmptyMiningModel(created), first);
  EXPECT_FALSE(created);
}

TEST_F(CombinerSkeleton, CopyPMMLMakesTheDocumentElement) {
  DOMDocument* document = combiner_.Document();
  const DOMElement* pmml = ParseRoot(
      "<PMML version='4.3' xmlns='http://www.dmg.org/PMML-4_3' xmlns:xsi='urn:x' "
      "xsi:schemaLocation='a b'><Header/></PMML>");
  const DOMElement* copy = combiner_.CopyPMML(pmml, false);
  EXPECT_EQ(copy, document->getDocumentElement());
  EXPECT_EQ(copy->getFirstChild(), nullptr);
  EXPECT_EQ(AttributeOf(copy, "version"), "4.3");
  EXPECT_EQ(AttributeOf(copy, "xmlns"), "http://www.dmg.org/PMML-4_3");
  EXPECT_EQ(AttributeOf(copy, "xsi:schemaLocation"), "a b");
  EXPECT_EQ(combiner_.CopyPMML(pmml, false), nullptr) << "a document has one root";
}

TEST_F(CombinerSkeleton, CopyPMMLDeepTakesTheChildren) {
  combiner_.Document();
  EXPECT_EQ(TextOf(combiner_.CopyPMML(ParseRoot("<PMML><Header>h</Header></PMML>"), true)),
            "<PMML><Header>h</Header></PMML>");
}

TEST_F(CombinerSkeleton, CopiesAppendBehindWhatIsThere) {
  combiner_.Document();
  DOMElement* root = combiner_.CopyPMML(ParseRoot("<PMML/>"), false);
  const DOMElement* source = ParseRoot(
      "<PMML><Header copyright='c'><Application name='a'/></Header>"
      "<DataDictionary><DataField name='x'/></DataDictionary>"
      "<TreeModel><MiningSchema><MiningField name='x'/></MiningSchema></TreeModel></PMML>");
  const DOMNode* header = combiner_.CopyHeader(source, root, true);
  EXPECT_EQ(header, root->getLastChild());
  const DOMNode* dictionary = combiner_.CopyDataDict(source, root, true);
  EXPECT_EQ(dictionary, root->getLastChild());
  const DOMNode* schema =
      combiner_.CopyMiningSchema(combiner_.GetStandardModel(source), root, true);
  EXPECT_EQ(schema, root->getLastChild());
  EXPECT_EQ(TextOf(root),
            "<PMML><Header copyright=\"c\"><Application name=\"a\"/></Header>"
            "<DataDictionary><DataField name=\"x\"/></DataDictionary>"
            "<MiningSchema><MiningField name=\"x\"/></MiningSchema></PMML>");
}

TEST_F(CombinerSkeleton, CopiesMayBeShallow) {
  combiner_.Document();
  DOMElement* root = combiner_.CopyPMML(ParseRoot("<PMML/>"), false);
  const DOMElement* source =
      ParseRoot("<PMML><Header copyright='c'><Application name='a'/></Header></PMML>");
  EXPECT_EQ(TextOf(combiner_.CopyHeader(source, root, false)), "<Header copyright=\"c\"/>");
}

TEST_F(CombinerSkeleton, CopiesOfNothingAreNull) {
  DOMDocument* document = combiner_.Document();
  const DOMElement* empty = ParseRoot("<PMML/>");
  const DOMElement* full =
      ParseRoot("<PMML><Header/><DataDictionary/><TreeModel><MiningSchema/></TreeModel></PMML>");
  const DOMElement* model = combiner_.GetStandardModel(full);
  EXPECT_EQ(combiner_.CopyPMML(nullptr, true), nullptr);
  for (const DOMElement* source : {empty, static_cast<const DOMElement*>(nullptr)}) {
    EXPECT_EQ(combiner_.CopyHeader(source, document, true), nullptr);
    EXPECT_EQ(combiner_.CopyDataDict(source, document, true), nullptr);
    EXPECT_EQ(combiner_.CopyMiningSchema(source, document, true), nullptr);
  }
  EXPECT_EQ(combiner_.CopyHeader(full, nullptr, true), nullptr);
  EXPECT_EQ(combiner_.CopyDataDict(full, nullptr, true), nullptr);
  EXPECT_EQ(combiner_.CopyMiningSchema(model, nullptr, true), nullptr);
}

TEST_F(CombinerSkeleton, CopiesWithoutACombinedDocumentAreNull) {
  DOMElement* full =
      ParseRoot("<PMML><Header/><DataDictionary/><TreeModel><MiningSchema/></TreeModel></PMML>");
  EXPECT_EQ(combiner_.CopyPMML(full, true), nullptr);
  EXPECT_EQ(combiner_.CopyHeader(full, full, true), nullptr);
  EXPECT_EQ(combiner_.CopyDataDict(full, full, true), nullptr);
  EXPECT_EQ(combiner_.CopyMiningSchema(full, full, true), nullptr);
}

TEST_F(CombinerSkeleton, CopiesToAnotherDocumentAreRefused) {
  combiner_.Document();
  DOMElement* full = ParseRoot("<PMML><Header/></PMML>");
  EXPECT_EQ(combiner_.CopyHeader(full, full, true), nullptr);
  EXPECT_EQ(TextOf(full), "<PMML><Header/></PMML>");
}

TEST_F(CombinerSkeleton, CreateMiningModelWritesTheStoredFunctionName) {
  DOMDocument* document = combiner_.Document();
  EXPECT_EQ(combiner_.CreateMiningModel(document, ""), nullptr);
  EXPECT_EQ(combiner_.CreateMiningModel(nullptr, "regression"), nullptr);
  EXPECT_EQ(TextOf(combiner_.CreateMiningModel(document, "regression")),
            "<MiningModel functionName=\"\"/>")
      << "no first model was added yet";
}

TEST_F(CombinerSkeleton, CreateSegmentationSelectsTheFirst) {
  EXPECT_EQ(combiner_.CreateSegmentation(nullptr), nullptr);
  EXPECT_EQ(combiner_.CreateSegmentation(ParseRoot("<a/>")), nullptr) << "no document";
  EXPECT_EQ(TextOf(combiner_.CreateSegmentation(combiner_.Document())),
            "<Segmentation multipleModelMethod=\"selectFirst\"/>");
}

TEST_F(CombinerSkeleton, InitStandardPMMLModelsAgainChangesNoSearch) {
  combiner_.InitStandardPMMLModels();
  EXPECT_EQ(TextOf(combiner_.GetStandardModel(ParseRoot("<PMML><TreeModel/></PMML>"))),
            "<TreeModel/>");
}

}  // namespace
