// A progress bar on a terminal.
#ifndef MCX_EXAMPLES_PROGRESSBAR_H
#define MCX_EXAMPLES_PROGRESSBAR_H

#include <chrono>
#include <cstddef>
#include <iosfwd>
#include <string>

namespace examples {

// Draws "Combining [#####     ]  50%  5 of 10" on one line, which it keeps overwriting and clears
// at the end. It draws at most ten times a second, so that it costs nothing.
class ProgressBar {
 public:
  // `width` is that of the terminal; with 0, which says that there is none, nothing is written.
  ProgressBar(std::ostream& out, int width, std::string title, std::size_t total);
  ~ProgressBar();

  ProgressBar(const ProgressBar&) = delete;
  ProgressBar& operator=(const ProgressBar&) = delete;

  // One more is done.
  void Advance();

  // Makes room for a message; the next Advance() that draws brings the bar back.
  void Clear();

 private:
  using Clock = std::chrono::steady_clock;

  void Draw();
  std::string Line() const;

  std::ostream& out_;
  std::size_t width_;
  std::string title_;
  std::size_t total_;
  std::size_t done_ = 0;
  bool drawn_ = false;
  Clock::time_point next_draw_;
};

}  // namespace examples

#endif  // MCX_EXAMPLES_PROGRESSBAR_H
