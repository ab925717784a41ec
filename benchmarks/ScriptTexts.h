/// Texts of several scripts, for the measurements of text conversions.
///
/// Words of a list follow each other in an order that a seeded generator draws, with punctuation as
/// in prose, so that no stretch repeats every few bytes. The same call gives the same text on every
/// machine.
#ifndef BENCHMARKS_SCRIPTTEXTS_H_
#define BENCHMARKS_SCRIPTTEXTS_H_

#include <array>
#include <cstddef>
#include <string>
#include <vector>

namespace bench {

enum class Script { kAscii, kFrench, kCyrillic, kChinese, kEmoji };

constexpr std::array<Script, 5> kScripts = {Script::kAscii, Script::kFrench, Script::kCyrillic,
                                            Script::kChinese, Script::kEmoji};

/// "ASCII", "French" and so on.
const char* NameOf(Script script);

/// At most `bytes` bytes of UTF-8, cut at a character. `bytes` is at least 4.
std::string ScriptText(Script script, std::size_t bytes);

/// The same text in the other encoding forms; `utf8` is valid.
std::basic_string<unsigned short> ToUtf16Units(const std::string& utf8);
std::vector<unsigned int> ToUtf32Units(const std::string& utf8);

}  // namespace bench

#endif  // BENCHMARKS_SCRIPTTEXTS_H_
