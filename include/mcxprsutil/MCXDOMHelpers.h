/// @file
/// Functions to walk, read and build DOM trees with UTF-8 names.
///
/// Names and texts go in as zero-terminated UTF-8 and are compared exactly, code unit by code unit,
/// with the qualified names of the document: a prefixed name never equals a bare one. Text that is
/// not well-formed UTF-8 counts as the empty string. Attribute values come out as DOM strings: null
/// for an attribute that is absent, an empty string for one that is empty.
///
/// Nodes stay the property of their document; no function takes ownership of an argument. The
/// functions hold no state: they may run on several threads for different documents. The XML
/// platform must be initialised.
///
/// A `DOMException` becomes the null or false result that a function describes. Other exceptions
/// (memory shortage) pass to the caller.
#ifndef MCXPRSUTIL_MCXDOMHELPERS_H
#define MCXPRSUTIL_MCXDOMHELPERS_H

#include <string>
#include <utility>
#include <vector>
#include <xercesc/util/XercesDefs.hpp>

#include "mcxprsutil/Export.h"

XERCES_CPP_NAMESPACE_BEGIN
class DOMDocument;
class DOMElement;
class DOMNode;
XERCES_CPP_NAMESPACE_END

namespace MCXPrsUtil {

/// @name Comparison and lookup
/// @{

/// Tells whether a DOM string and a UTF-8 string are the same text.
///
/// @param x DOM string, or null, which equals the empty string.
/// @param s UTF-8, zero-terminated; must not be null.
MCXPRSUTIL_EXPORT bool XStrEqualsUTF8Str(const XMLCh* x, const char* s);

/// Finds a DOM string in a list of UTF-8 names.
///
/// @return the index of the first equal name (see XStrEqualsUTF8Str()), or 0xFFFFFFFF.
MCXPRSUTIL_EXPORT unsigned int FindXStrInList(const XMLCh* x,
                                              const std::vector<std::string>& names);

/// Finds a DOM string in a name table.
///
/// @param x DOM string, or null, which equals an empty name.
/// @param table (code, UTF-8 name) pairs up to an entry whose name is null; must not be null.
/// @return the position (not the code) of the first entry with an equal name, or 0xFFFFFFFF.
MCXPRSUTIL_EXPORT unsigned int FindXStrInList(const XMLCh* x,
                                              const std::pair<unsigned int, const char*>* table);

/// Tells whether an element's qualified tag name is `name`, which must not be null.
MCXPRSUTIL_EXPORT bool TagNameEquals(const XERCES_CPP_NAMESPACE::DOMElement& e, const char* name);

/// @}
/// @name Navigation
/// Nodes other than elements are skipped. A null `name` stands for every element. The result is
/// null when there is no such element.
/// @{

/// @return `n` itself if it is an element of that name.
MCXPRSUTIL_EXPORT XERCES_CPP_NAMESPACE::DOMElement* AsElement(
    const XERCES_CPP_NAMESPACE::DOMNode& n, const char* name);

/// @return the first element of that name among the siblings that follow `n`.
MCXPRSUTIL_EXPORT XERCES_CPP_NAMESPACE::DOMElement* GetNextSiblingElmt(
    const XERCES_CPP_NAMESPACE::DOMNode& n, const char* name);

/// @return the first child element of that name.
MCXPRSUTIL_EXPORT XERCES_CPP_NAMESPACE::DOMElement* GetFirstChildElmt(
    const XERCES_CPP_NAMESPACE::DOMNode& n, const char* name);

/// Finds a child element by a list of alternative names, best first: an earlier entry beats a later
/// one even where its element stands further back in the document.
///
/// @param n the parent.
/// @param table (code, UTF-8 name) pairs up to an entry whose name is null; must not be null.
/// @param[out] index position of the entry that was found; 0 when none was.
/// @return the first child element of that entry's name.
MCXPRSUTIL_EXPORT XERCES_CPP_NAMESPACE::DOMElement* GetFirstChildElmt(
    const XERCES_CPP_NAMESPACE::DOMNode& n, const std::pair<unsigned int, const char*>* table,
    unsigned long& index);

/// Finds one of our own PMML extensions: an "Extension" element whose "extender" is the vendor's
/// and whose "name" is the given one.
///
/// @param n the parent.
/// @param name the extension's name; null accepts each of the vendor's.
/// @return the first such child element.
MCXPRSUTIL_EXPORT XERCES_CPP_NAMESPACE::DOMElement* GetFirstChildExtension(
    const XERCES_CPP_NAMESPACE::DOMNode& n, const char* name);

/// The same among the siblings that follow `n`; other "Extension" elements are skipped.
MCXPRSUTIL_EXPORT XERCES_CPP_NAMESPACE::DOMElement* GetNextSiblingExtension(
    const XERCES_CPP_NAMESPACE::DOMNode& n, const char* name);

/// @}
/// @name Attributes
/// `name` must not be null.
/// @{

/// @return the attribute's value, which lives as long as the attribute is not changed; null when
///         the element has no such attribute.
MCXPRSUTIL_EXPORT const XMLCh* GetAttribute(const XERCES_CPP_NAMESPACE::DOMElement& e,
                                            const char* name);

/// The same for any node: null when `n` is not an element.
MCXPRSUTIL_EXPORT const XMLCh* GetAttribute(const XERCES_CPP_NAMESPACE::DOMNode& n,
                                            const char* name);

/// Reads a number by the lexical rules of `double` in XML Schema Datatypes, as Xerces applies them,
/// whatever the locale.
///
/// White space around the number is allowed. "NaN" reads as MCMV::gMissingValue. A number whose
/// magnitude is below the smallest normal double reads as 0. "INF", "-INF" and a number beyond
/// the largest double are refused.
///
/// @param e the element.
/// @param name the attribute's name.
/// @param[out] value set only with result 0.
/// @return 0 when read; -1 when the attribute is absent; 1 when it is not an acceptable number.
MCXPRSUTIL_EXPORT int GetDoubleAttribute(const XERCES_CPP_NAMESPACE::DOMElement& e,
                                         const char* name, double& value);

/// Reads a whole number by the lexical rules of `integer` in XML Schema Datatypes: digits with an
/// optional sign, white space around them allowed.
///
/// @param e the element.
/// @param name the attribute's name.
/// @param sign what is accepted: negative every number, 0 numbers >= 0, positive numbers >= 1.
/// @param[out] value set to every number that fits an `int`, also to one that `sign` rejects;
///        untouched otherwise.
/// @return 0 when read and accepted; -1 when the attribute is absent; 1 when it is no whole number,
///         does not fit an `int`, or is rejected by `sign`.
MCXPRSUTIL_EXPORT int GetIntAttribute(const XERCES_CPP_NAMESPACE::DOMElement& e, const char* name,
                                      int sign, int& value);

/// Sets an attribute, adding it if it is absent.
///
/// @param e the element.
/// @param name the attribute's name.
/// @param value its text; must not be null.
/// @return false, with the element unchanged, when the document refuses (no XML name, read-only).
MCXPRSUTIL_EXPORT bool SetAttribute(XERCES_CPP_NAMESPACE::DOMElement& e, const char* name,
                                    const char* value);

/// Sets an attribute to a number, written by MCXML_NAMESPACE::Format: independent of the locale, it
/// reads back as the same double.
///
/// @return as the text form.
MCXPRSUTIL_EXPORT bool SetAttribute(XERCES_CPP_NAMESPACE::DOMElement& e, const char* name,
                                    double value);

/// Reads an element's text as numbers separated by white space (each by the rules of
/// GetDoubleAttribute()).
///
/// @param e the element: empty, or with one text node and nothing else.
/// @param[out] values replaced by the numbers. Untouched when the element holds anything but one
///        text node (a comment, a CDATA section, an element); cleared when a number cannot be read.
/// @return true when everything was read; an element without children is an empty list.
MCXPRSUTIL_EXPORT bool AssembleDoublesList(const XERCES_CPP_NAMESPACE::DOMElement& e,
                                           std::vector<double>& values);

/// @}
/// @name Building
/// `name` must not be null.
/// @{

/// Makes an element. It belongs to the document but stands nowhere in it.
///
/// @return the element, or null when `name` is no XML name.
MCXPRSUTIL_EXPORT XERCES_CPP_NAMESPACE::DOMElement* CreateElement(
    XERCES_CPP_NAMESPACE::DOMDocument& d, const char* name);

/// Makes an "Extension" element with the vendor's "extender" and then the given "name". It belongs
/// to the document but stands nowhere in it.
///
/// @return the element, or null when an attribute was refused.
MCXPRSUTIL_EXPORT XERCES_CPP_NAMESPACE::DOMElement* CreateExtension(
    XERCES_CPP_NAMESPACE::DOMDocument& d, const char* name);

/// Inserts `newChild` into `parent` before `refChild`, or at the end when `refChild` is null. The
/// child leaves its former place in the document.
///
/// @return false, with nothing changed, when the document refuses: `newChild` is null, of another
///         document, `parent` itself or around it, or `refChild` is no child of `parent`.
MCXPRSUTIL_EXPORT bool InsertElement(XERCES_CPP_NAMESPACE::DOMElement& parent,
                                     XERCES_CPP_NAMESPACE::DOMElement* newChild,
                                     XERCES_CPP_NAMESPACE::DOMElement* refChild);

/// Puts `newChild` in the place of `oldChild`. The old child is taken out but not released: it
/// still belongs to the document. A child put in its own place changes nothing, and the result is
/// true.
///
/// @return false, with nothing changed, when the document refuses: see InsertElement(); a null
///         `oldChild` is refused too.
MCXPRSUTIL_EXPORT bool ReplaceElement(XERCES_CPP_NAMESPACE::DOMElement& parent,
                                      XERCES_CPP_NAMESPACE::DOMElement* newChild,
                                      XERCES_CPP_NAMESPACE::DOMElement* oldChild);

/// @}

}  // namespace MCXPrsUtil

#endif  // MCXPRSUTIL_MCXDOMHELPERS_H
