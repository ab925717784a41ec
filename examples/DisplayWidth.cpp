#include "DisplayWidth.h"

#include <fmt/format.h>

#include <algorithm>
#include <iterator>

namespace examples {
namespace {

constexpr char32_t kReplacement = 0xFFFD;

struct Character {
  char32_t codePoint;
  std::size_t bytes;
};

struct Range {
  char32_t first;
  char32_t last;
};

// Coarse on purpose: whole blocks of the scripts that terminals show in two columns.
constexpr Range kWide[] = {
    {0x1100, 0x115F},   {0x2E80, 0x303E},   {0x3041, 0xA4CF},   {0xAC00, 0xD7A3},
    {0xF900, 0xFAFF},   {0xFE30, 0xFE6F},   {0xFF00, 0xFF60},   {0xFFE0, 0xFFE6},
    {0x1F300, 0x1F64F}, {0x1F680, 0x1F6FF}, {0x1F900, 0x1F9FF}, {0x20000, 0x3FFFD},
};

constexpr Range kZeroWidth[] = {
    {0x0300, 0x036F}, {0x0483, 0x0489}, {0x0591, 0x05BD}, {0x0610, 0x061A}, {0x064B, 0x065F},
    {0x0E34, 0x0E3A}, {0x0E47, 0x0E4E}, {0x1AB0, 0x1AFF}, {0x1DC0, 0x1DFF}, {0x200B, 0x200F},
    {0x20D0, 0x20FF}, {0xFE00, 0xFE0F}, {0xFE20, 0xFE2F},
};

template <std::size_t N>
bool IsIn(char32_t c, const Range (&ranges)[N]) {
  return std::any_of(std::begin(ranges), std::end(ranges),
                     [c](const Range& r) { return r.first <= c && c <= r.last; });
}

std::size_t SequenceLength(unsigned char lead) {
  if (lead < 0x80) return 1;
  if (lead >= 0xC2 && lead < 0xE0) return 2;
  if (lead >= 0xE0 && lead < 0xF0) return 3;
  if (lead >= 0xF0 && lead < 0xF5) return 4;
  return 0;
}

bool IsCodePoint(char32_t c, std::size_t bytes) {
  constexpr char32_t kSmallest[] = {0, 0, 0x80, 0x800, 0x10000};
  return c >= kSmallest[bytes] && c <= 0x10FFFF && !(c >= 0xD800 && c <= 0xDFFF);
}

// The first character of a text that is not empty; U+FFFD for a byte that begins none.
Character FirstCharacter(std::string_view text) {
  const auto lead = static_cast<unsigned char>(text.front());
  const std::size_t bytes = SequenceLength(lead);
  if (bytes == 1) return {lead, 1};
  if (bytes == 0 || text.size() < bytes) return {kReplacement, 1};
  char32_t c = lead & (0xFFU >> (bytes + 1));
  for (std::size_t i = 1; i < bytes; ++i) {
    const auto trail = static_cast<unsigned char>(text[i]);
    if ((trail & 0xC0U) != 0x80U) return {kReplacement, 1};
    c = (c << 6U) | (trail & 0x3FU);
  }
  return IsCodePoint(c, bytes) ? Character{c, bytes} : Character{kReplacement, 1};
}

std::size_t CharacterWidth(char32_t c) {
  if (IsIn(c, kZeroWidth)) return 0;
  return IsIn(c, kWide) ? 2 : 1;
}

// C0, DEL and C1: what a terminal obeys instead of showing it. The marks that change the direction
// of writing are kept out as well, since they reorder the rest of the line.
bool IsControl(char32_t c) {
  return c < 0x20 || (c >= 0x7F && c < 0xA0) || (c >= 0x202A && c <= 0x202E) ||
         (c >= 0x2066 && c <= 0x2069);
}

std::string ControlText(char32_t c) {
  if (c == '\n') return "\\n";
  if (c == '\r') return "\\r";
  if (c == '\t') return "\\t";
  return fmt::format("\\u{:04x}", static_cast<unsigned>(c));
}

}  // namespace

std::size_t DisplayWidth(std::string_view utf8) {
  std::size_t width = 0;
  while (!utf8.empty()) {
    const Character c = FirstCharacter(utf8);
    width += CharacterWidth(c.codePoint);
    utf8.remove_prefix(c.bytes);
  }
  return width;
}

std::size_t PrefixThatFits(std::string_view utf8, std::size_t columns) {
  std::size_t length = 0;
  std::size_t width = 0;
  while (length < utf8.size()) {
    const Character c = FirstCharacter(utf8.substr(length));
    width += CharacterWidth(c.codePoint);
    if (width > columns && length > 0) break;
    length += c.bytes;
  }
  return length;
}

std::string Printable(std::string_view text) {
  std::string result;
  while (!text.empty()) {
    const Character c = FirstCharacter(text);
    if (IsControl(c.codePoint)) {
      result += ControlText(c.codePoint);
    } else if (c.codePoint == kReplacement) {
      result += "\xEF\xBF\xBD";
    } else {
      result.append(text.substr(0, c.bytes));
    }
    text.remove_prefix(c.bytes);
  }
  return result;
}

}  // namespace examples
