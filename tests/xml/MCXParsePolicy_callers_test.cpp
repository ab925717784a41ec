// The policy holds for everything in the library that parses.
#include <filesystem>
#include <memory>
#include <sstream>
#include <string>

#include "mccommon/MCVarList.h"
#include "mcxprsutil/MCDataModelParser.h"
#include "mcxprsutil/MCPMMLParser.h"
#include "mcxprsutil/MCSettingsParser.h"
#include "mcxprsutil/MCXSplitPMMLCombiner.h"
#include "xml/PolicyCheck.h"

namespace {

using MCCommon::MCStatus;
using MCMTD_NAMESPACE::IMCVariable;
using MCMTD_NAMESPACE::MCVarList;
using MCXPrsUtil::MCDataModelParser;
using MCXPrsUtil::MCPMMLParser;
using MCXPrsUtil::MCSettingsParser;
using MCXPrsUtil::MCXMLReadWrite;
using MCXPrsUtil::MCXParsePolicy;
using MCXPrsUtil::MCXSplitPMMLCombiner;
using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using xml_test::PolicyScope;
using xml_test::ScratchFolder;

const MCStatus kParseFailed(104, false);

const std::string kDictionary =
    "<DataDictionary><DataField name='x' optype='continuous' dataType='double'/></DataDictionary>";

std::string Document(const std::string& part) { return "<PMML>" + kDictionary + part + "</PMML>"; }

const std::string kTooDeep = Document("<b><c><d/></c></b>");

MCXParsePolicy Shallow() {
  MCXParsePolicy policy;
  policy.max_depth = 3;
  return policy;
}

const char kTooDeepMessage[] =
    ": the document is nested deeper than the parse policy allows (max_depth = 3)";

template <class Reader>
MCStatus Parse(Reader& reader, const std::string& text) {
  std::istringstream in(text);
  return reader.ParseToDOM(in);
}

// A reader keeps its parser; the policy counts all the same.
TEST(MCXParsePolicyCallers, PmmlReaderAsksAtEveryParse) {
  MCPMMLParser reader;
  ASSERT_TRUE(Parse(reader, kTooDeep).IsOK());
  {
    const PolicyScope scope(Shallow());
    EXPECT_EQ(Parse(reader, kTooDeep), kParseFailed);
    EXPECT_THAT(reader.GetXercesMessage(), EndsWith(kTooDeepMessage));
    EXPECT_EQ(reader.GetStatus(), kParseFailed);
    EXPECT_EQ(reader.GetRootElement(), nullptr);
    MCVarList list;
    EXPECT_EQ(reader.FillVarList(list, {}, false), kParseFailed);
    EXPECT_EQ(list.Size(), 0u);

    ASSERT_TRUE(Parse(reader, Document("<b/>")).IsOK()) << "one refusal does not spoil the next";
    EXPECT_EQ(reader.GetXercesMessage(), "");
    EXPECT_TRUE(reader.FillVarList(list, {}, false).IsOK());
    EXPECT_EQ(list.Size(), 1u);
  }
  EXPECT_TRUE(Parse(reader, kTooDeep).IsOK());
}

TEST(MCXParsePolicyCallers, ReaderMadeUnderAPolicyIsFreeLater) {
  std::unique_ptr<MCPMMLParser> reader;
  {
    const PolicyScope scope(Shallow());
    reader = std::make_unique<MCPMMLParser>();
    EXPECT_EQ(Parse(*reader, kTooDeep), kParseFailed);
  }
  EXPECT_TRUE(Parse(*reader, kTooDeep).IsOK());
}

TEST(MCXParsePolicyCallers, SettingsReader) {
  const std::string settings =
      Document("<MiningBuildTask><Extension><Parameters/></Extension></MiningBuildTask>");
  MCSettingsParser reader;
  ASSERT_TRUE(Parse(reader, settings).IsOK());
  const PolicyScope scope(Shallow());
  EXPECT_EQ(Parse(reader, settings), kParseFailed);
  EXPECT_THAT(reader.GetXercesMessage(), EndsWith(kTooDeepMessage));
  std::string value;
  EXPECT_EQ(reader.GetParameter("x", value), kParseFailed);
}

TEST(MCXParsePolicyCallers, DataModelReader) {
  const std::string model =
      "<DataModel><Fields><Field name='x' storage='real' measure='continuous'><Values><Value/>"
      "</Values></Field></Fields></DataModel>";
  MCDataModelParser reader;
  ASSERT_TRUE(reader.ParseToDOM(model).IsOK());
  const PolicyScope scope(Shallow());
  EXPECT_EQ(reader.ParseToDOM(model), kParseFailed);
  EXPECT_EQ(reader.GetStatus(), kParseFailed);
  EXPECT_TRUE(reader.ParseToDOM("<DataModel><Fields/></DataModel>").IsOK());
}

TEST(MCXParsePolicyCallers, CombinerKeepsTheModelOut) {
  const ScratchFolder folder;
  const std::string file = folder.File("a.pmml");
  xml_test::WriteFile(file, Document("<TreeModel functionName='regression'><MiningSchema/>"
                                     "<Node><Node/></Node></TreeModel>"));
  const MCXMLReadWrite platform;
  MCVarList list;
  list.AddCatVar("s", "", std::vector<std::string>{"1", "2"}, IMCVariable::kRoleInput);
  MCXSplitPMMLCombiner combiner(list);
  {
    const PolicyScope scope(Shallow());
    EXPECT_EQ(combiner.AddModel(file, {"1"}), kParseFailed);
    EXPECT_THAT(combiner.GetDiagnostics(), ElementsAre(HasSubstr("max_depth = 3")));
    EXPECT_EQ(combiner.GetNModels(), 0);
  }
  EXPECT_TRUE(combiner.AddModel(file, {"1"}).IsOK());
  EXPECT_TRUE(combiner.ExportMiningModel(folder.File("out.pmml")).IsOK());
}

// What the sample data holds is far from the limits.
TEST(MCXParsePolicyCallers, TheSampleDataIsReadHardened) {
  const PolicyScope scope(MCXParsePolicy::Hardened());
  int n_read = 0;
  for (const auto& entry : std::filesystem::recursive_directory_iterator(MCX_EXAMPLE_DATA)) {
    const std::string kind = entry.path().extension().string();
    if (kind != ".pmml" && kind != ".xml") continue;
    MCXMLReadWrite reader;
    EXPECT_TRUE(reader.ParseToDOM(entry.path().string()).IsOK()) << reader.GetXercesMessage();
    EXPECT_TRUE(reader.IsWellFormed()) << entry.path();
    ++n_read;
  }
  EXPECT_GE(n_read, 15);
}

TEST(MCXParsePolicyCallers, LimitsCanBeTakenOneByOne) {
  MCXParsePolicy policy = MCXParsePolicy::Hardened();
  policy.max_document_bytes = 8 * 1024 * 1024;
  policy.doctype = MCXParsePolicy::Doctype::kAll;
  const PolicyScope scope(policy);
  EXPECT_EQ(MCXParsePolicy::GetForProcess(), policy);
  MCPMMLParser reader;
  EXPECT_TRUE(Parse(reader, "<!DOCTYPE PMML>" + Document("")).IsOK());
  EXPECT_EQ(Parse(reader, Document(std::string(8 * 1024 * 1024, ' '))), kParseFailed);
  EXPECT_THAT(reader.GetXercesMessage(), HasSubstr("max_document_bytes = 8388608"));
}

}  // namespace
