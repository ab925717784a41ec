/// @file
/// The list of variables that readers fill.
#ifndef MCCOMMON_MCVARLIST_H
#define MCCOMMON_MCVARLIST_H

#include <memory>
#include <string>
#include <vector>

#include "mccommon/IMCVarEncoder.h"
#include "mccommon/IMCVariable.h"
#include "mccommon/MCExport.h"

namespace MCMTD_NAMESPACE {

class MCVarEncoder;
class MCVariable;

/// An ordered list of variables, each with an encoder of its own.
///
/// It is a usable list, and a base class: an application overrides what it wants to see, to feed
/// its own dictionary or to watch what a reader adds. An override of one form of AddCatVar,
/// AddContVar or GetVarAt hides the others unless it brings them in with a using-declaration. The
/// forms do not call each other: override each that is to be watched.
///
/// The list owns its variables and encoders; they live, at the same address, as long as the list.
/// Arguments are copied; all text is UTF-8.
///
/// Every add returns the index of the new variable, counted from 0, or -1 when it is refused, which
/// changes nothing. Each of these is refused:
/// - an empty name, or a name that the list already holds (names are compared byte by byte);
/// - a number of value labels other than the number of values;
/// - an end of a range that is a NaN or an infinity, or a minimum above its maximum;
/// - cut points that are not finite, not strictly ascending, or not strictly inside the range;
/// - a second weight variable.
///
/// MCMV::gMissingValue as an end of a range leaves that side open; it is not a cut point.
///
/// When memory runs out an add throws std::bad_alloc and leaves the list as it was. An add takes
/// constant time on average, however long the list is. One thread at a time may change a list;
/// several may read it while none changes it.
class MCCOMMON_EXPORT MCVarList {
 public:
  /// An empty list.
  MCVarList();

  virtual ~MCVarList();

  MCVarList(const MCVarList&) = delete;
  MCVarList& operator=(const MCVarList&) = delete;

  /// Adds a categorical variable with numeric values and a label for each of them.
  ///
  /// Values are kept in their order and repeated values are kept.
  virtual int AddCatVar(const std::string& name, const std::string& label,
                        const std::vector<double>& values,
                        const std::vector<std::string>& valueLabels,
                        IMCVariable::VariableRole role);

  /// Adds a categorical variable with numeric values and no value labels.
  virtual int AddCatVar(const std::string& name, const std::string& label,
                        const std::vector<double>& values, IMCVariable::VariableRole role);

  /// Adds a categorical variable with text values and a label for each of them.
  virtual int AddCatVar(const std::string& name, const std::string& label,
                        const std::vector<std::string>& values,
                        const std::vector<std::string>& valueLabels,
                        IMCVariable::VariableRole role);

  /// Adds a categorical variable with text values and no value labels.
  virtual int AddCatVar(const std::string& name, const std::string& label,
                        const std::vector<std::string>& values, IMCVariable::VariableRole role);

  /// Adds a continuous variable without a range.
  virtual int AddContVar(const std::string& name, const std::string& label,
                         IMCVariable::VariableRole role);

  /// Adds a continuous variable with a range.
  ///
  /// @param rangeFlag   asks the application to cut the range into `rangeCount` parts; the list
  ///                    only remembers both.
  /// @param rangeCount  the number of parts; -1 where there is none.
  virtual int AddContVar(const std::string& name, const std::string& label, double minimum,
                         double maximum, IMCVariable::VariableRole role, bool rangeFlag,
                         int rangeCount);

  /// Adds a continuous variable with a range that cut points divide.
  ///
  /// @param cutPoints  without the two ends of the range; n of them make n + 1 bins; may be empty.
  /// @param binned     asks the application to bin the values; the list only remembers it.
  virtual int AddContVar(const std::string& name, const std::string& label, double minimum,
                         double maximum, const std::vector<double>& cutPoints, bool binned,
                         IMCVariable::VariableRole role);

  /// Adds the frequency weight: a continuous variable with role kRoleFrequencyWeight.
  ///
  /// A list has one at most. Variables that were added with that role by another operation do not
  /// count.
  virtual int SetWeightVar(const std::string& name, const std::string& label,
                           IMCVariable::WRoundingOption rounding);

  /// The number of variables.
  virtual unsigned int Size() const;

  /// The variable at `index`, owned by the list; null outside the list.
  virtual IMCVariable* GetVarAt(int index);
  virtual const IMCVariable* GetVarAt(int index) const;

  /// The encoder of the variable at `index`, owned by the list; null outside the list.
  virtual IMCVarEncoder* GetEncoderAt(int index);

  /// What this class holds at `index`, with everything that was set; null outside the list.
  ///
  /// For reading a filled list without casts. A derived list that keeps its variables elsewhere
  /// holds nothing here; that goes for GetStoredEncoder() and FindVar() as well.
  const MCVariable* GetStoredVar(int index) const;

  /// The encoder that this class holds at `index`; null outside the list.
  const MCVarEncoder* GetStoredEncoder(int index) const;

  /// The index of the variable of that name; -1 when this class holds none. Constant time.
  int FindVar(const std::string& name) const;

 private:
  struct Store;
  std::unique_ptr<Store> store_;
};

}  // namespace MCMTD_NAMESPACE

#endif  // MCCOMMON_MCVARLIST_H
