#include "XmlPlatform.h"

#include <mcxprsutil/MCXMLReadWrite.h>
#include <mcxprsutil/MCXTranscoder.h>
#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <cstddef>
#include <utility>
#include <xercesc/util/PlatformUtils.hpp>
#include <xercesc/util/XMLFileMgr.hpp>
#include <xercesc/util/XMLNetAccessor.hpp>

#include "Check.h"

namespace fuzz {
namespace {

using xercesc::FileHandle;
using xercesc::MemoryManager;
using xercesc::XMLFileMgr;
using xercesc::XMLPlatformUtils;

const std::string kScratchFolder = "/proc/self/fd/";

bool IsScratchFile(const std::string& path) {
  return path.rfind(kScratchFolder, 0) == 0 && path.size() > kScratchFolder.size() &&
         path.find_first_not_of("0123456789", kScratchFolder.size()) == std::string::npos;
}

// Opens nothing but scratch files; all else is the work of the library's own.
class RefusingFiles : public XMLFileMgr {
 public:
  explicit RefusingFiles(XMLFileMgr& real) : real_(real) {}

  FileHandle fileOpen(const XMLCh* path, bool writes, MemoryManager* memory) override {
    return IsScratchFile(MCXPrsUtil::ToUTF8(path)) ? real_.fileOpen(path, writes, memory) : nullptr;
  }
  FileHandle fileOpen(const char* path, bool writes, MemoryManager* memory) override {
    return IsScratchFile(path) ? real_.fileOpen(path, writes, memory) : nullptr;
  }
  FileHandle openStdIn(MemoryManager*) override { return nullptr; }
  void fileClose(FileHandle f, MemoryManager* memory) override { real_.fileClose(f, memory); }
  void fileReset(FileHandle f, MemoryManager* memory) override { real_.fileReset(f, memory); }
  XMLFilePos curPos(FileHandle f, MemoryManager* memory) override {
    return real_.curPos(f, memory);
  }
  XMLFilePos fileSize(FileHandle f, MemoryManager* memory) override {
    return real_.fileSize(f, memory);
  }
  XMLSize_t fileRead(FileHandle f, XMLSize_t n, XMLByte* buffer, MemoryManager* memory) override {
    return real_.fileRead(f, n, buffer, memory);
  }
  void fileWrite(FileHandle f, XMLSize_t n, const XMLByte* bytes, MemoryManager* memory) override {
    real_.fileWrite(f, n, bytes, memory);
  }
  XMLCh* getFullPath(const XMLCh* path, MemoryManager* memory) override {
    return real_.getFullPath(path, memory);
  }
  XMLCh* getCurrentDirectory(MemoryManager* memory) override {
    return real_.getCurrentDirectory(memory);
  }
  bool isRelative(const XMLCh* path, MemoryManager* memory) override {
    return real_.isRelative(path, memory);
  }

 private:
  XMLFileMgr& real_;
};

std::size_t Count(const std::string& text, const std::string& what) {
  std::size_t count = 0;
  for (std::size_t at = text.find(what); at != std::string::npos; at = text.find(what, at + 1)) {
    ++count;
  }
  return count;
}

}  // namespace

void StartXmlPlatform() {
  // Never destroyed: the platform must not end before the last document.
  static const auto& platform = *new MCXPrsUtil::MCXMLReadWrite;
  static auto& files = *new RefusingFiles(*XMLPlatformUtils::fgFileMgr);
  FUZZ_CHECK(platform.GetInitStatus().IsOK());
  XMLPlatformUtils::fgFileMgr = &files;
  delete std::exchange(XMLPlatformUtils::fgNetAccessor, nullptr);
}

bool IsModest(const std::string& document) {
  constexpr std::size_t kMostEntities = 4;
  constexpr std::size_t kMostReferences = 24;
  std::string text = document;
  text.erase(std::remove(text.begin(), text.end(), '\0'), text.end());  // wide encodings
  const std::size_t entities = Count(text, "<!ENTITY");
  if (entities == 0) return true;
  return entities <= kMostEntities && Count(text, "&") + Count(text, "%") <= kMostReferences;
}

ScratchFile::ScratchFile()
    : descriptor_(memfd_create("fuzz", 0)), path_(kScratchFolder + std::to_string(descriptor_)) {
  FUZZ_CHECK(descriptor_ >= 0);
}

ScratchFile::~ScratchFile() { close(descriptor_); }

void ScratchFile::SetContent(const std::string& bytes) {
  FUZZ_CHECK(ftruncate(descriptor_, 0) == 0);
  const auto size = static_cast<ssize_t>(bytes.size());
  FUZZ_CHECK(pwrite(descriptor_, bytes.data(), bytes.size(), 0) == size);
}

std::string ScratchFile::GetContent() const {
  const off_t size = lseek(descriptor_, 0, SEEK_END);
  FUZZ_CHECK(size >= 0);
  std::string bytes(static_cast<std::size_t>(size), '\0');
  FUZZ_CHECK(pread(descriptor_, bytes.data(), bytes.size(), 0) == size);
  return bytes;
}

}  // namespace fuzz
