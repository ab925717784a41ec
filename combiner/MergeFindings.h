// The sentences that tell a caller what a merge did beyond its plain result.
#ifndef MCXPRSUTIL_COMBINER_MERGEFINDINGS_H
#define MCXPRSUTIL_COMBINER_MERGEFINDINGS_H

#include <cstddef>
#include <optional>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace MCXPrsUtil {

// What a segment's predicate compares with: a text per split variable, none where the variable is
// left out.
using TestedTexts = std::vector<std::optional<std::string>>;

// Collects findings, one sentence each, in the order in which they are made. Each starts with the
// source that is being read, if there is one.
//
// Positions are counted from 0 here and from 1 in the sentences. All text is UTF-8.
class MergeFindings {
 public:
  const std::vector<std::string>& GetSentences() const { return sentences_; }

  // Every later finding is about the file `path`; with an empty path, about none.
  void SetSource(const std::string& path);

  // The document that the findings are about is gone: a segment repeats none of it any more.
  void ForgetDocument();

  // The variable list.
  void VariableMissing(std::size_t position);
  void VariableUnnamed(std::size_t position);

  // A file as a whole. `reason` is a clause without a full stop.
  void KeptOut(const std::string& reason);
  void NoSegment(const std::string& reason);
  void NoSegmentation(bool dictionary_was_merged);
  void NoDictionary();
  void NoSchema();
  void SplitFieldsLeftOut(bool has_dictionary, bool has_schema);
  void SeveralModels(std::size_t count, const std::string& chosen);
  void VersionDiffers(const std::string& here, const std::string& combined);
  void NamespaceMissing(const std::string& declaration, const std::string& here);
  void NamespaceDiffers(const std::string& declaration, const std::string& here,
                        const std::string& combined);
  void CombinerUsedAgain();

  // Copied parts. Each is told once per file.
  void EntityUndeclared(const std::string& entity);
  void DefaultsLost();
  void TooDeep(int deepest_level);

  // Fields. `where` is "dictionary" or "schema"; `combined` is what stands in the combined one.
  void UnnamedFields(const std::string& where, std::size_t count);
  void SplitVariableDeclared(const std::string& name, const std::string& where);
  void SplitVariableDeclaredLater(const std::string& name, const std::string& where);
  void TypeDiffers(const std::string& field, const std::string& attribute, const std::string& here,
                   const std::string& combined);
  void UsageDiffers(const std::string& field, const std::string& here, const std::string& combined);
  void IntervalsDiffer(const std::string& field);
  void ValuesOnOneSide(const std::string& field, bool listed_here);
  void PropertyDiffers(const std::string& field, const std::string& value, const std::string& here,
                       const std::string& combined);
  void OrderDiffers(const std::string& field, std::size_t position,
                    const std::optional<std::string>& combined);
  void ValuesWentElsewhere(const std::string& field, std::size_t position,
                           const std::optional<std::string>& combined,
                           const std::vector<std::string>& added);
  void ValuesNotMerged(const std::string& field, std::size_t position, bool was_exported);
  void ValueAddedAgain(const std::string& field, const std::string& value);

  // Segments.
  void SplitValueEmpty(const std::string& variable, bool is_only_one);
  void SplitValueUnknown(const std::string& variable, const std::string& value);
  void SplitValueMalformed(const std::string& variable);
  void SplitValueCut(const std::string& variable);
  void SplitValueUnwritable(const std::string& variable);
  void DeclarationUnwritable(const std::string& variable);
  void LocalTransformationsLast();  // told once per combined document
  void LocalTransformationsTwice();
  void TransformationLost(const std::string& element);

  // Tells when an earlier segment is selected wherever this one would be, and remembers this one.
  void CheckRepeatedSegment(const TestedTexts& texts);

 private:
  // A segment whose predicate leaves a variable out.
  struct WideSegment {
    TestedTexts texts;
    std::string source;
  };

  void Add(const std::string& sentence);
  void AddOncePerSource(const std::string& sentence);

  std::vector<std::string> sentences_;
  std::string source_;
  std::unordered_set<std::string> told_of_source_;
  bool told_local_last_ = false;
  std::unordered_map<std::string, std::string> segments_;  // key of texts to the first source
  std::vector<WideSegment> wide_segments_;
};

// Makes the findings of a scope be about one file.
class FindingsSource {
 public:
  FindingsSource(MergeFindings& findings, const std::string& path) : findings_(findings) {
    findings_.SetSource(path);
  }
  ~FindingsSource() { findings_.SetSource(std::string()); }
  FindingsSource(const FindingsSource&) = delete;
  FindingsSource& operator=(const FindingsSource&) = delete;

 private:
  MergeFindings& findings_;
};

}  // namespace MCXPrsUtil

#endif  // MCXPRSUTIL_COMBINER_MERGEFINDINGS_H
