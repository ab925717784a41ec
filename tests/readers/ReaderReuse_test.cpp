// A reader that has read one document reads the next one as a new reader would. Every reader keeps
// its parser, so these rules are shown for all of them.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "DataModelText.h"
#include "SettingsText.h"
#include "support/CountingMemory.h"

namespace {

using MCCommon::MCStatus;
using testing::StartsWith;

// Documents of one field without a label, and with whatever `rest` is.

struct PmmlReader {
  static std::string Root(const std::string& rest) {
    return Pmml("<DataField name='f' dataType='string' optype='nominal'/>", rest);
  }
  static std::string DefaultLabel() { return "<!ATTLIST DataField displayName CDATA 'default'>"; }
  MCStatus Parse(const std::string& text) { return ParseText(reader, text); }
  MCStatus Fill(RecordingVarList& list) { return reader.FillVarList(list, {}, false); }

  MCXPrsUtil::MCPMMLParser reader;
};

struct SettingsReader {
  static std::string Root(const std::string& rest) {
    return PmmlReader::Root(BuildTask("") + rest);
  }
  static std::string DefaultLabel() { return PmmlReader::DefaultLabel(); }
  MCStatus Parse(const std::string& text) { return ParseText(reader, text); }
  MCStatus Fill(RecordingVarList& list) { return reader.FillVarList(list, false); }

  MCXPrsUtil::MCSettingsParser reader;
};

struct DataModelReader {
  static std::string Root(const std::string& rest) {
    return "<DataModel><Fields>" + ModelField("string", "nominal") + "</Fields>" + rest +
           "</DataModel>";
  }
  static std::string DefaultLabel() { return "<!ATTLIST Field displayLabel CDATA 'default'>"; }
  MCStatus Parse(const std::string& text) { return reader.ParseToDOM(text); }
  MCStatus Fill(RecordingVarList& list) { return reader.FillVarList(list, false, false, 0); }

  MCXPrsUtil::MCDataModelParser reader;
};

template <class Reader>
class ReaderReuse : public testing::Test {};
using Readers = testing::Types<PmmlReader, SettingsReader, DataModelReader>;
TYPED_TEST_SUITE(ReaderReuse, Readers, );

// How the reader's document declares its field to a list.
template <class Reader>
std::string FieldOf(Reader& reader) {
  RecordingVarList list;
  EXPECT_TRUE(reader.Fill(list).IsOK());
  EXPECT_EQ(list.Size(), 1u);
  return list.calls.empty() ? "(none)" : list.calls.front();
}

constexpr char kVersion11[] = "<?xml version='1.1'?>";

// What the two versions of XML read differently.
struct VersionCase {
  const char* element;
  int code_10;
  int code_11;
};
const VersionCase kVersionCases[] = {{"<x a='\x7F'/>", 0, 104},
                                     {"<x a='&#1;'/>", 104, 0},
                                     {"<x\xC2\x85"
                                      "a='1'/>",
                                      104, 0}};

TYPED_TEST(ReaderReuse, NoDocumentIsReadByTheVersionOfTheOneBefore) {
  TypeParam reader;
  for (const VersionCase& test : kVersionCases) {
    const std::string root = TypeParam::Root(test.element);
    for (const std::string declaration : {"", "<?xml version='1.0'?>"}) {
      SCOPED_TRACE(declaration + test.element);
      EXPECT_EQ(TypeParam().Parse(declaration + root), MCStatus(test.code_10, false));
      ASSERT_TRUE(reader.Parse(kVersion11 + TypeParam::Root("")).IsOK());
      EXPECT_EQ(reader.Parse(declaration + root), MCStatus(test.code_10, false));
      ASSERT_TRUE(reader.Parse(declaration + TypeParam::Root("")).IsOK());
      EXPECT_EQ(reader.Parse(kVersion11 + root), MCStatus(test.code_11, false));
    }
  }
}

TYPED_TEST(ReaderReuse, DocumentTypeDiesWithItsDocument) {
  const std::string type = "<!DOCTYPE r [<!ENTITY e 'x'>" + TypeParam::DefaultLabel() + "]>";
  TypeParam reader;
  for (const std::string next_type : {"", "<!DOCTYPE r>", "<!DOCTYPE r [<!ENTITY f 'y'>]>"}) {
    SCOPED_TRACE(next_type);
    ASSERT_TRUE(reader.Parse(type + TypeParam::Root("<x a='&e;'>&e;</x>")).IsOK());
    ASSERT_THAT(FieldOf(reader), StartsWith("AddCatVar(f|default|"));

    ASSERT_TRUE(reader.Parse(next_type + TypeParam::Root("")).IsOK());
    EXPECT_THAT(FieldOf(reader), StartsWith("AddCatVar(f||"));

    for (const std::string reference : {"<x>&e;</x>", "<x a='&e;'/>"}) {
      ASSERT_TRUE(reader.Parse(type + TypeParam::Root("")).IsOK());
      EXPECT_EQ(reader.Parse(next_type + TypeParam::Root(reference)), MCStatus(104, false));
    }
  }
}

TYPED_TEST(ReaderReuse, ParserThatCannotBeMadeAgainGives103Once) {
  CountingMemory memory;
  TypeParam reader;
  ASSERT_EQ(reader.Parse(TypeParam::Root("</x>")), MCStatus(104, false));
  memory.FailAfter(0, ThrowXMLException);
  EXPECT_EQ(reader.Parse(TypeParam::Root("")), MCStatus(103, false));
  EXPECT_FALSE(memory.CancelFailure());
  EXPECT_EQ(reader.reader.GetStatus(), MCStatus(103, false));
  RecordingVarList list;
  EXPECT_EQ(reader.Fill(list), MCStatus(103, false));
  EXPECT_TRUE(list.calls.empty());

  EXPECT_TRUE(reader.Parse(TypeParam::Root("")).IsOK());
  EXPECT_THAT(FieldOf(reader), StartsWith("AddCatVar(f||"));
}

}  // namespace
