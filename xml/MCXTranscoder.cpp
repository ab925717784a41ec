#include "mcxprsutil/MCXTranscoder.h"

#include <cstddef>
#include <cstring>
#include <memory>
#include <xercesc/util/PlatformUtils.hpp>
#include <xercesc/util/TransService.hpp>
#include <xercesc/util/XMLException.hpp>
#include <xercesc/util/XMLString.hpp>

namespace MCXPrsUtil {
namespace {

using XERCES_CPP_NAMESPACE::XMLException;
using XERCES_CPP_NAMESPACE::XMLPlatformUtils;
using XERCES_CPP_NAMESPACE::XMLString;
using XERCES_CPP_NAMESPACE::XMLTranscoder;
using XERCES_CPP_NAMESPACE::XMLTransService;

static_assert(sizeof(XMLCh) == 2 && static_cast<XMLCh>(-1) > 0, "DOM strings are UTF-16");

constexpr char kUtf8[] = "UTF-8";
constexpr std::size_t kChunk = 1000;           // bytes or units that one call makes at most
constexpr XMLSize_t kTranscoderBlock = 4000;   // size hint for the transcoding service
constexpr XMLCh kLineFeedUnit[] = {u'\n', 0};  // see IsComplete()
constexpr char kLineFeedByte[] = "\n";

// No encoding has another. ICU would write such a name beyond the end of an array: it makes room
// for its characters and not for what they take in the code page of the process.
bool IsAscii(const char* name) {
  while (*name != 0 && static_cast<unsigned char>(*name) < 0x80) ++name;
  return *name == 0;
}

std::unique_ptr<XMLTranscoder> MakeTranscoder(const char* encoding) {
  if (!XMLPlatformUtils::fgTransService || !IsAscii(encoding)) return nullptr;
  XMLTransService::Codes code = XMLTransService::Ok;
  std::unique_ptr<XMLTranscoder> transcoder;
  try {
    transcoder.reset(XMLPlatformUtils::fgTransService->makeNewTranscoderFor(
        encoding, code, kTranscoderBlock, XMLPlatformUtils::fgMemoryManager));
  } catch (const XMLException&) {
    return nullptr;  // the name itself cannot be read
  }
  if (code != XMLTransService::Ok) return nullptr;
  return transcoder;
}

// Appends the converted text; false when the transcoder is stuck. Throws what the transcoder
// throws.
bool Append(XMLTranscoder& transcoder, const XMLCh* text, std::string& out) {
  XMLByte chunk[kChunk];
  XMLSize_t left = XMLString::stringLen(text);
  while (left != 0) {
    XMLSize_t eaten = 0;
    const XMLSize_t made =
        transcoder.transcodeTo(text, left, chunk, kChunk, eaten, XMLTranscoder::UnRep_Throw);
    if (eaten == 0) return false;
    out.append(reinterpret_cast<const char*>(chunk), made);
    text += eaten;
    left -= eaten;
  }
  // A character that straddles two chunks may have left its second part in the transcoder.
  XMLSize_t none = 0;
  const XMLSize_t rest =
      transcoder.transcodeTo(text, 0, chunk, kChunk, none, XMLTranscoder::UnRep_Throw);
  out.append(reinterpret_cast<const char*>(chunk), rest);
  return true;
}

bool Append(XMLTranscoder& transcoder, const char* text, std::vector<XMLCh>& out) {
  XMLCh chunk[kChunk];
  unsigned char sizes[kChunk];
  const auto* bytes = reinterpret_cast<const XMLByte*>(text);
  XMLSize_t left = std::strlen(text);
  while (left != 0) {
    XMLSize_t eaten = 0;
    const XMLSize_t made = transcoder.transcodeFrom(bytes, left, chunk, kChunk, eaten, sizes);
    if (eaten == 0) return false;
    out.insert(out.end(), chunk, chunk + made);
    bytes += eaten;
    left -= eaten;
  }
  XMLSize_t none = 0;
  const XMLSize_t rest = transcoder.transcodeFrom(bytes, 0, chunk, kChunk, none, sizes);
  out.insert(out.end(), chunk, chunk + rest);
  return true;
}

// Tells whether the text so far ended with a whole character. A multi-byte transcoder swallows the
// beginning of one that is cut off without a word; a line feed is part of no character, so what it
// does shows whether there was a beginning.
bool IsComplete(XMLTranscoder& transcoder, const std::string&) {
  std::string probe;
  return Append(transcoder, kLineFeedUnit, probe);  // throws after a lone lead surrogate
}

bool IsComplete(XMLTranscoder& transcoder, const std::vector<XMLCh>&) {
  std::vector<XMLCh> probe;
  // No units: the line feed itself begins a character (half a unit of UTF-16, a shifted state).
  return !Append(transcoder, kLineFeedByte, probe) || probe.size() <= 1;
}

// Fills `out` with the whole text, or leaves it empty.
template <class Char, class Result>
void Convert(const char* encoding, const Char* text, Result& out) {
  const std::unique_ptr<XMLTranscoder> transcoder = MakeTranscoder(encoding);
  if (!transcoder) return;
  try {
    if (Append(*transcoder, text, out) && IsComplete(*transcoder, out)) return;
  } catch (...) {
    // Every failure is the same to the caller: no partial results.
  }
  out.clear();
}

bool IsTrail(unsigned char byte) { return (byte & 0xC0) == 0x80; }
bool IsLeadSurrogate(XMLCh unit) { return (unit & 0xFC00) == 0xD800; }
bool IsTrailSurrogate(XMLCh unit) { return (unit & 0xFC00) == 0xDC00; }

// Decodes the character of two or more bytes at `from` and moves both pointers past it; false when
// it is not well-formed. Stops at a terminator, which is no trail byte.
bool DecodeCharacter(const unsigned char*& from, XMLCh*& to) {
  const unsigned int lead = from[0];
  if (lead < 0xC2 || lead > 0xF4 || !IsTrail(from[1])) return false;
  if (lead < 0xE0) {
    *to++ = static_cast<XMLCh>((lead & 0x1Fu) << 6 | (from[1] & 0x3Fu));
    from += 2;
    return true;
  }
  if (!IsTrail(from[2])) return false;
  const unsigned int tail = (from[1] & 0x3Fu) << 6 | (from[2] & 0x3Fu);
  if (lead < 0xF0) {
    const unsigned int unit = (lead & 0x0Fu) << 12 | tail;
    if (unit < 0x800 || (unit >= 0xD800 && unit <= 0xDFFF)) return false;
    *to++ = static_cast<XMLCh>(unit);
    from += 3;
    return true;
  }
  if (!IsTrail(from[3])) return false;
  const unsigned int point = (lead & 0x07u) << 18 | tail << 6 | (from[3] & 0x3Fu);
  if (point < 0x10000 || point > 0x10FFFF) return false;
  *to++ = static_cast<XMLCh>(0xD7C0 + (point >> 10));
  *to++ = static_cast<XMLCh>(0xDC00 + (point & 0x3FF));
  from += 4;
  return true;
}

// Fills `out` with the text and its terminator; false, with `out` in any state, when the text is
// not well-formed.
bool DecodeWellFormed(const char* text, std::vector<XMLCh>& out) {
  out.resize(std::strlen(text) + 1);  // UTF-16 never has more units than UTF-8 has bytes
  const auto* from = reinterpret_cast<const unsigned char*>(text);
  XMLCh* to = out.data();
  while (*from != 0) {
    if (*from < 0x80) {
      *to++ = *from++;
    } else if (!DecodeCharacter(from, to)) {
      return false;
    }
  }
  *to++ = 0;
  out.resize(static_cast<std::size_t>(to - out.data()));
  return true;
}

void AppendBytes(std::string& out, unsigned int point, int trailBytes, unsigned int leadMark) {
  out += static_cast<char>(leadMark | point >> (6 * trailBytes));
  for (int i = trailBytes - 1; i >= 0; --i) {
    out += static_cast<char>(0x80u | (point >> (6 * i) & 0x3Fu));
  }
}

// Appends the character at `from` and moves past it; false for a surrogate without its partner.
bool EncodeCharacter(const XMLCh*& from, std::string& out) {
  const unsigned int unit = *from++;
  if (unit < 0x80) {
    out += static_cast<char>(unit);
  } else if (unit < 0x800) {
    AppendBytes(out, unit, 1, 0xC0);
  } else if (unit < 0xD800 || unit > 0xDFFF) {
    AppendBytes(out, unit, 2, 0xE0);
  } else if (IsLeadSurrogate(static_cast<XMLCh>(unit)) && IsTrailSurrogate(*from)) {
    AppendBytes(out, 0x10000 + ((unit & 0x3FFu) << 10 | (*from++ & 0x3FFu)), 3, 0xF0);
  } else {
    return false;
  }
  return true;
}

// Fills `out`; false, with `out` in any state, when the text is not well-formed.
bool EncodeWellFormed(const XMLCh* text, std::string& out) {
  const std::size_t length = XMLString::stringLen(text);
  out.resize(length);
  std::size_t ascii = 0;
  for (; ascii < length && text[ascii] < 0x80; ++ascii) out[ascii] = static_cast<char>(text[ascii]);
  out.resize(ascii);
  for (const XMLCh* from = text + ascii; *from != 0;) {
    if (!EncodeCharacter(from, out)) return false;
  }
  return true;
}

}  // namespace

// The transcoders of the XML library keep the state that a text left behind and cannot be reset: so
// each conversion makes its own, and the constructor only finds out whether that works.
MCXTranscoder::MCXTranscoder(const char* encoding)
    : encoding_(encoding ? encoding : kUtf8),
      valid_(MakeTranscoder(encoding_.c_str()) != nullptr) {}

MCXTranscoder::~MCXTranscoder() = default;

bool MCXTranscoder::isValid() const { return valid_; }

std::string MCXTranscoder::TranscodeTo(const XMLCh* text) const {
  std::string result;
  if (valid_ && text && *text != 0) Convert(encoding_.c_str(), text, result);
  return result;
}

std::vector<XMLCh> MCXTranscoder::TranscodeFrom(const char* text) const {
  std::vector<XMLCh> result;
  if (valid_ && *text != 0) Convert(encoding_.c_str(), text, result);
  result.push_back(0);
  return result;
}

std::string ToUTF8(const XMLCh* text) {
  std::string result;
  if (!text || EncodeWellFormed(text, result)) return result;
  result.clear();
  Convert(kUtf8, text, result);
  return result;
}

std::vector<XMLCh> ToUTF16(const char* text) {
  const auto* first = reinterpret_cast<const unsigned char*>(text);
  const unsigned char* last = first;
  while (*last != 0 && *last < 0x80) ++last;
  if (*last == 0) return std::vector<XMLCh>(first, last + 1);

  std::vector<XMLCh> result;
  if (DecodeWellFormed(text, result)) return result;
  result.clear();
  Convert(kUtf8, text, result);
  result.push_back(0);
  return result;
}

}  // namespace MCXPrsUtil
