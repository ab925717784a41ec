// Owners of what Xerces hands out.
//
// Xerces has three ways to give an object back: release() (DOM documents, serializers), plain
// delete (parsers, transcoders: std::unique_ptr as it is), and deallocation by the memory manager
// (strings).
#ifndef MCXPRSUTIL_XML_XERCESPTR_H
#define MCXPRSUTIL_XML_XERCESPTR_H

#include <memory>
#include <xercesc/util/XMLString.hpp>

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

struct XercesStringRelease {
  template <class Char>
  void operator()(Char* text) const {
    XERCES_CPP_NAMESPACE::XMLString::release(&text);
  }
};

// Owns a string from XMLString::transcode() or XMLString::replicate().
template <class Char>
using XercesString = std::unique_ptr<Char, XercesStringRelease>;

}  // namespace MCXPrsUtil

#endif  // MCXPRSUTIL_XML_XERCESPTR_H
