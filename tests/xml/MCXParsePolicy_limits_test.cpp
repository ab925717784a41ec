// The limits of size, depth and names.
#include <vector>

#include "xml/PolicyCheck.h"

namespace {

using MCCommon::MCStatus;
using MCXPrsUtil::MCXMLReadWrite;
using MCXPrsUtil::MCXParsePolicy;
using testing::EndsWith;
using testing::HasSubstr;
using testing::StartsWith;
using xml_test::EndlessStream;
using xml_test::HardenedOutcome;
using xml_test::Nested;
using xml_test::OutcomeOf;
using xml_test::ParseOutcome;
using xml_test::PolicyScope;
using xml_test::Repeat;

constexpr std::size_t kKiB = 1024;
constexpr std::size_t kMiB = 1024 * kKiB;
constexpr std::size_t kGiB = 1024 * kMiB;

// How much more than a limit may be read before the parser is known to be beyond it.
constexpr std::size_t kReadAhead = 256 * kKiB;

TEST(MCXParsePolicy, IsWithoutLimitsByDefault) {
  const MCXParsePolicy policy;
  EXPECT_EQ(policy.max_document_bytes, MCXParsePolicy::kUnlimited);
  EXPECT_EQ(policy.max_depth, MCXParsePolicy::kUnlimited);
  EXPECT_EQ(policy.max_markup_bytes, MCXParsePolicy::kUnlimited);
  EXPECT_EQ(policy.max_names, MCXParsePolicy::kUnlimited);
  EXPECT_EQ(policy.max_entity_expansions, MCXParsePolicy::kUnlimited);
  EXPECT_EQ(policy.max_entity_characters, MCXParsePolicy::kUnlimited);
  EXPECT_EQ(policy.doctype, MCXParsePolicy::Doctype::kAll);
  EXPECT_EQ(MCXParsePolicy::GetForProcess(), policy);
}

TEST(MCXParsePolicy, HardenedHasTheStatedLimits) {
  const MCXParsePolicy policy = MCXParsePolicy::Hardened();
  EXPECT_EQ(policy.max_document_bytes, 32 * kMiB);
  EXPECT_EQ(policy.max_depth, 1000u);
  EXPECT_EQ(policy.max_markup_bytes, 256 * kKiB);
  EXPECT_EQ(policy.max_names, 1000u);
  EXPECT_EQ(policy.max_entity_expansions, 1000u);
  EXPECT_EQ(policy.max_entity_characters, 16'384u);
  EXPECT_EQ(policy.doctype, MCXParsePolicy::Doctype::kRefused);
}

TEST(MCXParsePolicy, EqualsOneWithTheSameMembersOnly) {
  const MCXParsePolicy plain;
  std::vector<MCXParsePolicy> others(7);
  others[0].max_document_bytes = 1;
  others[1].max_depth = 1;
  others[2].max_markup_bytes = 1;
  others[3].max_names = 1;
  others[4].max_entity_expansions = 1;
  others[5].max_entity_characters = 1;
  others[6].doctype = MCXParsePolicy::Doctype::kRefused;
  EXPECT_TRUE(plain == MCXParsePolicy());
  EXPECT_FALSE(plain != MCXParsePolicy());
  for (const MCXParsePolicy& other : others) {
    EXPECT_FALSE(plain == other);
    EXPECT_TRUE(plain != other);
  }
}

TEST(MCXParsePolicy, IsTheOneThatWasSetLast) {
  MCXParsePolicy policy;
  policy.max_depth = 7;
  {
    const PolicyScope scope(policy);
    EXPECT_EQ(MCXParsePolicy::GetForProcess(), policy);
  }
  EXPECT_EQ(MCXParsePolicy::GetForProcess(), MCXParsePolicy());
}

TEST(MCXParsePolicy, CountsForTheParseNotForTheObject) {
  MCXMLReadWrite reader;
  const auto parse = [&reader] {
    std::istringstream in("<a><b/></a>");
    return reader.ParseToDOM(in);
  };
  ASSERT_TRUE(parse().IsOK());
  {
    MCXParsePolicy policy;
    policy.max_depth = 1;
    const PolicyScope scope(policy);
    EXPECT_EQ(parse(), MCStatus(104, false));
    EXPECT_EQ(reader.GetDocument(), nullptr);
    EXPECT_EQ(reader.GetXercesMessage(),
              "line 1, column 8: the document is nested deeper than the parse policy allows "
              "(max_depth = 1)");
    EXPECT_EQ(reader.GetParseError(), "") << "the document is not malformed";
    EXPECT_FALSE(reader.IsWellFormed());
  }
  EXPECT_TRUE(parse().IsOK());
  EXPECT_EQ(reader.GetXercesMessage(), "");
  EXPECT_TRUE(reader.IsWellFormed());
}

// For messages of tests: the texts of large documents are too long for them.
std::string Short(const std::string& outcome) {
  return outcome.substr(0, outcome.find("text: ") == 0 ? 20 : std::string::npos);
}

// A document of `size` bytes.
std::string Sized(std::size_t size) { return "<a>" + std::string(size - 7, 'x') + "</a>"; }

TEST(MCXParsePolicySize, ExactlyTheLimitIsReadAndOneByteMoreIsRefused) {
  const xml_test::ScratchFolder folder;
  const std::string file = folder.File("a.xml");
  // Below, at and above the pieces that the XML library reads in.
  for (const std::size_t size : {8u, 1000u, 49'151u, 49'152u, 49'153u, 98'304u, 200'000u}) {
    SCOPED_TRACE(size);
    MCXParsePolicy policy;
    policy.max_document_bytes = size;
    const PolicyScope scope(policy);
    const std::string refused =
        "104: the document is larger than the parse policy allows (max_document_bytes = " +
        std::to_string(size) + ")";
    EXPECT_EQ(ParseOutcome(Sized(size)).size(), 6 + size - 7);
    EXPECT_EQ(Short(ParseOutcome(Sized(size + 1))), refused);
    EXPECT_EQ(Short(ParseOutcome(Sized(size) + "\n")), refused)
        << "what follows the root counts as well";

    MCXMLReadWrite reader;
    xml_test::WriteFile(file, Sized(size));
    EXPECT_TRUE(reader.ParseToDOM(file).IsOK()) << reader.GetXercesMessage();
    xml_test::WriteFile(file, Sized(size + 1));
    EXPECT_EQ(OutcomeOf(reader, reader.ParseToDOM(file)), refused);
    EXPECT_EQ(OutcomeOf(reader, reader.ParseToDOM("file://" + file)), refused);
  }
}

// What stands before the limit is malformed, so that the parser never asks for more.
TEST(MCXParsePolicySize, TooLargeAndMalformedIsRefusedOnceThatWasSeen) {
  MCXParsePolicy policy;
  policy.max_document_bytes = 10;
  const PolicyScope scope(policy);
  EXPECT_THAT(ParseOutcome("<a></b>" + std::string(100, ' ')), StartsWith("104: "));
  EXPECT_THAT(ParseOutcome("<a></b>"), StartsWith("malformed: "));
}

TEST(MCXParsePolicySize, EmptyDocumentsAreAsBefore) {
  for (const char* xml : {"", " ", "x"}) {
    EXPECT_EQ(HardenedOutcome(xml), ParseOutcome(xml));
    EXPECT_THAT(HardenedOutcome(xml), StartsWith("malformed: "));
  }
}

TEST(MCXParsePolicySize, FilesThatCannotBeReadAreAsBefore) {
  const xml_test::ScratchFolder folder;
  const xml_test::IgnoreLeaks known_leak;  // the XML library's, of a directory
  for (const std::string& name : {folder.File("missing"), folder.File(""), std::string(),
                                  std::string("file:///nowhere"), std::string("<a/>")}) {
    SCOPED_TRACE(name);
    MCXMLReadWrite reader;
    const std::string before = OutcomeOf(reader, reader.ParseToDOM(name));
    const PolicyScope scope(MCXParsePolicy::Hardened());
    EXPECT_EQ(OutcomeOf(reader, reader.ParseToDOM(name)), before);
    EXPECT_THAT(before, StartsWith("104: "));
  }
}

struct EndlessCase {
  const char* rule;
  const char* head;
  const char* piece;
  const char* limit;
  std::size_t most_bytes;  // that may be taken from the stream
};

TEST(MCXParsePolicySize, AGibibyteIsRefusedAfterTheLimit) {
  const EndlessCase cases[] = {
      {"text", "<a>", "text without end ", "max_document_bytes", 4 * kMiB},
      {"elements", "<a>", "<b c='some text'>some more</b>", "max_document_bytes", 4 * kMiB},
      {"an attribute", "<a b='", "a value without end ", "max_markup_bytes", 256 * kKiB},
      {"an element's name", "<a", "aaaaaaaaaaaaaaaa", "max_markup_bytes", 256 * kKiB},
      {"a CDATA section", "<a><![CDATA[", "text without end ", "max_markup_bytes", 256 * kKiB},
      {"a comment", "<a><!--", "a comment without end ", "max_markup_bytes", 256 * kKiB},
      {"a processing instruction", "<?a ", "data without end ", "max_markup_bytes", 256 * kKiB},
      {"white space in a tag", "<a ", "                ", "max_markup_bytes", 256 * kKiB},
      {"an entity's text", "<!DOCTYPE a [<!ENTITY e '", "text without end ", "max_markup_bytes",
       256 * kKiB},
      {"a content model", "<!DOCTYPE a [<!ELEMENT a (b", "|bbbbbbbbbb", "max_markup_bytes",
       256 * kKiB},
      {"a public identifier", "<!DOCTYPE a PUBLIC '", "identifier ", "max_markup_bytes",
       256 * kKiB},
  };
  const xml_test::IgnoreLeaks of_content_models;  // which the XML library makes
  MCXParsePolicy policy = xml_test::InternalPolicy();
  policy.max_document_bytes = 4 * kMiB;  // which is reached sooner
  const PolicyScope scope(policy);
  for (const EndlessCase& c : cases) {
    SCOPED_TRACE(c.rule);
    EndlessStream in(c.head, Repeat(c.piece, 1000), kGiB);
    MCXMLReadWrite reader;
    EXPECT_THAT(OutcomeOf(reader, reader.ParseToDOM(in)), HasSubstr(c.limit));
    EXPECT_LE(in.BytesTaken(), c.most_bytes + kReadAhead);
  }
}

TEST(MCXParsePolicyMarkup, UpToTheLimitIsReadAndMuchMoreIsRefused) {
  MCXParsePolicy policy;
  policy.max_markup_bytes = kMiB;
  const PolicyScope scope(policy);
  const struct {
    const char* before;
    const char* behind;
  } kMarkup[] = {{"<a b='", "'/>"},
                 {"<a><!--", "--></a>"},
                 {"<a><?p ", "?></a>"},
                 {"<!DOCTYPE a [<!ENTITY e '", "'>]><a/>"},
                 {"<a><![CDATA[", "]]></a>"}};
  for (const auto& markup : kMarkup) {
    SCOPED_TRACE(markup.before);
    const auto with = [&markup](std::size_t size) {
      return Short(ParseOutcome(markup.before + std::string(size, 'x') + markup.behind));
    };
    EXPECT_THAT(with(kMiB - 20), StartsWith("text: "));
    EXPECT_THAT(with(kMiB + kReadAhead),
                "104: a tag, a comment or the like is longer than the parse policy allows "
                "(max_markup_bytes = 1048576)");
  }
}

// In UTF-8, and in an encoding with four bytes for each character.
TEST(MCXParsePolicyMarkup, TextHasNoSuchLimit) {
  MCXParsePolicy policy;
  policy.max_markup_bytes = 100;
  const PolicyScope scope(policy);
  const std::string xml = "<a>" + std::string(kMiB, 'x') + "</a>";
  EXPECT_EQ(ParseOutcome(xml).size(), 6 + kMiB);
  std::string wide("\0\0\xFE\xFF", 4);
  for (const char c : xml) wide += std::string(3, '\0') + c;
  EXPECT_EQ(Short(ParseOutcome(wide)), "text: xxxxxxxxxxxxxx") << "UTF-32";
  EXPECT_EQ(ParseOutcome(wide).size(), 6 + kMiB);
}

TEST(MCXParsePolicyMarkup, ManyPiecesDoNotAddUp) {
  MCXParsePolicy policy;
  policy.max_markup_bytes = 100;
  const PolicyScope scope(policy);
  constexpr std::size_t kTimes = kMiB / 16;
  for (const char* piece :
       {"<b c='d'/>", "<b></b>", "<!--c-->", "<?p d?>", "<![CDATA[]]>", "&#65;", "&lt;", " "}) {
    EXPECT_THAT(ParseOutcome("<a>" + Repeat(piece, kTimes) + "</a>"), StartsWith("text: "))
        << piece;
  }
  for (const char* piece :
       {"<!--c-->", "<?p d?>", "<!ELEMENT b ANY>", "<!ENTITY e 'x'>", "<!NOTATION n SYSTEM 'x'>",
        "<!ATTLIST b c CDATA 'd'>", "<!ATTLIST b c CDATA #IMPLIED>"}) {
    EXPECT_THAT(ParseOutcome("<!DOCTYPE a [" + Repeat(piece, kTimes) + "]><a/>"), "text: ")
        << piece;
  }
}

// Start tags alone, and then end tags alone.
TEST(MCXParsePolicyMarkup, ManyTagsOfOneKindDoNotAddUp) {
  MCXParsePolicy policy;
  policy.max_markup_bytes = 100;
  const PolicyScope scope(policy);
  MCXMLReadWrite reader;
  std::istringstream in(Nested(kMiB / 16));
  EXPECT_TRUE(reader.ParseToDOM(in).IsOK()) << reader.GetXercesMessage();
  EXPECT_TRUE(reader.IsWellFormed());
}

// Each piece is within the limit and what may be read beyond it, and both together are not.
TEST(MCXParsePolicyMarkup, WhiteSpaceAndWhatFollowsDoNotAddUp) {
  MCXParsePolicy policy;
  policy.max_markup_bytes = 60 * kKiB;
  const PolicyScope scope(policy);
  const std::string space(184 * kKiB, ' ');
  const std::string comment = "<!--" + std::string(58 * kKiB, 'c') + "-->";
  EXPECT_EQ(ParseOutcome("<!DOCTYPE a [" + space + comment + "]><a/>"), "text: ");
  EXPECT_EQ(ParseOutcome("<?p?>" + space + "<!DOCTYPE a [" + comment + "]><a/>"), "text: ");
  EXPECT_EQ(ParseOutcome("<?p?>" + space + comment + "<a/>"), "text: ");
}

TEST(MCXParsePolicyMarkup, WhiteSpaceAroundTheRootIsOnePiece) {
  MCXParsePolicy policy;
  policy.max_markup_bytes = 100;
  const PolicyScope scope(policy);
  const std::string little(kReadAhead / 4, '\n');
  EXPECT_EQ(ParseOutcome("<?p?>" + little + "<a/>" + little), "text: ");
  const std::string much(4 * kReadAhead, '\n');
  EXPECT_THAT(ParseOutcome("<?p?>" + much + "<a/>"), HasSubstr("max_markup_bytes"));
  EXPECT_THAT(ParseOutcome("<a/>" + much), HasSubstr("max_markup_bytes"));
}

// All attributes of one declaration are one piece, however many there are.
TEST(MCXParsePolicyMarkup, AnAttributeListIsOnePiece) {
  MCXParsePolicy policy;
  policy.max_markup_bytes = 100;
  const PolicyScope scope(policy);
  const auto with = [](std::size_t count) {
    return ParseOutcome("<!DOCTYPE a [<!ATTLIST a" + Repeat(" b CDATA #IMPLIED", count) +
                        ">]><a/>");
  };
  EXPECT_EQ(with(5), "text: ");
  EXPECT_THAT(with(4 * kReadAhead / 16), HasSubstr("max_markup_bytes"));
}

TEST(MCXParsePolicyDepth, UpToTheLimitIsReadAndOneMoreIsRefused) {
  for (const std::size_t limit : {1u, 2u, 1000u}) {
    SCOPED_TRACE(limit);
    MCXParsePolicy policy;
    policy.max_depth = limit;
    const PolicyScope scope(policy);
    EXPECT_EQ(ParseOutcome(Nested(limit)), "text: ");
    EXPECT_EQ(ParseOutcome(Nested(limit - 1, "<a/>")), "text: ") << "an empty element is a level";
    const std::string refused =
        "the document is nested deeper than the parse policy allows "
        "(max_depth = " +
        std::to_string(limit) + ")";
    EXPECT_THAT(ParseOutcome(Nested(limit + 1)), EndsWith(refused));
    EXPECT_THAT(ParseOutcome(Nested(limit, "<a/>")), EndsWith(refused));
  }
}

TEST(MCXParsePolicyDepth, SiblingsDoNotAddUp) {
  MCXParsePolicy policy;
  policy.max_depth = 3;
  const PolicyScope scope(policy);
  EXPECT_EQ(ParseOutcome("<r>" + Repeat("<a><b/></a><c/>text", 100) + "</r>").substr(0, 10),
            "text: text");
}

TEST(MCXParsePolicyDepth, LevelsThatAnEntityAddsCount) {
  MCXParsePolicy policy;
  policy.max_depth = 10;
  const PolicyScope scope(policy);
  const auto within = [](std::size_t levels) {
    return "<!DOCTYPE a [<!ENTITY e '" + Nested(5) + "'>]>" + Nested(levels, "&e;");
  };
  EXPECT_EQ(ParseOutcome(within(5)), "text: ");
  EXPECT_THAT(ParseOutcome(within(6)), HasSubstr("max_depth"));
}

TEST(MCXParsePolicyDepth, AHundredThousandLevelsAreRefusedAtTheLimit) {
  EndlessStream in("<a>", Repeat("<a>", 100), 300'000);
  const PolicyScope scope(MCXParsePolicy::Hardened());
  MCXMLReadWrite reader;
  EXPECT_EQ(OutcomeOf(reader, reader.ParseToDOM(in)),
            "104: line 1, column 3004: the document is nested deeper than the parse policy allows "
            "(max_depth = 1000)");
  EXPECT_LE(in.BytesTaken(), kReadAhead);
}

TEST(MCXParsePolicyNames, EachNameCountsOnce) {
  MCXParsePolicy policy;
  policy.max_names = 4;
  const PolicyScope scope(policy);
  EXPECT_EQ(ParseOutcome("<a b='' c=''><d b=''/><d a=''/><a/></a>"), "text: ");
  EXPECT_EQ(ParseOutcome("<a b='' c=''><d/><e/></a>"),
            "104: line 1, column 22: the document uses more different names than the parse policy "
            "allows (max_names = 4)");
  EXPECT_THAT(ParseOutcome("<a b='' c='' d='' e=''/>"), HasSubstr("max_names"));
}

TEST(MCXParsePolicyNames, NamesInDeclarationsCount) {
  MCXParsePolicy policy;
  policy.max_names = 2;
  const PolicyScope scope(policy);
  const struct {
    const char* declarations;
    bool is_read;
  } kRows[] = {
      {"<!ELEMENT a ANY>", true},
      {"<!ELEMENT a ANY><!ELEMENT b ANY>", true},
      {"<!ELEMENT b ANY><!ELEMENT c ANY>", false},
      {"<!ENTITY b ''>", true},
      {"<!ENTITY b ''><!ENTITY b ''>", true},
      {"<!ENTITY b ''><!ENTITY c ''>", false},
      {"<!NOTATION b SYSTEM 'x'>", true},
      {"<!NOTATION b SYSTEM 'x'><!NOTATION c SYSTEM 'x'>", false},
      {"<!ATTLIST a b CDATA ''>", true},
      {"<!ATTLIST a b CDATA '' c CDATA ''>", false},
      {"<!ATTLIST a b CDATA #IMPLIED>", true},
      {"<!ATTLIST a b CDATA #IMPLIED c CDATA #IMPLIED>", false},
  };
  for (const auto& row : kRows) {
    const std::string outcome =
        ParseOutcome(std::string("<!DOCTYPE a [") + row.declarations + "]><a/>");
    EXPECT_EQ(outcome == "text: ", row.is_read) << row.declarations << outcome;
    EXPECT_EQ(outcome.find("max_names") == std::string::npos, row.is_read) << outcome;
  }
}

// ` a0=''`, ` a1=''` and so on.
std::string Attributes(int count) {
  std::string text;
  for (int i = 0; i < count; ++i) text += " a" + std::to_string(i) + "=''";
  return text;
}

TEST(MCXParsePolicyNames, AMillionAttributesAreRefusedEarly) {
  const PolicyScope scope(MCXParsePolicy::Hardened());
  EXPECT_EQ(ParseOutcome("<a" + Attributes(999) + "/>"), "text: ");
  EXPECT_THAT(ParseOutcome("<a" + Attributes(1000) + "/>"), HasSubstr("max_names"));
  EXPECT_THAT(ParseOutcome("<a" + Attributes(1'000'000) + "/>"), HasSubstr("max_markup_bytes"));
}

// Each name has the same hash value in the XML library: `az` and `bT` have, and so has every
// combination of them.
std::string CollidingName(unsigned int number) {
  std::string name;
  for (int bit = 0; bit < 15; ++bit) name += (number >> bit) % 2 == 0 ? "az" : "bT";
  return name;
}

TEST(MCXParsePolicyNames, NamesThatShareAHashValueAreRefusedAsOthers) {
  std::string attributes;
  std::string elements;
  for (unsigned int i = 0; i < 25'000; ++i) {
    attributes += ' ' + CollidingName(i) + "=''";
    elements += '<' + CollidingName(i) + "/>";
  }
  EXPECT_THAT(HardenedOutcome("<a" + attributes + "/>"), StartsWith("104: "));
  EXPECT_THAT(HardenedOutcome("<a>" + elements + "</a>"),
              EndsWith("the document uses more different names than the parse policy allows "
                       "(max_names = 1000)"));
}

}  // namespace
