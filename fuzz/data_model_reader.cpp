// Any bytes as a data model: the reader answers with a status, filling twice gives the same, a list
// that refuses a variable has got the calls up to that one, roles and ranges change nothing but
// themselves, and the next document finds the reader as new.
#include <mccommon/MCVarList.h>
#include <mccommon/MCVariable.h>
#include <mcxprsutil/MCDataModelParser.h>

#include <cstddef>
#include <cstdint>
#include <string>

#include "Check.h"
#include "FilledList.h"
#include "XmlPlatform.h"

namespace {

using MCCommon::MCStatus;
using MCMTD_NAMESPACE::MCVariable;
using MCMTD_NAMESPACE::MCVarList;
using MCXPrsUtil::MCDataModelParser;

constexpr int kRoleInput = 4;
constexpr int kRoleModelInput = 5;

fuzz::Filler Filling(const MCDataModelParser& parser, bool input_role, bool ranges,
                     int range_count) {
  return [=, &parser](MCVarList& list) {
    return parser.FillVarList(list, input_role, ranges, range_count);
  };
}

// Too few parts are as good as none.
void CheckRanges(const MCDataModelParser& parser, bool input_role) {
  const fuzz::Filled plain = fuzz::Fill(Filling(parser, input_role, false, 0));
  FUZZ_CHECK(parser.GetStatus().IsOK() ||
             (plain.status == parser.GetStatus() && plain.calls.empty()));
  for (const int range_count : {-1, 0, 1}) {
    const fuzz::Filled few = fuzz::FillOnce(Filling(parser, input_role, true, range_count));
    FUZZ_CHECK(few.status == plain.status && few.calls == plain.calls);
  }
  FUZZ_CHECK(fuzz::FillOnce(Filling(parser, input_role, false, 7)).calls == plain.calls);
  const fuzz::Filled ranged = fuzz::Fill(Filling(parser, input_role, true, 2));
  FUZZ_CHECK(ranged.status == plain.status && ranged.calls.size() == plain.calls.size());
}

void CheckRoles(const MCDataModelParser& parser) {
  MCVarList four;
  MCVarList five;
  FUZZ_CHECK(parser.FillVarList(four, false, false, 0) == parser.FillVarList(five, true, false, 0));
  FUZZ_CHECK(four.Size() == five.Size());
  for (int i = 0; four.GetStoredVar(i) != nullptr; ++i) {
    const MCVariable& a = *four.GetStoredVar(i);
    const MCVariable& b = *five.GetStoredVar(i);
    FUZZ_CHECK(a.GetName() == b.GetName() && a.GetLabel() == b.GetLabel());
    FUZZ_CHECK(a.GetKind() == b.GetKind() && a.GetNCategories() == b.GetNCategories());
    FUZZ_CHECK(b.GetRole() == (a.GetRole() == kRoleInput ? kRoleModelInput : a.GetRole()));
    FUZZ_CHECK(a.GetRole() != kRoleModelInput);
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::StartXmlPlatform();
  const std::string text(reinterpret_cast<const char*>(data), size);
  if (!fuzz::IsModest(text)) return 0;
  const std::string next =
      "<DataModel><Fields><Field name='a' storage='real' measure='continuous'/></Fields>"
      "</DataModel>";
  MCDataModelParser parser;
  const MCStatus parsed = parser.ParseToDOM(text);
  FUZZ_CHECK(!parsed.GetFlag());
  for (const bool input_role : {false, true}) CheckRanges(parser, input_role);
  CheckRoles(parser);
  FUZZ_CHECK(parser.GetStatus() == parsed);

  FUZZ_CHECK(parser.ParseToDOM(next).IsOK());
  MCVarList list;
  FUZZ_CHECK(parser.FillVarList(list, false, false, 0).IsOK() && list.Size() == 1);
  FUZZ_CHECK(parser.ParseToDOM(text) == parsed);
  return 0;
}
