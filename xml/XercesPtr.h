// Owners of what Xerces hands out.
//
// Xerces has two ways to give an object back: release() (DOM documents, serializers) and plain
// delete (parsers, transcoders: std::unique_ptr as it is).
#ifndef MCXPRSUTIL_XML_XERCESPTR_H
#define MCXPRSUTIL_XML_XERCESPTR_H

#include <memory>

namespace MCXPrsUtil {

struct XercesRelease {
  template <class T>
  void operator()(T* object) const {
    object->release();
  }
};

// Calls release(). A DOM document must be released before the XML platform is terminated.
template <class T>
using XercesPtr = std::unique_ptr<T, XercesRelease>;

}  // namespace MCXPrsUtil

#endif  // MCXPRSUTIL_XML_XERCESPTR_H
