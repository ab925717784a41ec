#include "readers/FieldFill.h"

#include "mcxprsutil/MCXTranscoder.h"
#include "readers/DomWalk.h"
#include "readers/Names.h"
#include "xml/AttributeText.h"
#include "xml/StatusCodes.h"

namespace MCXPrsUtil {

using MCCommon::MCStatus;
using MCMTD_NAMESPACE::IMCVariable;
using XERCES_CPP_NAMESPACE::DOMElement;

MCStatus FieldFill::AddAll(const DOMElement& parent) {
  for (const DOMElement& element : Children(parent, dialect_.element)) {
    if (MCStatus status = AddField(element); !status.IsOK()) return status;
  }
  return MCStatus();
}

MCStatus FieldFill::AddField(const DOMElement& element) {
  const XMLCh* name = AttributeText(element, names::kName);
  if (name == nullptr) return Failure(kAttributeMissing);
  if (!Wants(name)) return MCStatus();

  field_.Clear();
  field_.name = ToUTF8(name);
  if (MCStatus status = ReadField(element); !status.IsOK()) return status;
  if (field_.continuous && !FindBins()) return Failure(kNoBins);
  const int index = AddVariable();
  return index < 0 ? Failure(kVariableRefused) : Declare(index);
}

MCStatus FieldFill::ReadField(const DOMElement& element) {
  if (MCStatus status = ReadHeading(element, dialect_, field_); !status.IsOK()) return status;
  field_.role = ReadRole(element);
  for (const DOMElement& child : Children(element)) {
    if (MCStatus status = ReadChild(child); !status.IsOK()) return status;
  }
  return MCStatus();
}

int FieldFill::AddVariable() {
  if (!field_.continuous) return AddCategorical(field_, list_);
  return IsBinned(field_) ? AddBinned(field_, list_) : AddContinuous();
}

bool FieldFill::Wants(const XMLCh*) const { return true; }

IMCVariable::VariableRole FieldFill::ReadRole(const DOMElement&) const {
  return IMCVariable::kRoleInput;
}

bool FieldFill::FindBins() { return true; }

}  // namespace MCXPrsUtil
