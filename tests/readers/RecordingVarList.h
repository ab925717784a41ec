// A variable list that keeps no variables but a line of text per call, in call order.
#ifndef MCXPRSUTIL_TESTS_READERS_RECORDINGVARLIST_H
#define MCXPRSUTIL_TESTS_READERS_RECORDINGVARLIST_H

#include <cfloat>
#include <cstddef>
#include <memory>
#include <string>
#include <vector>

#include "mccommon/MCFormat.h"
#include "mccommon/MCMissingValue.h"
#include "mccommon/MCVarList.h"

// Lines look like "AddCatVar(sex|Sex|1, 2|labels Male, Female|role 4)"; texts are quoted, so that
// they differ from numbers; the largest doubles are MAX and -MAX, the smallest positive normal one
// is MIN. The encoder's calls begin with the index of its variable:
// "AddMissingValue(0|99|'No answer')"; so does the only call of a variable, "SetDataType(0|2)".
class RecordingVarList : public MCMTD_NAMESPACE::MCVarList {
 public:
  using Role = MCMTD_NAMESPACE::IMCVariable::VariableRole;
  using Rounding = MCMTD_NAMESPACE::IMCVariable::WRoundingOption;
  using Numbers = std::vector<double>;
  using Texts = std::vector<std::string>;

  std::vector<std::string> calls;
  int next_index = 0;          // what the next add that is accepted gives
  int refuse_at = -1;          // the index at which adds are refused
  bool has_encoders = true;    // false: every encoder is null
  bool has_variables = true;   // false: GetVarAt gives null
  bool throws_on_add = false;  // true: adds throw the int 7

  int AddCatVar(const std::string& name, const std::string& label, const Numbers& values,
                const Texts& labels, Role role) override {
    return Add("AddCatVar", name, label, {Text(values), "labels " + Text(labels), RoleText(role)});
  }
  int AddCatVar(const std::string& name, const std::string& label, const Numbers& values,
                Role role) override {
    return Add("AddCatVar", name, label, {Text(values), RoleText(role)});
  }
  int AddCatVar(const std::string& name, const std::string& label, const Texts& values,
                const Texts& labels, Role role) override {
    return Add("AddCatVar", name, label, {Text(values), "labels " + Text(labels), RoleText(role)});
  }
  int AddCatVar(const std::string& name, const std::string& label, const Texts& values,
                Role role) override {
    return Add("AddCatVar", name, label, {Text(values), RoleText(role)});
  }
  int AddContVar(const std::string& name, const std::string& label, Role role) override {
    return Add("AddContVar", name, label, {RoleText(role)});
  }
  int AddContVar(const std::string& name, const std::string& label, double minimum, double maximum,
                 Role role, bool flag, int count) override {
    return Add("AddContVar", name, label,
               {RangeText(minimum, maximum), RoleText(role),
                (flag ? "true " : "false ") + std::to_string(count)});
  }
  int AddContVar(const std::string& name, const std::string& label, double minimum, double maximum,
                 const Numbers& cuts, bool binned, Role role) override {
    return Add("AddContVar", name, label,
               {RangeText(minimum, maximum), "cuts " + Text(cuts), binned ? "binned" : "unbinned",
                RoleText(role)});
  }
  int SetWeightVar(const std::string& name, const std::string& label, Rounding rounding) override {
    return Add("SetWeightVar", name, label, {std::to_string(static_cast<int>(rounding))});
  }
  unsigned int Size() const override { return static_cast<unsigned int>(next_index); }
  MCMTD_NAMESPACE::IMCVariable* GetVarAt(int index) override {
    Record("GetVarAt", {std::to_string(index)});
    if (!has_variables) return nullptr;
    variables_.push_back(std::make_unique<Variable>(*this, index));
    return variables_.back().get();
  }
  const MCMTD_NAMESPACE::IMCVariable* GetVarAt(int) const override { return nullptr; }
  MCMTD_NAMESPACE::IMCVarEncoder* GetEncoderAt(int index) override {
    Record("GetEncoderAt", {std::to_string(index)});
    if (!has_encoders) return nullptr;
    encoders_.push_back(std::make_unique<Encoder>(*this, index));
    return encoders_.back().get();
  }

  // The calls other than GetEncoderAt, which are rarely the point.
  std::vector<std::string> Declarations() const {
    std::vector<std::string> lines;
    for (const std::string& call : calls) {
      if (call.rfind("GetEncoderAt", 0) != 0) lines.push_back(call);
    }
    return lines;
  }

  // How arguments show in a line.
  static std::string Text(double value) {
    if (value == DBL_MAX) return "MAX";
    if (value == -DBL_MAX) return "-MAX";
    if (value == DBL_MIN) return "MIN";
    if (value == MCMV::gMissingValue) return "missing";
    return MCXML_NAMESPACE::Format(value, false, nullptr);
  }
  static std::string Text(const std::string& text) { return "'" + text + "'"; }
  template <class Value>
  static std::string Text(const std::vector<Value>& values) {
    std::string text;
    for (const Value& value : values) text += (text.empty() ? "" : ", ") + Text(value);
    return text.empty() ? "none" : text;
  }
  static std::string RangeText(double lower, double upper) {
    return Text(lower) + ".." + Text(upper);
  }

 private:
  class Encoder : public MCMTD_NAMESPACE::IMCVarEncoder {
   public:
    Encoder(RecordingVarList& list, int index) : list_(list), index_(std::to_string(index)) {}
    void SetBinLabels(const Texts& labels) override {
      list_.Record("SetBinLabels", {index_, Text(labels)});
    }
    void AddMissingValue(double value, const std::string& label) override {
      list_.Record("AddMissingValue", {index_, Text(value), Text(label)});
    }
    void AddMissingValue(const std::string& value, const std::string& label) override {
      list_.Record("AddMissingValue", {index_, Text(value), Text(label)});
    }
    void SetInvalidRange(double lower, double upper) override {
      list_.Record("SetInvalidRange", {index_, RangeText(lower, upper)});
    }

   private:
    RecordingVarList& list_;
    std::string index_;
  };

  class Variable : public MCMTD_NAMESPACE::IMCVariable {
   public:
    Variable(RecordingVarList& list, int index) : list_(list), index_(std::to_string(index)) {}
    const std::string& GetName() const override { return nothing_; }
    const std::string& GetLabel() const override { return nothing_; }
    int GetKind() const override { return 0; }
    int GetValueFormat() const override { return 0; }
    VariableRole GetRole() const override { return kRoleNone; }
    int GetNCategories() const override { return 0; }
    const MCMTD_NAMESPACE::IMCCategorySet* GetCategorySet() const override { return nullptr; }
    int GetDataType() const override { return 0; }
    void SetDataType(int code) override {
      list_.Record("SetDataType", {index_, std::to_string(code)});
    }

   private:
    RecordingVarList& list_;
    std::string index_;
    std::string nothing_;
  };

  static std::string RoleText(Role role) {
    return "role " + std::to_string(static_cast<int>(role));
  }

  void Record(const std::string& operation, const Texts& arguments) {
    std::string line = operation + "(" + arguments.front();
    for (std::size_t i = 1; i < arguments.size(); ++i) line += "|" + arguments[i];
    calls.push_back(line + ")");
  }

  int Add(const std::string& operation, const std::string& name, const std::string& label,
          const Texts& rest) {
    Texts arguments = {name, label};
    arguments.insert(arguments.end(), rest.begin(), rest.end());
    Record(operation, arguments);
    if (throws_on_add) throw 7;
    return next_index == refuse_at ? -1 : next_index++;
  }

  std::vector<std::unique_ptr<Encoder>> encoders_;
  std::vector<std::unique_ptr<Variable>> variables_;
};

#endif  // MCXPRSUTIL_TESTS_READERS_RECORDINGVARLIST_H
