// What a reader that derives from the PMML reader can rely on.
#include <gtest/gtest.h>

#include <istream>
#include <memory>
#include <string>
#include <xercesc/dom/DOM.hpp>

#include "PmmlText.h"
#include "mcxprsutil/MCXDOMHelpers.h"

namespace {

using MCCommon::MCStatus;
using MCXPrsUtil::GetFirstChildElmt;
using MCXPrsUtil::MCPMMLParser;

const char kField[] = R"(<DataField name="a" dataType="double" optype="continuous"/>)";

// Demands a "Header" as well, with a code of its own.
class HeaderReader : public MCPMMLParser {
 public:
  explicit HeaderReader(bool* destroyed = nullptr) : destroyed_(destroyed) {}
  ~HeaderReader() override {
    if (destroyed_ != nullptr) *destroyed_ = true;
  }

  MCStatus ParseToDOM(std::istream& in) override {
    header_ = nullptr;
    kept_ = document_;
    if (!MCPMMLParser::ParseToDOM(in).IsOK()) return status_;
    header_ = GetFirstChildElmt(*root_, "Header");
    if (header_ == nullptr) status_ = MCStatus(119, false);
    return status_;
  }

  bool ElementsAreNull() const {
    return document_ == nullptr && root_ == nullptr && data_dictionary_ == nullptr &&
           transformation_dictionary_ == nullptr && model_element_ == nullptr;
  }
  const xercesc::DOMElement* Header() const { return header_; }
  const xercesc::DOMElement* DataDictionary() const { return data_dictionary_; }
  const xercesc::DOMElement* TransformationDictionary() const { return transformation_dictionary_; }
  const xercesc::DOMElement* ModelElement() const { return model_element_; }

 private:
  bool* destroyed_;
  const xercesc::DOMElement* header_ = nullptr;
  std::shared_ptr<xercesc::DOMDocument> kept_;  // the document before the current one
};

TEST(DerivedReader, OverridesTheParseAndStoresItsOwnStatus) {
  HeaderReader reader;
  MCPMMLParser& base = reader;
  EXPECT_TRUE(ParseText(base, Pmml(kField)).IsOK());
  EXPECT_NE(reader.Header(), nullptr);

  EXPECT_EQ(ParseText(base, "<PMML><DataDictionary/></PMML>"), MCStatus(119, false));
  RecordingVarList list;
  EXPECT_EQ(base.FillVarList(list, {}, false), MCStatus(119, false));
  EXPECT_FALSE(base.SetModelElmt(*base.GetRootElement()));
}

TEST(DerivedReader, SeesTheElements) {
  HeaderReader reader;
  EXPECT_TRUE(reader.ElementsAreNull());
  ASSERT_TRUE(ParseText(reader, Pmml(kField, TransDict("") + "<TreeModel/>")).IsOK());
  EXPECT_EQ(reader.DataDictionary(), GetFirstChildElmt(*reader.GetRootElement(), "DataDictionary"));
  EXPECT_EQ(reader.TransformationDictionary(),
            GetFirstChildElmt(*reader.GetRootElement(), "TransformationDictionary"));
  EXPECT_EQ(reader.ModelElement(), nullptr);

  const auto* model = GetFirstChildElmt(*reader.GetRootElement(), "TreeModel");
  ASSERT_TRUE(reader.SetModelElmt(*model));
  EXPECT_EQ(reader.ModelElement(), model);
  ASSERT_TRUE(ParseText(reader, Pmml(kField)).IsOK());
  EXPECT_EQ(reader.ModelElement(), nullptr) << "a parse forgets the model element";
  EXPECT_EQ(reader.TransformationDictionary(), nullptr);
}

TEST(DerivedReader, FindsAllElementsNullAfterAFailure) {
  for (const char* bad : {"", "<PMML>", "<pmml/>", "<PMML><Header/></PMML>"}) {
    HeaderReader reader;
    ASSERT_TRUE(ParseText(reader, Pmml(kField, TransDict(""))).IsOK());
    ASSERT_TRUE(reader.SetModelElmt(*reader.GetRootElement()));
    EXPECT_FALSE(ParseText(reader, bad).IsOK());
    EXPECT_TRUE(reader.ElementsAreNull()) << bad;
  }
}

TEST(DerivedReader, CanKeepADocumentBeyondTheNextParse) {
  HeaderReader reader;
  ASSERT_TRUE(ParseText(reader, Pmml(kField)).IsOK());
  const xercesc::DOMElement* header = reader.Header();
  ASSERT_TRUE(ParseText(reader, Pmml(kField)).IsOK());
  EXPECT_TRUE(MCXPrsUtil::TagNameEquals(*header, "Header"));
  EXPECT_NE(header, reader.Header());
}

TEST(DerivedReader, IsDestroyedThroughTheBase) {
  bool destroyed = false;
  std::unique_ptr<MCPMMLParser> reader = std::make_unique<HeaderReader>(&destroyed);
  ASSERT_TRUE(ParseText(*reader, Pmml(kField)).IsOK());
  reader.reset();
  EXPECT_TRUE(destroyed);
}

}  // namespace
