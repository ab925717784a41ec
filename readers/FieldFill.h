// How every reader fills a variable list: one procedure, and the steps in which the document
// formats differ.
#ifndef MCXPRSUTIL_READERS_FIELDFILL_H
#define MCXPRSUTIL_READERS_FIELDFILL_H

#include <xercesc/dom/DOMElement.hpp>

#include "mccommon/MCStatus.h"
#include "mccommon/MCVarList.h"
#include "readers/Field.h"

namespace MCXPrsUtil {

// One fill of a list, used once. For each field: name, label, data type, measure, role, children,
// bins, the variable itself, and what is declared of it afterwards. A derived class says what its
// format does about the steps below; whatever it does not override, its format does not have.
class FieldFill {
 public:
  // `dialect` and `list` must outlive the fill.
  FieldFill(const FieldDialect& dialect, MCMTD_NAMESPACE::MCVarList& list)
      : list_(list), dialect_(dialect) {}
  FieldFill(const FieldFill&) = delete;
  FieldFill& operator=(const FieldFill&) = delete;

  // Adds a variable for each field that is a child of `parent`, in document order. The first
  // failure ends the fill; the list keeps what was added before it.
  // @return OK, or: 108 for a field without name, data type or measure; 109 for an unknown data
  //         type; 110 if FindBins() gives false; 111 if the list refused the variable; or what
  //         ReadChild() and Declare() give.
  MCCommon::MCStatus AddAll(const XERCES_CPP_NAMESPACE::DOMElement& parent);

 protected:
  ~FieldFill() = default;  // fills are local objects

  // Whether a field of that name counts; one that does not is not looked at any further.
  virtual bool Wants(const XMLCh* name) const;

  // What the field is used for. An input, where the format does not say.
  virtual MCMTD_NAMESPACE::IMCVariable::VariableRole ReadRole(
      const XERCES_CPP_NAMESPACE::DOMElement& element) const;

  // Takes from a child element of the field what counts. A failure abandons the field.
  virtual MCCommon::MCStatus ReadChild(const XERCES_CPP_NAMESPACE::DOMElement& child) = 0;

  // Finds the bins of a continuous field; false if there should be some and there are none.
  virtual bool FindBins();

  // Adds a continuous variable without bins; gives what the list gave.
  virtual int AddContinuous() = 0;

  // Says what else there is to say about the variable that was added at `index`.
  virtual MCCommon::MCStatus Declare(int index) = 0;

  MCMTD_NAMESPACE::MCVarList& list_;
  const FieldDialect& dialect_;
  Field field_;  // one for all fields: it keeps its memory

 private:
  MCCommon::MCStatus AddField(const XERCES_CPP_NAMESPACE::DOMElement& element);
  MCCommon::MCStatus ReadField(const XERCES_CPP_NAMESPACE::DOMElement& element);
  int AddVariable();
};

}  // namespace MCXPrsUtil

#endif  // MCXPRSUTIL_READERS_FIELDFILL_H
