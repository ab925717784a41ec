// Shows that an application can receive what a reader finds in a dictionary of its own.
//
// The application here keeps a code book: one entry per column of its tables. It does not read a
// document into a variable list first and copy that list afterwards: it hands the reader a list
// whose operations write into the code book. Every variable arrives the moment it is read.
//
// The code book compares column names without regard to case, as databases do, and refuses a second
// one; the reader then stops with the status for a refused variable.
#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cctype>
#include <cstdio>
#include <deque>
#include <exception>
#include <fstream>
#include <functional>
#include <iostream>
#include <string>
#include <utility>
#include <vector>

#include "DisplayWidth.h"
#include "FileCheck.h"
#include "ParseMessage.h"
#include "StatusText.h"
#include "mccommon/MCFormat.h"
#include "mccommon/MCVarList.h"
#include "mcxprsutil/MCPMMLParser.h"

namespace {

using examples::Printable;
using MCMTD_NAMESPACE::IMCCategorySet;
using MCMTD_NAMESPACE::IMCVarEncoder;
using MCMTD_NAMESPACE::IMCVariable;
using MCMTD_NAMESPACE::MCVarList;

constexpr int kSomethingFailed = 1;
constexpr int kWrongCall = 2;

std::string Number(double value) { return MCXML_NAMESPACE::Format(value, false, nullptr); }

// ---- The application's own data, which knows nothing of the library -----------------------------

struct Code {
  std::string value;
  std::string meaning;
};

struct Column {
  std::string name;
  std::string title;
  std::string type;
  std::vector<Code> codes;
};

class CodeBook {
 public:
  // Called with every line of news about a column.
  using Listener = std::function<void(const Column&, const std::string&)>;

  explicit CodeBook(Listener listener) : listener_(std::move(listener)) {}

  // Null when there is a column of that name already.
  Column* AddColumn(Column column) {
    if (column.name.empty() || Find(column.name)) return nullptr;
    columns_.push_back(std::move(column));  // a deque: earlier columns stay where they are
    Tell(columns_.back(), fmt::format("new column, {}", columns_.back().type));
    for (const Code& code : columns_.back().codes) TellCode(columns_.back(), "code", code);
    return &columns_.back();
  }

  void TellCode(const Column& column, const char* what, const Code& code) const {
    const std::string value = code.value.empty() ? "\"\"" : code.value;
    Tell(column,
         fmt::format("{} {}{}{}", what, value, code.meaning.empty() ? "" : " = ", code.meaning));
  }

  void Tell(const Column& column, const std::string& news) const { listener_(column, news); }

  std::size_t Size() const { return columns_.size(); }

 private:
  static std::string Folded(std::string name) {
    std::transform(name.begin(), name.end(), name.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return name;
  }

  bool Find(const std::string& name) const {
    return std::any_of(columns_.begin(), columns_.end(),
                       [&](const Column& c) { return Folded(c.name) == Folded(name); });
  }

  Listener listener_;
  std::deque<Column> columns_;
};

// ---- Between the two: what the library sees of the code book ------------------------------------

class ColumnCategories final : public IMCCategorySet {
 public:
  explicit ColumnCategories(const Column& column) : column_(column) {}

  std::string GetValueText(int index) const override {
    const auto i = static_cast<std::size_t>(index);
    return index < 0 || i >= column_.codes.size() ? "" : column_.codes[i].value;
  }

 private:
  const Column& column_;
};

class ColumnVariable final : public IMCVariable {
 public:
  ColumnVariable(const Column& column, int kind, VariableRole role)
      : column_(column), categories_(column), kind_(kind), role_(role) {}

  const std::string& GetName() const override { return column_.name; }
  const std::string& GetLabel() const override { return column_.title; }
  int GetKind() const override { return kind_; }
  int GetValueFormat() const override { return data_type_ == 1 ? 1 : 0; }
  VariableRole GetRole() const override { return role_; }
  int GetNCategories() const override { return static_cast<int>(column_.codes.size()); }
  const IMCCategorySet* GetCategorySet() const override {
    return kind_ == 1 ? nullptr : &categories_;
  }
  int GetDataType() const override { return data_type_; }
  void SetDataType(int code) override { data_type_ = code; }

 private:
  const Column& column_;
  ColumnCategories categories_;
  int kind_;
  VariableRole role_;
  int data_type_ = 0;
};

class ColumnEncoder final : public IMCVarEncoder {
 public:
  ColumnEncoder(const CodeBook& book, const Column& column) : book_(book), column_(column) {}

  void SetBinLabels(const std::vector<std::string>& labels) override {
    book_.Tell(column_, fmt::format("bins named {}", fmt::join(labels, ", ")));
  }
  void AddMissingValue(double value, const std::string& label) override {
    book_.TellCode(column_, "missing", {Number(value), label});
  }
  void AddMissingValue(const std::string& value, const std::string& label) override {
    book_.TellCode(column_, "missing", {value, label});
  }
  void SetInvalidRange(double lower, double upper) override {
    book_.Tell(column_, fmt::format("invalid from {} to {}", Number(lower), Number(upper)));
  }

 private:
  const CodeBook& book_;
  const Column& column_;
};

// The list that the reader fills. It holds the code book's view of the columns and nothing else.
class CodeBookList final : public MCVarList {
 public:
  explicit CodeBookList(CodeBook& book) : book_(book) {}

  int AddCatVar(const std::string& name, const std::string& label,
                const std::vector<double>& values, const std::vector<std::string>& valueLabels,
                IMCVariable::VariableRole role) override {
    return Add({name, label, "number codes", Codes(values, valueLabels)}, 2, role);
  }
  int AddCatVar(const std::string& name, const std::string& label,
                const std::vector<double>& values, IMCVariable::VariableRole role) override {
    return Add({name, label, "number codes", Codes(values, {})}, 2, role);
  }
  int AddCatVar(const std::string& name, const std::string& label,
                const std::vector<std::string>& values, const std::vector<std::string>& valueLabels,
                IMCVariable::VariableRole role) override {
    return Add({name, label, "text codes", Codes(values, valueLabels)}, 3, role);
  }
  int AddCatVar(const std::string& name, const std::string& label,
                const std::vector<std::string>& values, IMCVariable::VariableRole role) override {
    return Add({name, label, "text codes", Codes(values, {})}, 3, role);
  }
  int AddContVar(const std::string& name, const std::string& label,
                 IMCVariable::VariableRole role) override {
    return Add({name, label, "numbers", {}}, 1, role);
  }
  int AddContVar(const std::string& name, const std::string& label, double, double,
                 IMCVariable::VariableRole role, bool, int) override {
    return Add({name, label, "numbers in a range", {}}, 1, role);
  }
  int AddContVar(const std::string& name, const std::string& label, double, double,
                 const std::vector<double>& cutPoints, bool,
                 IMCVariable::VariableRole role) override {
    const std::string type = fmt::format("numbers in {} bins", cutPoints.size() + 1);
    return Add({name, label, type, {}}, 1, role);
  }
  int SetWeightVar(const std::string& name, const std::string& label,
                   IMCVariable::WRoundingOption) override {
    return Add({name, label, "weight", {}}, 1, IMCVariable::kRoleFrequencyWeight);
  }

  unsigned int Size() const override { return static_cast<unsigned int>(entries_.size()); }
  IMCVariable* GetVarAt(int index) override {
    return Has(index) ? &entries_[static_cast<std::size_t>(index)].variable : nullptr;
  }
  const IMCVariable* GetVarAt(int index) const override {
    return Has(index) ? &entries_[static_cast<std::size_t>(index)].variable : nullptr;
  }
  IMCVarEncoder* GetEncoderAt(int index) override {
    return Has(index) ? &entries_[static_cast<std::size_t>(index)].encoder : nullptr;
  }

 private:
  struct Entry {
    Entry(const CodeBook& book, const Column& column, int kind, IMCVariable::VariableRole role)
        : variable(column, kind, role), encoder(book, column) {}
    ColumnVariable variable;
    ColumnEncoder encoder;
  };

  static std::string ValueText(double value) { return Number(value); }
  static const std::string& ValueText(const std::string& value) { return value; }

  template <class Value>
  static std::vector<Code> Codes(const std::vector<Value>& values,
                                 const std::vector<std::string>& meanings) {
    std::vector<Code> codes;
    for (std::size_t i = 0; i < values.size(); ++i) {
      codes.push_back({ValueText(values[i]), i < meanings.size() ? meanings[i] : ""});
    }
    return codes;
  }

  // -1 tells the reader that the variable is not wanted.
  int Add(Column column, int kind, IMCVariable::VariableRole role) {
    const Column* added = book_.AddColumn(std::move(column));
    if (added == nullptr) return -1;
    entries_.emplace_back(book_, *added, kind, role);
    return static_cast<int>(entries_.size()) - 1;
  }

  bool Has(int index) const {
    return index >= 0 && static_cast<std::size_t>(index) < entries_.size();
  }

  CodeBook& book_;
  std::deque<Entry> entries_;  // a deque: variables and encoders stay where they are
};

// ---- The program --------------------------------------------------------------------------------

int Fail(const std::string& file, const std::string& text) {
  std::cout.flush();
  std::cerr << "own_dictionary: " << Printable(file) << ": " << Printable(text) << '\n';
  return kSomethingFailed;
}

int Run(const std::string& file, bool bins) {
  if (const std::string reason = examples::WhyNotReadable(file); !reason.empty()) {
    return Fail(file, reason);
  }
  std::ifstream in(file, std::ios::binary);
  MCXPrsUtil::MCPMMLParser parser;
  if (const auto status = parser.ParseToDOM(in); !status.IsOK()) {
    const std::string message = examples::ReadParseMessage(parser.GetXercesMessage()).text;
    return Fail(file, examples::StatusText(status) + (message.empty() ? "" : ": " + message));
  }
  CodeBook book([](const Column& column, const std::string& news) {
    std::cout << Printable(column.name) << ": " << Printable(news) << '\n';
  });
  CodeBookList list(book);
  const auto status = parser.FillVarList(list, {}, bins);
  std::cout << "Columns in the code book: " << book.Size() << '\n';
  return status.IsOK() ? 0 : Fail(file, examples::StatusText(status));
}

int Main(int argc, char** argv) {
  std::string file;
  bool bins = false;
  CLI::App app("Streams the variables of a PMML document into an application's own dictionary.",
               "own_dictionary");
  app.add_option("FILE", file, "A PMML document")->required();
  app.add_flag("--bins", bins, "Ask for bins, which every continuous field must then have");
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    return app.exit(error) == 0 ? 0 : kWrongCall;
  }
  return Run(file, bins);
}

}  // namespace

int main(int argc, char** argv) {
  try {
    return Main(argc, argv);
  } catch (const std::exception& error) {
    std::fprintf(stderr, "own_dictionary: %s\n", error.what());
    return kSomethingFailed;
  }
}
