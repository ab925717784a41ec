#include "Suite.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstdio>
#include <exception>

#include "PeakMemory.h"

namespace bench {
namespace {

constexpr int kMemoryChildren = 3;

struct Row {
  std::string operation;
  std::string size;
  std::string ours;
  std::string peerName;
  std::string peer;
  double ratio;
  std::string target;
  std::string verdict;
};

void PrintHeading(bool markdown) {
  if (markdown) {
    fmt::print(
        "| Operation | Input | Compared with | Ratio | Target | |\n|---|---|---|---|---|---|\n");
    return;
  }
  fmt::print("{:<26} {:<27} {:>11}  {:<30} {:>11}  {:>6}  {:<14}\n", "operation", "input", "ours",
             "compared with", "", "ratio", "target");
}

void PrintRow(const Row& row, bool markdown) {
  if (markdown) {
    fmt::print("| {} | {} | {} | {:.3f} | {} | {} |\n", row.operation, row.size, row.peerName,
               row.ratio, row.target, row.verdict);
  } else {
    fmt::print("{:<26} {:<27} {:>11}  {:<30} {:>11}  {:>6.3f}  {:<14} {}\n", row.operation,
               row.size, row.ours, row.peerName, row.peer, row.ratio, row.target, row.verdict);
  }
  std::fflush(stdout);
}

std::string FormatNs(double ns) {
  if (ns < 1e4) return fmt::format("{:.1f} ns", ns);
  if (ns < 1e7) return fmt::format("{:.1f} us", ns / 1e3);
  return fmt::format("{:.1f} ms", ns / 1e6);
}

std::string FormatSpeed(double nsPerRun, const Comparison& comparison) {
  if (comparison.bytes == 0) return FormatNs(nsPerRun / static_cast<double>(comparison.operations));
  return fmt::format("{:.1f} MB/s", static_cast<double>(comparison.bytes) / nsPerRun * 1e3);
}

std::string FormatTarget(const std::optional<Limit>& limit) {
  if (!limit) return "-";
  if (limit->extraNs == 0) return fmt::format("<= {:g}", limit->factor);
  return fmt::format("<= {:g} + {:g} ns", limit->factor, limit->extraNs);
}

bool Holds(const Timing& timing, const Limit& limit, std::size_t operations) {
  const double slack = limit.extraNs * static_cast<double>(operations) / timing.peer;
  return timing.ratio <= limit.factor + slack;
}

std::string Judge(const Timing& timing, const std::optional<Limit>& limit, std::size_t operations) {
  if (!limit) return "";
  return Holds(timing, *limit, operations) ? "ok" : "over";
}

std::string FormatMegabytes(double bytes) { return fmt::format("{:.2f} MB", bytes / 1e6); }

// What the work adds to the process: counting the process itself would flatter the ratio.
std::optional<double> PeakGrowth(const Variant& variant) {
  std::vector<double> growth;
  for (int i = 0; i < kMemoryChildren; ++i) {
    if (variant.prepare) variant.prepare();
    const auto memory = MeasurePeakMemory(variant.run);
    if (!memory) return std::nullopt;
    growth.push_back(static_cast<double>(memory->peak - memory->before));
  }
  std::sort(growth.begin(), growth.end());
  return growth[growth.size() / 2];
}

void ReportMemory(Row row, const Comparison& comparison, const RunOptions& options) {
  if (!options.memory || !comparison.memoryFactor) return;
  const Variant& floor = comparison.peers.front().variant;
  const auto ours = PeakGrowth(comparison.ours);
  const auto peer = PeakGrowth(floor);
  if (!ours || !peer) return fmt::print("{}: peak memory could not be measured\n", row.operation);
  row.operation += " memory";
  row.ours = FormatMegabytes(*ours);
  row.peerName = floor.name;
  row.peer = FormatMegabytes(*peer);
  row.ratio = *ours / *peer;
  row.target = fmt::format("<= {:g}", *comparison.memoryFactor);
  row.verdict = row.ratio <= *comparison.memoryFactor ? "ok" : "over";
  PrintRow(row, options.markdown);
}

void ReportTimings(Row row, const Comparison& comparison, const std::vector<Timing>& timings,
                   const RunOptions& options) {
  for (std::size_t i = 0; i < timings.size(); ++i) {
    const Peer& peer = comparison.peers[i];
    row.ours = FormatSpeed(timings[i].ours, comparison);
    row.peerName = peer.variant.name;
    row.peer = FormatSpeed(timings[i].peer, comparison);
    row.ratio = timings[i].ratio;
    row.target = FormatTarget(peer.limit);
    row.verdict = Judge(timings[i], peer.limit, comparison.operations);
    PrintRow(row, options.markdown);
  }
}

bool Selected(const std::string& key, const std::vector<std::string>& filters) {
  return filters.empty() || std::any_of(filters.begin(), filters.end(), [&](const auto& filter) {
           return key.find(filter) != std::string::npos;
         });
}

}  // namespace

void Suite::Add(std::string group, std::string operation, std::string size, Factory make) {
  entries_.push_back({std::move(group), std::move(operation), std::move(size), std::move(make)});
}

void Suite::List() const {
  for (const Entry& entry : entries_) fmt::print("{}\n", entry.Key());
}

bool Suite::RunEntry(const Entry& entry, const RunOptions& options) {
  const Row row{entry.operation, entry.size, {}, {}, {}, 0, {}, {}};
  const Comparison comparison = entry.make();
  ReportMemory(row, comparison, options);
  const Outcome outcome = Measure(comparison, options.rounds);
  if (outcome.mismatch) {
    fmt::print("{}: WRONG RESULT of {}: {}\n", entry.Key(), outcome.mismatch->variant,
               outcome.mismatch->where);
    return false;
  }
  ReportTimings(row, comparison, outcome.timings, options);
  return true;
}

bool Suite::Run(const RunOptions& options) const {
  bool selected = false;
  bool right = true;
  PrintHeading(options.markdown);
  for (const Entry& entry : entries_) {
    if (!Selected(entry.Key(), options.filters)) continue;
    selected = true;
    try {
      right = RunEntry(entry, options) && right;
    } catch (const std::exception& failure) {
      fmt::print("{}: FAILED: {}\n", entry.Key(), failure.what());
      right = false;
    } catch (...) {  // the XML library's exceptions have no common base with the standard's
      fmt::print("{}: FAILED: an exception of the XML library\n", entry.Key());
      right = false;
    }
  }
  if (!selected) fmt::print("nothing matches; --list shows the names\n");
  return selected && right;
}

}  // namespace bench
