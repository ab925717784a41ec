#include "StatusText.h"

#include <fmt/format.h>

#include <algorithm>
#include <iterator>

namespace examples {
namespace {

struct StatusRow {
  int code;
  const char* text;
};

constexpr StatusRow kStatusRows[] = {
    {0, "no error"},
    {103, "the XML library could not be started"},
    {104, "the document could not be parsed"},
    {105, "this is another kind of document: its outermost element is not the expected one"},
    {106, "the PMML document has no DataDictionary"},
    {107, "no document was read"},
    {108, "a required attribute is missing"},
    {109, "an attribute holds an unknown word, or no valid number where one is needed"},
    {110, "the transformation dictionary declares no bins for this field"},
    {111, "the variable list refused the variable"},
    {112, "no model was chosen whose statistics are to be read"},
    {113, "a required element is missing"},
    {114, "the frequencies cannot be read, or one of them is negative"},
    {115, "the intervals contradict each other"},
    {116, "the statistics of a variable are not valid"},
    {118, "the file could not be written"},
    {119, "this is not a settings document: it has no parameters"},
    {120, "there is no parameter of that name"},
    {121, "the parameter is a list, and a single value is needed"},
    {122, "the parameter is declared as a list but holds none"},
    {123, "the parameter has no value"},
    {124, "the model predicts another kind of result than the first one (functionName differs)"},
    {125, "the model is itself a combination of models (MiningModel)"},
    {126, "the split values do not match the split variables"},
};
static_assert(std::size(kStatusRows) == 24, "OK and one row per code that the library raises");

}  // namespace

const char* StatusText(int code) {
  const auto* row = std::find_if(std::begin(kStatusRows), std::end(kStatusRows),
                                 [code](const StatusRow& r) { return r.code == code; });
  return row == std::end(kStatusRows) ? "unknown status" : row->text;
}

std::string StatusText(const MCCommon::MCStatus& status) {
  return fmt::format("{} (status {})", StatusText(status.GetCode()), status.GetCode());
}

}  // namespace examples
