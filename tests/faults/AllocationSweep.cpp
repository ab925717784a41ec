#include "faults/AllocationSweep.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <iostream>
#include <new>
#include <xercesc/util/OutOfMemoryException.hpp>

#include "support/FailingAllocations.h"
#include "xml/TestDocument.h"

namespace fault_test {
namespace {

#ifdef MCX_TEST_SANITIZED
constexpr long kAllUpTo = 64;
#else
constexpr long kAllUpTo = 256;
#endif
constexpr long kEndless = 1000000;

enum class Memory { kFailsOnce, kIsShortDuringRun, kIsShortToTheEnd };
constexpr Memory kMemories[] = {Memory::kFailsOnce, Memory::kIsShortDuringRun,
                                Memory::kIsShortToTheEnd};

struct Outcome {
  bool failed = false;  // whether the operation needed the allocation that was to fail
  bool threw = false;
  Source source = kNew;
  long libraries_before = 0;  // see FailingAllocation
};

FailingAllocation::Duration DurationOf(Memory memory) {
  return memory == Memory::kFailsOnce ? FailingAllocation::kOnce : FailingAllocation::kForGood;
}

long Next(long count) {
  static const bool is_full = std::getenv("MCX_FULL_FAULTS") != nullptr;
  return is_full ? count + 1 : count + 1 + count / kAllUpTo;
}

Outcome RunShort(Subject& subject, FailingAllocation& failure) {
  Outcome outcome;
  try {
    subject.Run();
  } catch (const std::bad_alloc&) {
    outcome.threw = true;
  } catch (const XERCES_CPP_NAMESPACE::OutOfMemoryException&) {
    outcome.threw = true;
  }
  outcome.failed = failure.HasFailed();
  outcome.source = failure.FailedSource();
  outcome.libraries_before = failure.LibrariesBefore();
  return outcome;
}

class Sweep {
 public:
  explicit Sweep(const Operation& operation) : operation_(operation) {
    expected_ = Undisturbed();
    expected_ = Undisturbed();  // the first time may have made what libraries keep
  }

  void Run(Memory memory) {
    for (long count = 0; count < kEndless; count = Next(count)) {
      if (!RunAt(count, memory) || testing::Test::HasFailure()) return;
    }
    ADD_FAILURE() << operation_.name << " never succeeds";
  }

  const Tally& GetTally() const { return tally_; }

 private:
  std::string Undisturbed() {
    const std::unique_ptr<Subject> subject = operation_.make();
    return Result(*subject);
  }

  static std::string Result(Subject& subject) {
    subject.Prepare();
    subject.Run();
    return subject.Result();
  }

  // False when the operation needs no more than `count` allocations.
  bool RunAt(long count, Memory memory) {
    SCOPED_TRACE(operation_.name + ", memory " + std::to_string(static_cast<int>(memory)) +
                 ", allocation " + std::to_string(count));
    const Blocks before = LiveBlocks();
    const Outcome outcome = RunSubject(count, memory);
    const Blocks lost = LiveBlocks() - before;
    if (lost == Blocks()) return outcome.failed;
    ++tally_.lossy;
    EXPECT_EQ(lost, LostAlone(outcome, memory));
    return outcome.failed;
  }

  Outcome RunSubject(long count, Memory memory) {
    std::unique_ptr<Subject> subject = operation_.make();
    subject->Prepare();
    FailingAllocation failure(count, DurationOf(memory));
    const Outcome outcome = RunShort(*subject, failure);
    if (outcome.failed) ++tally_.failures[outcome.source];
    if (outcome.threw) ++tally_.threw;
    if (memory == Memory::kIsShortToTheEnd) {
      subject.reset();
      failure.Stop();
      return outcome;
    }
    failure.Stop();
    if (!outcome.failed) tally_.allocations = count;
    Judge(*subject, outcome);
    if (outcome.failed) {
      EXPECT_EQ(Result(*subject), expected_) << "the subject is spoilt";
    }
    return outcome;
  }

  // What the libraries lose by themselves when the same one of their allocations fails.
  Blocks LostAlone(const Outcome& outcome, Memory memory) {
    if (operation_.alone == nullptr) return Blocks();
    const Blocks before = LiveBlocks();
    {
      const std::unique_ptr<Subject> subject = operation_.alone();
      subject->Prepare();
      FailingAllocation failure(outcome.libraries_before, DurationOf(memory), kLibraries);
      (void)RunShort(*subject, failure);
    }
    return LiveBlocks() - before;
  }

  void Judge(Subject& subject, const Outcome& outcome) {
    if (outcome.threw) {
      EXPECT_TRUE(operation_.may_throw);
      EXPECT_EQ(subject.WrongAfterThrow(), "");
      return;
    }
    const std::string result = subject.Result();
    if (outcome.failed && result != expected_ && result.rfind(kFailed, 0) == 0) {
      ++tally_.told;
      return;
    }
    if (outcome.failed) ++tally_.unharmed;
    EXPECT_EQ(result, expected_);
  }

  const Operation& operation_;
  std::string expected_;
  Tally tally_{1};
};

}  // namespace

std::string TextOf(const MCCommon::MCStatus& status) {
  return status.IsOK() ? "ok" : kFailed + (" with " + std::to_string(status.GetCode()));
}

void Tally::Add(const Tally& other) {
  operations += other.operations;
  allocations += other.allocations;
  for (const Source source : {kNew, kXml, kIcu}) failures[source] += other.failures[source];
  threw += other.threw;
  told += other.told;
  unharmed += other.unharmed;
  lossy += other.lossy;
}

void Tally::Print(const std::string& name) const {
  std::cout << "[ allocations ] " << name << ": " << operations << " operations, " << allocations
            << " allocations, failures: new " << failures[kNew] << ", XML library "
            << failures[kXml] << ", ICU " << failures[kIcu] << "; threw " << threw << ", told "
            << told << ", unharmed " << unharmed << ", lossy " << lossy << '\n';
}

Tally SweepAllocations(const Operation& operation) {
  Sweep sweep(operation);
  for (const Memory memory : kMemories) sweep.Run(memory);
  return sweep.GetTally();
}

void SweepAndPrint(const Operation& operation) {
  SweepAllocations(operation).Print(operation.name);
}

}  // namespace fault_test
