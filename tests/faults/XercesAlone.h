// What the library asks of Xerces, asked by nobody else.
//
// Xerces loses memory when an allocation fails: its constructors own plain pointers, which nobody
// frees when a later line of the same constructor throws (XercesDOMParser and its scanners, readers
// and grammars; DOMDocumentImpl, DOMLSSerializerImpl and what they consist of; ICUTransService,
// which forgets ICU's converter when there is no memory for its own object around it). These
// subjects tell how much it loses by itself, so that the sweeps can hold the library to exactly
// that.
#ifndef MCXPRSUTIL_TESTS_FAULTS_XERCESALONE_H
#define MCXPRSUTIL_TESTS_FAULTS_XERCESALONE_H

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "faults/AllocationSweep.h"

namespace fault_test {

using MakeSubject = std::function<std::unique_ptr<Subject>()>;

// Makes a parser.
MakeSubject MakeParserAlone();

// Parses a text with a parser that is kept from before, one that has read `earlier` (nothing where
// that is empty), and takes the document from it.
MakeSubject ReuseParserAlone(const std::string& text, const std::string& earlier);

// Makes a parser and parses a text.
MakeSubject ParseAlone(const std::string& text);

// The same with the calls that a process makes which limits what it reads.
MakeSubject ParseLimitedAlone(const std::string& text);

// Makes a parser and parses a file.
MakeSubject ParseFileAlone(const std::string& path);

// Makes a parser, parses a file, and makes an empty document.
MakeSubject ParseFileAndMakeDocumentAlone(const std::string& path);

// Makes a serializer and writes the document of a text, to nowhere.
MakeSubject WriteAlone(const std::string& text);

// Makes so many transcoders, one after the other.
MakeSubject MakeTranscodersAlone(const std::string& encoding, int count);

}  // namespace fault_test

#endif  // MCXPRSUTIL_TESTS_FAULTS_XERCESALONE_H
