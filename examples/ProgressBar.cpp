#include "ProgressBar.h"

#include <fmt/format.h>

#include <algorithm>
#include <ostream>
#include <utility>

namespace examples {
namespace {

constexpr std::chrono::milliseconds kPause(100);
constexpr std::size_t kWidestBar = 40;

}  // namespace

ProgressBar::ProgressBar(std::ostream& out, int width, std::string title, std::size_t total)
    : out_(out),
      width_(width > 0 ? static_cast<std::size_t>(width) : 0),
      title_(std::move(title)),
      total_(total),
      next_draw_(Clock::now()) {}

ProgressBar::~ProgressBar() { Clear(); }

void ProgressBar::Advance() {
  ++done_;
  if (width_ == 0 || (done_ < total_ && Clock::now() < next_draw_)) return;
  Draw();
  next_draw_ = Clock::now() + kPause;
}

void ProgressBar::Clear() {
  if (!drawn_) return;
  out_ << "\r\x1b[K" << std::flush;
  drawn_ = false;
}

void ProgressBar::Draw() {
  out_ << '\r' << Line() << "\x1b[K" << std::flush;
  drawn_ = true;
}

std::string ProgressBar::Line() const {
  const std::size_t done = std::min(done_, total_);
  const std::size_t percent = total_ == 0 ? 100 : done * 100 / total_;
  const std::string tail = fmt::format(" {:3}%  {} of {}", percent, done, total_);
  // Two brackets, a space, and the last column, which some terminals wrap at.
  const std::size_t taken = title_.size() + tail.size() + 4;
  const std::size_t bar = width_ > taken ? std::min(width_ - taken, kWidestBar) : 0;
  if (bar == 0) return tail.substr(0, width_ - 1);
  const std::size_t filled = total_ == 0 ? bar : done * bar / total_;
  return title_ + " [" + std::string(filled, '#') + std::string(bar - filled, ' ') + "]" + tail;
}

}  // namespace examples
