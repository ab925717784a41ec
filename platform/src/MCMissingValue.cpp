#include "mccommon/MCMissingValue.h"

#include <cfloat>

namespace {

// Half of the most negative double: exact, far from every figure that data holds, and not one of
// the two extreme doubles, which stand for open ends of ranges.
constexpr double kMissingValue = -DBL_MAX / 2;

static_assert(kMissingValue < 0 && kMissingValue > -DBL_MAX);
static_assert(kMissingValue * 2 == -DBL_MAX, "the halving is exact");

}  // namespace

namespace MCMV {

const double gMissingValue = kMissingValue;

}  // namespace MCMV
