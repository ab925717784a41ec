// Every status number that the library publishes. Callers store and compare them: a number keeps
// its meaning for ever, and 117 stays unused.
#ifndef MCXPRSUTIL_XML_STATUSCODES_H
#define MCXPRSUTIL_XML_STATUSCODES_H

#include "mccommon/MCStatus.h"

namespace MCXPrsUtil {

enum StatusCode : int {
  kPlatformFailed = 103,         // the XML platform or the DOM parser could not start
  kParseFailed = 104,            // parsing threw, or gave no document
  kWrongRoot = 105,              // no document element, or not the expected one
  kNoDataDictionary = 106,       // a "PMML" document without "DataDictionary"
  kNoDocument = 107,             // the operation needs a parsed document
  kAttributeMissing = 108,       // a required attribute is absent
  kAttributeInvalid = 109,       // an attribute value is no valid number or outside its vocabulary
  kNoBins = 110,                 // bins were asked for, the transformation dictionary has none
  kVariableRefused = 111,        // the variable list refused a variable
  kNoModelElement = 112,         // statistics were asked for before a model element was set
  kChildMissing = 113,           // a required child element is absent
  kFrequenciesInvalid = 114,     // a frequency array is unreadable or holds a negative number
  kIntervalsInconsistent = 115,  // intervals do not fit together
  kStatisticsInvalid = 116,      // univariate statistics that contradict themselves
  kWriteFailed = 118,            // writing the DOM to a file failed
  kNotSettings = 119,            // no "MiningBuildTask"/"Extension"/"Parameters" path
  kNoParameter = 120,            // Absent: no parameter of that name
  kListForSingleValue = 121,     // the parameter is a list, a single value was asked for
  kListMissing = 122,            // the parameter is declared as a list and has none
  kNoParameterValue = 123,       // Absent: the parameter is there without a value
  kFunctionNameDiffers = 124,    // a later split model has another "functionName"
  kIsMiningModel = 125,          // a split model is a "MiningModel" itself
  kSplitValuesMismatch = 126,    // wrong number of split values, or one that no variable has
};

// An error.
inline MCCommon::MCStatus Failure(StatusCode code) { return MCCommon::MCStatus(code, false); }

// No error: the document does not give the item, so the caller's output keeps its value.
inline MCCommon::MCStatus Absent(StatusCode code) { return MCCommon::MCStatus(code, true); }

}  // namespace MCXPrsUtil

#endif  // MCXPRSUTIL_XML_STATUSCODES_H
