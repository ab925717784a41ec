// The sentences that tell a caller what a merge did beyond its plain result.
#ifndef MCXPRSUTIL_COMBINER_MERGEFINDINGS_H
#define MCXPRSUTIL_COMBINER_MERGEFINDINGS_H

#include <cstddef>
#include <string>
#include <unordered_map>
#include <vector>

namespace MCXPrsUtil {

// Collects findings, one sentence each, in the order in which they are made. Each starts with the
// source that is being read, if there is one.
//
// Positions are counted from 0 here and from 1 in the sentences. All text is UTF-8.
class MergeFindings {
 public:
  const std::vector<std::string>& GetSentences() const { return sentences_; }

  // Every later finding is about the file `path`.
  void SetSource(const std::string& path) { source_ = path; }

  // A document that the findings are about is gone: its segments repeat nothing any more.
  void ForgetSegments() { segments_.clear(); }

  // The variable list.
  void VariableMissing(std::size_t position);
  void VariableUnnamed(std::size_t position);

  // A file as a whole. `reason` is a clause without a full stop.
  void KeptOut(const std::string& reason);
  void NoSegment(const std::string& reason);
  void NoDictionary();
  void NoSchema();
  void SplitFieldsLeftOut();
  void SeveralModels(std::size_t count, const std::string& chosen);
  void VersionDiffers(const std::string& here, const std::string& combined);
  void CombinerUsedAgain();

  // Fields. `where` is "dictionary" or "schema".
  void UnnamedFields(const std::string& where, std::size_t count);
  void SplitVariableDeclared(const std::string& name, const std::string& where);
  void TypeDiffers(const std::string& field, const std::string& attribute, const std::string& here,
                   const std::string& combined);
  void OrderDiffers(const std::string& field, std::size_t position, const std::string& combined);
  void ValuesWentElsewhere(const std::string& field, std::size_t position,
                           const std::string& combined, const std::vector<std::string>& added);
  void ValuesNotMerged(const std::string& field, std::size_t position, bool was_exported);
  void ValueAddedAgain(const std::string& field, const std::string& value);

  // Segments.
  void SplitValueEmpty(const std::string& variable, bool is_only_one);
  void SplitValueUnknown(const std::string& variable, const std::string& value);
  void SplitValueMalformed(const std::string& variable);
  void LocalTransformationsTwice();
  void TransformationLost(const std::string& element);

  // Tells when an earlier segment has the same values, and remembers these.
  void CheckRepeatedSegment(const std::vector<std::string>& values);

 private:
  void Add(const std::string& sentence);

  std::vector<std::string> sentences_;
  std::string source_;
  std::unordered_map<std::string, std::string>
      segments_;  // split values to the source of the first
};

}  // namespace MCXPrsUtil

#endif  // MCXPRSUTIL_COMBINER_MERGEFINDINGS_H
