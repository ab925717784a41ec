/// @file
/// Reads an XML document into a DOM tree and writes a DOM tree to a file.
#ifndef MCXPRSUTIL_MCXMLREADWRITE_H
#define MCXPRSUTIL_MCXMLREADWRITE_H

#include <iosfwd>
#include <memory>
#include <string>
#include <xercesc/util/XercesDefs.hpp>

#include "mccommon/MCStatus.h"
#include "mcxprsutil/Export.h"

XERCES_CPP_NAMESPACE_BEGIN
class DOMDocument;
XERCES_CPP_NAMESPACE_END

namespace MCXPrsUtil {

class DocumentParser;

/// Owns one parsed XML document, and keeps the XML platform initialised while it lives.
///
/// Construct it, look at GetInitStatus(), parse any number of times (each parse replaces the
/// document), walk GetDocument() with the functions of MCXDOMHelpers.h, write if need be. Objects
/// nest and coexist: the XML library counts its initialisations.
///
/// Parsing uses the defaults of Xerces's DOM parser: no validation, no namespaces, and entities
/// are expanded, external ones included. A process that reads documents from a source that it does
/// not trust sets an MCXParsePolicy first.
///
/// Do not call one object from two threads at once. Objects of this library may be made and
/// destroyed on any thread; an application that starts or stops the XML platform itself
/// (`XMLPlatformUtils::Initialize`) must not do so meanwhile.
class MCXPRSUTIL_EXPORT MCXMLReadWrite {
 public:
  /// Initialises the XML platform. An XMLException becomes the status that GetInitStatus() tells;
  /// any other exception leaves the constructor. Where memory runs out while the platform starts
  /// for the first time, the XML library ends the process, or is of no use in it any more.
  MCXMLReadWrite();

  /// Destroys the document and terminates the platform, if it was initialised.
  ~MCXMLReadWrite();

  MCXMLReadWrite(const MCXMLReadWrite&) = delete;
  MCXMLReadWrite& operator=(const MCXMLReadWrite&) = delete;

  /// @return OK, or 103 if the XML platform could not be initialised: then every parse and write
  ///         returns 103 as well.
  MCCommon::MCStatus GetInitStatus() const;

  /// The document of the last parse; null before the first parse and after one that failed.
  ///
  /// This object owns it: the next parse, or the destruction of the object, destroys every node.
  XERCES_CPP_NAMESPACE::DOMDocument* GetDocument();
  /// @copydoc GetDocument()
  const XERCES_CPP_NAMESPACE::DOMDocument* GetDocument() const;

  /// Why the last parse or write failed, in UTF-8; empty when it succeeded or when there is
  /// nothing to tell.
  ///
  /// For a parse: the parser's first fatal error as "line L, column C: text", the message of the
  /// exception that ended it, or the limit of the MCXParsePolicy that the document goes beyond. For
  /// a write: the message of the exception. Malformed XML that still gave a document is no failure
  /// here: see IsWellFormed().
  std::string GetXercesMessage() const;

  /// Reads a document from a file.
  ///
  /// The document that was held before dies with all its nodes, even if the file cannot be read.
  ///
  /// Malformed XML gives OK as long as the parser kept something: the document then holds what
  /// stood before the error, possibly without a root element. IsWellFormed() tells.
  ///
  /// An exception of the parser that is no XMLException (a DOMException for an XML version other
  /// than 1.0 and 1.1, memory shortage) passes to the caller; the object is then as after a failed
  /// parse.
  ///
  /// @param fileName path or system identifier of the file; never XML text.
  /// @return OK;
  ///         103 if the platform is not up, or no parser could be made;
  ///         104 if there is no such file, the parser ended with an XMLException, it left no
  ///             document, the MCXParsePolicy of the process does not allow the document, or an
  ///             entity holds elements that are nested deeper than the stack of the thread allows
  ///             (8 MiB do for some 30000 levels; elements outside of entities may be nested as
  ///             deep as memory allows); GetXercesMessage() has the reason.
  MCCommon::MCStatus ParseToDOM(const std::string& fileName);

  /// Reads a document from the rest of a stream; otherwise as for a file.
  ///
  /// @param in read from its position to its end; not closed. An exception that the stream is set
  ///        to throw passes to the caller, unless what was read before it is malformed already:
  ///        then the parse ends as for any malformed XML.
  /// @return as ParseToDOM(const std::string&).
  MCCommon::MCStatus ParseToDOM(std::istream& in);

  /// Reads a document from a file, or from a stream when there is no file name.
  ///
  /// @param fileName path or system identifier, zero-terminated; null to parse `*in`.
  /// @param in the stream, used only when `fileName` is null; borrowed.
  /// @return as ParseToDOM(const std::string&); 104 when both are null.
  MCCommon::MCStatus ParseToDOM(const char* fileName, std::istream* in);

  /// Writes a document to a file, in the document's own encoding (UTF-8 if it names none) and
  /// without adding white space.
  ///
  /// Nothing is written, and the message stays as it is, when there is no document to write: that
  /// is OK. A partial file stays after a failure.
  ///
  /// A file that cannot be opened is not a status: the XMLException of the XML library
  /// passes to the caller, and so does memory shortage before the file is open.
  ///
  /// The serializer of the XML library gives up without a word where the document's encoding lacks
  /// a character of a name, and where no converter for the encoding can be opened: the status is OK
  /// then, and the file ends there, or is empty. In a document of XML 1.1 it writes U+0085 and
  /// U+2028, which can only come from character references, as they are: they are read back as line
  /// feeds, or as blanks in an attribute.
  ///
  /// @param fileName path of the file, which is replaced.
  /// @param doc the document, borrowed; null writes the current document.
  /// @return OK; 103 if the platform could not start; 118 if the document is nested
  ///         deeper than the stack of the thread allows (the XML library takes about 200 bytes for
  ///         a level, 8 MiB do for some 40000 levels), if serialising threw, or if the file refused
  ///         data while it was written or closed. GetXercesMessage() tells why; it is empty for
  ///         exceptions other than XMLException.
  MCCommon::MCStatus WriteFromDOM(const std::string& fileName,
                                  const XERCES_CPP_NAMESPACE::DOMDocument* doc) const;

  /// @return true if there is a document and its parse met no fatal error (XML 1.0, section 1.2).
  bool IsWellFormed() const;

  /// The first fatal error of the last parse as "line L, column C: text", in UTF-8; empty if it
  /// met none, or if there was no memory for the text.
  std::string GetParseError() const;

 private:
  void Clear();

  MCCommon::MCStatus init_status_;
  std::unique_ptr<DocumentParser> parser_;
  mutable std::string xerces_message_;  // written by WriteFromDOM, which changes nothing else
  XERCES_CPP_NAMESPACE::DOMDocument* document_ = nullptr;  // owned by parser_
  std::string parse_error_;
  bool well_formed_ = false;
};

}  // namespace MCXPrsUtil

#endif  // MCXPRSUTIL_MCXMLREADWRITE_H
