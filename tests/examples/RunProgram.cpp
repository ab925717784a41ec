#include "RunProgram.h"

#include <poll.h>
#include <pty.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <stdexcept>

namespace testing_examples {
namespace {

void Require(bool good, const char* what) {
  if (!good) throw std::runtime_error(what);
}

// Two connected file descriptors; what a program writes to one of them can be read from the other.
struct Channel {
  int reading = -1;
  int writing = -1;
};

Channel OpenPipe() {
  std::array<int, 2> ends{};
  Require(pipe(ends.data()) == 0, "no pipe");
  return {ends[0], ends[1]};
}

Channel OpenTerminal() {
  Channel channel;
  winsize size{};
  size.ws_col = 80;
  size.ws_row = 24;
  Require(openpty(&channel.reading, &channel.writing, nullptr, nullptr, &size) == 0,
          "no pseudo-terminal");
  return channel;
}

struct CloseFile {
  void operator()(std::FILE* file) const { std::fclose(file); }
};

// An unnamed file that holds the program's input.
std::unique_ptr<std::FILE, CloseFile> InputFile(const std::string& text) {
  std::unique_ptr<std::FILE, CloseFile> file(std::tmpfile());
  Require(file != nullptr, "no temporary file");
  Require(std::fwrite(text.data(), 1, text.size(), file.get()) == text.size(), "no input");
  std::rewind(file.get());
  return file;
}

[[noreturn]] void BecomeProgram(const std::string& program,
                                const std::vector<std::string>& arguments, int in,
                                const Channel& out, const Channel& error) {
  std::vector<char*> argv{const_cast<char*>(program.c_str())};
  for (const std::string& argument : arguments) argv.push_back(const_cast<char*>(argument.c_str()));
  argv.push_back(nullptr);
  dup2(in, STDIN_FILENO);
  dup2(out.writing, STDOUT_FILENO);
  dup2(error.writing, STDERR_FILENO);
  for (int end : {out.reading, out.writing, error.reading, error.writing}) close(end);
  execv(program.c_str(), argv.data());
  _exit(127);
}

// Appends what there is; false at the end. A terminal whose other side is closed gives an error.
bool ReadSome(int fileDescriptor, std::string& text) {
  std::array<char, 4096> buffer{};
  const ssize_t count = read(fileDescriptor, buffer.data(), buffer.size());
  if (count <= 0) return false;
  text.append(buffer.data(), static_cast<std::size_t>(count));
  return true;
}

// Reads both at once: a program that fills one pipe would wait for ever for the other to be read.
void ReadBoth(int out, int error, ProgramResult& result) {
  std::array<pollfd, 2> fds{{{out, POLLIN, 0}, {error, POLLIN, 0}}};
  while (fds[0].fd >= 0 || fds[1].fd >= 0) {
    Require(poll(fds.data(), fds.size(), -1) >= 0, "poll");
    if (fds[0].revents != 0 && !ReadSome(out, result.out)) fds[0].fd = -1;
    if (fds[1].revents != 0 && !ReadSome(error, result.error)) fds[1].fd = -1;
  }
}

}  // namespace

ProgramResult RunProgram(const std::string& program, const std::vector<std::string>& arguments,
                         const RunOptions& options) {
  const auto input = InputFile(options.input);
  const Channel out = OpenPipe();
  const Channel error = options.errorIsTerminal ? OpenTerminal() : OpenPipe();
  const pid_t child = fork();
  Require(child >= 0, "no process");
  if (child == 0) BecomeProgram(program, arguments, fileno(input.get()), out, error);
  close(out.writing);
  close(error.writing);
  ProgramResult result;
  ReadBoth(out.reading, error.reading, result);
  close(out.reading);
  close(error.reading);
  int status = 0;
  Require(waitpid(child, &status, 0) == child, "waitpid");
  if (WIFEXITED(status)) result.exitCode = WEXITSTATUS(status);
  Require(result.exitCode != 127, "the program could not be started");
  return result;
}

TemporaryFolder::TemporaryFolder()
    : path_((std::filesystem::temp_directory_path() / "mcxprsutil-XXXXXX").string()) {
  Require(mkdtemp(path_.data()) != nullptr, "no temporary folder");
}

TemporaryFolder::~TemporaryFolder() {
  std::error_code ignored;  // a folder that stays behind spoils no test
  std::filesystem::remove_all(path_, ignored);
}

std::string TemporaryFolder::Write(const std::string& name, const std::string& content) const {
  std::ofstream out(Path(name), std::ios::binary);
  out << content;
  Require(static_cast<bool>(out.flush()), "a file of the test could not be written");
  return Path(name);
}

std::string ReadFile(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  return std::string(std::istreambuf_iterator<char>(in), {});
}

std::string TreeDocument(const std::string& score, const std::string& functionName) {
  return R"(<PMML version="4.4" xmlns="http://www.dmg.org/PMML-4_4"><Header/>
<DataDictionary numberOfFields="2">
<DataField name="x" optype="continuous" dataType="double"/>
<DataField name="y" optype="continuous" dataType="double"/>
</DataDictionary>
<TreeModel functionName=")" +
         functionName + R"(">
<MiningSchema><MiningField name="x"/><MiningField name="y" usageType="target"/></MiningSchema>
<Node score=")" +
         score + R"("><True/></Node></TreeModel></PMML>)";
}

}  // namespace testing_examples
