/// @file
/// The settings reader: the parameters and the variables of a build-settings document.
#ifndef MCXPRSUTIL_MCSETTINGSPARSER_H
#define MCXPRSUTIL_MCSETTINGSPARSER_H

#include <iosfwd>
#include <memory>
#include <string>
#include <vector>
#include <xercesc/util/XercesDefs.hpp>

#include "mccommon/MCStatus.h"
#include "mccommon/MCVarList.h"
#include "mcxprsutil/Export.h"
#include "mcxprsutil/MCPMMLParser.h"

XERCES_CPP_NAMESPACE_BEGIN
class DOMElement;
XERCES_CPP_NAMESPACE_END

namespace MCXPrsUtil {

struct FoundParameter;  // what a look-up gives inside the library

/// Reads the settings of a model build: PMML (Data Mining Group) whose "MiningBuildTask" carries
/// named parameters in an extension.
///
/// ~~~{.xml}
/// <PMML>
///   <MiningBuildTask><Extension><Parameters>
///     <Parameter name="depth" type="integer" value="5"/>
///     <Parameter name="inputs"><ListValue><Value value="age"/><Value value="sex"/></ListValue>
///     </Parameter>
///     <MatrixParmeter name="costs">
///       <ArrayParameter><Value value="0"/><Value value="2"/></ArrayParameter>
///     </MatrixParmeter>
///     <ComplexParameter name="stopping"><Parameter name="limit" value="0.5"/></ComplexParameter>
///   </Parameters></Extension></MiningBuildTask>
///   <DataDictionary/>
/// </PMML>
/// ~~~
///
/// "MatrixParmeter" is the format's own spelling; an element that is spelt correctly is not found.
/// Only the first "Extension" of the first "MiningBuildTask" is looked at, whoever its extender is.
///
/// **Scopes.** A parameter is searched among the children of one element, the scope, never deeper,
/// and the first of a name counts; elements without a "name" are passed over. The scope is the
/// "Parameters" element, or what the argument `scope` points to: null for "Parameters", or else a
/// `xercesc::DOMElement*` converted to `void*`, which is what GetComplexParameter() gives. A
/// pointer of another type, `xercesc::DOMNode*` among them, must be cast to `DOMElement*` first:
/// the addresses need not be the same. The scope is not owned and must belong to a document that
/// still lives.
///
/// **Names** are UTF-8, zero-terminated, and compared exactly. No parameter has a null name.
///
/// **Statuses.** Every operation of this class begins with the status of the last parse and fails
/// with that if it is not OK (those without a status give ParamUnknown or null); none but
/// ParseToDOM() changes it. A status with the flag true, 120 or 123, is no
/// error: the document does not give the parameter, and a single value keeps what the caller
/// preset. The "type" of a parameter is information for the caller; no operation checks it.
///
/// The rules of MCPMMLParser for ownership and threads apply. MCPMMLParser::FillVarList() is hidden
/// by the settings reader's own and can be called by its full name. MCPMMLParser::ParseToDOM(),
/// called by its full name, does not look for parameters: those of an earlier document stay in
/// force; without any, the operations that look up parameters give 119.
class MCXPRSUTIL_EXPORT MCSettingsParser : public MCPMMLParser {
 public:
  /// What a parameter says of its value by its attribute "type".
  enum ParameterType {
    ParamString,     ///< "string"
    ParamDouble,     ///< "double"
    ParamInteger,    ///< "integer"
    ParamBoolean,    ///< "boolean"
    ParamEnum,       ///< "enum", read as a string
    ParamFieldName,  ///< "fieldName", read as a string
    ParamUnknown     ///< Any other word, no "type", no such parameter, or no settings document.
  };

  /// As the base class: never throws, and GetStatus() is 103 if the XML platform or the parser
  /// could not start.
  MCSettingsParser();

  /// Destroys every document that is held, then stops the XML platform.
  ~MCSettingsParser() override;

  /// Reads a document from `in`, as MCPMMLParser::ParseToDOM() does, and finds its parameters.
  ///
  /// The previous document is released before `in` is read, whatever the result, unless its
  /// parameters are in force: then it lives on until the result is known.
  ///
  /// A document without parameters is refused with 119, but not after a document that had some:
  /// then the status is OK, and the operations that look up parameters go on answering from that
  /// earlier document, which is kept for this, while the root element and the dictionaries are
  /// those of the new one. A failed parse ends this: from then on nothing of any earlier document
  /// is left. No more than two documents are held at any time, however often a reader is used.
  ///
  /// A document refused with 119 is held all the same: GetRootElement() gives its root.
  ///
  /// A scope from GetComplexParameter() dies when the parameters are replaced or dropped: do not
  /// use one across a parse.
  ///
  /// @return OK; 103, 104, 105 or 106 as MCPMMLParser::ParseToDOM();
  ///         119 if the path "MiningBuildTask", "Extension", "Parameters" does not exist below the
  ///             root, and no parameters of an earlier document are held.
  ///         The result is stored as well. What `in` throws passes to the caller, as in the base.
  MCCommon::MCStatus ParseToDOM(std::istream& in) override;

  /// The declared type of the parameter `name`.
  ///
  /// @param scope  see the class description.
  /// @return ParamUnknown for every failure, too.
  ParameterType GetParameterType(const char* name, void* scope = nullptr);

  /// Finds the group of parameters `name`, a "ComplexParameter".
  ///
  /// @param scope  see the class description; groups nest to any depth.
  /// @return the group as a scope: a `xercesc::DOMElement*`, owned by the reader, as `void*`. Null
  ///         if there is no such group, or no settings document is held.
  void* GetComplexParameter(const char* name, void* scope = nullptr);

  /// @name Single values
  /// Read the "value" of the parameter `name`.
  ///
  /// @param value  receives it; untouched on failure, with the one exception of a negative int.
  /// @param scope  see the class description.
  /// @return OK; the parse's status if that is not OK;
  ///         107 if nothing has been parsed;
  ///         109 if the value cannot be read as the type asked for;
  ///         119 if no settings document is held;
  ///         120, flag true, if there is no parameter of that name;
  ///         121 if it has no "value" but a "ListValue";
  ///         123, flag true, if it has neither.
  /// @{

  /// "true" or "false", in lower case; 109 for every other text, "1" and "0" included.
  MCCommon::MCStatus GetParameter(const char* name, bool& value, void* scope = nullptr) const;

  /// A `double` of XML Schema. "NaN" gives MCMV::gMissingValue; an infinity gives 109.
  MCCommon::MCStatus GetParameter(const char* name, double& value, void* scope = nullptr) const;

  /// A whole number that is not negative. A negative one gives 109 as well, but only after `value`
  /// has received it. Beyond the range of int: 109, `value` untouched.
  MCCommon::MCStatus GetParameter(const char* name, int& value, void* scope = nullptr) const;

  /// The text as it stands, in UTF-8; it may be empty. Never gives 109.
  MCCommon::MCStatus GetParameter(const char* name, std::string& value,
                                  void* scope = nullptr) const;
  /// @}

  /// @name Arrays
  /// Read the parameter `name` as a list: the "value" of each "Value" in its first "ListValue" or,
  /// without a "ListValue", its own "value" as the only entry. Where both are there only the list
  /// counts.
  ///
  /// @param values  cleared once the parameter is found, untouched before; keeps the entries that
  ///                were read before a failure.
  /// @param scope   see the class description.
  /// @return OK; the parse's status if that is not OK;
  ///         107 if nothing has been parsed;
  ///         109 if an entry cannot be read as the type asked for;
  ///         119 if no settings document is held;
  ///         120, flag true, if there is no parameter of that name;
  ///         123, flag true, if it has neither a "value" nor a "ListValue", if the list has no
  ///             "Value", or if an entry has no "value".
  ///         The first failure in document order counts.
  /// @{

  /// Whole numbers that are not negative; a negative one gives 109 and is not stored.
  MCCommon::MCStatus GetArray(const char* name, std::vector<int>& values,
                              void* scope = nullptr) const;

  /// Numbers as the single double.
  MCCommon::MCStatus GetArray(const char* name, std::vector<double>& values,
                              void* scope = nullptr) const;

  /// Texts in UTF-8. Empty ones are skipped, so a single empty "value" gives an empty list and OK.
  /// Never gives 109.
  MCCommon::MCStatus GetArray(const char* name, std::vector<std::string>& values,
                              void* scope = nullptr) const;
  /// @}

  /// @name Matrices
  /// Read the "MatrixParmeter" `name`: one row per "ArrayParameter", one cell per "Value" in it.
  /// Rows may differ in length. A cell without a "value", or with one that cannot be read as the
  /// type asked for, is left out, so that its row is shorter.
  ///
  /// Of numbers, the rows that are read come last: `rows` is first resized to the number of nodes
  /// below the matrix element, of whatever kind, white space between elements and comments
  /// included. Rows that `rows` had already keep their content there, the others are empty. A
  /// matrix of k nodes and r rows thus gives k + r rows; pass an empty `rows` and take the last r.
  ///
  /// @param rows   untouched unless the result is OK.
  /// @param scope  see the class description.
  /// @return OK; the parse's status if that is not OK;
  ///         107 if nothing has been parsed;
  ///         119 if no settings document is held;
  ///         120, flag true, if there is no matrix of that name.
  /// @{

  /// Whole numbers; negative ones are left out.
  MCCommon::MCStatus GetMatrix(const char* name, std::vector<std::vector<int>>& rows,
                               void* scope = nullptr);

  /// Numbers as the single double.
  MCCommon::MCStatus GetMatrix(const char* name, std::vector<std::vector<double>>& rows,
                               void* scope = nullptr);

  /// Texts in UTF-8, empty ones included. `rows` is emptied first, so it gets nothing but the rows.
  MCCommon::MCStatus GetMatrix(const char* name, std::vector<std::vector<std::string>>& rows,
                               void* scope = nullptr);
  /// @}

  /// @name Variables
  /// Read the names of variables, in UTF-8, from a parameter of the "Parameters" element; a
  /// parameter in a group is not found.
  /// @{

  /// The names that the parameter `name` lists: with "isList" "true" the entries of its first
  /// "ListValue", else its own "value", and a "ListValue" is not looked at. Empty names are
  /// skipped.
  ///
  /// @param names  cleared once the parameter is found, untouched before; keeps what was read
  ///               before a failure.
  /// @return OK, also for a "ListValue" without entries; the parse's status if that is not OK;
  ///         107 if nothing has been parsed;
  ///         108 if an entry, or a parameter that is no list, has no "value";
  ///         119 if no settings document is held;
  ///         120, flag true, if there is no parameter of that name: nothing plays this role;
  ///         122 if "isList" is "true" and there is no "ListValue".
  MCCommon::MCStatus GetVariables(const char* name, std::vector<std::string>& names) const;

  /// The one name that the parameter `name` gives, its "value"; it may be empty.
  ///
  /// @param value  receives it; untouched on failure.
  /// @return OK; the parse's status if that is not OK;
  ///         107 if nothing has been parsed;
  ///         108 if the parameter has no "value" and is no list;
  ///         119 if no settings document is held;
  ///         120, flag true, if there is no parameter of that name: nothing plays this role;
  ///         121 if it has no "value" and "isList" is "true".
  MCCommon::MCStatus GetVariables(const char* name, std::string& value) const;

  /// GetArray() of "inputs"; its statuses.
  MCCommon::MCStatus GetPredictors(std::vector<std::string>& names) const;

  /// GetArray() of "target"; its statuses.
  MCCommon::MCStatus GetTargetVars(std::vector<std::string>& names) const;

  /// The list GetVariables() of "ContPredictors"; its statuses.
  MCCommon::MCStatus GetContPredictors(std::vector<std::string>& names) const;

  /// The list GetVariables() of "CatPredictors"; its statuses.
  MCCommon::MCStatus GetCatPredictors(std::vector<std::string>& names) const;

  /// The list GetVariables() of "ContResponses"; its statuses.
  MCCommon::MCStatus GetContResponseVars(std::vector<std::string>& names) const;

  /// The list GetVariables() of "CatResponses"; its statuses.
  MCCommon::MCStatus GetCatResponseVars(std::vector<std::string>& names) const;

  /// The single GetVariables() of "FrequencyWeightVar"; its statuses.
  MCCommon::MCStatus GetFrequencyWeight(std::string& name) const;
  /// @}

  /// Appends one variable per "DataField" of the data dictionary to `list`, in document order, each
  /// with role 4 (see IMCVariable::VariableRole), and declares, in this order, its bin labels, its
  /// missing values, its invalid range and its data type code.
  ///
  /// "optype" "continuous" gives a continuous variable, any other a categorical one, whose
  /// categories are the values with "property" "valid" or without that attribute; all other values
  /// are missing values. Value labels are passed only if there are as many as values; a value that
  /// cannot be read still leaves its label behind. The parameters that name variables, the
  /// frequency weight among them, play no part here.
  ///
  /// The range of a numeric continuous variable is that of its field's last "Interval". Without
  /// one, and for a text field, it reaches from the lowest to the largest double; an absent
  /// "rightMargin" is the largest double, but an absent "leftMargin" is the smallest positive
  /// normal double. "NaN" is the missing value, compared like any number.
  ///
  /// Bin labels, missing values and invalid range follow the rules of MCPMMLParser::FillVarList().
  ///
  /// | "dataType"                 | code |
  /// |----------------------------|------|
  /// | "integer"                  | 1    |
  /// | "double", "float"          | 2    |
  /// | "string"                   | 3    |
  /// | "date"                     | 4    |
  /// | "time"                     | 5    |
  /// | "dateTime"                 | 6    |
  ///
  /// @param list  receives the variables; what it throws passes to the caller.
  /// @param useTransDictBins  whether continuous fields get the bins that the transformation
  ///              dictionary declares (see SetBinsFrTransDict()), whose ends then are the range;
  ///              without that dictionary, or with fewer than 3 cut points, a field stays unbinned.
  /// @return OK; the parse's status if that is not OK, 119 included;
  ///         107 if nothing has been parsed;
  ///         108 if a field has no "name", "dataType" or "optype";
  ///         109 if its "dataType" is not among those above, or if the field is numeric and an
  ///             "Interval" has a margin that is no number, or a lower one above the upper one;
  ///         110 if bins are wanted, the document has a transformation dictionary, and that has no
  ///             "Discretize" for a continuous field;
  ///         111 if the list refused a variable, does not give it back, or gave no encoder where
  ///             there is something to declare.
  ///         The first failure ends the fill; `list` keeps what was added before it.
  MCCommon::MCStatus FillVarList(MCMTD_NAMESPACE::MCVarList& list, bool useTransDictBins) const;

  /// Appends one variable per "DerivedField" of the transformation dictionary to `list`, in
  /// document order; a document without that dictionary has none, which is no failure.
  ///
  /// The fields are read by the rules of FillVarList(), except that they have no bins, and that an
  /// "Interval" within an "Extension" of a numeric field, the first one, gives the range like one
  /// of the field's own; whichever comes last counts. A field named like a variable that the list
  /// holds is passed to the list all the same.
  ///
  /// @param list  receives the variables; what it throws passes to the caller.
  /// @return OK; the parse's status if that is not OK, 119 included;
  ///         107 if nothing has been parsed;
  ///         108, 109 and 111 as FillVarList(), with both places of an "Interval" for 109.
  ///         The first failure ends the fill; `list` keeps what was added before it.
  MCCommon::MCStatus FillTransDict(MCMTD_NAMESPACE::MCVarList& list) const;

 private:
  FoundParameter Find(const XMLCh* element, const char* name, void* scope) const;

  // The "Parameters" element in force; it keeps its document alive, which need not be the last one.
  std::shared_ptr<XERCES_CPP_NAMESPACE::DOMElement> parameters_;
};

}  // namespace MCXPrsUtil

#endif  // MCXPRSUTIL_MCSETTINGSPARSER_H
