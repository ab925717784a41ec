/// @file
/// What a reader tells a variable list, and what holds for every way to fill one.
#ifndef MCXPRSUTIL_FUZZ_FILLEDLIST_H
#define MCXPRSUTIL_FUZZ_FILLEDLIST_H

#include <mccommon/MCStatus.h>
#include <mccommon/MCVarList.h>

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <functional>
#include <string>
#include <vector>

#include "Check.h"
#include "readers/RecordingVarList.h"

namespace fuzz {

using Filler = std::function<MCCommon::MCStatus(MCMTD_NAMESPACE::MCVarList& list)>;

struct Filled {
  MCCommon::MCStatus status;
  std::vector<std::string> calls;  // see RecordingVarList
};

inline constexpr int kVariableRefused = 111;

/// Bit by bit, so that a NaN equals itself.
inline bool AreSame(const std::vector<double>& a, const std::vector<double>& b) {
  return a.size() == b.size() &&
         (a.empty() || std::memcmp(a.data(), b.data(), a.size() * sizeof(double)) == 0);
}

inline bool IsHeadOf(const std::vector<std::string>& head, const std::vector<std::string>& whole) {
  return head.size() <= whole.size() && std::equal(head.begin(), head.end(), whole.begin());
}

/// The calls that add a variable.
inline std::vector<std::string> AddsOf(const std::vector<std::string>& calls) {
  std::vector<std::string> adds;
  for (const std::string& call : calls) {
    for (const char* operation : {"AddCatVar(", "AddContVar(", "SetWeightVar("}) {
      if (call.rfind(operation, 0) == 0) adds.push_back(call);
    }
  }
  return adds;
}

inline Filled FillOnce(const Filler& fill, RecordingVarList& list) {
  Filled filled;
  filled.status = fill(list);
  filled.calls = list.calls;
  FUZZ_CHECK(!filled.status.GetFlag());
  return filled;
}

/// What one list that takes everything is told.
inline Filled FillOnce(const Filler& fill) {
  RecordingVarList list;
  return FillOnce(fill, list);
}

/// The calls of a list that refuses the variable at `index` end with that one.
inline void FillRefusing(const Filler& fill, const Filled& whole, int index) {
  RecordingVarList list;
  list.refuse_at = index;
  const Filled refused = FillOnce(fill, list);
  FUZZ_CHECK(IsHeadOf(refused.calls, whole.calls));
  if (AddsOf(whole.calls).size() <= static_cast<std::size_t>(index)) {
    FUZZ_CHECK(refused.status == whole.status && refused.calls == whole.calls);
    return;
  }
  FUZZ_CHECK(refused.status.GetCode() == kVariableRefused);
  FUZZ_CHECK(AddsOf(refused.calls).size() == static_cast<std::size_t>(index) + 1);
  FUZZ_CHECK(AddsOf({refused.calls.back()}).size() == 1);
}

/// The list of the common library, which has rules of its own.
inline void FillRealList(const Filler& fill, const Filled& whole) {
  MCMTD_NAMESPACE::MCVarList list;
  const MCCommon::MCStatus status = fill(list);
  if (status == whole.status) {
    FUZZ_CHECK(!status.IsOK() || list.Size() == AddsOf(whole.calls).size());
  } else {
    FUZZ_CHECK(status.GetCode() == kVariableRefused);
  }
  MCMTD_NAMESPACE::MCVarList other;
  FUZZ_CHECK(fill(other) == status && other.Size() == list.Size());
}

/// Fills several lists: one that takes everything (its calls are the result), the same again, one
/// that refuses a variable, one without encoders, and the real one.
inline Filled Fill(const Filler& fill) {
  const Filled whole = FillOnce(fill);
  const Filled again = FillOnce(fill);
  FUZZ_CHECK(again.status == whole.status && again.calls == whole.calls);
  for (const int index : {0, 1, 3}) FillRefusing(fill, whole, index);
  RecordingVarList bare;
  bare.has_encoders = false;
  const Filled without = FillOnce(fill, bare);
  FUZZ_CHECK(without.status == whole.status || without.status.GetCode() == kVariableRefused);
  FUZZ_CHECK(without.status != whole.status || AddsOf(without.calls) == AddsOf(whole.calls));
  FillRealList(fill, whole);
  return whole;
}

}  // namespace fuzz

#endif  // MCXPRSUTIL_FUZZ_FILLEDLIST_H
