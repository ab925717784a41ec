#include "PeakMemory.h"

#include <malloc.h>
#include <sys/wait.h>
#include <unistd.h>

#include <fstream>
#include <string>

namespace bench {
namespace {

// A line of /proc/self/status that gives kilobytes, in bytes; 0 when there is none.
std::size_t ReadStatusLine(const std::string& key) {
  std::ifstream status("/proc/self/status");
  for (std::string word; status >> word;) {
    std::size_t kilobytes = 0;
    if (word == key && status >> kilobytes) return kilobytes * 1024;
  }
  return 0;
}

// "5" sets the recorded peak back to what is resident now. The heap's free pages are given back
// first: what the parent left behind must not hide what the work needs.
void ForgetPeak() {
  malloc_trim(0);
  std::ofstream("/proc/self/clear_refs") << "5" << std::flush;
}

PeakMemory MeasureHere(const std::function<void()>& work) {
  ForgetPeak();
  PeakMemory memory{ReadStatusLine("VmRSS:"), 0};
  work();
  memory.peak = ReadStatusLine("VmHWM:");
  return memory;
}

[[noreturn]] void RunChild(const std::function<void()>& work, int writeEnd) {
  const PeakMemory memory = MeasureHere(work);
  const bool told = write(writeEnd, &memory, sizeof memory) == sizeof memory;
  _exit(told ? 0 : 1);  // not exit(): the parent's buffers and temporary files are not ours
}

}  // namespace

std::optional<PeakMemory> MeasurePeakMemory(const std::function<void()>& work) {
  int ends[2];
  if (pipe(ends) != 0) return std::nullopt;
  const pid_t child = fork();
  if (child == 0) RunChild(work, ends[1]);
  close(ends[1]);
  PeakMemory memory{};
  const bool told = child > 0 && read(ends[0], &memory, sizeof memory) == sizeof memory;
  close(ends[0]);
  if (child > 0) waitpid(child, nullptr, 0);
  if (!told || memory.before == 0 || memory.peak == 0) return std::nullopt;
  return memory;
}

}  // namespace bench
