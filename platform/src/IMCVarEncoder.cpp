#include "mccommon/IMCVarEncoder.h"

namespace MCMTD_NAMESPACE {

IMCVarEncoder::~IMCVarEncoder() = default;

}  // namespace MCMTD_NAMESPACE
