#include "StatisticsText.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <ostream>
#include <string>
#include <vector>

#include "DisplayWidth.h"
#include "mccommon/MCFormat.h"

namespace examples {
namespace {

constexpr std::size_t kMostLines = 40;
constexpr std::size_t kWidestLabel = 32;
constexpr std::size_t kWidestBar = 50;
constexpr std::size_t kNarrowestBar = 8;
constexpr int kMostDecimals = 4;
// Of a line: the indent, the share and the gaps.
constexpr std::size_t kBesides = 17;

struct Line {
  std::string label;
  double frequency;
};

std::string Exact(double number) { return MCXML_NAMESPACE::Format(number, false, nullptr); }

// Six digits are enough for people; JSON has them all.
std::string Rounded(double number) { return fmt::format("{:.6g}", number); }

std::string RangeLabel(const RangeDescription& range, std::size_t lowerWidth) {
  if (range.lower && range.upper) {
    return fmt::format("{:>{}} to {}", Exact(*range.lower), lowerWidth, Exact(*range.upper));
  }
  if (range.lower) return fmt::format("{:>{}} and above", Exact(*range.lower), lowerWidth);
  return range.upper ? "below " + Exact(*range.upper) : "all values";
}

std::string CategoryLabel(const FrequencyDescription& frequency, std::size_t index) {
  if (!frequency.category) return fmt::format("category {}", index + 1);
  const ValueDescription& value = *frequency.category;
  const std::string text = value.text.empty() ? "\"\"" : Printable(value.text);
  return value.label.empty() ? text : fmt::format("{} = {}", text, Printable(value.label));
}

// Keeps the end free for the sign that something is missing there.
std::string Shortened(const std::string& label) {
  if (DisplayWidth(label) <= kWidestLabel) return label;
  return label.substr(0, PrefixThatFits(label, kWidestLabel - 3)) + "...";
}

std::size_t LowerWidth(const FieldStatistics& field) {
  std::size_t width = 0;
  for (const auto& frequency : field.frequencies) {
    if (frequency.range.lower) width = std::max(width, Exact(*frequency.range.lower).size());
  }
  return width;
}

std::vector<Line> Lines(const FieldStatistics& field, bool all) {
  std::vector<Line> lines;
  const std::size_t lowerWidth = LowerWidth(field);
  const std::size_t count = field.frequencies.size();
  const std::size_t shown = all ? count : std::min(count, kMostLines);
  double counted = 0;
  for (std::size_t i = 0; i < count; ++i) {
    const auto& frequency = field.frequencies[i];
    counted += frequency.frequency;
    if (i >= shown) continue;
    lines.push_back({Shortened(field.continuous ? RangeLabel(frequency.range, lowerWidth)
                                                : CategoryLabel(frequency, i)),
                     frequency.frequency});
  }
  // A total that is off by what rounding does is no record.
  const double rest = field.total - counted;
  if (count > 0 && rest > 1e-9 * field.total) lines.push_back({"(missing or other)", rest});
  return lines;
}

// Frequencies of weighted data have decimals: as many as one of them needs, up to a limit.
int Decimals(const std::vector<Line>& lines) {
  for (int decimals = 0; decimals < kMostDecimals; ++decimals) {
    const double scale = std::pow(10.0, decimals);
    const bool enough = std::all_of(lines.begin(), lines.end(), [scale](const Line& line) {
      const double scaled = line.frequency * scale;
      return std::fabs(scaled - std::round(scaled)) <= 1e-6 * std::max(1.0, std::fabs(scaled));
    });
    if (enough) return decimals;
  }
  return kMostDecimals;
}

// A plain number with the same decimals in every line; huge ones do not fill the screen with zeros.
std::string FrequencyText(double frequency, int decimals) {
  constexpr double kHuge = 1e15;
  return frequency < kHuge ? fmt::format("{:.{}f}", frequency, decimals) : Rounded(frequency);
}

// What is there is seen, however little: a dot stands for less than half a mark.
std::string Bar(double frequency, double largest, std::size_t width) {
  if (!(frequency > 0) || !(largest > 0)) return "";
  const auto marks =
      static_cast<std::size_t>(std::lround(frequency / largest * static_cast<double>(width)));
  return marks == 0 ? "." : std::string(marks, '#');
}

std::string Share(double frequency, double total) {
  if (!(total > 0)) return "";
  const double percent = frequency / total * 100;
  return percent < 1e4 ? fmt::format("{:.1f} %", percent) : "";
}

void PrintHistogram(std::ostream& out, const FieldStatistics& field, const TableOptions& options) {
  const std::vector<Line> lines = Lines(field, options.allValues);
  const int decimals = Decimals(lines);
  std::size_t labelWidth = 0;
  std::size_t numberWidth = 0;
  double largest = 0;
  for (const Line& line : lines) {
    labelWidth = std::max(labelWidth, DisplayWidth(line.label));
    numberWidth = std::max(numberWidth, FrequencyText(line.frequency, decimals).size());
    largest = std::max(largest, line.frequency);
  }
  const std::size_t taken = labelWidth + numberWidth + kBesides;
  const std::size_t room = options.width > taken ? options.width - taken : 0;
  const std::size_t barWidth = std::clamp(room, kNarrowestBar, kWidestBar);
  for (const Line& line : lines) {
    const std::string text =
        fmt::format("    {}{}  {:>{}}  {:>7}  {}", line.label,
                    std::string(labelWidth - DisplayWidth(line.label), ' '),
                    FrequencyText(line.frequency, decimals), numberWidth,
                    Share(line.frequency, field.total), Bar(line.frequency, largest, barWidth));
    out << text.substr(0, text.find_last_not_of(' ') + 1) << '\n';
  }
  if (!options.allValues && field.frequencies.size() > kMostLines) {
    out << fmt::format("    ... ({} in all; --all shows them)\n", field.frequencies.size());
  }
}

std::string Summary(const FieldStatistics& field) {
  std::vector<std::string> figures = {
      fmt::format("{} {}", Rounded(field.total), field.total == 1 ? "record" : "records")};
  const auto add = [&figures](const char* name, const std::optional<double>& figure) {
    if (figure) figures.push_back(fmt::format("{} {}", name, Rounded(*figure)));
  };
  add("minimum", field.minimum);
  add("maximum", field.maximum);
  add("mean", field.mean);
  add("standard deviation", field.standardDeviation);
  return fmt::format("{}", fmt::join(figures, ", "));
}

void PrintField(std::ostream& out, const FieldStatistics& field, const TableOptions& options) {
  out << "\n  " << Printable(field.field);
  if (!field.label.empty()) out << ": " << Printable(field.label);
  out << "\n    " << Summary(field) << '\n';
  if (field.frequencies.empty()) out << "    no frequencies\n";
  PrintHistogram(out, field, options);
}

}  // namespace

void PrintStatistics(std::ostream& out, const ModelStatistics& model, const TableOptions& options) {
  out << "\nStatistics of the " << Printable(model.element);
  if (!model.name.empty()) out << " \"" << Printable(model.name) << '"';
  out << '\n';
  for (const FieldStatistics& field : model.fields) PrintField(out, field, options);
}

}  // namespace examples
