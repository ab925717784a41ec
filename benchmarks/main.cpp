// Prints, for each comparison, the ratio of our cost to that of a floor or a peer.

#include <CLI/CLI.hpp>
#include <xercesc/util/PlatformUtils.hpp>

#include "Cases.h"
#include "Suite.h"

namespace {

// The platform stays up for the whole run: no variant pays for starting or stopping it.
struct XercesPlatform {
  XercesPlatform() { xercesc::XMLPlatformUtils::Initialize(); }
  ~XercesPlatform() { xercesc::XMLPlatformUtils::Terminate(); }
  XercesPlatform(const XercesPlatform&) = delete;
  XercesPlatform& operator=(const XercesPlatform&) = delete;
};

bench::Suite AllCases() {
  bench::Suite suite;
  bench::AddParseAndWriteCases(suite);
  bench::AddVariableListCases(suite);
  bench::AddFieldListCases(suite);
  bench::AddStatisticsCases(suite);
  bench::AddParameterCases(suite);
  bench::AddDomHelperCases(suite);
  bench::AddCombinerCases(suite);
  bench::AddStringPrimitiveCases(suite);
  bench::AddTranscodingCases(suite);
  bench::AddUnicodeFormCases(suite);
  return suite;
}

}  // namespace

int main(int argc, char** argv) {
  CLI::App app{"Ratios of mcxprsutil to a floor or a peer, measured side by side"};
  bench::RunOptions options;
  bool list = false;
  bool noMemory = false;
  app.add_option("filter", options.filters, "Run what contains one of these texts (see --list)");
  app.add_option("--rounds", options.rounds, "Rounds per comparison, at least")
      ->check(CLI::Range(3, 1001))
      ->capture_default_str();
  app.add_flag("--list", list, "List the comparisons and stop");
  app.add_flag("--no-memory", noMemory, "Leave out the peak memory");
  app.add_flag("--markdown", options.markdown, "Print the ratios as a Markdown table");
  CLI11_PARSE(app, argc, argv);
  options.memory = !noMemory;

  bench::PinMalloc();
  const XercesPlatform platform;
  const bench::Suite suite = AllCases();
  if (list) return suite.List(), 0;
  return suite.Run(options) ? 0 : 1;
}
