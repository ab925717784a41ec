#include "Encodings.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstdint>
#include <string_view>
#include <vector>

#include "mcmem/ConverterRegistry.h"

namespace examples {
namespace {

constexpr unsigned int kLargestCodePage = 99999;

char AsciiLower(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

bool Contains(std::string_view text, std::string_view part) {
  const auto isSame = [](char a, char b) { return AsciiLower(a) == AsciiLower(b); };
  return part.empty() ||
         std::search(text.begin(), text.end(), part.begin(), part.end(), isSame) != text.end();
}

std::vector<std::string> NumberLines() {
  std::vector<std::string> lines;
  for (unsigned int number = 1; number <= kLargestCodePage; ++number) {
    const char* name = MCMEM_NAMESPACE::GetPreferredCvtName(number);
    if (name != nullptr) lines.push_back(fmt::format("{:>5}  {}", number, name));
  }
  return lines;
}

std::string NameLine(const char* name) {
  std::vector<std::string_view> others;
  UErrorCode error = U_ZERO_ERROR;
  const std::uint16_t count = ucnv_countAliases(name, &error);
  for (std::uint16_t i = 0; i < count && U_SUCCESS(error); ++i) {
    const char* alias = ucnv_getAlias(name, i, &error);
    if (alias != nullptr && std::string_view(alias) != name) others.emplace_back(alias);
  }
  return fmt::format("{}{}{}", name, others.empty() ? "" : ": ", fmt::join(others, ", "));
}

std::vector<std::string> NameLines() {
  std::vector<std::string> lines;
  const std::int32_t count = ucnv_countAvailable();
  lines.reserve(static_cast<std::size_t>(count));
  for (std::int32_t i = 0; i < count; ++i) lines.push_back(NameLine(ucnv_getAvailableName(i)));
  return lines;
}

std::string Section(const char* title, const std::vector<std::string>& lines,
                    const std::string& filter) {
  std::string text;
  for (const std::string& line : lines) {
    if (Contains(line, filter)) text += "  " + line + "\n";
  }
  return text.empty() ? "" : title + text;
}

}  // namespace

ConverterPtr OpenEncoding(const std::string& name) {
  return ConverterPtr(MCMEM_NAMESPACE::TULKMBConverterNew_C(name.c_str()));
}

std::string ListEncodings(const std::string& filter) {
  return Section("Code page numbers (any other N is tried as windows-N, then as cpN):\n",
                 NumberLines(), filter) +
         Section("Names:\n", NameLines(), filter);
}

}  // namespace examples
