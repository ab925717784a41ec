// Fails every allocation of an operation in turn and looks at what is left.
#ifndef MCXPRSUTIL_TESTS_FAULTS_ALLOCATIONSWEEP_H
#define MCXPRSUTIL_TESTS_FAULTS_ALLOCATIONSWEEP_H

#include <functional>
#include <memory>
#include <string>

#include "mccommon/MCStatus.h"

namespace fault_test {

// Something that an operation is done to: a reader, a combiner, a name. Allocations fail during
// Run() alone, so what the test itself needs is made before it and looked at behind it.
class Subject {
 public:
  virtual ~Subject() = default;

  // Makes what one run uses up.
  virtual void Prepare() {}

  virtual void Run() = 0;

  // What the last run gave. After a failure that the operation told of, the text begins with
  // kFailed.
  virtual std::string Result() = 0;

  // What must hold after a run that threw; empty, or what is wrong.
  virtual std::string WrongAfterThrow() { return ""; }
};

inline constexpr char kFailed[] = "failed";

// "ok", or "failed with" and the code.
std::string TextOf(const MCCommon::MCStatus& status);

struct Operation {
  std::string name;
  std::function<std::unique_ptr<Subject>()> make;
  // The same with the XML library alone, to tell what it loses by itself: exactly that may be lost.
  // Null: nothing may be lost.
  std::function<std::unique_ptr<Subject>()> alone = nullptr;
  bool may_throw = true;  // std::bad_alloc or the XML library's OutOfMemoryException
};

// What sweeps came to.
struct Tally {
  long operations = 0;
  long allocations = 0;   // of undisturbed runs
  long failures[3] = {};  // by fault_test::Source
  long threw = 0;
  long told = 0;      // by a result that begins with kFailed
  long unharmed = 0;  // gave what an undisturbed run gives
  long lossy = 0;     // the XML library lost something

  void Add(const Tally& other);
  void Print(const std::string& name) const;
};

// Runs `operation` with the allocation after n failing, for n from 0 until it succeeds: first that
// allocation alone, then that and all that follow until the run ends, then all that follow until
// the subject is destroyed.
//
// Each run must give what an undisturbed one gives, or tell of a failure, or throw; must lose no
// block; and the subject must then serve as if nothing had happened. Operations with many
// allocations skip some, more of them the further they are, unless the environment variable
// MCX_FULL_FAULTS is set.
Tally SweepAllocations(const Operation& operation);

// The same, and prints what it came to.
void SweepAndPrint(const Operation& operation);

}  // namespace fault_test

#endif  // MCXPRSUTIL_TESTS_FAULTS_ALLOCATIONSWEEP_H
