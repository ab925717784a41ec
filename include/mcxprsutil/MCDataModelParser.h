/// @file
/// The data model reader: parses a document and fills a variable list from its fields.
#ifndef MCXPRSUTIL_MCDATAMODELPARSER_H
#define MCXPRSUTIL_MCDATAMODELPARSER_H

#include <memory>
#include <string>

#include "mccommon/MCStatus.h"
#include "mccommon/MCVarList.h"
#include "mcxprsutil/Export.h"

namespace MCXPrsUtil {

class MCDataModelParserImp;

/// Reads data models: small XML documents that list the fields of a data set, each with its
/// storage, its measurement level and its role.
///
/// Construct, ParseToDOM(), test the status, then FillVarList() any number of times.
///
/// ~~~{.xml}
/// <DataModel>
///   <Fields>
///     <Field name="age" displayLabel="Age in years" storage="integer" measure="continuous"
///            role="input">
///       <Range minValue="18" maxValue="99"/>
///     </Field>
///     <Field name="sex" storage="string" measure="nominal" role="target">
///       <Values>
///         <Value value="f" displayLabel="female"/>
///         <Value value="m" displayLabel="male"/>
///       </Values>
///     </Field>
///   </Fields>
/// </DataModel>
/// ~~~
///
/// Names are compared exactly, prefixes included; elements and attributes other than those shown
/// are ignored, and so is every "Fields" but the first. The document is not validated.
///
/// Memory shortage passes out of FillVarList() as `std::bad_alloc` or the XML library's
/// OutOfMemoryException, and the reader can be used again.
///
/// Every status has the flag false. The reader keeps the status of its last parse, and
/// FillVarList() begins with a copy of it: after a failed parse it fails with that parse's code.
/// FillVarList() does not change the stored status.
///
/// The reader owns the document: a new parse and the destructor destroy every node of it. Do not
/// call one reader from two threads at once; several readers may live at once, made and destroyed
/// on any thread (see MCXMLReadWrite).
class MCXPRSUTIL_EXPORT MCDataModelParser {
 public:
  /// Starts the XML platform, which counts its users, and creates the parser with its default
  /// settings. If either fails, GetStatus() is 103, and so is the result of every later operation.
  /// Throws nothing but std::bad_alloc.
  MCDataModelParser();

  /// Destroys the document and the parser, then stops the XML platform, unless the construction
  /// had failed.
  virtual ~MCDataModelParser();

  MCDataModelParser(const MCDataModelParser&) = delete;
  MCDataModelParser& operator=(const MCDataModelParser&) = delete;

  /// Reads the document in `text`, which is all of it and not a file name; the reader holds that
  /// one from now on, or none.
  ///
  /// The previous document is released before `text` is looked at, whatever the result. `text` is
  /// in the encoding that its XML declaration names, UTF-8 without one; it is not needed
  /// afterwards. Never throws.
  ///
  /// @return OK;
  ///         103 if the construction had failed, or no parser could be created;
  ///         104 if the parser threw an exception or ran out of memory, if it gave no document, or
  ///             if the document is malformed, although the root and a "Fields" were read;
  ///         105 if there is no document element, or it is not named "DataModel";
  ///         113 if it has no child "Fields".
  ///         What is wrong with the part of a malformed document that could be read comes first.
  ///         The result is stored as well. On failure no document is held.
  MCCommon::MCStatus ParseToDOM(const std::string& text);

  /// Appends one variable per "Field" to `list`, in document order.
  ///
  /// "measure" "continuous" gives a continuous variable, every other word a categorical one. The
  /// categories are the "value" of each "Value" in each "Values" of the field, as they are written
  /// with "storage" "string", else as numbers (`double` of XML Schema); those that are no numbers
  /// are left out, infinities among them, while "NaN" gives MCMV::gMissingValue. The labels of all
  /// values, even of those left out, are passed as value labels if there are as many as categories.
  /// Nothing is sorted, no duplicate is removed.
  ///
  /// The role ("role") is 4 or 5 for "input", 2 for "target", 3 for "freqWeight", and 0 for any
  /// other word or none (see IMCVariable::VariableRole). A continuous field with role 3 becomes the
  /// list's weight variable with rounding option 2; a categorical one is added like any other.
  ///
  /// The list is asked for the encoder of each categorical variable with numbers, once, after that
  /// variable was added (MCVarList::GetEncoderAt()). Nothing is declared there, and a null encoder
  /// is no failure.
  ///
  /// @param list           receives the variables; what it throws passes to the caller.
  /// @param inputRoleFlag  whether "input" gives the role 5 instead of 4.
  /// @param rangeFlag      whether continuous variables (other than the weight) get the bounds of
  ///                       "Range", if `rangeCount` is at least 2. Of several "Range" elements each
  ///                       replaces the bounds that it gives as numbers. A bound that none gives,
  ///                       and both bounds of a text field, are the largest finite double, negative
  ///                       for the minimum.
  /// @param rangeCount     passed to the list with the bounds.
  /// @return OK, also without any "Field"; the parse's status if that is not OK;
  ///         107 if no document is held;
  ///         108 if a field has no "name", "storage" or "measure";
  ///         109 if its "storage" is not "string", "integer", "real", "date", "time" or
  ///             "timestamp";
  ///         111 if the list refused a variable.
  ///         The first failure ends the fill; `list` keeps what was added before it.
  MCCommon::MCStatus FillVarList(MCMTD_NAMESPACE::MCVarList& list, bool inputRoleFlag,
                                 bool rangeFlag, int rangeCount) const;

  /// The status of the last parse; before the first one that of the construction.
  MCCommon::MCStatus GetStatus() const;

 private:
  std::unique_ptr<MCDataModelParserImp> implementation_;
};

}  // namespace MCXPrsUtil

#endif  // MCXPRSUTIL_MCDATAMODELPARSER_H
