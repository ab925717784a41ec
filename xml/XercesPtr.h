// Owners of what Xerces hands out.
//
// Xerces has two ways to give an object back: release() (DOM documents, serializers) and plain
// delete (parsers, transcoders: std::unique_ptr as it is).
#ifndef MCXPRSUTIL_XML_XERCESPTR_H
#define MCXPRSUTIL_XML_XERCESPTR_H

#include <memory>

namespace MCXPrsUtil {

// Xerces notes a released node for reuse, and throws when it has no memory for the note. Nothing is
// lost then: the node goes with its document.
struct XercesRelease {
  template <class T>
  void operator()(T* object) const noexcept {
    try {
      object->release();
    } catch (...) {
      // Out of memory; an exception out of a destructor would end the process.
    }
  }
};

// Calls release(). A DOM document must be released before the XML platform is terminated.
template <class T>
using XercesPtr = std::unique_ptr<T, XercesRelease>;

}  // namespace MCXPrsUtil

#endif  // MCXPRSUTIL_XML_XERCESPTR_H
