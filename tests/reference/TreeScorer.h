#ifndef MCXPRSUTIL_TESTS_REFERENCE_TREESCORER_H_
#define MCXPRSUTIL_TESTS_REFERENCE_TREESCORER_H_

#include <istream>
#include <map>
#include <optional>
#include <string>

#include "mcxprsutil/MCXMLReadWrite.h"

namespace reference {

/// A data row: the text of each field. A field that is not there, or whose text is empty, has a
/// missing value.
using DataRow = std::map<std::string, std::string>;

/// What a tree says of a row, as the document spells it.
struct Prediction {
  std::string score;
  std::map<std::string, std::string> probabilities;  // by class; empty for a regression tree
};

/// Scores data rows with a PMML document, slowly and literally: a `TreeModel`, or a `MiningModel`
/// that selects the first of its segments.
///
/// It is strict, so that a document that is only nearly right does not pass: a model sees only the
/// fields that its mining schema lists as active, an enclosing model hands down only the fields
/// that it sees itself, and every value must be valid by the data dictionary. What it does not know
/// it refuses with `std::runtime_error` instead of guessing. Known are the predicates of PMML but
/// `xor` and `surrogate`, derived fields made by `Discretize`, and the tree strategies `none`,
/// `nullPrediction` and `lastPrediction`.
class TreeScorer {
 public:
  /// Parses the PMML document in `in`.
  ///
  /// @throw std::runtime_error when it is not well-formed or has no root "PMML".
  explicit TreeScorer(std::istream& in);

  /// The prediction for `row`; none when a value is invalid, when no segment is selected, or when
  /// the tree ends without a score.
  ///
  /// @throw std::runtime_error for what the class does not know, or a field that is not declared.
  std::optional<Prediction> Score(const DataRow& row) const;

 private:
  MCXPrsUtil::MCXMLReadWrite reader_;
};

}  // namespace reference

#endif  // MCXPRSUTIL_TESTS_REFERENCE_TREESCORER_H_
