// What readers are asked for while memory is short: fills of a list, statistics, parameters.
#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <sstream>
#include <string>
#include <utility>
#include <vector>
#include <xercesc/dom/DOM.hpp>

#include "faults/AllocationSweep.h"
#include "mccommon/MCUniStats.h"
#include "mccommon/MCVarList.h"
#include "mcxprsutil/MCDataModelParser.h"
#include "mcxprsutil/MCPMMLParser.h"
#include "mcxprsutil/MCSettingsParser.h"
#include "mcxprsutil/MCXDOMHelpers.h"
#include "support/FailingAllocations.h"
#include "support/SmallDocuments.h"
#include "support/VarListText.h"

namespace {

using fault_test::FailingXmlMemory;
using fault_test::Subject;
using fault_test::SweepAndPrint;
using fault_test::TextOf;
using MCCommon::MCStatus;
using MCMTD_NAMESPACE::MCUniStats;
using MCMTD_NAMESPACE::MCVarList;
using MCXPrsUtil::MCDataModelParser;
using MCXPrsUtil::MCPMMLParser;
using MCXPrsUtil::MCSettingsParser;

// What the outputs of an operation hold, made into a text when memory is back.
struct Outputs {
  MCVarList list;
  std::vector<std::string> texts;
  std::vector<double> numbers;
  std::vector<std::vector<double>> rows;
  std::string text;
  MCUniStats statistics;
};

std::string TextOf(const Outputs& outputs) {
  std::ostringstream out;
  out << test_support::TextOf(outputs.list) << outputs.text;
  for (const std::string& text : outputs.texts) out << '|' << text;
  for (const double number : outputs.numbers) out << '|' << number;
  for (const auto& row : outputs.rows) out << "|row of " << row.size();
  out << '|' << outputs.statistics.GetName() << outputs.statistics.GetTotal();
  for (const double cut : outputs.statistics.GetCutPoints()) out << '|' << cut;
  for (const double frequency : outputs.statistics.GetFrequencies()) out << '|' << frequency;
  return out.str();
}

template <class Reader>
using Ask = MCStatus (*)(Reader& reader, Outputs& outputs);

// A reader that has read a document, and what it is asked for.
template <class Reader, class Input>
class Question : public Subject {
 public:
  Question(const char* document, Ask<Reader> ask) : ask_(ask) {
    Input in(document);
    EXPECT_TRUE(reader_.ParseToDOM(in).IsOK());
  }
  void Prepare() override { outputs_ = std::make_unique<Outputs>(); }
  void Run() override { status_ = ask_(reader_, *outputs_); }
  std::string Result() override {
    EXPECT_TRUE(status_.IsOK()) << "memory shortage passes";
    return TextOf(status_) + '\n' + TextOf(*outputs_);
  }
  std::string WrongAfterThrow() override {
    return reader_.GetStatus().IsOK() ? "" : "the reader has another status";
  }

 private:
  const Ask<Reader> ask_;
  Reader reader_;
  std::unique_ptr<Outputs> outputs_;
  MCStatus status_;
};

template <class Reader>
struct Case {
  const char* name;
  Ask<Reader> ask;
};

template <class Reader, class Input, std::size_t kCount>
void Sweep(const char* document, const Case<Reader> (&cases)[kCount]) {
  const FailingXmlMemory memory;
  for (const auto& test : cases) {
    SweepAndPrint(
        {test.name, [&] { return std::make_unique<Question<Reader, Input>>(document, test.ask); }});
  }
}

constexpr Case<MCDataModelParser> kDataModel[] = {
    {"MCDataModelParser::FillVarList",
     [](MCDataModelParser& r, Outputs& o) { return r.FillVarList(o.list, true, true, 4); }},
};

const xercesc::DOMElement& Model(const MCPMMLParser& reader) {
  return *MCXPrsUtil::GetFirstChildElmt(*reader.GetRootElement(), "TreeModel");
}

const xercesc::DOMElement& ContStats(const MCPMMLParser& reader) {
  const xercesc::DOMElement* element = &Model(reader);
  for (const char* name : {"ModelStats", "UnivariateStats", "ContStats"}) {
    element = MCXPrsUtil::GetFirstChildElmt(*element, name);
  }
  return *element;
}

MCStatus Statistics(MCPMMLParser& reader, Outputs& outputs, bool second) {
  reader.SetModelElmt(Model(reader));
  const xercesc::DOMElement* cursor = nullptr;
  const MCStatus status = reader.FillUniStats(outputs.statistics, cursor);
  return second && status.IsOK() ? reader.FillUniStats(outputs.statistics, cursor) : status;
}

constexpr Case<MCPMMLParser> kPmml[] = {
    {"MCPMMLParser::FillVarList",
     [](MCPMMLParser& r, Outputs& o) { return r.FillVarList(o.list, {}, false); }},
    {"MCPMMLParser::FillVarList with bins",
     [](MCPMMLParser& r, Outputs& o) { return r.FillVarList(o.list, {}, true); }},
    {"MCPMMLParser::FillVarList of some fields",
     [](MCPMMLParser& r, Outputs& o) {
       const std::vector<std::string> names = {"age", "\xC3\xA2ge of the respondent in years"};
       return r.FillVarList(o.list, names, true);
     }},
    {"MCPMMLParser::SetBinsFrTransDict",
     [](MCPMMLParser& r, Outputs& o) {
       return r.SetBinsFrTransDict("age", o.numbers, o.texts) ? MCStatus() : MCStatus(1, false);
     }},
    {"MCPMMLParser::FillUniStats, continuous",
     [](MCPMMLParser& r, Outputs& o) { return Statistics(r, o, false); }},
    {"MCPMMLParser::FillUniStats, categorical",
     [](MCPMMLParser& r, Outputs& o) { return Statistics(r, o, true); }},
    {"MCPMMLParser::FillCutPointsFreqs",
     [](MCPMMLParser& r, Outputs& o) {
       std::vector<double> frequencies;
       bool open = false;
       return r.FillCutPointsFreqs(o.numbers, frequencies, open, ContStats(r));
     }},
    {"MCPMMLParser::GetXercesMessage",
     [](MCPMMLParser& r, Outputs& o) {
       o.text = r.GetXercesMessage();
       return MCStatus();
     }},
};

MCStatus Both(const MCStatus& first, const MCStatus& second) {
  return first.IsOK() ? second : first;
}

constexpr char kLongName[] =
    "method, by its full name, which is long enough to need memory of its own";

constexpr Case<MCSettingsParser> kSettings[] = {
    {"MCSettingsParser::FillVarList",
     [](MCSettingsParser& r, Outputs& o) { return r.FillVarList(o.list, true); }},
    {"MCSettingsParser::FillTransDict",
     [](MCSettingsParser& r, Outputs& o) { return r.FillTransDict(o.list); }},
    {"MCSettingsParser::GetParameter, text",
     [](MCSettingsParser& r, Outputs& o) { return r.GetParameter(kLongName, o.text); }},
    {"MCSettingsParser::GetParameter, numbers",
     [](MCSettingsParser& r, Outputs& o) {
       int depth = 0;
       double limit = 0;
       bool prune = false;
       const MCStatus status = Both(r.GetParameter("depth", depth), r.GetParameter("limit", limit));
       o.numbers = {1.0 * depth, limit};
       return Both(status, r.GetParameter("prune", prune));
     }},
    {"MCSettingsParser::GetParameter in a group",
     [](MCSettingsParser& r, Outputs& o) {
       o.numbers.resize(1);
       return r.GetParameter("limit", o.numbers[0], r.GetComplexParameter("stopping"));
     }},
    {"MCSettingsParser::GetParameterType",
     [](MCSettingsParser& r, Outputs&) {
       const bool right = r.GetParameterType(kLongName) == MCSettingsParser::ParamString;
       return right ? MCStatus() : MCStatus(1, false);
     }},
    {"MCSettingsParser::GetArray, texts",
     [](MCSettingsParser& r, Outputs& o) { return r.GetArray("inputs", o.texts); }},
    {"MCSettingsParser::GetArray, doubles",
     [](MCSettingsParser& r, Outputs& o) { return r.GetArray("numbers", o.numbers); }},
    {"MCSettingsParser::GetArray, ints",
     [](MCSettingsParser& r, Outputs& o) {
       std::vector<int> values;
       const MCStatus status = r.GetArray("numbers", values);
       o.numbers.assign(values.begin(), values.end());
       return status;
     }},
    {"MCSettingsParser::GetMatrix, doubles",
     [](MCSettingsParser& r, Outputs& o) { return r.GetMatrix("costs", o.rows); }},
    {"MCSettingsParser::GetMatrix, ints",
     [](MCSettingsParser& r, Outputs&) {
       std::vector<std::vector<int>> rows;
       return r.GetMatrix("costs", rows);
     }},
    {"MCSettingsParser::GetMatrix, texts",
     [](MCSettingsParser& r, Outputs& o) {
       std::vector<std::vector<std::string>> rows;
       const MCStatus status = r.GetMatrix("costs", rows);
       if (!rows.empty()) o.texts = rows[0];
       return status;
     }},
    {"MCSettingsParser::GetVariables",
     [](MCSettingsParser& r, Outputs& o) {
       return Both(r.GetVariables("ContPredictors", o.texts),
                   r.GetVariables("CatPredictors", o.text));
     }},
    {"MCSettingsParser, the names of all roles",
     [](MCSettingsParser& r, Outputs& o) {
       return Both(Both(r.GetPredictors(o.texts), r.GetTargetVars(o.texts)),
                   Both(r.GetContPredictors(o.texts), r.GetFrequencyWeight(o.text)));
     }},
};

TEST(FillAllocations, DataModel) {
  Sweep<MCDataModelParser, std::string>(test_support::kDataModel, kDataModel);
}

TEST(FillAllocations, Pmml) { Sweep<MCPMMLParser, std::istringstream>(test_support::kPmml, kPmml); }

TEST(FillAllocations, Settings) {
  Sweep<MCSettingsParser, std::istringstream>(test_support::kSettings, kSettings);
}

}  // namespace
