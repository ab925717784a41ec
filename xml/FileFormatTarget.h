// The file that a DOM serializer writes to.
#ifndef MCXPRSUTIL_XML_FILEFORMATTARGET_H
#define MCXPRSUTIL_XML_FILEFORMATTARGET_H

#include <cstddef>
#include <memory>
#include <string>
#include <xercesc/framework/XMLFormatter.hpp>

#include "xml/StackGuard.h"

namespace MCXPrsUtil {

// Does what Xerces's LocalFileFormatTarget does, but loses no write error. That one flushes and
// closes in its destructor, where a full disk goes unnoticed, and the serializer may swallow what a
// target throws. Here the first error of the file is kept, and Close() is a call of its own.
//
// The serializer calls itself for every level of the document. A target therefore belongs to the
// thread and the call that made it, and takes too little stack for an error of the file as well.
class FileFormatTarget final : public XERCES_CPP_NAMESPACE::XMLFormatTarget {
 public:
  // Creates or empties the file. Throws the IOException (same code and text) that
  // LocalFileFormatTarget throws when that fails.
  explicit FileFormatTarget(const std::string& fileName);

  // Closes the file if Close() was not called; errors are lost then.
  ~FileFormatTarget() override;

  FileFormatTarget(const FileFormatTarget&) = delete;
  FileFormatTarget& operator=(const FileFormatTarget&) = delete;

  // Both throw an XMLException when the file refuses data, writeChars also when the stack is nearly
  // used up; what follows the first error is dropped.
  void writeChars(const XMLByte* toWrite, XMLSize_t count,
                  XERCES_CPP_NAMESPACE::XMLFormatter* formatter) override;
  void flush() override;

  // Writes what is buffered and closes the file. Never throws for a file error: see HasError().
  void Close();

  // True once writing or closing failed.
  bool HasError() const { return has_error_; }

  // The message of the first error in UTF-8.
  const std::string& GetErrorText() const { return error_text_; }

 private:
  static constexpr std::size_t kBufferBytes = std::size_t{64} * 1024;

  [[noreturn]] void RefuseDepth();
  void WriteOut(const XMLByte* bytes, std::size_t count);
  void CloseFile();
  template <class Operation>
  void Record(Operation operation);

  XERCES_CPP_NAMESPACE::FileHandle file_;
  std::unique_ptr<XMLByte[]> buffer_;
  std::size_t used_ = 0;
  StackGuard stack_;
  bool has_error_ = false;
  std::string error_text_;
};

}  // namespace MCXPrsUtil

#endif  // MCXPRSUTIL_XML_FILEFORMATTARGET_H
