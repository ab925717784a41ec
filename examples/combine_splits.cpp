// Combines one PMML model per split of the data into one document, whose segments are selected by
// the values of the split variables, and reports what was merged.
//
// Exit code: 0 when all models are in the document, 1 when something failed, 2 for a wrong call.
#include <fmt/format.h>
#include <unistd.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <iostream>
#include <string>
#include <string_view>
#include <vector>
#include <xercesc/dom/DOMElement.hpp>
#include <xercesc/dom/DOMException.hpp>
#include <xercesc/sax/SAXException.hpp>
#include <xercesc/util/XMLException.hpp>

#include "DisplayWidth.h"
#include "FileCheck.h"
#include "ParseMessage.h"
#include "ProgressBar.h"
#include "SplitManifest.h"
#include "SplitVariables.h"
#include "StatusText.h"
#include "Terminal.h"
#include "mcxprsutil/MCXDOMHelpers.h"
#include "mcxprsutil/MCXMLReadWrite.h"
#include "mcxprsutil/MCXSplitPMMLCombiner.h"
#include "mcxprsutil/MCXTranscoder.h"

namespace {

using examples::InputError;
using examples::Printable;
using examples::SplitModel;
using MCCommon::MCStatus;
using MCXPrsUtil::MCXMLReadWrite;
using MCXPrsUtil::MCXSplitPMMLCombiner;
using xercesc::DOMElement;

constexpr int kSomethingFailed = 1;
constexpr int kWrongCall = 2;
constexpr int kParseFailed = 104;
constexpr int kAttributeMissing = 108;

constexpr const char* kFooter =
    "A MODEL is VALUE[,VALUE...]=FILE with one value per split variable, in the order of --by.\n"
    "Put a value that holds a comma, an equals sign or a quote into quotes and double the quotes\n"
    "in it; everything behind the first equals sign outside quotes is the file:\n"
    "  combine_splits --by region,size --out all.pmml 'North,\"a=b\"=north.pmml'\n"
    "A manifest is a CSV file with the same quoting: a header with the split variables and\n"
    "\"model\" at its end, then the values and the file of each model, relative to the manifest.\n"
    "A split variable is numeric if all its values are numbers such as 1, -2.5 or 1e3, else text;\n"
    "a code such as 007 is text.";

struct Arguments {
  std::vector<std::string> variables;
  std::string out;
  std::string manifest;
  std::vector<std::string> labels;
  std::vector<std::string> textVariables;
  std::vector<std::string> models;
  bool keepGoing = false;
};

void Declare(CLI::App& app, Arguments& arguments) {
  app.footer(kFooter);
  app.add_option("--by", arguments.variables,
                 "The split variables (default: those of the manifest)")
      ->type_name("A,B")
      ->delimiter(',')
      ->expected(1)
      ->allow_extra_args(false)
      ->take_all();
  app.add_option("-o,--out", arguments.out, "The combined document")->type_name("FILE")->required();
  app.add_option("--manifest", arguments.manifest, "A CSV file that lists the models")
      ->type_name("FILE");
  app.add_option("--label", arguments.labels, "The label of a split variable; may be repeated")
      ->type_name("VARIABLE=TEXT")
      ->expected(1)
      ->allow_extra_args(false)
      ->take_all();
  app.add_option("--text", arguments.textVariables,
                 "Make this split variable text though its values are numbers; may be repeated")
      ->type_name("VARIABLE")
      ->expected(1)
      ->allow_extra_args(false)
      ->take_all();
  app.add_flag("-k,--keep-going", arguments.keepGoing,
               "Leave a model out that cannot be added, and combine the others (a later file\n"
               "without a model still adds its dictionary)");
  app.add_option("MODEL", arguments.models, "Split values and file of a model");
}

std::vector<SplitModel> CollectModels(Arguments& arguments) {
  std::vector<SplitModel> models;
  if (!arguments.manifest.empty()) {
    models = examples::ReadManifest(arguments.manifest, arguments.variables);
  }
  if (arguments.variables.empty()) {
    throw InputError("--by must name the split variables, or --manifest a file that does");
  }
  for (const std::string& argument : arguments.models) {
    models.push_back(examples::ParseSplitArgument(argument, arguments.variables));
  }
  if (models.empty()) throw InputError("there are no models: give some, or a --manifest");
  return models;
}

examples::SplitVariableOptions VariableOptions(const Arguments& arguments) {
  examples::SplitVariableOptions options;
  options.textVariables.insert(arguments.textVariables.begin(), arguments.textVariables.end());
  for (const std::string& label : arguments.labels) {
    const std::size_t equals = label.find('=');
    if (equals == std::string::npos) {
      throw InputError(fmt::format("--label {}: no \"=\" between variable and text", label));
    }
    options.labels[label.substr(0, equals)] = label.substr(equals + 1);
  }
  return options;
}

// A model would be gone once the combined document has its name.
bool IsSameFile(const std::string& a, const std::string& b) {
  std::error_code ignored;  // a file that is not there is no other file
  return std::filesystem::equivalent(a, b, ignored);
}

void CheckOutput(const Arguments& arguments, const std::vector<SplitModel>& models) {
  const std::string& out = arguments.out;
  if (!arguments.manifest.empty() && IsSameFile(out, arguments.manifest)) {
    throw InputError(fmt::format("--out {}: this would overwrite the manifest", out));
  }
  for (const SplitModel& model : models) {
    if (!IsSameFile(out, model.path)) continue;
    throw InputError(fmt::format("--out {}: this would overwrite a model", out));
  }
}

// Runs an operation of the library that lets exceptions of the XML library pass, and returns their
// text; empty when none came.
template <class Operation>
std::string TextOfException(Operation operation) {
  try {
    operation();
    return "";
  } catch (const xercesc::XMLException& e) {
    return MCXPrsUtil::ToUTF8(e.getMessage());
  } catch (const xercesc::SAXException& e) {
    return MCXPrsUtil::ToUTF8(e.getMessage());
  } catch (const xercesc::DOMException& e) {
    return MCXPrsUtil::ToUTF8(e.getMessage());
  }
}

int CountChildren(const DOMElement* parent, const char* name) {
  if (parent == nullptr) return 0;
  int count = 0;
  for (const DOMElement* e = MCXPrsUtil::GetFirstChildElmt(*parent, name); e != nullptr;
       e = MCXPrsUtil::GetNextSiblingElmt(*e, name)) {
    ++count;
  }
  return count;
}

struct Counts {
  int segments = 0;
  int dataFields = 0;
  int miningFields = 0;
};

// One run of the combiner. It holds the XML platform for as long as the combined document lives.
class Combination {
 public:
  explicit Combination(const MCMTD_NAMESPACE::MCVarList& variables) : combiner_(variables) {}

  // An export without a path writes nothing and releases a document that is still there; the
  // combiner's destructor would not.
  ~Combination() { (void)combiner_.ExportMiningModel(""); }

  Combination(const Combination&) = delete;
  Combination& operator=(const Combination&) = delete;

  const std::vector<std::string>& Diagnostics() const { return combiner_.GetDiagnostics(); }

  // Returns why the model was refused; empty when it was not.
  std::string Add(const SplitModel& model) {
    const int before = combiner_.GetNModels();
    MCStatus status;
    std::string thrown =
        TextOfException([&] { status = combiner_.AddModel(model.path, model.values); });
    if (thrown.empty() && status.IsOK() && combiner_.GetNModels() > before) return "";
    // A first model that is refused leaves an empty document behind, to which nothing can be added.
    if (before == 0) (void)combiner_.ExportMiningModel("");
    if (!thrown.empty()) return thrown;
    return status.IsOK() ? "the document holds no model" : Reason(model, status);
  }

  // Counts before the export, which releases the document.
  Counts Count() {
    Counts counts;
    bool created = false;
    const DOMElement* pmml = combiner_.GetPMML(combiner_.CreateEmptyMiningModel(created));
    const DOMElement* model = combiner_.GetStandardModel(pmml);
    counts.segments = combiner_.GetNModels();
    counts.dataFields = CountChildren(combiner_.GetDataDict(pmml), "DataField");
    counts.miningFields = CountChildren(combiner_.GetMiningSchema(model), "MiningField");
    return counts;
  }

  // Returns why the document could not be written; empty when it was.
  std::string Export(const std::string& path) {
    MCStatus status;
    std::string thrown = TextOfException([&] { status = combiner_.ExportMiningModel(path); });
    if (!thrown.empty()) return thrown;
    return status.IsOK() ? "" : examples::StatusText(status) + "; what is there is incomplete";
  }

 private:
  std::string Reason(const SplitModel& model, const MCStatus& status) {
    if (status.GetCode() == kAttributeMissing) {
      return "the document holds no model, or one without functionName (status 108)";
    }
    if (status.GetCode() != kParseFailed) return examples::StatusText(status);
    if (std::string reason = examples::WhyNotReadable(model.path); !reason.empty()) {
      return reason;
    }
    // The combiner keeps no parser: reading the file once more tells line and column.
    std::string message;
    std::string thrown = TextOfException([&] {
      (void)platform_.ParseToDOM(model.path);
      message = examples::ReadParseMessage(platform_.GetParseError()).text;
    });
    message += thrown;
    return message.empty() ? examples::StatusText(status)
                           : fmt::format("{} (status {})", message, status.GetCode());
  }

  MCXMLReadWrite platform_;
  MCXSplitPMMLCombiner combiner_;
};

int AddModels(Combination& combination, const std::vector<SplitModel>& models, bool keepGoing) {
  int refused = 0;
  examples::ProgressBar bar(std::cerr, examples::TerminalWidth(STDERR_FILENO), "Combining",
                            models.size());
  for (const SplitModel& model : models) {
    if (const std::string reason = combination.Add(model); !reason.empty()) {
      bar.Clear();
      std::cerr << "combine_splits: " << Printable(model.path) << ": " << Printable(reason) << '\n';
      ++refused;
      if (!keepGoing) break;
    }
    bar.Advance();
  }
  return refused;
}

void PrintVariables(const MCMTD_NAMESPACE::MCVarList& list) {
  for (int i = 0; i < static_cast<int>(list.Size()); ++i) {
    const auto* variable = list.GetVarAt(i);
    const int count = variable->GetNCategories();
    fmt::print("  {:<17} {} ({}, {} {})\n", i == 0 ? "split variables" : "",
               Printable(variable->GetName()), variable->GetKind() == 2 ? "numbers" : "text", count,
               count == 1 ? "value" : "values");
  }
}

void PrintNotes(const std::vector<std::string>& notes) {
  if (!notes.empty()) fmt::print("\nNotes on the split values:\n");
  for (const std::string& note : notes) fmt::print("  - {}\n", Printable(note));
}

bool BeginsWith(const std::string& text, const std::string& beginning) {
  return text.compare(0, beginning.size(), beginning) == 0;
}

// Most diagnostics begin with the path of their model, and they come in the order of the models:
// the path becomes a heading over them.
void PrintDiagnostics(const std::vector<std::string>& diagnostics,
                      const std::vector<SplitModel>& models) {
  if (!diagnostics.empty()) fmt::print("\nWorth knowing about the models:\n");
  auto current = models.end();
  for (const std::string& sentence : diagnostics) {
    const auto isAbout = [&](const SplitModel& m) { return BeginsWith(sentence, m.path + ": "); };
    const auto first = current == models.end() ? models.begin() : current;
    const auto found = std::find_if(first, models.end(), isAbout);
    if (found != models.end() && found != current) fmt::print("  {}\n", Printable(found->path));
    if (found != models.end()) current = found;
    const std::size_t skipped = found == models.end() ? 0 : found->path.size() + 2;
    fmt::print("  - {}\n", Printable(std::string_view(sentence).substr(skipped)));
  }
}

void PrintReport(const Arguments& arguments, std::size_t models, const Counts& counts,
                 const MCMTD_NAMESPACE::MCVarList& list, double seconds) {
  fmt::print("Combined {} of {} models into {}\n", counts.segments, models,
             Printable(arguments.out));
  PrintVariables(list);
  fmt::print("  {:<17} {}\n", "segments", counts.segments);
  fmt::print("  {:<17} {}\n", "data fields", counts.dataFields);
  fmt::print("  {:<17} {}\n", "mining fields", counts.miningFields);
  fmt::print("  {:<17} {:.3f}\n", "seconds", seconds);
}

int Fail(const std::string& text) {
  std::cerr << "combine_splits: " << text << '\n';
  return kSomethingFailed;
}

int Combine(const Arguments& arguments, const std::vector<SplitModel>& models,
            const MCMTD_NAMESPACE::MCVarList& list, const std::vector<std::string>& notes) {
  const auto start = std::chrono::steady_clock::now();
  Combination combination(list);
  const int refused = AddModels(combination, models, arguments.keepGoing);
  const bool stopped = refused > 0 && !arguments.keepGoing;
  if (stopped) return Fail("nothing was written; --keep-going combines the other models");
  const Counts counts = combination.Count();
  if (counts.segments == 0) return Fail("no model could be added, and nothing was written");
  if (const std::string reason = combination.Export(arguments.out); !reason.empty()) {
    return Fail(Printable(arguments.out) + ": " + Printable(reason));
  }
  const std::chrono::duration<double> seconds = std::chrono::steady_clock::now() - start;
  PrintReport(arguments, models.size(), counts, list, seconds.count());
  PrintNotes(notes);
  PrintDiagnostics(combination.Diagnostics(), models);
  if (std::fflush(stdout) != 0) return Fail("the report could not be written");
  return refused == 0 ? 0 : kSomethingFailed;
}

int Main(int argc, char** argv) {
  Arguments arguments;
  CLI::App app("Combines PMML models of the splits of a data set into one document.",
               "combine_splits");
  Declare(app, arguments);
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    return app.exit(error) == 0 ? 0 : kWrongCall;
  }
  try {
    const std::vector<SplitModel> models = CollectModels(arguments);
    CheckOutput(arguments, models);
    MCMTD_NAMESPACE::MCVarList list;
    const auto notes =
        examples::AddSplitVariables(arguments.variables, models, VariableOptions(arguments), list);
    return Combine(arguments, models, list, notes);
  } catch (const InputError& error) {
    std::cerr << "combine_splits: " << Printable(error.what()) << '\n';
    return kWrongCall;
  }
}

}  // namespace

int main(int argc, char** argv) {
  try {
    return Main(argc, argv);
  } catch (const std::exception& error) {
    std::fprintf(stderr, "combine_splits: %s\n", error.what());
    return kSomethingFailed;
  }
}
