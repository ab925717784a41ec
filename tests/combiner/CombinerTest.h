// What the tests of the combiner share.
#ifndef TESTS_COMBINER_COMBINERTEST_H
#define TESTS_COMBINER_COMBINERTEST_H

#include <gtest/gtest.h>

#include <filesystem>
#include <memory>
#include <string>
#include <vector>
#include <xercesc/dom/DOM.hpp>

#include "mccommon/MCVarList.h"
#include "mcxprsutil/MCXMLReadWrite.h"
#include "mcxprsutil/MCXSplitPMMLCombiner.h"

namespace combiner_test {

// The parts of a small PMML document; every part can be replaced.
struct Pmml {
  std::string version = "4.1";
  std::string header = R"(<Header copyright="us"/>)";
  std::string fields = R"(<DataField name="x" optype="continuous" dataType="double"/>)";
  std::string transformations;
  std::string model_tag = "TreeModel";
  std::string model_attributes = R"(functionName="classification")";
  std::string schema = R"(<MiningField name="x"/>)";
  std::string body = "<Node/>";

  std::string Dictionary() const;
  std::string Model() const;
  std::string Text() const;
};

// A categorical "DataField" with these values.
std::string Field(const std::string& name, const std::vector<std::string>& values);

// A list that returns what a test puts into it, null included.
class FakeVariable : public MCMTD_NAMESPACE::IMCVariable, public MCMTD_NAMESPACE::IMCCategorySet {
 public:
  explicit FakeVariable(std::string name, int kind = 3, std::vector<std::string> values = {});

  const std::string& GetName() const override { return name; }
  const std::string& GetLabel() const override { return label; }
  int GetKind() const override { return kind; }
  int GetValueFormat() const override { return value_format; }
  VariableRole GetRole() const override { return static_cast<VariableRole>(0); }
  int GetNCategories() const override { return n_categories; }
  const MCMTD_NAMESPACE::IMCCategorySet* GetCategorySet() const override {
    return has_set ? this : nullptr;
  }
  int GetDataType() const override { return 0; }
  void SetDataType(int) override {}
  std::string GetValueText(int index) const override;

  std::string name;
  std::string label;
  int kind;
  int value_format = 0;
  std::vector<std::string> values;
  int n_categories;
  bool has_set = true;
};

class FakeVarList : public MCMTD_NAMESPACE::MCVarList {
 public:
  FakeVarList() = default;

  unsigned int Size() const override { return static_cast<unsigned int>(variables.size()); }
  MCMTD_NAMESPACE::IMCVariable* GetVarAt(int index) override;
  const MCMTD_NAMESPACE::IMCVariable* GetVarAt(int index) const override;

  // A text variable with these categories.
  void Add(const std::string& name, const std::vector<std::string>& values);
  void AddNull() { variables.push_back(nullptr); }

  std::vector<std::unique_ptr<FakeVariable>> variables;
};

// A combiner whose document is released at the end, as an application would by exporting it.
class OwnedCombiner : public MCXPrsUtil::MCXSplitPMMLCombiner {
 public:
  explicit OwnedCombiner(const MCMTD_NAMESPACE::MCVarList& list) : MCXSplitPMMLCombiner(list) {}
  ~OwnedCombiner();

  // The combined document, which is created if there is none.
  xercesc::DOMDocument* Document();
};

// Keeps the XML platform initialised and has a directory of its own for files.
class CombinerTest : public testing::Test {
 protected:
  CombinerTest();
  ~CombinerTest() override;

  std::string PathOf(const std::string& name) const;
  std::string Write(const std::string& name, const std::string& text) const;
  std::string Write(const std::string& name, const Pmml& pmml) const;

  // The document of a text; it lives as long as the test. The text must be well-formed.
  xercesc::DOMDocument* Parse(const std::string& text);
  xercesc::DOMElement* ParseRoot(const std::string& text);

  // Adds a document under a file name of its own.
  MCCommon::MCStatus Add(MCXPrsUtil::MCXSplitPMMLCombiner& combiner, const Pmml& pmml,
                         const std::vector<std::string>& values);

  MCXPrsUtil::MCXMLReadWrite platform_;
  std::filesystem::path directory_;
  std::vector<std::unique_ptr<MCXPrsUtil::MCXMLReadWrite>> readers_;
  int n_files_ = 0;
};

// The XML text of a node without a declaration.
std::string TextOf(const xercesc::DOMNode* node);

std::string ReadFile(const std::string& path);

// The "name" of each child element of that tag below a parent, and the "value" likewise.
std::vector<std::string> ChildAttributes(const xercesc::DOMElement* parent, const std::string& tag,
                                         const std::string& attribute);

// The first element with that tag in a document.
xercesc::DOMElement* FindElement(xercesc::DOMDocument* document, const std::string& tag);

// The element's attribute as UTF-8; "(absent)" without it.
std::string AttributeOf(const xercesc::DOMElement* element, const std::string& name);

constexpr int kOK = 0;

}  // namespace combiner_test

#endif  // TESTS_COMBINER_COMBINERTEST_H
