// Shows what documents tell: of PMML the variables (name, label, kind, categories, range, bins,
// missing values and invalid range) and the statistics of its models, of data models the variables,
// of build settings the parameters and variables.
//
// Exit code: 0 when everything was read, 1 when something was not, 2 for a wrong call.
#include <unistd.h>

#include <CLI/CLI.hpp>
#include <cstdio>
#include <exception>
#include <iostream>
#include <string>
#include <vector>

#include "DescribeDocument.h"
#include "DescriptionJson.h"
#include "DescriptionTable.h"
#include "Terminal.h"
#include "mcxprsutil/MCXParsePolicy.h"

namespace {

constexpr int kSomethingFailed = 1;
constexpr int kWrongCall = 2;

struct Arguments {
  std::vector<std::string> files;
  std::vector<std::string> fieldLists;
  bool json = false;
  bool hardened = false;
  examples::DescribeOptions describe;
  examples::TableOptions table;
};

void Declare(CLI::App& app, Arguments& arguments) {
  app.add_option("FILE", arguments.files,
                 "PMML documents, data models or build settings; - reads standard input")
      ->required();
  app.add_flag("--json", arguments.json, "Print JSON for programs instead of tables");
  app.add_flag("--hardened", arguments.hardened,
               "Refuse documents that reach outside of themselves or are made to exhaust");
  app.add_flag("--bins", arguments.describe.bins,
               "Show the bins that the transformation dictionary declares");
  app.add_flag("!--no-statistics", arguments.describe.statistics,
               "Leave out the distributions that models hold");
  // One text per option, so that the files behind it are not taken for fields.
  app.add_option("--fields", arguments.fieldLists, "Show only these fields, separated by commas")
      ->type_name("A,B")
      ->delimiter(',')
      ->expected(1)
      ->allow_extra_args(false)
      ->take_all();
  app.add_option("--field", arguments.describe.fields,
                 "Show this field, whose name may hold commas; may be repeated")
      ->type_name("NAME")
      ->expected(1)
      ->allow_extra_args(false)
      ->take_all();
  app.add_flag("--all", arguments.table.allValues, "Show long lists of values in full");
  app.add_option("--width", arguments.table.width,
                 "Columns to use (default: those of the terminal, else 100)")
      ->type_name("N")
      ->check(CLI::Range(20, 100000));
}

// Prints what was read to standard output, in table form, and what was not to standard error.
bool Report(const examples::DocumentDescription& description, const Arguments& arguments,
            bool& isFirst) {
  const bool nothing = description.variables.empty() && description.statistics.empty() &&
                       description.parameters.empty() && !description.problems.empty();
  if (!arguments.json && !nothing) {
    std::cout << (isFirst ? "" : "\n");
    isFirst = false;
    examples::PrintDescription(std::cout, description, arguments.table);
    std::cout.flush();  // before what follows on standard error
  }
  for (const auto& problem : description.problems) {
    std::cerr << "describe_pmml: " << examples::ProblemLine(description.source, problem) << '\n';
  }
  return description.problems.empty();
}

int Run(const Arguments& arguments) {
  bool allRead = true;
  bool isFirst = true;
  std::vector<examples::DocumentDescription> descriptions;
  for (const std::string& file : arguments.files) {
    auto description = examples::DescribeFile(file, arguments.describe);
    allRead = Report(description, arguments, isFirst) && allRead;
    if (arguments.json) descriptions.push_back(std::move(description));
  }
  if (arguments.json) std::cout << examples::DescriptionsToJson(descriptions) << '\n';
  std::cout.flush();
  if (!std::cout) std::cerr << "describe_pmml: the output could not be written\n";
  return allRead && std::cout ? 0 : kSomethingFailed;
}

int Main(int argc, char** argv) {
  Arguments arguments;
  if (const int width = examples::TerminalWidth(STDOUT_FILENO); width > 0) {
    arguments.table.width = static_cast<std::size_t>(width);
  }
  CLI::App app(
      "Shows the variables of PMML documents, data models and build settings, the statistics "
      "of models and the parameters of settings.",
      "describe_pmml");
  Declare(app, arguments);
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    return app.exit(error) == 0 ? 0 : kWrongCall;
  }
  auto& fields = arguments.describe.fields;
  fields.insert(fields.end(), arguments.fieldLists.begin(), arguments.fieldLists.end());
  if (arguments.hardened) {
    MCXPrsUtil::MCXParsePolicy::SetForProcess(MCXPrsUtil::MCXParsePolicy::Hardened());
  }
  return Run(arguments);
}

}  // namespace

int main(int argc, char** argv) {
  try {
    return Main(argc, argv);
  } catch (const std::exception& error) {
    std::fprintf(stderr, "describe_pmml: %s\n", error.what());
    return kSomethingFailed;
  }
}
