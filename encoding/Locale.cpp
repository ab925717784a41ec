#include <langinfo.h>

#include <clocale>
#include <cstdlib>
#include <cstring>
#include <string>

#include "mcmem/ConverterRegistry.h"

namespace MCMEM_NAMESPACE {

namespace {

constexpr char kFallbackLocale[] = "en_US";
constexpr char kFallbackAssignment[] = "LC_ALL=en_US";

bool g_isLocaleEnabled = false;

// What was handed to putenv: the environment refers to it, so it is never freed. On the heap, so
// that the environment stays sound even where the library is unloaded.
char* g_localeAssignment = nullptr;

void PutFallbackInEnvironment() {
  if (g_localeAssignment != nullptr) return;
  g_localeAssignment = strdup(kFallbackAssignment);
  if (g_localeAssignment != nullptr) putenv(g_localeAssignment);
}

bool HasChosenLocale() {
  const char* characterType = std::setlocale(LC_CTYPE, nullptr);
  return characterType == nullptr || std::strcmp(characterType, "C") != 0;
}

std::string CaptureEncoding() {
  EnableLocale();
  return nl_langinfo(CODESET);
}

}  // namespace

void EnableLocale() {
  if (g_isLocaleEnabled) return;
  g_isLocaleEnabled = true;
  std::setlocale(LC_NUMERIC, "C");
  if (HasChosenLocale()) return;
  // Where the system lacks the locale, the categories keep what they had, and child processes
  // still inherit the choice.
  std::setlocale(LC_ALL, kFallbackLocale);
  std::setlocale(LC_NUMERIC, "C");  // LC_ALL has just replaced it
  PutFallbackInEnvironment();
}

const char* SystemEncoding() {
  // Never destroyed: the name stays valid while the process ends, too.
  static const std::string& encoding = *new std::string(CaptureEncoding());
  return encoding.c_str();
}

}  // namespace MCMEM_NAMESPACE
