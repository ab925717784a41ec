// How libFuzzer changes documents: besides bytes, whole elements and attributes, so that more of
// what it tries is well-formed. Texts in ASCII and its supersets are understood; of all others only
// bytes are changed.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <iterator>
#include <random>
#include <string>
#include <utility>
#include <vector>

extern "C" std::size_t LLVMFuzzerMutate(std::uint8_t* data, std::size_t size, std::size_t most);

namespace {

using Random = std::minstd_rand;

// From `begin` to before `end`.
struct Part {
  std::size_t begin;
  std::size_t end;
};

constexpr std::size_t kNone = std::string::npos;

// Values at which readers decide something.
constexpr const char* kValues[] = {
    "",     "0",     "1",       "-1",        "2.5",        "1e308", "1e400",      "-0",
    "NaN",  "INF",   "-INF",    " 7 ",       "007",        "3,5",   "2147483648", "0x1",
    "true", "false", "a",       "&lt;&amp;", "&#x10FFFF;", "&#10;", "\xC3\xA4",   "real",
    "int",  "date",  "integer", "string",    "double",     "valid", "missing",    "continuous"};

std::size_t Below(Random& random, std::size_t count) { return random() % count; }

bool IsNameByte(char c) {
  const auto u = static_cast<unsigned char>(c);
  return u >= 0x80 || (u | 0x20u) - 'a' < 26u || u - '0' < 10u || c == '_' || c == '-' ||
         c == '.' || c == ':';
}

std::size_t TagEnd(const std::string& text, std::size_t at) {
  char quote = 0;
  for (; at < text.size(); ++at) {
    const char c = text[at];
    if (quote != 0) {
      if (c == quote) quote = 0;
    } else if (c == '"' || c == '\'') {
      quote = c;
    } else if (c == '>') {
      return at + 1;
    }
  }
  return kNone;
}

std::vector<Part> StartTags(const std::string& text) {
  std::vector<Part> tags;
  for (std::size_t at = text.find('<'); at != kNone; at = text.find('<', at + 1)) {
    if (at + 1 >= text.size() || !IsNameByte(text[at + 1])) continue;
    const std::size_t end = TagEnd(text, at);
    if (end == kNone) break;
    tags.push_back({at, end});
    at = end - 1;
  }
  return tags;
}

// The whole element that begins with a tag.
Part ElementOf(const std::string& text, Part tag) {
  int depth = 0;
  for (std::size_t at = tag.begin; at != kNone; at = text.find('<', at + 1)) {
    const std::size_t end = TagEnd(text, at);
    if (end == kNone) break;
    const bool closes = at + 1 < text.size() && text[at + 1] == '/';
    const bool opens = at + 1 < text.size() && IsNameByte(text[at + 1]) && text[end - 2] != '/';
    depth += opens ? 1 : closes ? -1 : 0;
    if (depth <= 0) return {tag.begin, end};
    at = end - 1;
  }
  return tag;
}

// name="value" in a tag.
std::vector<Part> Attributes(const std::string& text, Part tag) {
  std::vector<Part> found;
  for (std::size_t at = text.find('=', tag.begin); at < tag.end; at = text.find('=', at + 1)) {
    const std::size_t open = at + 1;
    if (open >= tag.end || (text[open] != '"' && text[open] != '\'')) continue;
    const std::size_t close = text.find(text[open], open + 1);
    if (close >= tag.end) break;
    std::size_t begin = at;
    while (begin > tag.begin && IsNameByte(text[begin - 1])) --begin;
    found.push_back({begin, close + 1});
    at = close;
  }
  return found;
}

Part ValueOf(const std::string& text, Part attribute) {
  return {text.find('=', attribute.begin) + 2, attribute.end - 1};
}

std::string Cut(const std::string& text, Part part) {
  return text.substr(part.begin, part.end - part.begin);
}

void Replace(std::string& text, Part part, const std::string& by) {
  text.replace(part.begin, part.end - part.begin, by);
}

template <class Item>
const Item& OneOf(Random& random, const std::vector<Item>& items) {
  return items[Below(random, items.size())];
}

// Bytes of a value or of an element's text.
void MutateBytes(std::string& text, Part part, std::size_t room) {
  std::string bytes = Cut(text, part);
  const std::size_t size = bytes.size();
  bytes.resize(size + std::min<std::size_t>(room, 16));
  if (bytes.empty()) return;
  auto* data = reinterpret_cast<std::uint8_t*>(bytes.data());
  bytes.resize(LLVMFuzzerMutate(data, size, bytes.size()));
  for (char& c : bytes) {
    if (c == '<' || c == '"' || c == '\'') c = '_';
  }
  Replace(text, part, bytes);
}

void ChangeAttribute(std::string& text, Part tag, Random& random, std::size_t room) {
  const std::vector<Part> own = Attributes(text, tag);
  const std::vector<Part> others = Attributes(text, OneOf(random, StartTags(text)));
  const std::size_t at = own.empty() ? tag.end : own.front().begin;
  switch (Below(random, 6)) {
    case 0:
      if (!own.empty()) Replace(text, OneOf(random, own), "");
      return;
    case 1:
      if (!others.empty() && !own.empty()) text.insert(at, Cut(text, OneOf(random, others)) + " ");
      return;
    case 2:
      if (others.empty() || own.empty()) return;
      return Replace(text, ValueOf(text, OneOf(random, own)),
                     Cut(text, ValueOf(text, OneOf(random, others))));
    case 3:
      if (!own.empty()) MutateBytes(text, ValueOf(text, OneOf(random, own)), room);
      return;
    default:
      if (own.empty()) return;
      Replace(text, ValueOf(text, OneOf(random, own)), kValues[Below(random, std::size(kValues))]);
  }
}

// Between a tag and the next one.
Part TextBehind(const std::string& text, Part tag) {
  return {tag.end, std::min(text.find('<', tag.end), text.size())};
}

void Mutate(std::string& text, Random& random, std::size_t most) {
  const std::vector<Part> tags = StartTags(text);
  if (tags.empty()) return;
  const Part tag = OneOf(random, tags);
  const Part other = OneOf(random, tags);
  const std::size_t room = most > text.size() ? most - text.size() : 0;
  switch (Below(random, 10)) {
    case 0:
      return Replace(text, ElementOf(text, tag), "");
    case 1:
      text.insert(tag.begin, Cut(text, ElementOf(text, tag)));
      return;
    case 2:
      text.insert(other.begin, Cut(text, ElementOf(text, tag)));
      return;
    case 3:
      text.insert(other.end, Cut(text, ElementOf(text, tag)));
      return;
    case 4:
      return Replace(text, ElementOf(text, tag), Cut(text, ElementOf(text, other)));
    case 5:
      return MutateBytes(text, TextBehind(text, tag), room);
    default:
      ChangeAttribute(text, tag, random, room);
  }
}

std::size_t Give(const std::string& text, std::uint8_t* out, std::size_t most) {
  const std::size_t size = std::min(text.size(), most);
  if (size != 0) std::memcpy(out, text.data(), size);
  return size;
}

}  // namespace

extern "C" std::size_t LLVMFuzzerCustomMutator(std::uint8_t* data, std::size_t size,
                                               std::size_t most, unsigned seed) {
  Random random(seed);
  if (Below(random, 4) == 0) return LLVMFuzzerMutate(data, size, most);
  const std::string before(reinterpret_cast<const char*>(data), size);
  std::string text = before;
  for (std::size_t i = 1 + Below(random, 3); i > 0; --i) Mutate(text, random, most);
  if (text == before || text.size() > most) return LLVMFuzzerMutate(data, size, most);
  return Give(text, data, most);
}

// Instead of the sanitizer's, which tells the fuzzer of every comparison: the XML library casts
// dynamically all the time, which compares names of types, and those are of no interest.
extern "C" int strcmp(const char* a, const char* b) noexcept {
  while (*a != 0 && *a == *b) {
    ++a;
    ++b;
  }
  return static_cast<unsigned char>(*a) - static_cast<unsigned char>(*b);
}

// An element of one document in another.
extern "C" std::size_t LLVMFuzzerCustomCrossOver(const std::uint8_t* data1, std::size_t size1,
                                                 const std::uint8_t* data2, std::size_t size2,
                                                 std::uint8_t* out, std::size_t most,
                                                 unsigned seed) {
  Random random(seed);
  std::string text(reinterpret_cast<const char*>(data1), size1);
  const std::string source(reinterpret_cast<const char*>(data2), size2);
  const std::vector<Part> tags = StartTags(text);
  const std::vector<Part> sources = StartTags(source);
  if (tags.empty() || sources.empty() || Below(random, 8) == 0) {
    return Give(text.substr(0, Below(random, size1 + 1)) + source.substr(Below(random, size2 + 1)),
                out, most);
  }
  const Part tag = OneOf(random, tags);
  const std::string element = Cut(source, ElementOf(source, OneOf(random, sources)));
  switch (Below(random, 3)) {
    case 0:
      text.insert(tag.begin, element);
      break;
    case 1:
      text.insert(tag.end, element);
      break;
    default:
      Replace(text, ElementOf(text, tag), element);
  }
  return Give(text, out, most);
}
