// Locale and system encoding. Both are set up once in a process, so every test does it in a child
// process of its own. The locales are made for the tests, since systems differ in what they have
// installed.
#include <gtest/gtest.h>
#include <langinfo.h>
#include <sys/wait.h>
#include <unistd.h>

#include <clocale>
#include <cstdlib>
#include <cstring>
#include <string>

#include "mcmem/ConverterRegistry.h"
#include "support/MadeLocales.h"

namespace {

using MCMEM_NAMESPACE::EnableLocale;
using MCMEM_NAMESPACE::SystemEncoding;

std::string Text(const char* s) { return s == nullptr ? "(null)" : s; }

std::string LocaleOf(int category) { return Text(std::setlocale(category, nullptr)); }

std::string Environment() { return Text(std::getenv("LC_ALL")); }

// Runs `report` in a child process and returns what it returned; "died" where the child did.
template <class Report>
std::string InChild(Report report) {
  int ends[2];
  if (pipe(ends) != 0) return "no pipe";
  const pid_t child = fork();
  if (child == 0) {
    const std::string result = report();
    const bool isWritten = write(ends[1], result.data(), result.size()) >= 0;
    _exit(isWritten ? 0 : 1);
  }
  close(ends[1]);
  std::string result;
  char bytes[256];
  for (ssize_t n = 0; (n = read(ends[0], bytes, sizeof bytes)) > 0;) {
    result.append(bytes, static_cast<std::size_t>(n));
  }
  close(ends[0]);
  int state = 0;
  waitpid(child, &state, 0);
  return WIFEXITED(state) && WEXITSTATUS(state) == 0 ? result : "died";
}

class LocaleTest : public testing::Test {
 protected:
  void SetUp() override {
    unsetenv("LC_ALL");
    std::setlocale(LC_ALL, "C");
  }

  bool Install(const std::string& name, const std::string& encoding) const {
    return locales_.Make(name, encoding);
  }

 private:
  test_support::MadeLocales locales_;
};

class InstalledLocaleTest : public LocaleTest {
 protected:
  void SetUp() override {
    LocaleTest::SetUp();
    const bool isInstalled = Install("en_US", "ISO-8859-1") && Install("de_DE", "UTF-8");
    if (!isInstalled) GTEST_SKIP() << "no localedef, or no encodings for it";
  }
};

using EnableLocaleAbsent = LocaleTest;
using EnableLocaleInstalled = InstalledLocaleTest;
using SystemEncodingAbsent = LocaleTest;
using SystemEncodingInstalled = InstalledLocaleTest;

// Every category that EnableLocale leaves to "en_US" or to the program.
constexpr int kCategories[] = {LC_CTYPE, LC_COLLATE, LC_MESSAGES, LC_MONETARY, LC_TIME};

TEST_F(EnableLocaleInstalled, UnchosenLocaleBecomesAmericanButForNumbers) {
  EXPECT_EQ(InChild([] {
              EnableLocale();
              std::string seen = LocaleOf(LC_NUMERIC) + " " + Environment();
              for (const int category : kCategories) seen += " " + LocaleOf(category);
              return seen;
            }),
            "C en_US en_US en_US en_US en_US en_US");
}

TEST_F(EnableLocaleInstalled, OnlyTheCharacterTypeTellsWhetherOneWasChosen) {
  EXPECT_EQ(InChild([] {
              std::setlocale(LC_TIME, "de_DE");
              std::setlocale(LC_NUMERIC, "de_DE");
              EnableLocale();
              return LocaleOf(LC_TIME) + " " + LocaleOf(LC_NUMERIC) + " " + LocaleOf(LC_CTYPE);
            }),
            "en_US C en_US");
  EXPECT_EQ(InChild([] {
              std::setlocale(LC_CTYPE, "de_DE");
              EnableLocale();
              return LocaleOf(LC_TIME) + " " + LocaleOf(LC_CTYPE) + " " + Environment();
            }),
            "C de_DE (null)");
}

TEST_F(EnableLocaleInstalled, ChosenLocaleStaysButForNumbers) {
  EXPECT_EQ(InChild([] {
              std::setlocale(LC_ALL, "de_DE");
              std::string seen = std::localeconv()->decimal_point;
              EnableLocale();
              seen += std::localeconv()->decimal_point;
              for (const int category : kCategories) seen += " " + LocaleOf(category);
              return seen + " " + LocaleOf(LC_NUMERIC) + " " + Environment();
            }),
            ",. de_DE de_DE de_DE de_DE de_DE C (null)");
}

TEST_F(EnableLocaleInstalled, SecondCallDoesNothing) {
  EXPECT_EQ(InChild([] {
              EnableLocale();
              std::setlocale(LC_ALL, "C");
              std::setlocale(LC_NUMERIC, "de_DE");
              unsetenv("LC_ALL");
              EnableLocale();
              return LocaleOf(LC_CTYPE) + " " + LocaleOf(LC_NUMERIC) + " " + Environment();
            }),
            "C de_DE (null)");
}

TEST_F(EnableLocaleAbsent, OnlyTheEnvironmentChanges) {
  EXPECT_EQ(InChild([] {
              EnableLocale();
              std::string seen = LocaleOf(LC_NUMERIC) + " " + Environment();
              for (const int category : kCategories) seen += " " + LocaleOf(category);
              return seen;
            }),
            "C en_US C C C C C");
}

TEST_F(EnableLocaleAbsent, NumbersAreReadWithThePoint) {
  if (!Install("de_DE", "UTF-8")) GTEST_SKIP() << "no localedef, or no encodings for it";
  EXPECT_EQ(InChild([] {
              std::setlocale(LC_NUMERIC, "de_DE");
              std::setlocale(LC_TIME, "de_DE");
              EnableLocale();
              return LocaleOf(LC_NUMERIC) + " " + LocaleOf(LC_TIME);
            }),
            "C de_DE");
}

TEST_F(EnableLocaleAbsent, BuiltInUnicodeLocaleCountsAsChosen) {
  EXPECT_EQ(InChild([] {
              if (std::setlocale(LC_ALL, "C.UTF-8") == nullptr) return std::string("no C.UTF-8");
              EnableLocale();
              return LocaleOf(LC_CTYPE) + " " + LocaleOf(LC_NUMERIC) + " " + Environment();
            }),
            "C.UTF-8 C (null)");
}

TEST_F(EnableLocaleAbsent, PosixLocaleCountsAsUnchosen) {
  EXPECT_EQ(InChild([] {
              std::setlocale(LC_ALL, "POSIX");
              EnableLocale();
              return LocaleOf(LC_CTYPE) + " " + Environment();
            }),
            "C en_US");
}

// The program never asked for the locale that its environment offers.
TEST_F(EnableLocaleAbsent, EnvironmentOfAProgramWithoutLocaleIsReplaced) {
  EXPECT_EQ(InChild([] {
              setenv("LC_ALL", "de_DE", 1);
              EnableLocale();
              return Environment();
            }),
            "en_US");
}

TEST_F(EnableLocaleAbsent, ChildProcessesInheritTheEnvironment) {
  EXPECT_EQ(InChild([] {
              EnableLocale();
              return std::to_string(std::system("test \"$LC_ALL\" = en_US"));
            }),
            "0");
}

TEST_F(SystemEncodingAbsent, IsAsciiWithoutALocale) {
  EXPECT_EQ(InChild([] {
              const std::string encoding = SystemEncoding();
              return encoding + " " + Environment();
            }),
            "ANSI_X3.4-1968 en_US");
}

TEST_F(SystemEncodingAbsent, IsThatOfTheChosenLocale) {
  EXPECT_EQ(InChild([] {
              std::setlocale(LC_ALL, "C.UTF-8");
              const std::string encoding = SystemEncoding();
              return encoding + " " + Environment();
            }),
            "UTF-8 (null)");
}

TEST_F(SystemEncodingAbsent, IsKeptWhateverTheLocaleBecomes) {
  EXPECT_EQ(InChild([] {
              const char* first = SystemEncoding();
              std::setlocale(LC_ALL, "C.UTF-8");
              const char* second = SystemEncoding();
              const bool isSame = first == second;
              return second + std::string(isSame ? " same " : " other ") + nl_langinfo(CODESET);
            }),
            "ANSI_X3.4-1968 same UTF-8");
}

TEST_F(SystemEncodingAbsent, IsTakenAtTheFirstCallNotAtTheSetUp) {
  EXPECT_EQ(InChild([] {
              EnableLocale();
              std::setlocale(LC_ALL, "C.UTF-8");
              return std::string(SystemEncoding());
            }),
            "UTF-8");
}

TEST_F(SystemEncodingInstalled, IsThatOfTheAmericanLocale) {
  EXPECT_EQ(InChild([] {
              const std::string encoding = SystemEncoding();
              return encoding + " " + LocaleOf(LC_CTYPE);
            }),
            "ISO-8859-1 en_US");
}

}  // namespace
