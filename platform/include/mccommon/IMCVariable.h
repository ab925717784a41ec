/// @file
/// A variable of a variable list, as readers and the combiner see it.
#ifndef MCCOMMON_IMCVARIABLE_H
#define MCCOMMON_IMCVARIABLE_H

#include <string>

#include "mccommon/MCExport.h"

namespace MCMTD_NAMESPACE {

/// The categories of a categorical variable. Owned by its variable.
class MCCOMMON_EXPORT IMCCategorySet {
 public:
  virtual ~IMCCategorySet();

  /// The value of the category at `index` (from 0) as UTF-8 text, numbers as
  /// MCXML_NAMESPACE::Format writes them; empty outside the set.
  virtual std::string GetValueText(int index) const = 0;

 protected:
  IMCCategorySet() = default;
  IMCCategorySet(const IMCCategorySet&) = default;
  IMCCategorySet& operator=(const IMCCategorySet&) = default;
};

/// One variable. Owned by its list; names and labels are UTF-8.
///
/// An application can derive from it to feed its own dictionary. Reading from several threads is
/// safe as long as none of them writes.
class MCCOMMON_EXPORT IMCVariable {
 public:
  /// What the analysis uses the variable for. The numeric values are fixed.
  enum VariableRole {
    kRoleNone = 0,             ///< No role is declared.
    kRoleIdentifier = 1,       ///< Identifies a record; for applications, no reader passes it.
    kRoleTarget = 2,           ///< To be predicted.
    kRoleFrequencyWeight = 3,  ///< How many records a record stands for.
    kRoleInput = 4,            ///< An input; also what readers without knowledge of roles pass.
    kRoleDeclaredInput = 5     ///< An input that the document itself declares as one, where the
                               ///< caller asked to tell these from kRoleInput.
  };

  /// How a frequency weight becomes a whole number. The numeric values are fixed.
  enum WRoundingOption {
    kRoundNone = 0,    ///< Used as it is.
    kRoundDown = 1,    ///< The fraction is cut off.
    kRoundNearest = 2  ///< To the nearest whole number; what the readers pass.
  };

  virtual ~IMCVariable();

  virtual const std::string& GetName() const = 0;

  /// The text to show for the variable; empty when there is none.
  virtual const std::string& GetLabel() const = 0;

  /// 1 continuous, 2 categorical with numeric values, 3 categorical with text values.
  virtual int GetKind() const = 0;

  /// 1 when the values are integers, which data type code 1 says; 0 otherwise.
  virtual int GetValueFormat() const = 0;

  virtual VariableRole GetRole() const = 0;

  /// The number of categories; 0 for a continuous variable.
  virtual int GetNCategories() const = 0;

  /// The categories, owned by this variable; null for a continuous one.
  virtual const IMCCategorySet* GetCategorySet() const = 0;

  /// The code last given to SetDataType(); 0 before.
  virtual int GetDataType() const = 0;

  /// Stores a data type code: 1 integer, 2 real, 3 text, 4 date, 5 time, 6 date and time. Other
  /// codes are stored as well.
  virtual void SetDataType(int code) = 0;

 protected:
  IMCVariable() = default;
  IMCVariable(const IMCVariable&) = default;
  IMCVariable& operator=(const IMCVariable&) = default;
};

}  // namespace MCMTD_NAMESPACE

#endif  // MCCOMMON_IMCVARIABLE_H
