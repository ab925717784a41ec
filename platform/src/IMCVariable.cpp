#include "mccommon/IMCVariable.h"

namespace MCMTD_NAMESPACE {

// Defined here so that the tables and type information of the interfaces exist once, in this
// library, and a client's subclass can be recognised across library borders.
IMCCategorySet::~IMCCategorySet() = default;
IMCVariable::~IMCVariable() = default;

}  // namespace MCMTD_NAMESPACE
