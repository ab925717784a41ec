// What single calls cost by length and position, so that a bend in a curve can be seen.

#include <benchmark/benchmark.h>
#include <mcxprsutil/MCXDOMHelpers.h>
#include <mcxprsutil/MCXTranscoder.h>

#include <string>
#include <vector>
#include <xercesc/util/PlatformUtils.hpp>

namespace {

// Words of changing length; every `beyond`-th one with a letter beyond ASCII.
std::string MakeText(std::size_t bytes, std::size_t beyond) {
  std::string text;
  for (std::size_t i = 0; text.size() < bytes; ++i) {
    text += std::string(2 + i * 5 % 7, static_cast<char>('a' + i * 11 % 26));
    text += beyond != 0 && i % beyond == 0 ? "\xC3\xBC" : " ";
  }
  text.resize(bytes);
  // A letter that the cut has split is taken out whole.
  if (!text.empty() && text.back() == '\xC3') text.back() = '.';
  return text;
}

void Report(benchmark::State& state, std::size_t bytes) {
  state.SetBytesProcessed(static_cast<std::int64_t>(bytes) *
                          static_cast<std::int64_t>(state.iterations()));
}

void ToUTF16(benchmark::State& state) {
  const auto text =
      MakeText(static_cast<std::size_t>(state.range(0)), static_cast<std::size_t>(state.range(1)));
  for (auto _ : state) benchmark::DoNotOptimize(MCXPrsUtil::ToUTF16(text.c_str()));
  Report(state, text.size());
}
BENCHMARK(ToUTF16)->ArgNames({"bytes", "beyond"})->ArgsProduct({{4, 16, 64, 1024, 65536}, {0, 8}});

void ToUTF8(benchmark::State& state) {
  const auto text =
      MakeText(static_cast<std::size_t>(state.range(0)), static_cast<std::size_t>(state.range(1)));
  const std::vector<XMLCh> wide = MCXPrsUtil::ToUTF16(text.c_str());
  for (auto _ : state) benchmark::DoNotOptimize(MCXPrsUtil::ToUTF8(wide.data()));
  Report(state, text.size());
}
BENCHMARK(ToUTF8)->ArgNames({"bytes", "beyond"})->ArgsProduct({{4, 16, 64, 1024, 65536}, {0, 8}});

// A name at a given place of a list of 128.
void FindXStrInList(benchmark::State& state) {
  std::vector<std::string> names;
  for (int i = 0; i < 128; ++i) names.push_back("income_class_" + std::to_string(i));
  const std::vector<XMLCh> wanted =
      MCXPrsUtil::ToUTF16(names[static_cast<std::size_t>(state.range(0))].c_str());
  for (auto _ : state) benchmark::DoNotOptimize(MCXPrsUtil::FindXStrInList(wanted.data(), names));
}
BENCHMARK(FindXStrInList)->ArgName("place")->Arg(0)->Arg(7)->Arg(31)->Arg(127);

}  // namespace

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 2;
  xercesc::XMLPlatformUtils::Initialize();
  benchmark::RunSpecifiedBenchmarks();
  xercesc::XMLPlatformUtils::Terminate();
  return 0;
}
