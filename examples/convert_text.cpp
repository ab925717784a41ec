// Converts texts of any length from one encoding to another, and tells what could not be converted.
//
// Exit code: 0 when the output says the same as the input, 1 when something failed, 2 for a wrong
// call, 3 when characters were lost: 3 is also the library's status for a lossy conversion.
#include <fmt/format.h>
#include <unistd.h>

#include <CLI/CLI.hpp>
#include <clocale>
#include <cstdint>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <iostream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "ByteFile.h"
#include "DisplayWidth.h"
#include "Encodings.h"
#include "FileCheck.h"
#include "ProgressBar.h"
#include "Terminal.h"
#include "TextConversion.h"
#include "mcmem/ConverterRegistry.h"

namespace {

using examples::ConverterPtr;
using examples::Printable;

constexpr int kSomethingFailed = 1;
constexpr int kWrongCall = 2;
constexpr int kLossy = 3;
constexpr std::uint64_t kProgressUnit = 1 << 20;

constexpr const char* kFooter =
    "An ENCODING is a name or a code page number, such as windows-1252, 932 or UTF-16LE.\n"
    "What cannot be converted becomes \"?\", or the target's own replacement where characters "
    "have\n"
    "more than one byte; invisible characters that the target lacks are left out. Both are "
    "counted.\n"
    "A byte order mark: UTF-16 and UTF-32 obey and remove that of each input (without one they "
    "read\n"
    "big-endian), and put one, little-endian, before the output. In other encodings it is a\n"
    "character like others: kept, or counted where the target lacks it; --drop-bom leaves it out.";

struct Arguments {
  std::string from;
  std::string to = "UTF-8";
  std::string out;
  std::vector<std::string> files;
  std::string filter;
  std::size_t block = 1 << 16;
  bool strict = false;
  bool dropMark = false;
};

// The call is wrong; the text says why.
class CallError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

void Declare(CLI::App& app, Arguments& arguments) {
  app.footer(kFooter);
  app.add_option("-f,--from", arguments.from, "Of the input (default: that of the locale)")
      ->type_name("ENCODING");
  app.add_option("-t,--to", arguments.to, "Of the output (default: UTF-8)")->type_name("ENCODING");
  app.add_option("-o,--out", arguments.out, "The output (default: standard output)")
      ->type_name("FILE");
  app.add_flag("--strict", arguments.strict, "Stop where the first character would be lost");
  app.add_flag("--drop-bom", arguments.dropMark,
               "Leave out a byte order mark at the start of each input");
  app.add_option("-l,--list", arguments.filter,
                 "List the encodings, or those whose lines contain TEXT")
      ->type_name("[TEXT]")
      ->expected(0, 1);
  app.add_option("--block", arguments.block, "Bytes that are read at once")
      ->check(CLI::Range(1, 1 << 24))
      ->group("");
  app.add_option("FILE", arguments.files,
                 "Texts, converted one after the other (default: standard input, also as -)")
      ->type_name("");
}

std::string Shown(const std::string& file) { return file == "-" ? "standard input" : file; }

// Standard input and output have paths as well, where they are files.
std::string PathOf(const std::string& argument, const char* whenStandard) {
  return argument.empty() || argument == "-" ? whenStandard : argument;
}

void CheckFiles(const Arguments& arguments) {
  const std::string out = PathOf(arguments.out, "/dev/stdout");
  for (const std::string& file : arguments.files) {
    if (examples::IsSameRegularFile(PathOf(file, "/dev/stdin"), out)) {
      throw CallError(fmt::format("{}: this would be overwritten while it is read", Shown(file)));
    }
    std::error_code ignored;
    // A pipe may be opened only once.
    const bool isPipe = file == "-" || std::filesystem::is_fifo(file, ignored);
    const std::string reason = isPipe ? "" : examples::WhyNotReadable(file);
    if (!reason.empty()) throw examples::FileError(fmt::format("{}: {}", file, reason));
  }
}

ConverterPtr Open(const char* option, const std::string& encoding) {
  ConverterPtr converter = examples::OpenEncoding(encoding);
  if (converter != nullptr) return converter;
  throw CallError(
      fmt::format("{} {}: there is no such encoding; --list shows all", option, encoding));
}

// In steps of the progress bar; 0 when the size of a file is not known.
std::size_t TotalSteps(const std::vector<std::string>& files) {
  std::uint64_t total = 0;
  for (const std::string& file : files) {
    std::error_code error;
    const std::uint64_t size = std::filesystem::file_size(file, error);
    if (error) return 0;
    total += size;
  }
  return static_cast<std::size_t>(total / kProgressUnit);
}

// No bar where the text itself may be on the screen.
int BarWidth(const Arguments& arguments) {
  const bool isTextShown = arguments.out.empty() && isatty(STDOUT_FILENO) != 0;
  return isTextShown ? 0 : examples::TerminalWidth(STDERR_FILENO);
}

std::string Describe(const examples::LossyPlaces& lossy) {
  return fmt::format("{} lossy {}, the first at byte {}: {}", lossy.count,
                     lossy.count == 1 ? "place" : "places", lossy.firstOffset, lossy.first);
}

// One run of the program, from the opened encodings to the closed output.
class Run {
 public:
  Run(const Arguments& arguments, UConverter& from, UConverter& to)
      : arguments_(arguments),
        conversion_(from, to, arguments.block),
        out_(arguments.out),
        bar_(std::cerr, BarWidth(arguments), "MiB converted", TotalSteps(arguments.files)),
        block_(arguments.block, '\0') {
    if (arguments.dropMark) conversion_.DropByteOrderMarks();
  }

  // Returns whether nothing was lost, of which it has told.
  bool Convert() {
    for (const std::string& file : arguments_.files) {
      const bool isLast = &file == &arguments_.files.back();
      ConvertFile(file, isLast);
      if (!Tell(file)) continue;
      is_exact_ = false;
      if (arguments_.strict) return false;
    }
    out_.Close();
    return is_exact_;
  }

 private:
  bool HasToStop() const { return arguments_.strict && conversion_.Lossy().count > 0; }

  void ConvertFile(const std::string& file, bool isLast) {
    examples::InputFile in(file);
    conversion_.BeginText();
    while (const std::size_t count = in.Read(block_.data(), block_.size())) {
      conversion_.Convert(std::string_view(block_.data(), count), text_);
      if (HasToStop()) return;
      WriteText();
      Advance(count);
    }
    conversion_.EndText(text_);
    if (isLast) conversion_.EndOutput(text_);
    if (!HasToStop()) WriteText();
  }

  void WriteText() {
    out_.Write(text_);
    text_.clear();
  }

  void Advance(std::size_t count) {
    const std::uint64_t before = done_;
    done_ += count;
    for (auto step = before / kProgressUnit; step < done_ / kProgressUnit; ++step) bar_.Advance();
  }

  // Returns whether there was something to tell.
  bool Tell(const std::string& file) {
    if (conversion_.Lossy().count == 0) return false;
    bar_.Clear();
    std::cerr << "convert_text: " << Printable(Shown(file)) << ": "
              << Printable(Describe(conversion_.Lossy())) << '\n';
    return true;
  }

  const Arguments& arguments_;
  examples::TextConversion conversion_;
  examples::OutputFile out_;
  examples::ProgressBar bar_;
  std::string block_;
  std::string text_;
  std::uint64_t done_ = 0;
  bool is_exact_ = true;
};

int Fail(int exitCode, const std::string& text) {
  std::cerr << "convert_text: " << Printable(text) << '\n';
  return exitCode;
}

int List(const std::string& filter) {
  const std::string list = examples::ListEncodings(filter);
  if (list.empty()) return Fail(kSomethingFailed, fmt::format("no encoding has \"{}\"", filter));
  examples::OutputFile out("");
  out.Write(list);
  out.Close();
  return 0;
}

int Convert(Arguments& arguments) {
  if (arguments.files.empty()) arguments.files.emplace_back("-");
  const ConverterPtr from = Open("--from", arguments.from);
  const ConverterPtr to = Open("--to", arguments.to);
  CheckFiles(arguments);
  Run run(arguments, *from, *to);
  try {
    if (run.Convert()) return 0;
  } catch (const std::exception& error) {
    return Fail(kSomethingFailed, fmt::format("{}; the output is incomplete", error.what()));
  }
  return arguments.strict ? Fail(kLossy, "stopped there; the output is incomplete") : kLossy;
}

int Main(int argc, char** argv) {
  // The library takes the locale as it is; without this it would not be the user's.
  std::setlocale(LC_CTYPE, "");
  Arguments arguments;
  CLI::App app("Converts texts from one encoding to another.", "convert_text");
  Declare(app, arguments);
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    return app.exit(error) == 0 ? 0 : kWrongCall;
  }
  if (app.count("--from") == 0) arguments.from = MCMEM_NAMESPACE::SystemEncoding();
  try {
    return app.count("--list") > 0 ? List(arguments.filter) : Convert(arguments);
  } catch (const CallError& error) {
    return Fail(kWrongCall, error.what());
  } catch (const examples::FileError& error) {
    return Fail(kSomethingFailed, error.what());
  }
}

}  // namespace

int main(int argc, char** argv) {
  try {
    return Main(argc, argv);
  } catch (const std::exception& error) {
    std::fprintf(stderr, "convert_text: %s\n", error.what());
    return kSomethingFailed;
  }
}
