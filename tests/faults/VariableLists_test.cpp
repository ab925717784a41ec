// Variable lists that throw, refuse or give nothing at any of the calls that a fill makes.
#include <gtest/gtest.h>

#include <cstddef>
#include <memory>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>
#include <xercesc/dom/DOMException.hpp>

#include "mccommon/MCVarList.h"
#include "mcxprsutil/MCDataModelParser.h"
#include "mcxprsutil/MCPMMLParser.h"
#include "mcxprsutil/MCSettingsParser.h"
#include "mcxprsutil/MCXMLReadWrite.h"
#include "mcxprsutil/MCXSplitPMMLCombiner.h"
#include "support/CountingMemory.h"
#include "support/SmallDocuments.h"
#include "support/TestFiles.h"
#include "support/VarListText.h"

namespace {

using MCCommon::MCStatus;
using MCMTD_NAMESPACE::IMCCategorySet;
using MCMTD_NAMESPACE::IMCVarEncoder;
using MCMTD_NAMESPACE::IMCVariable;
using MCMTD_NAMESPACE::MCVarList;
using MCXPrsUtil::MCDataModelParser;
using MCXPrsUtil::MCPMMLParser;
using MCXPrsUtil::MCSettingsParser;
using Numbers = std::vector<double>;
using Texts = std::vector<std::string>;
using Role = IMCVariable::VariableRole;

// What happens at the call that goes wrong. The three exceptions: one of the standard library, one
// of no class at all, and one that the library catches where it comes from the XML library.
enum class Fault { kNone, kGivesNothing, kThrowsStandard, kThrowsInt, kThrowsDom };

constexpr Fault kThrowing[] = {Fault::kThrowsStandard, Fault::kThrowsInt, Fault::kThrowsDom};

// Which call goes wrong, and how.
class Plan {
 public:
  Plan(Fault fault, std::size_t at) : fault_(fault), at_(at) {}

  // To be called at the head of every call. False where the call shall give nothing.
  bool Next() {
    if (count_++ != at_) return true;
    switch (fault_) {
      case Fault::kThrowsStandard:
        throw std::runtime_error("the list has had enough");
      case Fault::kThrowsInt:
        throw 7;
      case Fault::kThrowsDom:
        throw xercesc::DOMException(xercesc::DOMException::INVALID_STATE_ERR);
      default:
        return fault_ != Fault::kGivesNothing;
    }
  }
  std::size_t Count() const { return count_; }

 private:
  const Fault fault_;
  const std::size_t at_;
  std::size_t count_ = 0;
};

// Passes everything on to the encoder of a list.
class FaultyEncoder : public IMCVarEncoder {
 public:
  FaultyEncoder(Plan& plan, IMCVarEncoder& encoder) : plan_(plan), encoder_(encoder) {}
  void SetBinLabels(const Texts& labels) override {
    if (plan_.Next()) encoder_.SetBinLabels(labels);
  }
  void AddMissingValue(double value, const std::string& label) override {
    if (plan_.Next()) encoder_.AddMissingValue(value, label);
  }
  void AddMissingValue(const std::string& value, const std::string& label) override {
    if (plan_.Next()) encoder_.AddMissingValue(value, label);
  }
  void SetInvalidRange(double lower, double upper) override {
    if (plan_.Next()) encoder_.SetInvalidRange(lower, upper);
  }

 private:
  Plan& plan_;
  IMCVarEncoder& encoder_;
};

class FaultyVariable : public IMCVariable {
 public:
  FaultyVariable(Plan& plan, IMCVariable& variable) : plan_(plan), variable_(variable) {}
  const std::string& GetName() const override {
    (void)plan_.Next();
    return variable_.GetName();
  }
  const std::string& GetLabel() const override {
    (void)plan_.Next();
    return variable_.GetLabel();
  }
  int GetKind() const override { return plan_.Next() ? variable_.GetKind() : 0; }
  int GetValueFormat() const override { return variable_.GetValueFormat(); }
  Role GetRole() const override { return variable_.GetRole(); }
  int GetNCategories() const override { return plan_.Next() ? variable_.GetNCategories() : 0; }
  const IMCCategorySet* GetCategorySet() const override {
    return plan_.Next() ? variable_.GetCategorySet() : nullptr;
  }
  int GetDataType() const override { return variable_.GetDataType(); }
  void SetDataType(int code) override {
    if (plan_.Next()) variable_.SetDataType(code);
  }

 private:
  Plan& plan_;
  IMCVariable& variable_;
};

// A list that works but for one call.
class FaultyList : public MCVarList {
 public:
  FaultyList(Fault fault, std::size_t at) : plan_(fault, at) {}

  std::size_t Calls() const { return plan_.Count(); }

  int AddCatVar(const std::string& name, const std::string& label, const Numbers& values,
                const Texts& labels, Role role) override {
    return plan_.Next() ? MCVarList::AddCatVar(name, label, values, labels, role) : -1;
  }
  int AddCatVar(const std::string& name, const std::string& label, const Numbers& values,
                Role role) override {
    return plan_.Next() ? MCVarList::AddCatVar(name, label, values, role) : -1;
  }
  int AddCatVar(const std::string& name, const std::string& label, const Texts& values,
                const Texts& labels, Role role) override {
    return plan_.Next() ? MCVarList::AddCatVar(name, label, values, labels, role) : -1;
  }
  int AddCatVar(const std::string& name, const std::string& label, const Texts& values,
                Role role) override {
    return plan_.Next() ? MCVarList::AddCatVar(name, label, values, role) : -1;
  }
  int AddContVar(const std::string& name, const std::string& label, Role role) override {
    return plan_.Next() ? MCVarList::AddContVar(name, label, role) : -1;
  }
  int AddContVar(const std::string& name, const std::string& label, double minimum, double maximum,
                 Role role, bool flag, int count) override {
    return plan_.Next() ? MCVarList::AddContVar(name, label, minimum, maximum, role, flag, count)
                        : -1;
  }
  int AddContVar(const std::string& name, const std::string& label, double minimum, double maximum,
                 const Numbers& cuts, bool binned, Role role) override {
    return plan_.Next() ? MCVarList::AddContVar(name, label, minimum, maximum, cuts, binned, role)
                        : -1;
  }
  int SetWeightVar(const std::string& name, const std::string& label,
                   IMCVariable::WRoundingOption rounding) override {
    return plan_.Next() ? MCVarList::SetWeightVar(name, label, rounding) : -1;
  }
  unsigned int Size() const override { return plan_.Next() ? MCVarList::Size() : 0; }
  IMCVariable* GetVarAt(int index) override { return Wrapped(index); }
  const IMCVariable* GetVarAt(int index) const override {
    return const_cast<FaultyList*>(this)->Wrapped(index);
  }
  IMCVarEncoder* GetEncoderAt(int index) override {
    IMCVarEncoder* const encoder = MCVarList::GetEncoderAt(index);
    if (!plan_.Next() || encoder == nullptr) return nullptr;
    encoders_.push_back(std::make_unique<FaultyEncoder>(plan_, *encoder));
    return encoders_.back().get();
  }

 private:
  IMCVariable* Wrapped(int index) {
    IMCVariable* const variable = MCVarList::GetVarAt(index);
    if (!plan_.Next() || variable == nullptr) return nullptr;
    variables_.push_back(std::make_unique<FaultyVariable>(plan_, *variable));
    return variables_.back().get();
  }

  mutable Plan plan_;
  std::vector<std::unique_ptr<FaultyEncoder>> encoders_;
  std::vector<std::unique_ptr<FaultyVariable>> variables_;
};

constexpr std::size_t kNever = static_cast<std::size_t>(-1);

// What an operation with a list came to.
enum class Outcome { kOK, kRefused, kThrewStandard, kThrewInt, kThrewDom, kOther };

Outcome Expected(Fault fault) {
  switch (fault) {
    case Fault::kThrowsStandard:
      return Outcome::kThrewStandard;
    case Fault::kThrowsInt:
      return Outcome::kThrewInt;
    case Fault::kThrowsDom:
      return Outcome::kThrewDom;
    default:
      return Outcome::kOther;
  }
}

template <class Operation>
Outcome OutcomeOf(Operation operation) {
  try {
    const MCStatus status = operation();
    if (status.IsOK()) return Outcome::kOK;
    return status == MCStatus(111, false) ? Outcome::kRefused : Outcome::kOther;
  } catch (const std::runtime_error&) {
    return Outcome::kThrewStandard;
  } catch (int) {
    return Outcome::kThrewInt;
  } catch (const xercesc::DOMException&) {
    return Outcome::kThrewDom;
  }
}

// All lines but the last, which may be that of a variable that is not finished.
std::string FinishedLines(const std::string& text) {
  const std::size_t end = text.empty() ? std::string::npos : text.rfind('\n', text.size() - 2);
  return end == std::string::npos ? "" : text.substr(0, end + 1);
}

template <class Reader>
struct Fill {
  const char* name;
  const char* document;
  MCStatus (*fill)(const Reader& reader, MCVarList& list);
};

constexpr Fill<MCPMMLParser> kPmmlFills[] = {
    {"MCPMMLParser::FillVarList", test_support::kPmml,
     [](const MCPMMLParser& reader, MCVarList& list) {
       return reader.FillVarList(list, {}, false);
     }},
    {"MCPMMLParser::FillVarList with bins", test_support::kPmml,
     [](const MCPMMLParser& reader, MCVarList& list) {
       return reader.FillVarList(list, {}, true);
     }},
};
constexpr Fill<MCSettingsParser> kSettingsFills[] = {
    {"MCSettingsParser::FillVarList", test_support::kSettings,
     [](const MCSettingsParser& reader, MCVarList& list) {
       return reader.FillVarList(list, true);
     }},
    {"MCSettingsParser::FillTransDict", test_support::kSettings,
     [](const MCSettingsParser& reader, MCVarList& list) { return reader.FillTransDict(list); }},
};
constexpr Fill<MCDataModelParser> kDataModelFills[] = {
    {"MCDataModelParser::FillVarList", test_support::kDataModel,
     [](const MCDataModelParser& reader, MCVarList& list) {
       return reader.FillVarList(list, true, true, 3);
     }},
};

MCStatus Parse(MCPMMLParser& reader, const char* document) {
  std::istringstream in(document);
  return reader.ParseToDOM(in);
}

MCStatus Parse(MCDataModelParser& reader, const char* document) {
  return reader.ParseToDOM(document);
}

template <class Reader>
class FillWithFaults {
 public:
  explicit FillWithFaults(const Fill<Reader>& fill) : fill_(fill) {
    EXPECT_TRUE(Parse(reader_, fill_.document).IsOK());
    FaultyList list(Fault::kNone, kNever);
    EXPECT_TRUE(fill_.fill(reader_, list).IsOK());
    whole_ = test_support::TextOf(list);
    calls_ = list.Calls();
  }

  void EveryCallThrows() {
    for (const Fault fault : kThrowing) {
      for (std::size_t at = 0; at < calls_; ++at) {
        SCOPED_TRACE(at);
        FaultyList list(fault, at);
        EXPECT_EQ(OutcomeOf([&] { return fill_.fill(reader_, list); }), Expected(fault));
        EXPECT_EQ(list.Calls(), at + 1) << "no call comes behind one that threw";
        ExpectHead(list);
      }
    }
  }

  // An add that is refused, a variable or an encoder that is not there. A call that gives nothing
  // anyway, or an encoder that is not needed, is no fault. Returns how many calls were faults.
  std::size_t EveryCallGivesNothing() {
    std::size_t refused = 0;
    for (std::size_t at = 0; at < calls_; ++at) {
      SCOPED_TRACE(at);
      FaultyList list(Fault::kGivesNothing, at);
      const Outcome outcome = OutcomeOf([&] { return fill_.fill(reader_, list); });
      if (outcome == Outcome::kOK) continue;
      ++refused;
      EXPECT_EQ(outcome, Outcome::kRefused);
      EXPECT_EQ(list.Calls(), at + 1);
      ExpectHead(list);
    }
    return refused;
  }

 private:
  // What was added before the fault stays, and the reader serves another list.
  void ExpectHead(const MCVarList& list) const {
    const std::string finished = FinishedLines(test_support::TextOf(list));
    EXPECT_EQ(whole_.compare(0, finished.size(), finished), 0) << finished;
    EXPECT_TRUE(reader_.GetStatus().IsOK());
    FaultyList another(Fault::kNone, kNever);
    EXPECT_TRUE(fill_.fill(reader_, another).IsOK());
    EXPECT_EQ(test_support::TextOf(another), whole_);
  }

  const Fill<Reader>& fill_;
  Reader reader_;
  std::string whole_;
  std::size_t calls_ = 0;
};

template <class Reader, std::size_t kCount>
void TryAll(const Fill<Reader> (&fills)[kCount]) {
  for (const Fill<Reader>& fill : fills) {
    SCOPED_TRACE(fill.name);
    FillWithFaults<Reader> faults(fill);
    faults.EveryCallThrows();
    EXPECT_GE(faults.EveryCallGivesNothing(), 1U);
  }
}

TEST(VariableLists, FaultsInAFillOfPmmlPassOrGive111) { TryAll(kPmmlFills); }

TEST(VariableLists, FaultsInAFillOfSettingsPassOrGive111) { TryAll(kSettingsFills); }

TEST(VariableLists, FaultsInAFillOfADataModelPassOrGive111) { TryAll(kDataModelFills); }

TEST(VariableLists, FaultsLoseNoMemoryOfTheXmlLibrary) {
  const CountingMemory memory;
  const auto all = [] {
    TryAll(kPmmlFills);
    TryAll(kSettingsFills);
    TryAll(kDataModelFills);
  };
  all();
  const std::size_t before = memory.LiveBlocks();
  all();
  EXPECT_EQ(memory.LiveBlocks(), before);
}

// A combiner asks its list when it is made, and again at the first model.

void AddSplitVariables(MCVarList& list) {
  list.AddCatVar("region", "Where they live", Texts{"North", "South"}, IMCVariable::kRoleInput);
  list.AddCatVar("year", "", Numbers{2023, 2024}, IMCVariable::kRoleInput);
}

class CombinerWithFaults : public testing::Test {
 protected:
  // Makes a combiner and adds a model. The list's variables are there already.
  MCStatus Combine(const MCVarList& list) {
    MCXPrsUtil::MCXSplitPMMLCombiner combiner(list);
    struct Release {
      ~Release() { (void)combiner.ExportMiningModel(""); }
      MCXPrsUtil::MCXSplitPMMLCombiner& combiner;
    } const release{combiner};
    return combiner.AddModel(model_, {"North", "2023"});
  }

  MCXPrsUtil::MCXMLReadWrite platform_;
  test_support::ScratchFolder folder_;
  const std::string model_ =
      test_support::WriteTo(folder_.File("model.pmml"), test_support::kFirstModel);
};

std::size_t CallsSoFar() {
  FaultyList list(Fault::kNone, kNever);
  AddSplitVariables(list);
  return list.Calls();
}

TEST_F(CombinerWithFaults, WhatTheListThrowsPasses) {
  const std::size_t first = CallsSoFar();
  FaultyList healthy(Fault::kNone, kNever);
  AddSplitVariables(healthy);
  ASSERT_TRUE(Combine(healthy).IsOK());
  ASSERT_GT(healthy.Calls(), first + 10);
  for (const Fault fault : kThrowing) {
    for (std::size_t at = first; at < healthy.Calls(); ++at) {
      FaultyList list(fault, at);
      AddSplitVariables(list);
      EXPECT_EQ(OutcomeOf([&] { return Combine(list); }), Expected(fault)) << at;
    }
  }
}

// A variable that is not there is told, and one that keeps its name to itself; nothing of it fails.
TEST_F(CombinerWithFaults, AListMayGiveNothing) {
  const std::size_t first = CallsSoFar();
  for (std::size_t at = first; at < first + 40; ++at) {
    FaultyList list(Fault::kGivesNothing, at);
    AddSplitVariables(list);
    const MCStatus status = Combine(list);
    EXPECT_TRUE(status.IsOK() || status == MCStatus(126, false)) << at << ' ' << status.GetCode();
  }
}

}  // namespace
