// What the readers collect of one field of a document, and its way into the variable list: the
// steps that all document formats share. FieldFill puts them into their order.
#ifndef MCXPRSUTIL_READERS_FIELD_H
#define MCXPRSUTIL_READERS_FIELD_H

#include <limits>
#include <string>
#include <vector>
#include <xercesc/dom/DOMElement.hpp>

#include "mccommon/MCStatus.h"
#include "mccommon/MCVarList.h"

namespace MCXPrsUtil {

// What the values of a field are; it also decides how they are read.
enum class Content { kNumbers, kTexts };

struct DataType {
  const XMLCh* word;
  Content content;
  int code = 0;  // see IMCVariable::SetDataType(); 0 in formats that hand on no code
};

// The words in which one document format describes its fields.
struct FieldDialect {
  const XMLCh* element;     // the field
  const XMLCh* label;       // attribute of the field: the variable's label
  const XMLCh* dataType;    // attribute of the field: one of `types`
  const XMLCh* measure;     // attribute of the field: "continuous" or another word
  const XMLCh* valueLabel;  // attribute of a value: its label
  const DataType* types;    // ended by a null word
};

inline constexpr double kLargestDouble = std::numeric_limits<double>::max();

// A range; its bounds are open until a document gives them.
struct Range {
  double lower = -kLargestDouble;
  double upper = kLargestDouble;

  bool IsOpen() const { return lower == -kLargestDouble && upper == kLargestDouble; }
};

// Values of one validity. Only the list that fits the field's content is filled. The labels are
// paired with it by position alone: a value that cannot be read still leaves its label behind.
struct ValueLists {
  std::vector<double> numbers;
  std::vector<std::string> texts;
  std::vector<std::string> labels;
};

struct Field {
  std::string name;
  std::string label;
  MCMTD_NAMESPACE::IMCVariable::VariableRole role = MCMTD_NAMESPACE::IMCVariable::kRoleNone;
  Content content = Content::kNumbers;
  int dataTypeCode = 0;
  bool continuous = false;
  Range range;
  ValueLists valid;
  ValueLists missing;
  Range invalidRange;
  std::vector<double> cutPoints;       // range and inner cut points of a binned variable
  std::vector<std::string> binLabels;  // may be out of step with the cut points

  // Empties everything and keeps the memory for the next field.
  void Clear();
};

// Reads label, data type and measure, in this order.
// @return OK; 108 if the data type or the measure is absent; 109 for an unknown data type.
MCCommon::MCStatus ReadHeading(const XERCES_CPP_NAMESPACE::DOMElement& element,
                               const FieldDialect& dialect, Field& field);

// Appends the "value" of an element to `lists`, if it is there and can be read, and, whether or
// not it was appended, the value's label if there is one.
void AppendValue(const XERCES_CPP_NAMESPACE::DOMElement& value, const FieldDialect& dialect,
                 Content content, ValueLists& lists);

// Adds a categorical variable with its valid values, and with their labels if there are as many.
// @return the index that the list gave; negative if it refused.
int AddCategorical(const Field& field, MCMTD_NAMESPACE::MCVarList& list);

// Whether the field has cut points between two ends. Fewer than three make no bins.
bool IsBinned(const Field& field);

// Adds a continuous variable with the ends of its cut points as range and those between as cuts.
// @return the index that the list gave; negative if it refused.
int AddBinned(const Field& field, MCMTD_NAMESPACE::MCVarList& list);

// Declares at the encoder of the variable `index`, in this order: the bin labels of a binned
// variable, the missing values with their labels, the invalid range if there is one.
// @return OK; 111 if there is something to declare and the list gives no encoder.
MCCommon::MCStatus DeclareAtEncoder(const Field& field, int index,
                                    MCMTD_NAMESPACE::MCVarList& list);

}  // namespace MCXPrsUtil

#endif  // MCXPRSUTIL_READERS_FIELD_H
