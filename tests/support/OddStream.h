// A stream that does what streams of real life do.
#ifndef MCXPRSUTIL_TESTS_SUPPORT_ODDSTREAM_H
#define MCXPRSUTIL_TESTS_SUPPORT_ODDSTREAM_H

#include <algorithm>
#include <cstddef>
#include <istream>
#include <streambuf>
#include <string>
#include <utility>

namespace test_support {

// How a stream ends.
enum class StreamEnd {
  kEof,     // there is no more
  kBreaks,  // the buffer throws, and the stream takes that for itself: it goes bad
  kThrows   // the same, and the stream is set to pass the exception on
};

// What a buffer throws; no standard exception, so that nobody takes it for one of his own.
struct LineIsDead {
  int code;
};

// Gives a text in pieces of a fixed size, then ends. Cannot be asked for its position.
class OddBuffer : public std::streambuf {
 public:
  OddBuffer(std::string text, std::size_t piece, StreamEnd end)
      : text_(std::move(text)), piece_(piece), end_(end) {}

 protected:
  int_type underflow() override {
    if (next_ < text_.size()) {
      const std::size_t size = std::min(piece_, text_.size() - next_);
      setg(&text_[next_], &text_[next_], &text_[next_] + size);
      next_ += size;
      return traits_type::to_int_type(*gptr());
    }
    if (end_ != StreamEnd::kEof) throw LineIsDead{5};
    return traits_type::eof();
  }

 private:
  std::string text_;
  const std::size_t piece_;
  const StreamEnd end_;
  std::size_t next_ = 0;
};

class OddStream : public std::istream {
 public:
  OddStream(std::string text, std::size_t piece, StreamEnd its_end)
      : std::istream(nullptr), buffer_(std::move(text), piece, its_end) {
    rdbuf(&buffer_);
    if (its_end == StreamEnd::kThrows) exceptions(std::ios::badbit);
  }

 private:
  OddBuffer buffer_;
};

}  // namespace test_support

#endif  // MCXPRSUTIL_TESTS_SUPPORT_ODDSTREAM_H
