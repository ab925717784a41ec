/// Generated documents for the readers other than that of PMML dictionaries. Like those of
/// Documents.h they come out the same on every machine.
#ifndef BENCHMARKS_READERDOCUMENTS_H_
#define BENCHMARKS_READERDOCUMENTS_H_

#include <cstddef>
#include <string>
#include <vector>

namespace bench {

/// A data model with the fields of a generated dictionary: 1500 categorical ones of 10 values, 150
/// continuous ones with ranges, a frequency weight, some targets. About 1 MB.
std::string MakeDataModel();

/// A settings document with one parameter, the same fields in its data dictionary, and once more as
/// derived fields, with their intervals in extensions. About 2 MB.
std::string MakeSettingsWithFields();

/// A PMML document with a model that holds the distributions of `fields` continuous fields: a
/// summary, `bins` intervals with margins of up to 15 digits, and their frequencies, which are
/// counts or weights.
std::string MakeStatistics(std::size_t fields, std::size_t bins);

/// The names of `count` parameters, in their order in the document of MakeParameters().
std::vector<std::string> ParameterNames(std::size_t count);

/// A settings document with `count` numeric parameters.
std::string MakeParameters(std::size_t count);

}  // namespace bench

#endif  // BENCHMARKS_READERDOCUMENTS_H_
