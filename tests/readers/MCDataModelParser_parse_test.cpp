// ParseToDOM and GetStatus of the data model reader.
#include <gtest/gtest.h>

#include <memory>
#include <ostream>
#include <string>
#include <type_traits>

#include "DataModelText.h"

namespace {

using MCCommon::MCStatus;
using MCXPrsUtil::MCDataModelParser;
using Texts = std::vector<std::string>;

const std::string kField = ModelField("real", "continuous");
const Texts kFieldCalls = {"AddContVar(f||role 0)"};

TEST(MCDataModelParser, HoldsOnePointerAndIsPolymorphicAndNotCopied) {
  EXPECT_EQ(sizeof(MCDataModelParser), 2 * sizeof(void*));
  EXPECT_TRUE(std::has_virtual_destructor_v<MCDataModelParser>);
  EXPECT_FALSE(std::is_copy_constructible_v<MCDataModelParser>);
  EXPECT_FALSE(std::is_copy_assignable_v<MCDataModelParser>);
}

TEST(MCDataModelParser, StartsWithoutDocument) {
  const MCDataModelParser reader;
  EXPECT_EQ(reader.GetStatus(), MCStatus());
  RecordingVarList list;
  EXPECT_EQ(reader.FillVarList(list, false, false, 0), MCStatus(107, false));
  EXPECT_EQ(reader.GetStatus(), MCStatus()) << "a fill stores nothing";
  EXPECT_TRUE(list.calls.empty());
}

struct ModelParseCase {
  const char* rule;
  std::string text;
  int code;
  friend void PrintTo(const ModelParseCase& test, std::ostream* out) { *out << test.rule; }
};

class ModelParse : public testing::TestWithParam<ModelParseCase> {};

TEST_P(ModelParse, GivesAndStoresTheStatus) {
  MCDataModelParser reader;
  const MCStatus status = reader.ParseToDOM(GetParam().text);
  EXPECT_EQ(status, MCStatus(GetParam().code, false)) << GetParam().rule;
  EXPECT_EQ(reader.GetStatus(), status);

  RecordingVarList list;
  EXPECT_EQ(reader.FillVarList(list, true, true, 2), status) << "told again by the fill";
  EXPECT_TRUE(status.IsOK() || list.calls.empty());
}

INSTANTIATE_TEST_SUITE_P(
    Accepted, ModelParse,
    testing::Values(ModelParseCase{"one field", DataModel(kField), 0},
                    ModelParseCase{"no field", "<DataModel><Fields/></DataModel>", 0},
                    ModelParseCase{"Fields after other nodes",
                                   "<DataModel> x<!-- c --><Header/><Fields/></DataModel>", 0},
                    ModelParseCase{"a second Fields is not looked at",
                                   "<DataModel><Fields/><Fields><Field/></Fields></DataModel>", 0},
                    ModelParseCase{"a default namespace changes no name",
                                   "<DataModel xmlns='u'><Fields/></DataModel>", 0},
                    ModelParseCase{
                        "a byte order mark, a declaration, a document type",
                        "\xEF\xBB\xBF<?xml version='1.0' encoding='UTF-8'?><!DOCTYPE DataModel "
                        "[<!ENTITY e 'x'>]><DataModel><Fields/></DataModel>",
                        0}));

INSTANTIATE_TEST_SUITE_P(
    Refused, ModelParse,
    testing::Values(
        ModelParseCase{"another root", "<PMML><Fields/></PMML>", 105},
        ModelParseCase{"a root in lower case", "<datamodel><Fields/></datamodel>", 105},
        ModelParseCase{"a longer name", "<DataModels><Fields/></DataModels>", 105},
        ModelParseCase{"a prefixed root", "<p:DataModel xmlns:p='u'><Fields/></p:DataModel>", 105},
        ModelParseCase{"no Fields", "<DataModel/>", 113},
        ModelParseCase{"Fields in lower case", "<DataModel><fields/></DataModel>", 113},
        ModelParseCase{"Fields that are no child", "<DataModel><x><Fields/></x></DataModel>", 113},
        ModelParseCase{"Field without Fields", "<DataModel>" + kField + "</DataModel>", 113}));

// What could be read of a malformed document is judged first.
INSTANTIATE_TEST_SUITE_P(
    Malformed, ModelParse,
    testing::Values(
        ModelParseCase{"no text", "", 105}, ModelParseCase{"blanks", " \n ", 105},
        ModelParseCase{"no XML", "name,age\nx,1\n", 105},
        ModelParseCase{"a file name", "model.xml", 105},
        ModelParseCase{"a root that is not finished", "<DataMod", 105},
        ModelParseCase{"another root, unclosed", "<PMML><Fields/>", 105},
        ModelParseCase{"an unknown encoding",
                       "<?xml version='1.0' encoding='no-such'?>" + DataModel(kField), 105},
        ModelParseCase{"malformed before Fields", "<DataModel><x></y><Fields/></DataModel>", 113},
        ModelParseCase{"an unclosed root without Fields", "<DataModel>", 113},
        ModelParseCase{"an unclosed root", "<DataModel><Fields/>", 104},
        ModelParseCase{"unclosed Fields", "<DataModel><Fields>" + kField, 104},
        ModelParseCase{"text after the root", DataModel(kField) + "x", 104},
        ModelParseCase{"a second root", DataModel(kField) + DataModel(kField), 104},
        ModelParseCase{"an attribute twice", DataModel("<Field name='a' name='b'/>"), 104},
        ModelParseCase{"an undefined entity", DataModel("&x;"), 104},
        ModelParseCase{"bytes that are no UTF-8, found before the root is",
                       DataModel("<Field name='\xff'/>"), 105},
        ModelParseCase{"bytes that are no UTF-8, far behind the root",
                       DataModel(std::string(200000, ' ') + "<Field name='\xff'/>"), 104},
        ModelParseCase{"a zero byte", DataModel("<Field name='" + std::string(1, '\0') + "'/>"),
                       104}));

TEST(MCDataModelParser, TakesTheTextItself) {
  std::string text = DataModel(kField);
  MCDataModelParser reader;
  ASSERT_TRUE(reader.ParseToDOM(text).IsOK());
  text.assign(text.size(), 'x');
  RecordingVarList list;
  EXPECT_TRUE(reader.FillVarList(list, false, false, 0).IsOK());
  EXPECT_EQ(list.calls, kFieldCalls);
}

TEST(MCDataModelParser, FailedSecondParseLeavesNoDocument) {
  for (const char* bad : {"", "<PMML/>", "<DataModel/>", "<DataModel><Fields>"}) {
    MCDataModelParser reader;
    ASSERT_TRUE(reader.ParseToDOM(DataModel(kField)).IsOK());
    const MCStatus status = reader.ParseToDOM(bad);
    EXPECT_FALSE(status.IsOK()) << bad;
    RecordingVarList list;
    EXPECT_EQ(reader.FillVarList(list, false, false, 0), status);
    EXPECT_TRUE(list.calls.empty());
  }
}

TEST(MCDataModelParser, RecoversFromEveryFailure) {
  MCDataModelParser reader;
  for (const char* bad : {"", "<PMML/>", "<DataModel/>", "<DataModel><Fields>", "x"}) {
    ASSERT_FALSE(reader.ParseToDOM(bad).IsOK());
    ASSERT_TRUE(reader.ParseToDOM(DataModel(kField)).IsOK()) << bad;
    EXPECT_EQ(reader.GetStatus(), MCStatus());
    RecordingVarList list;
    EXPECT_TRUE(reader.FillVarList(list, false, false, 0).IsOK());
    EXPECT_EQ(list.calls, kFieldCalls);
  }
}

TEST(MCDataModelParser, SecondParseReplacesTheDocument) {
  MCDataModelParser reader;
  ASSERT_TRUE(reader.ParseToDOM(DataModel(kField)).IsOK());
  ASSERT_TRUE(reader.ParseToDOM(DataModel(ModelField("string", "x", "", "", "g"))).IsOK());
  RecordingVarList list;
  EXPECT_TRUE(reader.FillVarList(list, false, false, 0).IsOK());
  EXPECT_EQ(list.calls, Texts{"AddCatVar(g||none|labels none|role 0)"});
}

TEST(MCDataModelParser, ReadersLiveSideBySide) {
  auto first = std::make_unique<MCDataModelParser>();
  MCDataModelParser second;
  ASSERT_TRUE(first->ParseToDOM(DataModel(kField)).IsOK());
  ASSERT_TRUE(second.ParseToDOM(DataModel(kField)).IsOK());
  first.reset();
  RecordingVarList list;
  EXPECT_TRUE(second.FillVarList(list, false, false, 0).IsOK());
  EXPECT_EQ(list.calls, kFieldCalls);
}

}  // namespace
