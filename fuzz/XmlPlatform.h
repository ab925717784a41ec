/// @file
/// What the targets of the XML half share: a platform that stays up and opens no files but its own,
/// and a limit to what a document may ask for.
#ifndef MCXPRSUTIL_FUZZ_XMLPLATFORM_H
#define MCXPRSUTIL_FUZZ_XMLPLATFORM_H

#include <string>

namespace fuzz {

/// Starts the XML platform at the first call, for as long as the process lives. It has no network,
/// and opens the files of ScratchFile only: a document that names others finds none of them.
void StartXmlPlatform();

/// False for a document with more entities or references to them than could grow to a few million
/// characters: it would only use the time up.
bool IsModest(const std::string& document);

/// A file in memory that goes with the object, or with the process.
class ScratchFile {
 public:
  ScratchFile();
  ~ScratchFile();

  ScratchFile(const ScratchFile&) = delete;
  ScratchFile& operator=(const ScratchFile&) = delete;

  const std::string& GetPath() const { return path_; }
  void SetContent(const std::string& bytes);
  std::string GetContent() const;

 private:
  int descriptor_;
  std::string path_;
};

}  // namespace fuzz

#endif  // MCXPRSUTIL_FUZZ_XMLPLATFORM_H
