/// @file
/// What a process allows the XML documents that it parses.
#ifndef MCXPRSUTIL_MCXPARSEPOLICY_H
#define MCXPRSUTIL_MCXPARSEPOLICY_H

#include <cstdint>
#include <limits>

#include "mcxprsutil/Export.h"

namespace MCXPrsUtil {

/// Limits for every document that the process parses.
///
/// A process that reads documents which it does not trust opts in once, at its start:
///
///     MCXParsePolicy::SetForProcess(MCXParsePolicy::Hardened());
///
/// Every parse of MCXMLReadWrite, of the readers and of the combiner keeps to the policy that is in
/// force when it begins. A document that goes beyond it is refused during the parse: the status is
/// 104, GetXercesMessage() names the limit by the member below, and the object is as after any
/// other parse that failed. What is within the limits is read as without them; only of a text in
/// which a malformed document breaks off, more or less may be held. Parsers that an application
/// makes itself, with MCXInputSource or without, are not affected.
///
/// Without that call there are no limits: the XML library's defaults hold, which expand every
/// entity and follow every reference to a file or over the network.
///
/// Each member may be changed before the policy is set, so that limits can be taken one by one.
/// Only all of them together bound what a document costs: see Hardened().
struct MCXPRSUTIL_EXPORT MCXParsePolicy {
  /// No limit.
  static constexpr std::uint64_t kUnlimited = std::numeric_limits<std::uint64_t>::max();

  /// What a document type declaration ("<!DOCTYPE ...>") may hold.
  enum class Doctype {
    /// Everything. External entities and the external DTD are read, wherever they are. They count
    /// for the limits of depth, names and expansions, but not for those of size.
    kAll,
    /// Elements, notations, and entities whose text stands in the declaration itself. Refused are
    /// an external DTD, external entities (unless they are unparsed), parameter entities and
    /// attribute lists. Nothing but the document itself is ever opened. The XML library loses the
    /// memory of a content model that breaks off, up to 120 times `max_markup_bytes` for each such
    /// document, so this is for sources that are known.
    kInternal,
    /// Nothing: a document that has one is refused, before anything in it is looked at.
    kRefused
  };

  /// No limits: what the XML library does by default.
  MCXParsePolicy() = default;

  /// Limits for documents from anywhere: 32 MiB, 1000 levels, 256 KiB for one piece of markup,
  /// 1000 names (PMML has some hundreds), and no document type declaration, so that there are
  /// neither entities nor anything from outside of the document. Where `doctype` is changed,
  /// entities are expanded 1000 times at most, and none is longer than 16384 characters: that makes
  /// about as much of a small document as 32 MiB are.
  ///
  /// The largest tree that a document can then become takes about 2.5 GiB of memory; PMML of usual
  /// shape becomes 15 to 20 times as large as its file. The slowest one takes some ten seconds, six
  /// times as long as an ordinary one of that size: its names are made to collide in the XML
  /// library's tables. A service that runs several parses at once, or that only expects small
  /// documents, lowers `max_document_bytes`, which all of that is in proportion to.
  static MCXParsePolicy Hardened();

  /// Puts a policy in force for every parse that begins from now on, on all threads. Parses under
  /// way keep theirs.
  static void SetForProcess(const MCXParsePolicy& policy);

  /// The policy in force; that of the default constructor until SetForProcess() is called.
  static MCXParsePolicy GetForProcess();

  /// The size of the document, as it is read from the file or the stream. Nothing behind this many
  /// bytes is looked at.
  std::uint64_t max_document_bytes = kUnlimited;

  /// How many elements may be nested; the document element is the first level.
  std::uint64_t max_depth = kUnlimited;

  /// The size of one piece of markup: a tag with its attributes, a comment, a CDATA section, a
  /// processing instruction or a declaration. White space in front of the document element and
  /// behind it counts as one too. A longer one is refused when up to 256 KiB more of it were read.
  /// Text has no such limit, except where an encoding takes more than four bytes for a character
  /// (ISO-2022 with an escape for each).
  std::uint64_t max_markup_bytes = kUnlimited;

  /// How many different names elements, attributes, entities and notations may have. The XML
  /// library may have to search them one by one, for each tag, when a document wants it to.
  std::uint64_t max_names = kUnlimited;

  /// How often entities may be expanded, counting those within entities. Character references and
  /// the five predefined entities do not count.
  std::uint64_t max_entity_expansions = kUnlimited;

  /// The length of the text that a single entity is declared with, in UTF-16 code units, with
  /// character references replaced. Expansion adds at most this times `max_entity_expansions` to a
  /// document.
  std::uint64_t max_entity_characters = kUnlimited;

  /// What a document type declaration may hold.
  Doctype doctype = Doctype::kAll;
};

/// True if every member is the same.
MCXPRSUTIL_EXPORT bool operator==(const MCXParsePolicy& a, const MCXParsePolicy& b);

/// True if some member differs.
MCXPRSUTIL_EXPORT bool operator!=(const MCXParsePolicy& a, const MCXParsePolicy& b);

}  // namespace MCXPrsUtil

#endif  // MCXPRSUTIL_MCXPARSEPOLICY_H
