// Fails one allocation after the other and looks at what is left. This program replaces operator
// new; the library under test uses the replacement too.
#include <gtest/gtest.h>

#include <cstdlib>
#include <functional>
#include <new>
#include <string>
#include <vector>

#include "mccommon/MCVarEncoder.h"
#include "mccommon/MCVarList.h"
#include "mccommon/MCVariable.h"

namespace {

constexpr int kNever = -1;

// Allocations that still succeed; kNever: all of them.
int allocationsLeft = kNever;

bool MayAllocate() {
  if (allocationsLeft == kNever) return true;
  if (allocationsLeft == 0) return false;
  --allocationsLeft;
  return true;
}

}  // namespace

void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
  return MayAllocate() ? std::malloc(size == 0 ? 1 : size) : nullptr;
}

void* operator new(std::size_t size) {
  void* memory = operator new(size, std::nothrow);
  if (memory == nullptr) throw std::bad_alloc();
  return memory;
}

// Out of line, since g++ takes a free() for a mistake where it sees it in the place of a delete.
[[gnu::noinline]] void operator delete(void* memory) noexcept { std::free(memory); }
[[gnu::noinline]] void operator delete(void* memory, std::size_t) noexcept { std::free(memory); }
[[gnu::noinline]] void operator delete(void* memory, const std::nothrow_t&) noexcept {
  std::free(memory);
}

namespace {

using MCMTD_NAMESPACE::IMCVariable;
using MCMTD_NAMESPACE::MCVarEncoder;
using MCMTD_NAMESPACE::MCVarList;
using Numbers = std::vector<double>;
using Texts = std::vector<std::string>;

constexpr IMCVariable::VariableRole kInput = IMCVariable::kRoleInput;

// True when `operation` ran through with `allocations` allocations; false when it ran out.
bool RunsWith(int allocations, const std::function<void()>& operation) {
  allocationsLeft = allocations;
  try {
    operation();
  } catch (const std::bad_alloc&) {
    allocationsLeft = kNever;
    return false;
  }
  allocationsLeft = kNever;
  return true;
}

// Texts that do not fit into a string object, so that each of them allocates.
const std::string kName = "the name of a variable, longer than a small buffer";
const std::string kLabel = "the label of a variable, longer than a small buffer";
const Texts kTexts = {"the first value, longer than a small buffer",
                      "the second value, longer than a small buffer"};
const Numbers kNumbers = {1, 2};

using Add = std::function<int(MCVarList&)>;

const std::vector<Add>& EveryAdd() {
  static const std::vector<Add> adds = {
      [](MCVarList& l) { return l.AddCatVar(kName, kLabel, kNumbers, kTexts, kInput); },
      [](MCVarList& l) { return l.AddCatVar(kName, kLabel, kNumbers, kInput); },
      [](MCVarList& l) { return l.AddCatVar(kName, kLabel, kTexts, kTexts, kInput); },
      [](MCVarList& l) { return l.AddCatVar(kName, kLabel, kTexts, kInput); },
      [](MCVarList& l) { return l.AddContVar(kName, kLabel, kInput); },
      [](MCVarList& l) { return l.AddContVar(kName, kLabel, 0, 9, kInput, true, 3); },
      [](MCVarList& l) { return l.AddContVar(kName, kLabel, 0, 9, kNumbers, true, kInput); },
      [](MCVarList& l) { return l.SetWeightVar(kName, kLabel, IMCVariable::kRoundNearest); },
  };
  return adds;
}

void Prefill(MCVarList& list, int size) {
  for (int i = 0; i < size; ++i) {
    ASSERT_EQ(list.AddContVar("x" + std::to_string(i), "", kInput), i);
  }
}

void ExpectOnlyPrefilled(const MCVarList& list, int size) {
  EXPECT_EQ(list.Size(), static_cast<unsigned int>(size));
  EXPECT_EQ(list.GetVarAt(size), nullptr);
  EXPECT_EQ(list.FindVar(kName), -1);
}

// Returns the number of allocations that had to succeed.
int FailUntilItFits(MCVarList& list, const Add& add, int size) {
  for (int allocations = 0;; ++allocations) {
    int index = -1;
    if (RunsWith(allocations, [&] { index = add(list); })) {
      EXPECT_EQ(index, size);
      return allocations;
    }
    ExpectOnlyPrefilled(list, size);
  }
}

TEST(OutOfMemory, AnAddLeavesTheListAsItWas) {
  // 0, 13 and 16 are sizes at which the vector or the index grows.
  for (const int size : {0, 5, 13, 16, 29, 32}) {
    for (const Add& add : EveryAdd()) {
      MCVarList list;
      Prefill(list, size);
      EXPECT_GT(FailUntilItFits(list, add, size), 3);
      EXPECT_EQ(list.FindVar(kName), size);
      EXPECT_EQ(list.GetVarAt(size)->GetLabel(), kLabel);
      EXPECT_EQ(add(list), -1);
    }
  }
}

TEST(OutOfMemory, AWeightThatDidNotFitIsNoWeight) {
  MCVarList list;
  EXPECT_FALSE(RunsWith(2, [&] { list.SetWeightVar(kName, kLabel, IMCVariable::kRoundNone); }));
  EXPECT_EQ(list.SetWeightVar("w", "", IMCVariable::kRoundNone), 0);
}

TEST(OutOfMemory, RefusalsOfNamesNeedNoMemory) {
  MCVarList list;
  ASSERT_EQ(list.AddContVar(kName, kLabel, kInput), 0);
  EXPECT_TRUE(RunsWith(0, [&] { EXPECT_EQ(list.AddContVar(kName, kLabel, kInput), -1); }));
  EXPECT_TRUE(RunsWith(0, [&] { EXPECT_EQ(list.FindVar(kName), 0); }));
}

TEST(OutOfMemory, BinLabelsStayWhenNewOnesDoNotFit) {
  MCVarEncoder encoder;
  encoder.SetBinLabels({"old", "labels"});
  int allocations = 0;
  while (!RunsWith(allocations, [&] { encoder.SetBinLabels(kTexts); })) {
    EXPECT_EQ(encoder.GetBinLabels(), (Texts{"old", "labels"}));
    ++allocations;
  }
  EXPECT_GT(allocations, 0);
  EXPECT_EQ(encoder.GetBinLabels(), kTexts);
}

TEST(OutOfMemory, MissingValuesStayWhenAnotherDoesNotFit) {
  MCVarEncoder encoder;
  encoder.AddMissingValue(1, kLabel);
  encoder.AddMissingValue(kName, kLabel);
  int allocations = 0;
  while (!RunsWith(allocations, [&] { encoder.AddMissingValue(2, kLabel); })) {
    EXPECT_EQ(encoder.GetMissingNumbers().size(), 1u);
    ++allocations;
  }
  while (!RunsWith(allocations, [&] { encoder.AddMissingValue(kTexts[0], kLabel); })) {
    EXPECT_EQ(encoder.GetMissingTexts().size(), 1u);
    ++allocations;
  }
  EXPECT_GT(allocations, 0);
  EXPECT_EQ(encoder.GetMissingNumbers().back().label, kLabel);
  EXPECT_EQ(encoder.GetMissingTexts().back().value, kTexts[0]);
}

}  // namespace
