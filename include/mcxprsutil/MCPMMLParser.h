/// @file
/// The PMML reader: parses a document, fills a variable list from its dictionaries and reads the
/// statistics of its models.
#ifndef MCXPRSUTIL_MCPMMLPARSER_H
#define MCXPRSUTIL_MCPMMLPARSER_H

#include <iosfwd>
#include <memory>
#include <string>
#include <vector>
#include <xercesc/util/XercesDefs.hpp>

#include "mccommon/MCStatus.h"
#include "mccommon/MCUniStats.h"
#include "mccommon/MCVarList.h"
#include "mcxprsutil/Export.h"

XERCES_CPP_NAMESPACE_BEGIN
class DOMDocument;
class DOMElement;
XERCES_CPP_NAMESPACE_END

namespace MCXPrsUtil {

class DocumentParser;

/// Reads PMML documents (Data Mining Group) and keeps the one read last.
///
/// Construct, ParseToDOM(), test the status, then FillVarList(). Any element named "PMML" with a
/// "DataDictionary" is accepted, whatever its version or namespace; the document is not validated.
/// Of elements that the schema allows only once the first in document order counts.
///
/// The parser has the defaults of Xerces: entities are expanded, and external ones are fetched and
/// expanded too, so a document can name other files and can grow far beyond its size. Read
/// documents from sources that you trust, or set an MCXParsePolicy first.
///
/// Every status has the flag false. The reader keeps the status of its last parse; FillUniStats()
/// and FillVarList() begin with a copy of it and so fail with the code of a failed parse. What is
/// handed an element does not look at it. No other operation changes the stored status.
///
/// Memory shortage passes as `std::bad_alloc` or the XML library's OutOfMemoryException out of
/// every operation but the construction, and the reader can be used again.
///
/// The reader owns the document: a new parse and the destructor destroy every node of it. Do not
/// call one reader from two threads at once; several readers may live at once, made and destroyed
/// on any thread (see MCXMLReadWrite).
class MCXPRSUTIL_EXPORT MCPMMLParser {
 public:
  /// Starts the XML platform, which counts its users, and creates the parser with its default
  /// settings. Never throws: if either fails, GetStatus() is 103, and so is the result of
  /// ParseToDOM(), FillUniStats() and FillVarList().
  MCPMMLParser();

  /// Destroys the document and the parser, then stops the XML platform, unless the construction
  /// had failed.
  virtual ~MCPMMLParser();

  MCPMMLParser(const MCPMMLParser&) = delete;
  MCPMMLParser& operator=(const MCPMMLParser&) = delete;

  /// Reads a document from `in`; the reader holds that one from now on, or none.
  ///
  /// The previous document, the model element and the message are gone whatever the result. `in` is
  /// read from its current position and is not closed. An exception that `in` throws passes to the
  /// caller, unless what was read before it is malformed already: then the parse ends with that. A
  /// lack of memory passes as well. After an exception the reader holds no document, has the status
  /// 104, and can be used again.
  ///
  /// @return OK;
  ///         103 if the construction had failed, or no parser could be created;
  ///         104 if the document is malformed, if the parser threw an exception of the XML library
  ///             (see GetXercesMessage()), if it gave no document, if the MCXParsePolicy of the
  ///             process does not allow the document, or if an entity holds elements that are
  ///             nested deeper than the stack allows (see MCXMLReadWrite::ParseToDOM());
  ///         105 if the document element is not named "PMML";
  ///         106 if it has no child "DataDictionary".
  ///         The result is stored as well. On failure no document is held.
  virtual MCCommon::MCStatus ParseToDOM(std::istream& in);

  /// The status of the last parse; before the first one that of the construction.
  MCCommon::MCStatus GetStatus() const;

  /// The "PMML" element, owned by the reader; null unless a parse succeeded.
  XERCES_CPP_NAMESPACE::DOMElement* GetRootElement() const;

  /// Chooses the model element whose statistics are to be read.
  ///
  /// `model` should be one of the root's children; it is not inspected and is not owned. The choice
  /// lasts until the next ParseToDOM().
  ///
  /// @return false, with nothing changed, if the status is not OK or no document is held.
  bool SetModelElmt(const XERCES_CPP_NAMESPACE::DOMElement& model);

  /// Why the last parse gave 104, in UTF-8: "line L, column C: text" for a malformed document, the
  /// message of the exception, or the limit that the document goes beyond. Empty otherwise, and
  /// also after a 104 that a passing exception left behind or that stands for "no document".
  std::string GetXercesMessage() const;

  /// Reads an "Interval" of PMML: its margins, and whether the left one is excluded.
  ///
  /// The stored status does not matter. A margin that is absent, or written as "NaN", is
  /// MCMV::gMissingValue: unbounded on that side. Left has to be below right if both are written
  /// and left is not missing, so 0 and "NaN" do not fit while "NaN" and "NaN" do. Whether the right
  /// margin is excluded is not looked at.
  ///
  /// @param left      the left margin; untouched if it is no number.
  /// @param right     the right margin; untouched if one of the two is no number.
  /// @param openLeft  true for the "closure" "openOpen" and "openClosed", false for any other text;
  ///                  untouched on failure.
  /// @return OK;
  ///         108 if the right margin is absent while the left one is missing, or if there is no
  ///             "closure";
  ///         109 if a margin is no number (an infinity is none), or the left one is not below the
  ///             right one.
  MCCommon::MCStatus ExtractInterval(double& left, double& right, bool& openLeft,
                                     const XERCES_CPP_NAMESPACE::DOMElement& interval) const;

  /// Reads the "Interval" children of `parent` as cut points, and its first "Array" child as their
  /// frequencies.
  ///
  /// The stored status does not matter. All three outputs are reset first, and keep on failure what
  /// was read before it. Every gap between neighbouring cut points needs a frequency: n intervals
  /// that touch need n, and each space between two intervals one more. Without intervals the result
  /// is OK, both lists stay empty and an "Array" is not looked at.
  ///
  /// @param cutPoints    strictly ascending, but MCMV::gMissingValue as the first where the first
  ///                     interval is unbounded below, and as the last where the last one is
  ///                     unbounded above.
  /// @param frequencies  not negative; after 114 it may hold the negative one.
  /// @param openLeft     whether the intervals exclude their left margins; true without intervals.
  /// @return OK;
  ///         108 or 109 for an interval that ExtractInterval() refuses;
  ///         108 if the "Array" has no "type";
  ///         109 if that is neither "real" nor "int";
  ///         113 if there are intervals but no "Array";
  ///         114 if the "Array" is no plain list of numbers, or one of them is negative or "NaN";
  ///         115 if intervals overlap or descend, differ in `openLeft`, follow one that is
  ///             unbounded above, or are unbounded below without being the first; or if the number
  ///             of frequencies does not fit.
  MCCommon::MCStatus FillCutPointsFreqs(std::vector<double>& cutPoints,
                                        std::vector<double>& frequencies, bool& openLeft,
                                        const XERCES_CPP_NAMESPACE::DOMElement& parent) const;

  /// Reads the next "UnivariateStats" of the model element (see SetModelElmt()).
  ///
  /// A loop over all of them starts with a null cursor and ends when it comes back null:
  ///
  ///     const DOMElement* cursor = nullptr;
  ///     do {
  ///       MCUniStats stats;
  ///       MCStatus status = reader.FillUniStats(stats, cursor);
  ///       ...
  ///     } while (cursor != nullptr);
  ///
  /// An element with "NumericInfo" is read by FillUniStatsCont(), any other by FillUniStatsCat().
  ///
  /// @param stats   replaced by the statistics read; as it was at the end of the walk, after any
  ///                failure except a 116 for statistics that were read and are not valid, and where
  ///                there is "NumericInfo" but no "ContStats": give an object that is not valid,
  ///                such as a new one, to be told of the last by a 116.
  /// @param cursor  null, or what the previous call gave; owned by the reader. Becomes the element
  ///                that was read or that failed, so that a bad one can be passed over, and null at
  ///                the end. Untouched after 107, 112 and the parse's status. Void after the next
  ///                ParseToDOM().
  /// @return OK, also at the end; the parse's status if that is not OK;
  ///         107 if no document is held;
  ///         112 if no model element is set;
  ///         108 if there is no "field", or "Counts" has no "totalFreq";
  ///         109 if that is no number or negative ("NaN" counts as negative);
  ///         113 if there is no "Counts";
  ///         116 if `stats` is not valid in the end, see MCUniStats::IsValid();
  ///         108, 109, 113, 114, 115 or 116 from the function that reads the element.
  MCCommon::MCStatus FillUniStats(MCMTD_NAMESPACE::MCUniStats& stats,
                                  const XERCES_CPP_NAMESPACE::DOMElement*& cursor) const;

  /// Reads the categorical distribution of a "UnivariateStats": the first "Array" of its first
  /// "DiscrStats".
  ///
  /// The stored status does not matter, and neither the name nor the total is checked.
  ///
  /// @param stats    replaced by the statistics read; untouched on failure.
  /// @param name     the field's name, UTF-8; may be that of `stats`.
  /// @param total    the number of records.
  /// @param element  the "UnivariateStats".
  /// @return OK;
  ///         113 if there is no "DiscrStats", or no "Array" in it;
  ///         108 if the "Array" has no "type";
  ///         109 if that is neither "real" nor "int";
  ///         114 if the "Array" is no plain list of numbers, or one of them is negative or "NaN".
  MCCommon::MCStatus FillUniStatsCat(MCMTD_NAMESPACE::MCUniStats& stats, const std::string& name,
                                     double total,
                                     const XERCES_CPP_NAMESPACE::DOMElement& element) const;

  /// Reads the continuous distribution of a "UnivariateStats": the summary in its first
  /// "NumericInfo", and the intervals and frequencies in its first "ContStats".
  ///
  /// The stored status does not matter, and neither the name nor the total is checked. A figure
  /// that is absent or "NaN" is MCMV::gMissingValue, and so is a "standardDeviation" that is no
  /// number.
  ///
  /// @param stats    replaced by the statistics read; untouched on failure and, with the result OK,
  ///                 where there is no "ContStats".
  /// @param name     the field's name, UTF-8; may be that of `stats`.
  /// @param total    the number of records.
  /// @param element  the "UnivariateStats".
  /// @return OK;
  ///         113 if there is no "NumericInfo";
  ///         109 if "minimum", "maximum" or "mean" is no number;
  ///         116 if "standardDeviation" is negative;
  ///         108, 109, 113, 114 or 115 from FillCutPointsFreqs().
  MCCommon::MCStatus FillUniStatsCont(MCMTD_NAMESPACE::MCUniStats& stats, const std::string& name,
                                      double total,
                                      const XERCES_CPP_NAMESPACE::DOMElement& element) const;

  /// Reads the bins that the transformation dictionary declares for the field `name` (UTF-8): the
  /// first "Discretize" in document order whose "field" it is.
  ///
  /// Both outputs are cleared first. `cutPoints` then gets the left margin of the first interval
  /// and the right margin of every interval, in document order; a margin that is absent or is no
  /// number counts as the largest finite double, negative on the left. `binValues` gets the
  /// "binValue" of every bin that has one, so a bin without one leaves it shorter. Nothing is
  /// sorted or checked. A "Discretize" without bins gives the single cut point 0.
  ///
  /// @return false, with both lists empty, if there is no such "Discretize" or the document has no
  ///         "TransformationDictionary".
  bool SetBinsFrTransDict(const std::string& name, std::vector<double>& cutPoints,
                          std::vector<std::string>& binValues) const;

  /// Appends one variable per "DataField" of the data dictionary to `list`, in document order, each
  /// with role 4 (see IMCVariable::VariableRole), and declares at its encoder, in this order, its
  /// bin labels, its missing values and its invalid range.
  ///
  /// "optype" "continuous" gives a continuous variable, any other a categorical one, whose
  /// categories are the values with "property" "valid" or without that attribute; all other values
  /// are missing values.
  ///
  /// The values of a "string" field are texts, those of any other field numbers. A "value" that is
  /// no number is left out, but its "displayValue" still counts as a label, so that later labels
  /// move up against their values. Labels of categories are passed only if there are as many as
  /// categories. Missing values take the labels of missing values by position; those for which none
  /// is left get an empty label. A continuous "string" field declares no missing values.
  ///
  /// A numeric field has an invalid range if an "Extension" named "invalidRangeLower" or
  /// "invalidRangeUpper" has a number as its "value", whoever its "extender" is. Of several for one
  /// bound the last one counts; the bound that is not given is the largest finite double, negative
  /// for the lower one.
  ///
  /// The bins of SetBinsFrTransDict() make the first and the last cut point the range of the
  /// variable and those between them its cuts. With fewer than three cut points the variable has
  /// neither bins nor a range. The bin values become bin labels if there is one for each bin and
  /// the first is not "0".
  ///
  /// @param list   receives the variables; what it throws passes to the caller.
  /// @param names  the fields to read (UTF-8); empty for all. Names that the dictionary does not
  ///               have are ignored.
  /// @param binFromTransformations  whether continuous fields get the bins that the transformation
  ///               dictionary declares; without that dictionary they are added unbinned.
  /// @return OK; the parse's status if that is not OK;
  ///         107 if no document is held;
  ///         108 if a field has no "name", "dataType" or "optype";
  ///         109 if its "dataType" is none of "string", "double", "float", "integer", "date",
  ///             "time", "dateTime", "timeSeconds", "dateDaysSince[Y]" and
  ///             "dateTimeSecondsSince[Y]", where Y is 0, 1960, 1970 or 1980 ("boolean" is refused
  ///             as well);
  ///         110 if bins are wanted, the document has a transformation dictionary, and that has no
  ///             "Discretize" for a continuous field;
  ///         111 if the list refused a variable, or gave no encoder where there is something to
  ///             declare.
  ///         The first failure ends the fill; `list` keeps what was added before it.
  MCCommon::MCStatus FillVarList(MCMTD_NAMESPACE::MCVarList& list,
                                 const std::vector<std::string>& names,
                                 bool binFromTransformations) const;

 protected:
  // Invariant of this class's own ParseToDOM(): unless it left the status OK, the document and the
  // elements are null. A derived reader may refuse a document after that and keep it.

  MCCommon::MCStatus status_;  ///< Of the construction, then of the last parse.
  /// Null if the construction failed, during a parse, and after one that did not leave it as new
  /// (malformed, thrown out of, or XML 1.1): the next parse makes another.
  std::unique_ptr<DocumentParser> parser_;
  std::string xerces_message_;  ///< See GetXercesMessage().
  /// Shared, so that a derived reader can keep a document beyond the next parse; every owner must
  /// be gone before this class's destructor runs.
  std::shared_ptr<XERCES_CPP_NAMESPACE::DOMDocument> document_;
  /// The document's "PMML" element and its dictionaries; the last is null where there is none.
  XERCES_CPP_NAMESPACE::DOMElement* root_ = nullptr;
  XERCES_CPP_NAMESPACE::DOMElement* data_dictionary_ = nullptr;
  XERCES_CPP_NAMESPACE::DOMElement* transformation_dictionary_ = nullptr;
  /// Chosen by SetModelElmt(); null until then.
  const XERCES_CPP_NAMESPACE::DOMElement* model_element_ = nullptr;

 private:
  MCCommon::MCStatus ParseDocument(std::istream& in);
  MCCommon::MCStatus FindDictionaries();
  void ForgetDocument();

  bool platform_started_ = false;
};

}  // namespace MCXPrsUtil

#endif  // MCXPRSUTIL_MCPMMLPARSER_H
