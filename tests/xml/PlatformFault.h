// Lets a test make the initialisation of the XML platform fail.
#ifndef MCXPRSUTIL_TESTS_XML_PLATFORMFAULT_H
#define MCXPRSUTIL_TESTS_XML_PLATFORMFAULT_H

namespace xml_test {

enum class PlatformFault { kNone, kXMLException, kOtherException };

// While it lives, XMLPlatformUtils::Initialize throws in this program, before anything is
// initialised.
class PlatformFaultScope {
 public:
  explicit PlatformFaultScope(PlatformFault fault);
  ~PlatformFaultScope();
  PlatformFaultScope(const PlatformFaultScope&) = delete;
  PlatformFaultScope& operator=(const PlatformFaultScope&) = delete;
};

// Calls of Initialize that succeeded minus calls of Terminate.
int LivePlatforms();

}  // namespace xml_test

#endif  // MCXPRSUTIL_TESTS_XML_PLATFORMFAULT_H
