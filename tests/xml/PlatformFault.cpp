// The dynamic linker takes a program's own definition of a function before that of a library. So
// the calls that the library under test makes arrive here, and go on to the XML library.
#include "xml/PlatformFault.h"

#include <dlfcn.h>

#include <cstdio>
#include <cstdlib>
#include <stdexcept>
#include <string>
#include <xercesc/internal/MemoryManagerImpl.hpp>
#include <xercesc/util/PlatformUtils.hpp>
#include <xercesc/util/XMLException.hpp>

namespace xml_test {
namespace {

// The XML library's own exceptions look their text up, which needs the platform.
class InjectedException : public xercesc::XMLException {
 public:
  InjectedException() : XMLException("PlatformFault.cpp", __LINE__, Memory()) {}
  const XMLCh* getType() const override { return u"InjectedException"; }

 private:
  static xercesc::MemoryManager* Memory() {
    static xercesc::MemoryManagerImpl memory;
    return &memory;
  }
};

PlatformFault current_fault = PlatformFault::kNone;
int live_platforms = 0;

void* NextSymbol(const char* name) {
  void* symbol = dlsym(RTLD_NEXT, name);
  if (!symbol) {
    std::fprintf(stderr, "no symbol %s\n", name);
    std::abort();
  }
  return symbol;
}

// The mangled names hold the version of the XML library, as this string does.
#define MCX_TEXT_OF(x) #x
#define MCX_TEXT(x) MCX_TEXT_OF(x)
std::string Mangled(const char* before, const char* after) {
  const std::string space = MCX_TEXT(XERCES_CPP_NAMESPACE);
  return before + std::to_string(space.size()) + space + after;
}

}  // namespace

PlatformFaultScope::PlatformFaultScope(PlatformFault fault) { current_fault = fault; }

PlatformFaultScope::~PlatformFaultScope() { current_fault = PlatformFault::kNone; }

int LivePlatforms() { return live_platforms; }

}  // namespace xml_test

namespace XERCES_CPP_NAMESPACE {

void XMLPlatformUtils::Initialize(const char* const locale, const char* const nlsHome,
                                  PanicHandler* const panicHandler,
                                  MemoryManager* const memoryManager) {
  using xml_test::PlatformFault;
  if (xml_test::current_fault == PlatformFault::kXMLException) {
    throw xml_test::InjectedException();
  }
  if (xml_test::current_fault == PlatformFault::kOtherException)
    throw std::runtime_error("injected");
  using Function = void (*)(const char*, const char*, PanicHandler*, MemoryManager*);
  static const auto next = reinterpret_cast<Function>(xml_test::NextSymbol(
      xml_test::Mangled("_ZN",
                        "16XMLPlatformUtils10InitializeEPKcS2_PNS_12PanicHandlerEPNS_"
                        "13MemoryManagerE")
          .c_str()));
  next(locale, nlsHome, panicHandler, memoryManager);
  ++xml_test::live_platforms;
}

void XMLPlatformUtils::Terminate() {
  using Function = void (*)();
  static const auto next = reinterpret_cast<Function>(
      xml_test::NextSymbol(xml_test::Mangled("_ZN", "16XMLPlatformUtils9TerminateEv").c_str()));
  --xml_test::live_platforms;
  next();
}

}  // namespace XERCES_CPP_NAMESPACE
