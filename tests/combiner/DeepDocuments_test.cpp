// Models that are nested very deep, or very wide, on a small stack: copied, merged, told of and
// refused where they cannot be written.
#include <gmock/gmock.h>

#include "combiner/CombinerTest.h"
#include "combiner/DirectCopy.h"
#include "mcxprsutil/MCXDOMHelpers.h"
#include "support/Many.h"
#include "support/SmallStack.h"
#include "xml/XercesPtr.h"

namespace {

using combiner_test::ChildAttributes;
using combiner_test::FakeVarList;
using combiner_test::FindElement;
using combiner_test::OwnedCombiner;
using combiner_test::Pmml;
using combiner_test::ReadFile;
using MCCommon::MCStatus;
using MCXPrsUtil::CopyNode;
using MCXPrsUtil::XercesPtr;
using test_support::kSmallStack;
using test_support::RunOnStackOf;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using xercesc::DOMDocument;
using xercesc::DOMElement;

using Strings = std::vector<std::string>;

const int kMany = test_support::Many();

// Too many for the small stack, whatever a recursion takes for one of them; there are several of
// these in a document.
constexpr int kLevelsOfEach = 8'000;

std::string Repeat(const std::string& text, int times) {
  std::string all;
  for (int i = 0; i < times; ++i) all += text;
  return all;
}

std::string Deep(int levels, const std::string& inside = "") {
  return Repeat("<Extension>", levels) + inside + Repeat("</Extension>", levels);
}

// A model with `deep` in every part of it.
Pmml With(const std::string& deep, const std::string& values) {
  Pmml pmml;
  pmml.header = "<Header>" + deep + "</Header>" + deep;
  pmml.fields = deep + "<DataField name='x' optype='categorical' dataType='string'>" + deep +
                values + "<Interval closure='openOpen'>" + deep + "</Interval></DataField>";
  pmml.transformations = "<TransformationDictionary>" + deep + "<DerivedField name='d'>" + deep +
                         "</DerivedField></TransformationDictionary>";
  pmml.schema = deep + "<MiningField name='x'>" + deep + "</MiningField>";
  pmml.body = "<Node>" + deep + "</Node>" + deep;
  return pmml;
}

class DeepDocuments : public combiner_test::CombinerTest {
 protected:
  DeepDocuments() { list_.Add("region", {"North", "South"}); }

  FakeVarList list_;
};

TEST_F(DeepDocuments, AreMergedAndNotWrittenWhereTheStackIsTooSmall) {
  const std::string deep = Deep(kLevelsOfEach);
  const std::string north =
      Write("north.pmml", With(deep, "<Value value='1'>" + deep + "</Value>"));
  const std::string south =
      Write("south.pmml", With(deep, "<Value value='2'>" + deep + "</Value>"));
  RunOnStackOf(kSmallStack, [&] {
    OwnedCombiner combiner(list_);
    EXPECT_TRUE(combiner.AddModel(north, {"North"}).IsOK());
    EXPECT_TRUE(combiner.AddModel(south, {"South"}).IsOK());
    EXPECT_EQ(combiner.GetNModels(), 2);
    EXPECT_EQ(ChildAttributes(FindElement(combiner.Document(), "DataField"), "Value", "value"),
              (Strings{"1", "2"}));
    EXPECT_EQ(combiner.ExportMiningModel(PathOf("out.pmml")), MCStatus(118, false));
  });
}

TEST_F(DeepDocuments, AreWrittenWhereTheStackIsLargeEnough) {
  const std::string deep = Deep(kLevelsOfEach);
  OwnedCombiner combiner(list_);
  ASSERT_TRUE(combiner.AddModel(Write("a.pmml", With(deep, "")), {"North"}).IsOK());
  RunOnStackOf(std::size_t{64} * 1024 * 1024,
               [&] { EXPECT_TRUE(combiner.ExportMiningModel(PathOf("out.pmml")).IsOK()); });
  EXPECT_THAT(ReadFile(PathOf("out.pmml")), HasSubstr(Repeat("<Extension>", kLevelsOfEach - 1)));
}

TEST_F(DeepDocuments, AHundredThousandLevelsAreToldAndRefusedWhenWritten) {
  Pmml pmml;
  pmml.body = Deep(kMany);
  const std::string file = Write("a.pmml", pmml);
  RunOnStackOf(kSmallStack, [&] {
    OwnedCombiner combiner(list_);
    EXPECT_TRUE(combiner.AddModel(file, {"North"}).IsOK());
    EXPECT_TRUE(combiner.AddModel(file, {"South"}).IsOK());
    EXPECT_THAT(combiner.GetDiagnostics(), Contains(HasSubstr("nested deeper than level 10000")));
    EXPECT_EQ(combiner.ExportMiningModel(PathOf("out.pmml")), MCStatus(118, false));
  });
}

TEST_F(DeepDocuments, AWideModelIsMergedAndWritten) {
  Pmml pmml;
  pmml.body = Repeat("<Node/>", kMany);
  const std::string file = Write("a.pmml", pmml);
  RunOnStackOf(kSmallStack, [&] {
    OwnedCombiner combiner(list_);
    EXPECT_TRUE(combiner.AddModel(file, {"North"}).IsOK());
    EXPECT_TRUE(combiner.ExportMiningModel(PathOf("out.pmml")).IsOK());
  });
  EXPECT_THAT(ReadFile(PathOf("out.pmml")), HasSubstr(Repeat("<Node/>", kMany)));
}

// The XML library calls itself for every level of an entity.
TEST_F(DeepDocuments, LevelsWithinAnEntityKeepTheModelOut) {
  Pmml pmml;
  pmml.body = "&e;";
  const std::string file =
      Write("a.pmml", "<!DOCTYPE PMML [<!ENTITY e '" + Deep(kMany) + "'>]>" + pmml.Text());
  RunOnStackOf(kSmallStack, [&] {
    OwnedCombiner combiner(list_);
    EXPECT_EQ(combiner.AddModel(file, {"North"}), MCStatus(104, false));
    EXPECT_THAT(combiner.GetDiagnostics(),
                ElementsAre(HasSubstr("the elements of an entity are nested too deep")));
  });
}

// A name of XML 1.1, which the combined document does not have: the copy is given up at the bottom
// of the tree, and all of it has to be released.
constexpr char kNameOfXml11[] = "<\xF0\x90\x80\x80/>";

TEST_F(DeepDocuments, ACopyThatIsGivenUpIsReleased) {
  RunOnStackOf(kSmallStack, [&] {
    const auto* source = ParseRoot("<?xml version='1.1'?><a>" +
                                   Deep(kMany, "<b/>text" + std::string(kNameOfXml11)) + "</a>");
    const XercesPtr<DOMDocument> target(
        xercesc::DOMImplementationRegistry::getDOMImplementation(u"Core")->createDocument(
            nullptr, nullptr, nullptr, xercesc::XMLPlatformUtils::fgMemoryManager));
    EXPECT_EQ(CopyNode(*target, *source, true), nullptr);
    EXPECT_EQ(target->getFirstChild(), nullptr);
  });
}

TEST_F(DeepDocuments, AModelThatCannotBeCopiedLeavesItsSegmentEmpty) {
  Pmml pmml;
  pmml.body = Deep(kMany, kNameOfXml11);
  const std::string file = Write("a.pmml", "<?xml version='1.1'?>" + pmml.Text());
  RunOnStackOf(kSmallStack, [&] {
    OwnedCombiner combiner(list_);
    EXPECT_TRUE(combiner.AddModel(file, {"North"}).IsOK());
    const DOMElement* segment = FindElement(combiner.Document(), "Segment");
    ASSERT_NE(segment, nullptr);
    EXPECT_EQ(MCXPrsUtil::GetFirstChildElmt(*segment, "TreeModel"), nullptr);
  });
}

// Releasing is deep and wide, and leaves what is around alone.
TEST_F(DeepDocuments, ATreeIsReleasedAsAWhole) {
  DOMDocument& document = *Parse("<a>" + Deep(3, "<b x='1'>t<!--c--></b><b/>") + "<c/></a>");
  DOMElement& root = *document.getDocumentElement();
  auto* tree = static_cast<DOMElement*>(root.removeChild(root.getFirstChild()));
  MCXPrsUtil::ReleaseTree(tree);
  EXPECT_EQ(combiner_test::TextOf(&root), "<a><c/></a>");
  MCXPrsUtil::ReleaseTree(document.createTextNode(u"alone"));
}

struct NestingCase {
  const char* rule;
  std::string fields;
  bool is_taken;
};

std::string NestedFields(int levels, const std::string& inside = "") {
  std::string text;
  for (int i = 0; i < levels; ++i) text += "<DataField name='f" + std::to_string(i) + "'>";
  return text + inside + Repeat("</DataField>", levels);
}

std::string NestedValues(int levels) {
  std::string text;
  for (int i = 0; i < levels; ++i) text += "<Value value='" + std::to_string(i) + "'>";
  return text + Repeat("</Value>", levels);
}

// What a merge records and copies would grow with the square of the levels.
TEST_F(DeepDocuments, FieldsAndValuesMayBeNestedSixteenLevelsDeep) {
  const NestingCase cases[] = {
      {"no fields", "", true},
      {"sixteen fields", NestedFields(16), true},
      {"seventeen fields", NestedFields(17), false},
      {"fifteen values in a field", NestedFields(1, NestedValues(15)), true},
      {"sixteen values in a field", NestedFields(1, NestedValues(16)), false},
      {"values between fields", NestedFields(9, NestedValues(8)), false},
      {"other elements between", NestedFields(8, Deep(50, NestedFields(8))), true},
      {"other elements between too many", NestedFields(8, Deep(50, NestedFields(9))), false},
      {"many beside each other", Repeat(NestedFields(16), 20), true},
      {"too many behind others", Repeat(NestedFields(16), 3) + NestedFields(17), false},
      {"too many before others", NestedFields(17) + NestedFields(1), false},
      {"a hundred thousand", NestedFields(kMany, NestedValues(kMany)), false},
  };
  for (const NestingCase& c : cases) {
    SCOPED_TRACE(c.rule);
    Pmml pmml;
    pmml.fields = c.fields;
    const std::string file = Write("a.pmml", pmml);
    RunOnStackOf(kSmallStack, [&] {
      OwnedCombiner combiner(list_);
      const MCStatus status = combiner.AddModel(file, {"North"});
      EXPECT_EQ(status, c.is_taken ? MCStatus() : MCStatus(104, false));
      EXPECT_EQ(combiner.GetNModels(), c.is_taken ? 1 : 0);
      if (c.is_taken) return;
      EXPECT_THAT(combiner.GetDiagnostics(),
                  ElementsAre(file + ": the model was kept out: its DataDictionary nests DataField "
                                     "and Value elements deeper than 16 levels."));
      // As with every file that cannot be read, there is still room for a first model.
      EXPECT_TRUE(Add(combiner, Pmml(), {"North"}).IsOK());
      EXPECT_EQ(combiner.GetNModels(), 1);
    });
  }
}

TEST_F(DeepDocuments, ALaterFileThatNestsThemChangesNothing) {
  OwnedCombiner combiner(list_);
  ASSERT_TRUE(Add(combiner, Pmml(), {"North"}).IsOK());
  const std::string before = combiner_test::TextOf(combiner.Document());
  Pmml pmml;
  pmml.fields = NestedFields(17);
  EXPECT_EQ(Add(combiner, pmml, {"South"}), MCStatus(104, false));
  EXPECT_EQ(combiner_test::TextOf(combiner.Document()), before);
}

}  // namespace
