// An application's own classes behind the interfaces, across the border of the shared library.
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <typeinfo>
#include <vector>

#include "mccommon/MCVarEncoder.h"
#include "mccommon/MCVarList.h"
#include "mccommon/MCVariable.h"

namespace {

using MCMTD_NAMESPACE::IMCCategorySet;
using MCMTD_NAMESPACE::IMCVarEncoder;
using MCMTD_NAMESPACE::IMCVariable;
using MCMTD_NAMESPACE::MCVarEncoder;
using MCMTD_NAMESPACE::MCVariable;
using MCMTD_NAMESPACE::MCVarList;
using Numbers = std::vector<double>;
using Texts = std::vector<std::string>;

// What a reader does with a list: one variable of each kind, then its declarations.
int FillLikeAReader(MCVarList& list) {
  int refused = 0;
  const auto add = [&](int index) {
    if (index < 0) ++refused;
    return index;
  };
  const int sex = add(list.AddCatVar("sex", "Sex", Texts{"m", "f"}, IMCVariable::kRoleInput));
  if (sex >= 0) list.GetEncoderAt(sex)->AddMissingValue("?", "unknown");
  const int age =
      add(list.AddContVar("age", "Age", 0, 100, Numbers{18, 65}, true, IMCVariable::kRoleInput));
  if (age >= 0) list.GetEncoderAt(age)->SetBinLabels({"young", "adult", "old"});
  if (age >= 0) list.GetVarAt(age)->SetDataType(1);
  add(list.SetWeightVar("w", "", IMCVariable::kRoundNearest));
  return refused;
}

// Watches what a reader adds and lets the list do its work.
class WatchingList : public MCVarList {
 public:
  using MCVarList::AddCatVar;
  using MCVarList::AddContVar;

  int AddCatVar(const std::string& name, const std::string& label, const Texts& values,
                IMCVariable::VariableRole role) override {
    seen.push_back(name);
    if (name == refusedName) return -1;
    return MCVarList::AddCatVar(name, label, values, role);
  }

  int AddContVar(const std::string& name, const std::string& label, double minimum, double maximum,
                 const Numbers& cutPoints, bool binned, IMCVariable::VariableRole role) override {
    seen.push_back(name);
    return MCVarList::AddContVar(name, label, minimum, maximum, cutPoints, binned, role);
  }

  Texts seen;
  std::string refusedName;
};

TEST(DerivedList, WatchesWhatIsAdded) {
  WatchingList list;
  EXPECT_EQ(FillLikeAReader(list), 0);
  EXPECT_EQ(list.seen, (Texts{"sex", "age"}));
  EXPECT_EQ(list.Size(), 3u);
  EXPECT_EQ(list.GetStoredEncoder(0)->GetMissingTexts().at(0).value, "?");
  EXPECT_EQ(list.GetStoredEncoder(1)->GetBinLabels(), (Texts{"young", "adult", "old"}));
  EXPECT_EQ(list.GetStoredVar(1)->GetValueFormat(), 1);
}

TEST(DerivedList, RefusesWhatItDoesNotWant) {
  WatchingList list;
  list.refusedName = "sex";
  EXPECT_EQ(FillLikeAReader(list), 1);
  EXPECT_EQ(list.Size(), 2u);
}

// A dictionary of the application's own, fed through the interfaces alone.
struct Column {
  std::string name;
  std::string text;
  IMCVariable::VariableRole role = IMCVariable::kRoleNone;
  int type = 0;
  Texts levels;
  Texts events;
};

class ColumnLevels : public IMCCategorySet {
 public:
  explicit ColumnLevels(const Column& column) : column_(column) {}
  std::string GetValueText(int index) const override {
    return column_.levels.at(static_cast<std::size_t>(index));
  }

 private:
  const Column& column_;
};

class ColumnVariable : public IMCVariable {
 public:
  explicit ColumnVariable(Column& column) : column_(column), levels_(column) {}
  const std::string& GetName() const override { return column_.name; }
  const std::string& GetLabel() const override { return column_.text; }
  int GetKind() const override { return column_.levels.empty() ? 1 : 3; }
  int GetValueFormat() const override { return column_.type == 1 ? 1 : 0; }
  VariableRole GetRole() const override { return column_.role; }
  int GetNCategories() const override { return static_cast<int>(column_.levels.size()); }
  const IMCCategorySet* GetCategorySet() const override {
    return column_.levels.empty() ? nullptr : &levels_;
  }
  int GetDataType() const override { return column_.type; }
  void SetDataType(int code) override { column_.type = code; }

 private:
  Column& column_;
  ColumnLevels levels_;
};

class ColumnEncoder : public IMCVarEncoder {
 public:
  explicit ColumnEncoder(Column& column) : column_(column) {}
  void SetBinLabels(const Texts& labels) override { Note("bins", labels.front()); }
  void AddMissingValue(double, const std::string& label) override { Note("number", label); }
  void AddMissingValue(const std::string& value, const std::string& label) override {
    Note(value, label);
  }
  void SetInvalidRange(double, double) override { Note("invalid", ""); }

 private:
  void Note(const std::string& what, const std::string& label) {
    column_.events.push_back(what + ":" + label);
  }

  Column& column_;
};

class ApplicationList : public MCVarList {
 public:
  int AddCatVar(const std::string& name, const std::string& label, const Numbers& values,
                const Texts&, IMCVariable::VariableRole role) override {
    return AddCatVar(name, label, values, role);
  }
  int AddCatVar(const std::string& name, const std::string& label, const Numbers& values,
                IMCVariable::VariableRole role) override {
    return Append(name, label, Texts(values.size(), "number"), role);
  }
  int AddCatVar(const std::string& name, const std::string& label, const Texts& values,
                const Texts&, IMCVariable::VariableRole role) override {
    return AddCatVar(name, label, values, role);
  }
  int AddCatVar(const std::string& name, const std::string& label, const Texts& values,
                IMCVariable::VariableRole role) override {
    return Append(name, label, values, role);
  }
  int AddContVar(const std::string& name, const std::string& label,
                 IMCVariable::VariableRole role) override {
    return Append(name, label, {}, role);
  }
  int AddContVar(const std::string& name, const std::string& label, double, double,
                 IMCVariable::VariableRole role, bool, int) override {
    return Append(name, label, {}, role);
  }
  int AddContVar(const std::string& name, const std::string& label, double, double, const Numbers&,
                 bool, IMCVariable::VariableRole role) override {
    return Append(name, label, {}, role);
  }
  int SetWeightVar(const std::string& name, const std::string& label,
                   IMCVariable::WRoundingOption) override {
    return Append(name, label, {}, IMCVariable::kRoleFrequencyWeight);
  }
  unsigned int Size() const override { return static_cast<unsigned int>(cells_.size()); }
  IMCVariable* GetVarAt(int index) override { return &At(index).variable; }
  const IMCVariable* GetVarAt(int index) const override { return &At(index).variable; }
  IMCVarEncoder* GetEncoderAt(int index) override { return &At(index).encoder; }

  const Column& ColumnAt(int index) const { return At(index).column; }

 private:
  struct Cell {
    explicit Cell(Column c) : column(std::move(c)), variable(column), encoder(column) {}
    Column column;
    ColumnVariable variable;
    ColumnEncoder encoder;
  };

  int Append(const std::string& name, const std::string& text, const Texts& levels,
             IMCVariable::VariableRole role) {
    cells_.push_back(std::make_unique<Cell>(Column{name, text, role, 0, levels, {}}));
    return static_cast<int>(cells_.size()) - 1;
  }

  Cell& At(int index) const { return *cells_.at(static_cast<std::size_t>(index)); }

  std::vector<std::unique_ptr<Cell>> cells_;
};

TEST(DerivedList, FeedsAnApplicationsOwnDictionary) {
  ApplicationList list;
  EXPECT_EQ(FillLikeAReader(list), 0);
  ASSERT_EQ(list.Size(), 3u);
  EXPECT_EQ(list.ColumnAt(0).levels, (Texts{"m", "f"}));
  EXPECT_EQ(list.ColumnAt(0).events, Texts{"?:unknown"});
  EXPECT_EQ(list.ColumnAt(1).events, Texts{"bins:young"});
  EXPECT_EQ(list.ColumnAt(1).type, 1);
  EXPECT_EQ(list.ColumnAt(2).role, IMCVariable::kRoleFrequencyWeight);
}

TEST(DerivedList, LeavesTheStoreOfItsBaseEmpty) {
  ApplicationList list;
  EXPECT_EQ(FillLikeAReader(list), 0);
  EXPECT_EQ(list.GetStoredVar(0), nullptr);
  EXPECT_EQ(list.GetStoredEncoder(0), nullptr);
  EXPECT_EQ(list.FindVar("sex"), -1);
}

TEST(DerivedList, IsDestroyedThroughItsBase) {
  auto list = std::make_unique<ApplicationList>();
  EXPECT_EQ(FillLikeAReader(*list), 0);
  const std::unique_ptr<MCVarList> base = std::move(list);
  EXPECT_EQ(base->Size(), 3u);
}

TEST(DerivedList, TypesAreRecognisedAcrossTheLibraryBorder) {
  MCVarList own;
  ASSERT_EQ(own.AddContVar("x", "", IMCVariable::kRoleInput), 0);
  EXPECT_NE(dynamic_cast<MCVariable*>(own.GetVarAt(0)), nullptr);
  EXPECT_NE(dynamic_cast<MCVarEncoder*>(own.GetEncoderAt(0)), nullptr);
  EXPECT_EQ(dynamic_cast<ColumnVariable*>(own.GetVarAt(0)), nullptr);

  ApplicationList application;
  ASSERT_EQ(application.AddContVar("x", "", IMCVariable::kRoleInput), 0);
  IMCVariable* const variable = application.GetVarAt(0);
  EXPECT_EQ(dynamic_cast<MCVariable*>(variable), nullptr);
  EXPECT_NE(dynamic_cast<ColumnVariable*>(variable), nullptr);
  EXPECT_TRUE(typeid(*variable) == typeid(ColumnVariable));
}

}  // namespace
