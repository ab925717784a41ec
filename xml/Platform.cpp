#include "xml/Platform.h"

#include <mutex>
#include <xercesc/util/PlatformUtils.hpp>

namespace MCXPrsUtil {
namespace {

using XERCES_CPP_NAMESPACE::XMLPlatformUtils;

std::mutex platform_mutex;  // set up by the compiler: nothing runs when the library is loaded

}  // namespace

void StartPlatform() {
  const std::lock_guard<std::mutex> lock(platform_mutex);
  XMLPlatformUtils::Initialize();
}

void StopPlatform() {
  const std::lock_guard<std::mutex> lock(platform_mutex);
  XMLPlatformUtils::Terminate();
}

}  // namespace MCXPrsUtil
