// The element names, attribute names and words that the readers look for, ready in UTF-16: the
// inner loops compare them with the text of the document without any conversion.
#ifndef MCXPRSUTIL_READERS_NAMES_H
#define MCXPRSUTIL_READERS_NAMES_H

#include <type_traits>
#include <xercesc/util/XercesDefs.hpp>

namespace MCXPrsUtil::names {

static_assert(std::is_same_v<XMLCh, char16_t>, "the names below are char16_t literals");

// Elements.
inline constexpr XMLCh kPMML[] = u"PMML";
inline constexpr XMLCh kDataDictionary[] = u"DataDictionary";
inline constexpr XMLCh kDataField[] = u"DataField";
inline constexpr XMLCh kValue[] = u"Value";
inline constexpr XMLCh kExtension[] = u"Extension";
inline constexpr XMLCh kTransformationDictionary[] = u"TransformationDictionary";
inline constexpr XMLCh kDerivedField[] = u"DerivedField";
inline constexpr XMLCh kDiscretize[] = u"Discretize";
inline constexpr XMLCh kDiscretizeBin[] = u"DiscretizeBin";
inline constexpr XMLCh kInterval[] = u"Interval";

// Attributes.
inline constexpr XMLCh kName[] = u"name";
inline constexpr XMLCh kDisplayName[] = u"displayName";
inline constexpr XMLCh kDataType[] = u"dataType";
inline constexpr XMLCh kOptype[] = u"optype";
inline constexpr XMLCh kValueText[] = u"value";
inline constexpr XMLCh kProperty[] = u"property";
inline constexpr XMLCh kDisplayValue[] = u"displayValue";
inline constexpr XMLCh kField[] = u"field";
inline constexpr XMLCh kBinValue[] = u"binValue";
inline constexpr XMLCh kLeftMargin[] = u"leftMargin";
inline constexpr XMLCh kRightMargin[] = u"rightMargin";

// Attribute values.
inline constexpr XMLCh kContinuous[] = u"continuous";
inline constexpr XMLCh kValid[] = u"valid";
inline constexpr XMLCh kInvalidRangeLower[] = u"invalidRangeLower";
inline constexpr XMLCh kInvalidRangeUpper[] = u"invalidRangeUpper";

// Model statistics.
inline constexpr XMLCh kModelStats[] = u"ModelStats";
inline constexpr XMLCh kUnivariateStats[] = u"UnivariateStats";
inline constexpr XMLCh kCounts[] = u"Counts";
inline constexpr XMLCh kTotalFreq[] = u"totalFreq";
inline constexpr XMLCh kNumericInfo[] = u"NumericInfo";
inline constexpr XMLCh kMinimum[] = u"minimum";
inline constexpr XMLCh kMaximum[] = u"maximum";
inline constexpr XMLCh kMean[] = u"mean";
inline constexpr XMLCh kStandardDeviation[] = u"standardDeviation";
inline constexpr XMLCh kContStats[] = u"ContStats";
inline constexpr XMLCh kDiscrStats[] = u"DiscrStats";
inline constexpr XMLCh kArray[] = u"Array";
inline constexpr XMLCh kType[] = u"type";
inline constexpr XMLCh kReal[] = u"real";
inline constexpr XMLCh kInt[] = u"int";
inline constexpr XMLCh kClosure[] = u"closure";
inline constexpr XMLCh kOpenOpen[] = u"openOpen";
inline constexpr XMLCh kOpenClosed[] = u"openClosed";

// Settings documents: elements ("MatrixParmeter" is the format's own spelling), attributes, values.
inline constexpr XMLCh kMiningBuildTask[] = u"MiningBuildTask";
inline constexpr XMLCh kParameters[] = u"Parameters";
inline constexpr XMLCh kParameter[] = u"Parameter";
inline constexpr XMLCh kListValue[] = u"ListValue";
inline constexpr XMLCh kComplexParameter[] = u"ComplexParameter";
inline constexpr XMLCh kMatrixParameter[] = u"MatrixParmeter";
inline constexpr XMLCh kArrayParameter[] = u"ArrayParameter";
inline constexpr XMLCh kIsList[] = u"isList";
inline constexpr XMLCh kTrue[] = u"true";
inline constexpr XMLCh kFalse[] = u"false";

// Data models.
inline constexpr XMLCh kDataModel[] = u"DataModel";
inline constexpr XMLCh kDataModelFields[] = u"Fields";
inline constexpr XMLCh kDataModelField[] = u"Field";
inline constexpr XMLCh kValues[] = u"Values";
inline constexpr XMLCh kRange[] = u"Range";
inline constexpr XMLCh kDisplayLabel[] = u"displayLabel";
inline constexpr XMLCh kStorage[] = u"storage";
inline constexpr XMLCh kMeasure[] = u"measure";
inline constexpr XMLCh kRole[] = u"role";
inline constexpr XMLCh kMinValue[] = u"minValue";
inline constexpr XMLCh kMaxValue[] = u"maxValue";

}  // namespace MCXPrsUtil::names

#endif  // MCXPRSUTIL_READERS_NAMES_H
