// Locales that are made for a test, since systems differ in what they have installed.
#ifndef TESTS_SUPPORT_MADELOCALES_H_
#define TESTS_SUPPORT_MADELOCALES_H_

#include <clocale>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <new>
#include <string>
#include <system_error>

namespace test_support {

// While it lives, the C library looks for locales in a folder of its own instead of where the
// system keeps them; the built-in C, POSIX and C.UTF-8 are there all the same. At the end all
// categories are "C".
class MadeLocales {
 public:
  MadeLocales() {
    std::string pattern = (std::filesystem::temp_directory_path() / "mcx-XXXXXX").string();
    if (mkdtemp(pattern.data()) == nullptr) throw std::bad_alloc();
    folder_ = pattern;
    setenv("LOCPATH", folder_.c_str(), 1);
  }
  ~MadeLocales() {
    std::setlocale(LC_ALL, "C");
    unsetenv("LOCPATH");
    std::error_code ignored;
    std::filesystem::remove_all(folder_, ignored);
  }
  MadeLocales(const MadeLocales&) = delete;
  MadeLocales& operator=(const MadeLocales&) = delete;

  // Makes a locale with a decimal comma and nothing else of its own. The character encoding is one
  // of the C library. False where the system has nothing to make it with.
  bool Make(const std::string& name, const std::string& encoding) const {
    std::ofstream(folder_ + "/source")
        << "comment_char %\nescape_char /\nLC_NUMERIC\ndecimal_point \",\"\n"
           "thousands_sep \".\"\ngrouping 3;3\nEND LC_NUMERIC\n";
    // localedef complains about all the categories that the source leaves out, and makes the
    // locale.
    const std::string path = folder_ + "/" + name;
    const std::string command = "localedef -c -i '" + folder_ + "/source' -f " + encoding + " '" +
                                path + "' >/dev/null 2>&1";
    (void)!std::system(command.c_str());
    return std::filesystem::exists(path + "/LC_CTYPE");
  }

 private:
  std::string folder_;
};

}  // namespace test_support

#endif  // TESTS_SUPPORT_MADELOCALES_H_
