// Small settings documents, and readers of them.
#ifndef MCXPRSUTIL_TESTS_READERS_SETTINGSTEXT_H
#define MCXPRSUTIL_TESTS_READERS_SETTINGSTEXT_H

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "PmmlText.h"
#include "mcxprsutil/MCSettingsParser.h"

// What a "MiningBuildTask" holds around the given parameters.
inline std::string BuildTask(const std::string& parameters) {
  return "<MiningBuildTask><Extension><Parameters>" + parameters +
         "</Parameters></Extension></MiningBuildTask>";
}

// A settings document with the given parameters and an empty data dictionary.
inline std::string Settings(const std::string& parameters) {
  return Pmml("", BuildTask(parameters));
}

// A parameter; `attributes` as written, e.g. "value='1'".
inline std::string Parameter(const std::string& name, const std::string& attributes,
                             const std::string& content = "") {
  return "<Parameter name='" + name + "' " + attributes + ">" + content + "</Parameter>";
}

inline std::string Group(const std::string& name, const std::string& content) {
  return "<ComplexParameter name='" + name + "'>" + content + "</ComplexParameter>";
}

inline std::string List(const std::string& values) {
  return "<ListValue>" + values + "</ListValue>";
}

// A reader that has read a settings document with these parameters.
inline std::unique_ptr<MCXPrsUtil::MCSettingsParser> ReaderOf(const std::string& parameters) {
  auto reader = std::make_unique<MCXPrsUtil::MCSettingsParser>();
  EXPECT_TRUE(ParseText(*reader, Settings(parameters)).IsOK());
  return reader;
}

// An error.
inline MCCommon::MCStatus Error(int code) { return MCCommon::MCStatus(code, false); }

// The document does not give the parameter.
inline MCCommon::MCStatus NotGiven(int code) { return MCCommon::MCStatus(code, true); }

#endif  // MCXPRSUTIL_TESTS_READERS_SETTINGSTEXT_H
