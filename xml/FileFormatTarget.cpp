#include "xml/FileFormatTarget.h"

#include <cstring>
#include <utility>
#include <xercesc/util/IOException.hpp>
#include <xercesc/util/PlatformUtils.hpp>
#include <xercesc/util/XMLExceptMsgs.hpp>

#include "mcxprsutil/MCXTranscoder.h"

namespace MCXPrsUtil {

using XERCES_CPP_NAMESPACE::FileHandle;
using XERCES_CPP_NAMESPACE::IOException;
using XERCES_CPP_NAMESPACE::XMLException;
using XERCES_CPP_NAMESPACE::XMLExcepts;
using XERCES_CPP_NAMESPACE::XMLFormatter;
using XERCES_CPP_NAMESPACE::XMLPlatformUtils;

namespace {

FileHandle OpenFile(const std::string& fileName) {
  FileHandle file = XMLPlatformUtils::openFileToWrite(fileName.c_str());
  if (file) return file;
  // Not by the macro of the XML library, which would put the build path into the binary.
  throw IOException("FileFormatTarget.cpp", __LINE__, XMLExcepts::File_CouldNotOpenFile,
                    fileName.c_str(), nullptr, nullptr, nullptr, XMLPlatformUtils::fgMemoryManager);
}

}  // namespace

// The file is opened last: a failed allocation of the buffer must not leave it open.
FileFormatTarget::FileFormatTarget(const std::string& fileName)
    : file_(nullptr), buffer_(new XMLByte[kBufferBytes]) {
  file_ = OpenFile(fileName);
}

FileFormatTarget::~FileFormatTarget() {
  try {
    Close();
  } catch (...) {
    // Whoever wants to know calls Close().
  }
}

void FileFormatTarget::writeChars(const XMLByte* toWrite, XMLSize_t count, XMLFormatter*) {
  if (stack_.IsNearlyUsedUp()) RefuseDepth();
  if (count > kBufferBytes - used_) flush();
  if (count > kBufferBytes) {
    WriteOut(toWrite, count);
    return;
  }
  std::memcpy(buffer_.get() + used_, toWrite, count);
  used_ += count;
}

void FileFormatTarget::RefuseDepth() {
  if (!has_error_) {
    has_error_ = true;
    error_text_ = "the document is nested too deep: writing it would overflow the stack";
  }
  throw IOException("FileFormatTarget.cpp", __LINE__, XMLExcepts::File_CouldNotWriteToFile,
                    XMLPlatformUtils::fgMemoryManager);
}

void FileFormatTarget::flush() { WriteOut(buffer_.get(), std::exchange(used_, 0)); }

void FileFormatTarget::Close() {
  if (!file_) return;
  try {
    flush();
  } catch (const XMLException&) {
    // Recorded; the file must be closed all the same.
  }
  try {
    CloseFile();
  } catch (const XMLException&) {
    // Recorded.
  }
}

void FileFormatTarget::WriteOut(const XMLByte* bytes, std::size_t count) {
  if (count == 0 || has_error_) return;
  Record([&] { XMLPlatformUtils::writeBufferToFile(file_, count, bytes); });
}

void FileFormatTarget::CloseFile() {
  // Whatever closing tells, the handle is gone afterwards.
  FileHandle file = std::exchange(file_, nullptr);
  Record([&] { XMLPlatformUtils::closeFile(file); });
}

template <class Operation>
void FileFormatTarget::Record(Operation operation) {
  try {
    operation();
  } catch (const XMLException& e) {
    if (!has_error_) {
      has_error_ = true;
      error_text_ = ToUTF8(e.getMessage());
    }
    throw;
  }
}

}  // namespace MCXPrsUtil
