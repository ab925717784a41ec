/// @file
/// Combines the PMML models of the splits of a data set into one segmented PMML model.
#ifndef MCXPRSUTIL_MCXSPLITPMMLCOMBINER_H
#define MCXPRSUTIL_MCXSPLITPMMLCOMBINER_H

#include <cstddef>
#include <iosfwd>
#include <memory>
#include <string>
#include <vector>
#include <xercesc/util/XercesDefs.hpp>

#include "mccommon/MCStatus.h"
#include "mcxprsutil/Export.h"

XERCES_CPP_NAMESPACE_BEGIN
class DOMDocument;
class DOMElement;
class DOMNode;
XERCES_CPP_NAMESPACE_END

namespace MCMTD_NAMESPACE {
class IMCVariable;
class MCVarList;
}  // namespace MCMTD_NAMESPACE

namespace MCXPrsUtil {

class MCXMLReadWrite;
struct SourceField;
struct SplitVariable;

/// Combines one PMML model per split of the data into one PMML document (PMML 4.0 and later,
/// "Multiple Models: Model Composition").
///
/// Construct it from the split variables, call AddModel() once per split, then ExportMiningModel().
/// The document that is written holds:
///
/// - "PMML": the attributes of the first file;
///   - "Header" of the first file;
///   - "DataDictionary" of the first file, then a "DataField" per split variable, then what later
///     files add;
///   - "MiningModel" with the "functionName" that all models share;
///     - "MiningSchema" of the first model, then a "MiningField" per split variable, then what
///       later models add;
///     - "Segmentation" with "multipleModelMethod" "selectFirst", and in it one "Segment" per model
///       in the order of the calls: a predicate on the split values, then the model, its file's
///       derived fields in a "LocalTransformations" at its end.
///
/// **Platform.** The combined document outlives the single calls. Keep the XML platform
/// initialised, for example by an MCXMLReadWrite of your own, from the first AddModel() until
/// ExportMiningModel() has returned.
///
/// **Ownership.** The variable list is borrowed and must outlive the combiner. The combined
/// document belongs to the combiner until the export releases it; a combiner that is destroyed
/// without an export does not release it. Nodes that operations return belong to their document.
/// Sources are only read.
///
/// **Operations.** AddModel() and ExportMiningModel() are what most callers need; every step behind
/// them can be called by itself as well. A null argument, an element that is not there or one that
/// the document refuses makes a step return null or do nothing; only the operations that return a
/// status report anything. Copies are appended behind what the destination holds. Names and values
/// are UTF-8, compared byte by byte.
///
/// Do not call one combiner from two threads at once. Several may work at once on threads of their
/// own, also from one variable list and from the same files, as long as nobody changes these.
class MCXPRSUTIL_EXPORT MCXSplitPMMLCombiner {
 public:
  /// Describes the split variables; there is no document yet.
  ///
  /// @param list the split variables; borrowed, must outlive the combiner and keep its variables.
  explicit MCXSplitPMMLCombiner(const MCMTD_NAMESPACE::MCVarList& list);

  /// Leaves a document that was never exported to the XML library: it is not released.
  ~MCXSplitPMMLCombiner();

  MCXSplitPMMLCombiner(const MCXSplitPMMLCombiner&) = delete;
  MCXSplitPMMLCombiner& operator=(const MCXSplitPMMLCombiner&) = delete;

  /// @name Combining
  /// @{

  /// Adds the model of one split.
  ///
  /// With an empty path or no values nothing happens. A model that is refused leaves the combined
  /// document as it was, with one exception: when the first file is refused with 125 or 108, an
  /// empty document stays behind, to which later calls add nothing. They return OK; in a combiner
  /// that has exported a document before, they compare with the "functionName" of that one and may
  /// return 124, 125 or 108.
  ///
  /// A model that is accepted may still make the document one that cannot be written: if it is
  /// nested too deep for the stack of the thread that exports (told from level 10000 on), or if a
  /// split value or a category holds a character that XML cannot hold. GetDiagnostics() tells so at
  /// once.
  ///
  /// An exception of the parser that is no XMLException (a DOMException for an XML version other
  /// than 1.0 and 1.1) passes and leaves the combined document as it was. Memory shortage passes
  /// as well, and so does what the variable list throws; both may leave half a model in it: do not
  /// go on with such a combiner.
  ///
  /// A later file without a model element adds to the dictionary but gets no segment.
  ///
  /// @param path the PMML file.
  /// @param values the split values, one per split variable in the order of the list. They go into
  ///        the predicate exactly as they are; an empty one is left out of it.
  /// @return OK; the status of the previous operation if path or values are empty; 126 if the
  ///         number of values is not that of the variables (the file is not read); 103 if the XML
  ///         platform could not start; 104 if the file cannot be read or is not well-formed, if the
  ///         MCXParsePolicy of the process does not allow it, or if its dictionary nests
  ///         "DataField" and "Value" elements deeper than 16 levels (GetDiagnostics() tells why);
  ///         125 if its model is a "MiningModel" itself; 108 if its model has no "functionName", or
  ///         the first file has no model; 124 if its "functionName" is not that of the first model.
  MCCommon::MCStatus AddModel(const std::string& path, const std::vector<std::string>& values);

  /// Writes the combined document to a file and releases it, whether or not writing succeeded.
  ///
  /// Without a document nothing happens. Afterwards a new first model may be added, but what is
  /// known of the exported document is not forgotten: its field names still count as known, its
  /// fields still count in "numberOfFields" and hold their positions, and GetNModels() counts on.
  /// Prefer a new combiner.
  ///
  /// @param path the file, which is replaced. With an empty path nothing is written, which is OK,
  ///        and the document is lost.
  /// @return the status of the previous operation if there is no document; else that of
  ///         WriteDocToPMMLFile(), whose exception passes as well. 118 is also what a document gets
  ///         that is nested too deep or holds a character that XML cannot hold: see AddModel().
  MCCommon::MCStatus ExportMiningModel(const std::string& path);

  /// The status of the last AddModel() or ExportMiningModel(); OK after construction.
  MCCommon::MCStatus GetStatus() const;

  /// The number of segments added so far.
  int GetNModels() const;

  /// What the merges so far did that their results do not show, one English sentence in UTF-8 per
  /// finding, in the order in which they were found; most start with the path of the file that they
  /// are about.
  ///
  /// Findings change no result. They are told once per model and field: models that are kept out
  /// and why; values that went to another field because the dictionaries differ in order; types,
  /// intervals, properties of values and usage types that differ from the field's first occurrence,
  /// which stays; split values that are unknown, empty or used twice; fields without a name; parts
  /// of a file that are missing, not taken over, or in need of a namespace or an entity that the
  /// combined document does not declare; what makes the document invalid or impossible to write.
  /// The list grows over the life of the combiner and is never cleared.
  const std::vector<std::string>& GetDiagnostics() const;

  /// Writes nothing.
  void Display(std::ostream&) const;

  /// Checks split values against the categories of all split variables together: a value may belong
  /// to another variable than the one at its position. AddModel() does not call it.
  ///
  /// @return OK; 126 if a value is a category of no variable.
  MCCommon::MCStatus IsEqualValues(const std::vector<std::string>& values) const;

  /// @}
  /// @name Split variables
  /// @{

  /// Appends the description and the categories of each variable of `list` to those that are known.
  /// The constructor calls it. A position without a variable is skipped.
  void InitSplitVarMetadata(const MCMTD_NAMESPACE::MCVarList& list);

  /// Describes a variable in PMML terms.
  ///
  /// Kind 1 is "continuous" and "double", kind 2 "categorical" and "double", kind 3 "categorical"
  /// and "string"; other kinds leave `optype` and `dataType` as they are. Integer values make the
  /// data type "integer", whatever the kind.
  ///
  /// @param v the variable, or null.
  /// @param[out] name, label, optype, dataType replaced; untouched when `v` is null.
  /// @return false when `v` is null.
  bool GetSplitVariableInfo(const MCMTD_NAMESPACE::IMCVariable* v, std::string& name,
                            std::string& label, std::string& optype, std::string& dataType);

  /// @return the name of the split variable at `index`; empty when there is none.
  std::string GetSplitVarName(int index) const;

  /// @}
  /// @name Parts of a PMML document
  /// The result is null when the argument is null or has no such part.
  /// @{

  /// Appends the 13 model element names that are recognised to the list that GetStandardModel()
  /// searches, "MiningModel" first. The constructor calls it.
  void InitStandardPMMLModels();

  /// @return the "PMML" element of a document.
  XERCES_CPP_NAMESPACE::DOMElement* GetPMML(const XERCES_CPP_NAMESPACE::DOMDocument* d) const;

  /// @return the model element of a "PMML" element. The order of the recognised names decides, not
  ///         that of the document: a "MiningModel" is found before any other.
  XERCES_CPP_NAMESPACE::DOMElement* GetStandardModel(
      const XERCES_CPP_NAMESPACE::DOMElement* pmml) const;

  /// @return the "DataDictionary" of a "PMML" element.
  XERCES_CPP_NAMESPACE::DOMElement* GetDataDict(const XERCES_CPP_NAMESPACE::DOMElement* pmml) const;

  /// @return the "TransformationDictionary" of a "PMML" element.
  XERCES_CPP_NAMESPACE::DOMElement* GetTransDict(
      const XERCES_CPP_NAMESPACE::DOMElement* pmml) const;

  /// @return the "MiningSchema" of a model element; null as long as there is no combined document.
  XERCES_CPP_NAMESPACE::DOMElement* GetMiningSchema(
      const XERCES_CPP_NAMESPACE::DOMElement* model) const;

  /// @return 125 if the element is a "MiningModel", else OK (for null as well).
  MCCommon::MCStatus IsMiningModel(const XERCES_CPP_NAMESPACE::DOMElement* model) const;

  /// Reads the "functionName" of a model element.
  ///
  /// @param model the element, or null.
  /// @param[out] out replaced on success; untouched on failure.
  /// @return OK; 125 if the model is a "MiningModel"; 108 if it has no "functionName" or is null.
  MCCommon::MCStatus GetFunctionNameAtt(const XERCES_CPP_NAMESPACE::DOMElement* model,
                                        std::string& out);

  /// Compares the "functionName" of a model element with that of the first model.
  ///
  /// @return OK, also when the model is null or there was no first model yet; the failures of
  ///         GetFunctionNameAtt(); 124 if the names differ.
  MCCommon::MCStatus IsConsistentFunctionName(const XERCES_CPP_NAMESPACE::DOMElement* model);

  /// @}
  /// @name Intake of a parsed model
  /// @{

  /// Takes a parsed document in: as the first model if there is no combined document yet, which is
  /// then created, else as a later one.
  ///
  /// @param src the document, borrowed; null does nothing.
  /// @param reader not used.
  /// @param values the split values.
  /// @return OK, or the status of FillCommonToMiningModel() or MergeModelToMiningModel().
  MCCommon::MCStatus ParseSplitModelXML(XERCES_CPP_NAMESPACE::DOMDocument* src,
                                        const MCXMLReadWrite& reader,
                                        const std::vector<std::string>& values);

  /// Builds the combined document from the first model, with its segment. Does nothing if the
  /// combined document has a root element already.
  ///
  /// @return OK, also when `src` is null or there is no combined document; 125 or 108 as
  ///         GetFunctionNameAtt(), with nothing added.
  MCCommon::MCStatus FillCommonToMiningModel(XERCES_CPP_NAMESPACE::DOMDocument* src,
                                             const std::vector<std::string>& values);

  /// Merges a later model into the combined document and adds its segment.
  ///
  /// @return OK, also when `src` is null or there are no values; 124, 125 or 108 as
  ///         IsConsistentFunctionName(), with nothing added.
  MCCommon::MCStatus MergeModelToMiningModel(XERCES_CPP_NAMESPACE::DOMDocument* src,
                                             const std::vector<std::string>& values);

  /// @}
  /// @name Skeleton of the combined document
  /// @{

  /// Creates the combined document, empty, if there is none.
  ///
  /// @param[out] created true if this call created it.
  /// @return the combined document; null if the XML library offers no implementation.
  XERCES_CPP_NAMESPACE::DOMDocument* CreateEmptyMiningModel(bool& created);

  /// Copies a "PMML" element as the document element of the combined document.
  ///
  /// @param pmml the source.
  /// @param deep with its children; its attributes are copied in any case.
  /// @return the copy; null also when there is a document element already.
  XERCES_CPP_NAMESPACE::DOMElement* CopyPMML(const XERCES_CPP_NAMESPACE::DOMElement* pmml,
                                             bool deep);

  /// Copies the "Header" of a "PMML" element to the end of `dest`. @return the copy.
  XERCES_CPP_NAMESPACE::DOMNode* CopyHeader(const XERCES_CPP_NAMESPACE::DOMElement* pmml,
                                            XERCES_CPP_NAMESPACE::DOMNode* dest, bool deep);

  /// Copies the "DataDictionary" of a "PMML" element to the end of `dest`. @return the copy.
  XERCES_CPP_NAMESPACE::DOMNode* CopyDataDict(const XERCES_CPP_NAMESPACE::DOMElement* pmml,
                                              XERCES_CPP_NAMESPACE::DOMNode* dest, bool deep);

  /// Copies the "MiningSchema" of a model element to the end of `dest`. @return the copy.
  XERCES_CPP_NAMESPACE::DOMNode* CopyMiningSchema(const XERCES_CPP_NAMESPACE::DOMElement* model,
                                                  XERCES_CPP_NAMESPACE::DOMNode* dest, bool deep);

  /// Appends a "MiningModel" with the "functionName" of the first model to `parent`.
  ///
  /// @param parent the "PMML" element of the combined document.
  /// @param name only tested: with an empty name nothing is created.
  /// @return the element.
  XERCES_CPP_NAMESPACE::DOMElement* CreateMiningModel(XERCES_CPP_NAMESPACE::DOMNode* parent,
                                                      const std::string& name);

  /// Appends a "Segmentation" with "multipleModelMethod" "selectFirst". @return the element.
  XERCES_CPP_NAMESPACE::DOMElement* CreateSegmentation(XERCES_CPP_NAMESPACE::DOMNode* parent);

  /// Appends the fields of all split variables to the dictionary and the schema, whether or not
  /// they declare such a field already, then records what both hold and sets "numberOfFields".
  /// Does nothing unless both are given.
  void InsertSplitVarsToMiningModel(XERCES_CPP_NAMESPACE::DOMNode* dict,
                                    XERCES_CPP_NAMESPACE::DOMNode* schema);

  /// Appends the "DataField" of the split variable at `pos`, with a "Value" per category.
  void InsertDataFieldElem(XERCES_CPP_NAMESPACE::DOMElement* dict, int pos);

  /// Appends the "MiningField" of the split variable at `pos`, with "usageType" "active".
  void InsertMiningFieldElem(XERCES_CPP_NAMESPACE::DOMElement* schema, int pos);

  /// @}
  /// @name Merge of dictionaries and schemas
  /// @{

  /// Collects every "DataField" below a node, at any depth, in document order.
  ///
  /// @param dict the node, or null.
  /// @param[in,out] nodes each such element is appended.
  /// @param[in,out] names the name of each element that has one is appended.
  void EnumDataFields(const XERCES_CPP_NAMESPACE::DOMNode* dict,
                      std::vector<XERCES_CPP_NAMESPACE::DOMNode*>& nodes,
                      std::vector<std::string>& names) const;

  /// Collects every "Value" below a node, at any depth, in document order.
  ///
  /// @param field the node, or null.
  /// @param[in,out] nodes each such element is appended.
  /// @param[in,out] texts the "value" of each element that has one is appended.
  void EnumValuesOfDataField(const XERCES_CPP_NAMESPACE::DOMNode* field,
                             std::vector<XERCES_CPP_NAMESPACE::DOMNode*>& nodes,
                             std::vector<std::string>& texts) const;

  /// Appends each child "MiningField" that has a "name", and the name.
  void ReadNamesOfMiningFields(const XERCES_CPP_NAMESPACE::DOMElement* schema,
                               std::vector<const XERCES_CPP_NAMESPACE::DOMElement*>& elems,
                               std::vector<std::string>& names) const;

  /// Appends each child "DataField" that has a "name", and the name.
  void ReadNamesOfDataFields(const XERCES_CPP_NAMESPACE::DOMElement* dict,
                             std::vector<const XERCES_CPP_NAMESPACE::DOMElement*>& elems,
                             std::vector<std::string>& names) const;

  /// Copies a "DataField" to the end of the combined dictionary and records it.
  ///
  /// @return the copy.
  XERCES_CPP_NAMESPACE::DOMNode* InsertDataField(const XERCES_CPP_NAMESPACE::DOMNode* field,
                                                 XERCES_CPP_NAMESPACE::DOMNode* dict);

  /// Copies a "Value" to the end of a field of the combined dictionary.
  ///
  /// @param value the source.
  /// @param field the destination.
  /// @param[in,out] list the text of the copy's "value", if it has one, is appended.
  /// @return the copy.
  XERCES_CPP_NAMESPACE::DOMNode* InsertValueOfDataField(const XERCES_CPP_NAMESPACE::DOMNode* value,
                                                        XERCES_CPP_NAMESPACE::DOMNode* field,
                                                        std::vector<std::string>& list);

  /// Copies a "MiningField" to the end of the combined schema and records its name.
  ///
  /// @return the copy.
  XERCES_CPP_NAMESPACE::DOMNode* InsertMiningField(const XERCES_CPP_NAMESPACE::DOMNode* field,
                                                   XERCES_CPP_NAMESPACE::DOMNode* schema);

  /// Sets "numberOfFields"; does nothing for a negative `n`.
  void UpdateNumOfDataFields(XERCES_CPP_NAMESPACE::DOMNode* dict, int n);

  /// Merges the dictionary of a later file into the combined one.
  ///
  /// A field whose name is not recorded is copied to the end. For a field whose name is recorded,
  /// the values that are new are appended to the combined field **at the same position**, counted
  /// over the fields of the source: dictionaries of splits list their fields in the same order.
  /// Where they do not, values go to another field (see GetDiagnostics()). Nothing else of the
  /// combined fields changes. A field without a name is skipped, and so is the merge of values
  /// where there is no combined field at that position. "numberOfFields" becomes the number of
  /// names.
  void UpdateDataDict(const XERCES_CPP_NAMESPACE::DOMElement* src,
                      XERCES_CPP_NAMESPACE::DOMNode* out);

  /// Merges the schema of a later model into the combined one: copies each field whose name is not
  /// recorded to the end; known fields keep what they are.
  void UpdateMiningSchema(const XERCES_CPP_NAMESPACE::DOMElement* src,
                          XERCES_CPP_NAMESPACE::DOMNode* out);

  /// @}
  /// @name Segments
  /// @{

  /// Appends a "Segment" and counts it.
  ///
  /// @param segmentation the "Segmentation" of the combined document.
  /// @param model the model element, copied behind the predicate.
  /// @param transDict its file's "TransformationDictionary"; may be null.
  /// @param values the split values; with none, nothing is added.
  /// @return the segment.
  XERCES_CPP_NAMESPACE::DOMNode* InsertSegment(XERCES_CPP_NAMESPACE::DOMNode* segmentation,
                                               const XERCES_CPP_NAMESPACE::DOMElement* model,
                                               const XERCES_CPP_NAMESPACE::DOMElement* transDict,
                                               const std::vector<std::string>& values);

  /// Appends the predicate of a segment: simple for one value, compound for more.
  ///
  /// @return the predicate; null also when the only value is empty.
  XERCES_CPP_NAMESPACE::DOMNode* InsertPredicate(XERCES_CPP_NAMESPACE::DOMNode* segment,
                                                 const std::vector<std::string>& values);

  /// Appends a "SimplePredicate": the split variable at `pos` equals `value`.
  ///
  /// @return the predicate; null when the value is empty or there is no variable with a name.
  XERCES_CPP_NAMESPACE::DOMElement* InsertSimplePredicate(XERCES_CPP_NAMESPACE::DOMNode* parent,
                                                          int pos, const std::string& value);

  /// Appends a "CompoundPredicate" with operator "and" and a simple predicate per value; it stays
  /// even if all of them are left out.
  ///
  /// @return the predicate; null for fewer than two values.
  XERCES_CPP_NAMESPACE::DOMElement* InsertCompoundPredicate(XERCES_CPP_NAMESPACE::DOMNode* parent,
                                                            const std::vector<std::string>& values);

  /// Appends a "LocalTransformations" with copies of the dictionary's "DerivedField" children to a
  /// model of the combined document, even if the model has one already.
  ///
  /// @return the new element, which may be empty.
  XERCES_CPP_NAMESPACE::DOMElement* CopyTransDictToLocal(
      const XERCES_CPP_NAMESPACE::DOMElement* transDict, XERCES_CPP_NAMESPACE::DOMElement* model);

  /// @}
  /// @name Writing
  /// @{

  /// Writes a document to a file; does nothing without a document or with an empty path.
  ///
  /// @return OK, or 103 and 118 as MCXMLReadWrite::WriteFromDOM(). A file that cannot be opened
  ///         lets the XMLException of the XML library pass.
  MCCommon::MCStatus WriteDocToPMMLFile(const XERCES_CPP_NAMESPACE::DOMDocument* d,
                                        const std::string& path);

  /// @}

 private:
  struct State;

  // Steps of the operations above, beside them in the sources.
  MCCommon::MCStatus ReadModelFile(const std::string& path, MCXMLReadWrite& reader);
  XERCES_CPP_NAMESPACE::DOMNode* CopyTo(const XERCES_CPP_NAMESPACE::DOMNode* source,
                                        XERCES_CPP_NAMESPACE::DOMNode* dest, bool deep);
  XERCES_CPP_NAMESPACE::DOMElement* AppendNew(XERCES_CPP_NAMESPACE::DOMNode* parent,
                                              const std::string& name);
  const SplitVariable* SplitVariableAt(int pos) const;
  void RecordDataField(XERCES_CPP_NAMESPACE::DOMNode& field);
  void MergeDataField(const SourceField& field, XERCES_CPP_NAMESPACE::DOMNode& dict,
                      bool& order_told);
  std::vector<std::string> MergeValues(
      const SourceField& field, const std::vector<const XERCES_CPP_NAMESPACE::DOMElement*>& values);
  void RecordMiningField(const XERCES_CPP_NAMESPACE::DOMElement& field);

  // Findings.
  void ReportRefusedModel(MCCommon::MCStatus refusal,
                          const XERCES_CPP_NAMESPACE::DOMElement* model);
  void ReportModelCount(const XERCES_CPP_NAMESPACE::DOMElement* pmml,
                        const XERCES_CPP_NAMESPACE::DOMElement* model);
  void ReportParts(const XERCES_CPP_NAMESPACE::DOMElement* pmml,
                   const XERCES_CPP_NAMESPACE::DOMElement* model);
  void ReportFirstFields(const XERCES_CPP_NAMESPACE::DOMNode& dict,
                         const XERCES_CPP_NAMESPACE::DOMElement* schema);
  void ReportSegment(const std::vector<std::string>& values);
  std::string ReportSplitValue(const std::string& variable, const std::string& value);

  std::unique_ptr<State> state_;
};

}  // namespace MCXPrsUtil

#endif  // MCXPRSUTIL_MCXSPLITPMMLCOMBINER_H
