// Entities and document type declarations: what expands, what is refused, and what a document that
// is not trusted can reach.
#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/inotify.h>
#include <sys/socket.h>
#include <unistd.h>

#include <atomic>
#include <cstdlib>
#include <thread>
#include <vector>
#include <xercesc/util/PlatformUtils.hpp>

#include "xml/PolicyCheck.h"

namespace {

using MCXPrsUtil::MCXMLReadWrite;
using MCXPrsUtil::MCXParsePolicy;
using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;
using xml_test::HardenedOutcome;
using xml_test::InternalOutcome;
using xml_test::OutcomeOf;
using xml_test::ParseOutcome;
using xml_test::PolicyScope;
using xml_test::Repeat;
using xml_test::ScratchFolder;
using Doctype = MCXParsePolicy::Doctype;

// `<!ENTITY e0 'xxxxxxxxxx'>`, and `levels` more, each of which holds ten of the one before.
std::string Laughs(int levels) {
  std::string text = "<!ENTITY e0 'xxxxxxxxxx'>";
  for (int i = 1; i <= levels; ++i) {
    text += "<!ENTITY e" + std::to_string(i) + " '" +
            Repeat("&e" + std::to_string(i - 1) + ";", 10) + "'>";
  }
  return text;
}

std::string With(const std::string& declarations, const std::string& root) {
  return "<!DOCTYPE a [" + declarations + "]>" + root;
}

TEST(MCXParsePolicyEntities, ABillionLaughsExpandByDefaultAndAreRefused) {
  // Four levels only: ten thousand times ten characters, out of some 300 bytes.
  EXPECT_EQ(ParseOutcome(With(Laughs(4), "<a>&e4;</a>")).size(), 6u + 100'000u);
  for (const int levels : {4, 9, 50}) {
    const std::string last = "&e" + std::to_string(levels) + ";";
    for (const std::string& root : {"<a>" + last + "</a>", "<a b='" + last + "'/>"}) {
      const std::string outcome = InternalOutcome(With(Laughs(levels), root));
      EXPECT_THAT(outcome, StartsWith("104: line 1, column "));
      EXPECT_THAT(outcome, EndsWith(": entities are expanded more often than the parse policy "
                                    "allows (max_entity_expansions = 1000)"));
      EXPECT_THAT(HardenedOutcome(With(Laughs(levels), root)), HasSubstr("doctype = kRefused"));
    }
  }
}

// One large entity many times: few expansions, much text.
TEST(MCXParsePolicyEntities, QuadraticBlowUpIsBounded) {
  const auto blow_up = [](std::size_t size, std::size_t times, const char* attribute) {
    const std::string references = Repeat("&e;", times);
    return With("<!ENTITY e '" + std::string(size, 'x') + "'>",
                *attribute ? "<a " + std::string(attribute) + "='" + references + "'/>"
                           : "<a>" + references + "</a>");
  };
  EXPECT_EQ(ParseOutcome(blow_up(50'000, 200, "")).size(), 6u + 10'000'000u);
  for (const char* attribute : {"", "b"}) {
    EXPECT_THAT(InternalOutcome(blow_up(16'385, 1000, attribute)),
                EndsWith(": the entity \"e\" is longer than the parse policy allows "
                         "(max_entity_characters = 16384)"));
    EXPECT_THAT(InternalOutcome(blow_up(16'384, 1001, attribute)),
                HasSubstr("max_entity_expansions"));
    EXPECT_THAT(InternalOutcome(blow_up(16'384, 10, attribute)), StartsWith("text: "));
  }
}

// A declaration by itself does no harm: what is in it is counted when it is expanded.
TEST(MCXParsePolicyEntities, DeclaredButNotUsedIsRead) {
  EXPECT_EQ(InternalOutcome(With(Laughs(9), "<a>text</a>")), "text: text");
}

TEST(MCXParsePolicyEntities, ExpansionsUpToTheLimitAreRead) {
  MCXParsePolicy policy;
  policy.max_entity_expansions = 6;
  const PolicyScope scope(policy);
  const std::string declarations = "<!ENTITY x 'X'><!ENTITY two '&x;&x;'>";
  EXPECT_EQ(ParseOutcome(With(declarations, "<a>&two;&two;</a>")), "text: XXXX");
  EXPECT_THAT(ParseOutcome(With(declarations, "<a>&two;&two;&x;</a>")),
              HasSubstr("max_entity_expansions = 6"));
  EXPECT_EQ(ParseOutcome(With(declarations, "<a b='&two;'>&two;</a>")), "text: XX");
  EXPECT_THAT(ParseOutcome(With(declarations, "<a b='&two;&x;'>&two;</a>")),
              HasSubstr("max_entity_expansions = 6"));
}

TEST(MCXParsePolicyEntities, CharactersAndPredefinedEntitiesDoNotCount) {
  MCXParsePolicy policy;
  policy.max_entity_expansions = 0;
  const PolicyScope scope(policy);
  EXPECT_EQ(ParseOutcome("<a b='&lt;&#10;'>&lt;&gt;&amp;&quot;&apos;&#65;&#x42;</a>"),
            "text: <>&\"'AB");
  EXPECT_THAT(ParseOutcome(With("<!ENTITY x ''>", "<a>&x;</a>")),
              HasSubstr("max_entity_expansions = 0"));
}

TEST(MCXParsePolicyEntities, AnEntityIsMeasuredWithItsCharactersReplaced) {
  MCXParsePolicy policy;
  policy.max_entity_characters = 3;
  const PolicyScope scope(policy);
  EXPECT_EQ(ParseOutcome(With("<!ENTITY x '&#65;&#66;&#67;'>", "<a>&x;</a>")), "text: ABC");
  EXPECT_THAT(ParseOutcome(With("<!ENTITY x 'ABCD'>", "<a/>")), HasSubstr("max_entity_characters"));
}

TEST(MCXParsePolicyEntities, ADocumentThatRefersToAnUndeclaredOneIsMalformedAsBefore) {
  for (const char* xml : {"<a>&e;</a>", "<!DOCTYPE a []><a>&e;</a>", "<a b='&e;'/>"}) {
    EXPECT_THAT(ParseOutcome(xml), StartsWith("malformed: "));
    EXPECT_EQ(InternalOutcome(xml), ParseOutcome(xml));
  }
}

// The XML library leaves such a piece of memory behind if it gets into the content model.
TEST(MCXParsePolicyDoctype, HardenedIsRefusedBeforeADeclarationIsRead) {
  const std::string half = "<!DOCTYPE a [<!ELEMENT a (b" + Repeat("|b", 20'000) + "\xFF";
  EXPECT_THAT(HardenedOutcome(half), EndsWith("(doctype = kRefused)"));
}

struct DoctypeCase {
  const char* rule;
  const char* doctype;
  const char* refusal;  // within the message; null if the document is read
};

TEST(MCXParsePolicyDoctype, InternalTakesNothingFromOutside) {
  const DoctypeCase cases[] = {
      {"none", "", nullptr},
      {"a name", "<!DOCTYPE a>", nullptr},
      {"nothing", "<!DOCTYPE a []>", nullptr},
      {"elements", "<!DOCTYPE a [<!ELEMENT a (b|c)*>]>", nullptr},
      {"a notation", "<!DOCTYPE a [<!NOTATION n SYSTEM 'n'>]>", nullptr},
      {"an entity", "<!DOCTYPE a [<!ENTITY e 'x'>]>", nullptr},
      {"comments", "<!DOCTYPE a [<!-- c --><?p d?> ]>", nullptr},
      {"an unparsed entity",
       "<!DOCTYPE a [<!NOTATION n SYSTEM 'n'><!ENTITY e SYSTEM 'file:///f' NDATA n>]>", nullptr},
      {"an external DTD", "<!DOCTYPE a SYSTEM 'file:///f'>", "refers to an external DTD"},
      {"a public DTD", "<!DOCTYPE a PUBLIC 'p' 'http://127.0.0.1:9/f'>",
       "refers to an external DTD"},
      {"both", "<!DOCTYPE a SYSTEM 'f' [<!ELEMENT a ANY>]>", "refers to an external DTD"},
      {"an external entity", "<!DOCTYPE a [<!ENTITY e SYSTEM 'f'>]>",
       "declares the external entity \"e\""},
      {"a public entity", "<!DOCTYPE a [<!ENTITY e PUBLIC 'p' 'f'>]>",
       "declares the external entity \"e\""},
      {"a parameter entity", "<!DOCTYPE a [<!ENTITY % e 'x'>]>",
       "declares the parameter entity \"e\""},
      {"an external parameter entity", "<!DOCTYPE a [<!ENTITY % e SYSTEM 'f'> %e;]>",
       "declares the parameter entity \"e\""},
      {"attributes", "<!DOCTYPE a [<!ATTLIST a b CDATA 'x'>]>", "declares attributes of \"a\""},
      {"attributes without defaults", "<!DOCTYPE a [<!ATTLIST a b ID #IMPLIED>]>",
       "declares attributes of \"a\""},
  };
  MCXParsePolicy policy;
  policy.doctype = Doctype::kInternal;
  const PolicyScope scope(policy);
  for (const DoctypeCase& c : cases) {
    SCOPED_TRACE(c.rule);
    const std::string outcome = ParseOutcome(std::string(c.doctype) + "<a>x</a>");
    if (c.refusal == nullptr) {
      EXPECT_EQ(outcome, "text: x");
      continue;
    }
    EXPECT_THAT(outcome, StartsWith("104: line 1, column "));
    EXPECT_THAT(outcome, EndsWith(": the document type declaration " + std::string(c.refusal) +
                                  ", which the parse policy does not allow (doctype = kInternal)"));
  }
}

TEST(MCXParsePolicyDoctype, RefusedTakesNone) {
  MCXParsePolicy policy;
  policy.doctype = Doctype::kRefused;
  const PolicyScope scope(policy);
  for (const char* doctype : {"<!DOCTYPE a>", "<!DOCTYPE a []>", "<!DOCTYPE a SYSTEM 'f'>",
                              "<!DOCTYPE a [<!ENTITY e 'x'>]>"}) {
    EXPECT_THAT(ParseOutcome(std::string(doctype) + "<a/>"),
                EndsWith("the document has a document type declaration, which the parse policy "
                         "does not allow (doctype = kRefused)"));
  }
  EXPECT_EQ(ParseOutcome("<a>x</a>"), "text: x");
}

// With a limit, but without a word about declarations.
TEST(MCXParsePolicyDoctype, AllIsWhatTheDefaultDoes) {
  const xml_test::IgnoreLeaks of_external_declarations;  // which the XML library makes
  const ScratchFolder folder;
  xml_test::WriteFile(folder.File("part.txt"), "outside");
  xml_test::WriteFile(folder.File("f.dtd"), "<!ENTITY d 'declared'><!ATTLIST a b CDATA 'x'>");
  xml_test::WriteFile(folder.File("a.xml"),
                      "<!DOCTYPE a SYSTEM 'f.dtd' [<!ENTITY % p \"<!ENTITY q 'through'>\"> %p; "
                      "<!ENTITY out SYSTEM 'part.txt'>]><a>&out; &d; &q;</a>");
  MCXParsePolicy policy;
  policy.max_depth = 10;
  for (const MCXParsePolicy& one : {MCXParsePolicy(), policy}) {
    const PolicyScope scope(one);
    MCXMLReadWrite reader;
    EXPECT_EQ(OutcomeOf(reader, reader.ParseToDOM(folder.File("a.xml"))),
              "text: outside declared through");
    EXPECT_NE(reader.GetDocument()->getDocumentElement()->getAttributeNode(u"b"), nullptr);
  }
}

// Tells what the files of a folder were opened for while it lives.
class OpenWatch {
 public:
  explicit OpenWatch(const std::string& folder) : inotify_(inotify_init1(IN_NONBLOCK)) {
    EXPECT_GE(inotify_, 0);
    EXPECT_GE(inotify_add_watch(inotify_, folder.c_str(), IN_OPEN), 0);
  }
  ~OpenWatch() { close(inotify_); }
  OpenWatch(const OpenWatch&) = delete;
  OpenWatch& operator=(const OpenWatch&) = delete;

  // Whether a file was opened since the last call.
  bool SawOne() const {
    char events[4096];
    return read(inotify_, events, sizeof events) > 0;
  }

 private:
  int inotify_;
};

// Every way in which a document may ask for the file or the address at `place`.
std::vector<std::string> Requests(const std::string& place) {
  return {
      "<!DOCTYPE a [<!ENTITY e SYSTEM '" + place + "'>]><a>&e;</a>",
      "<!DOCTYPE a [<!ENTITY e PUBLIC 'p' '" + place + "'>]><a>&e;</a>",
      "<!DOCTYPE a [<!ENTITY e SYSTEM '" + place + "'><!ENTITY f '&e;'>]><a>&f;</a>",
      "<!DOCTYPE a [<!ENTITY % e SYSTEM '" + place + "'> %e;]><a/>",
      "<!DOCTYPE a SYSTEM '" + place + "'><a/>",
      "<!DOCTYPE a PUBLIC 'p' '" + place + "'><a/>",
      "<!DOCTYPE a SYSTEM '" + place + "' [<!ELEMENT a ANY>]><a/>",
  };
}

TEST(MCXParsePolicyReach, NoFileIsOpenedOrShown) {
  const xml_test::IgnoreLeaks of_external_declarations;  // which the XML library makes
  const ScratchFolder folder;
  const std::string secret = folder.File("secret");
  xml_test::WriteFile(secret, "<!-- x -->the secret");
  const OpenWatch watch(folder.File(""));
  for (const std::string& place : {secret, "file://" + secret}) {
    for (const std::string& xml : Requests(place)) {
      SCOPED_TRACE(xml);
      const std::string by_default = ParseOutcome(xml);
      EXPECT_TRUE(watch.SawOne()) << "what the test would see";
      if (xml.find("<a>") != std::string::npos) {
        EXPECT_EQ(by_default, "text: the secret");
      }
      EXPECT_THAT(HardenedOutcome(xml), HasSubstr("(doctype = kRefused)"));
      const std::string internal = InternalOutcome(xml);
      EXPECT_THAT(internal, HasSubstr("(doctype = kInternal)"));
      EXPECT_THAT(internal, Not(HasSubstr("secret"))) << "not even in the message";
      EXPECT_FALSE(watch.SawOne());
    }
  }
}

TEST(MCXParsePolicyReach, ADocumentThatIsAFileReachesNoOther) {
  const ScratchFolder folder;
  xml_test::WriteFile(folder.File("secret"), "the secret");
  const ScratchFolder other;
  xml_test::WriteFile(other.File("a.xml"), "<!DOCTYPE a [<!ENTITY e SYSTEM '" +
                                               folder.File("secret") + "'>]><a>&e;</a>");
  const OpenWatch watch(folder.File(""));
  for (const MCXParsePolicy& policy : {MCXParsePolicy::Hardened(), xml_test::InternalPolicy()}) {
    const PolicyScope scope(policy);
    MCXMLReadWrite reader;
    EXPECT_THAT(OutcomeOf(reader, reader.ParseToDOM(other.File("a.xml"))), StartsWith("104: "));
    EXPECT_FALSE(watch.SawOne());
  }
}

// Text that other tools would follow is text to this library, with a policy and without.
TEST(MCXParsePolicyReach, InclusionsSchemasAndStyleSheetsAreOnlyRead) {
  const ScratchFolder folder;
  const std::string file = folder.File("secret");
  xml_test::WriteFile(file, "<secret/>");
  const OpenWatch watch(folder.File(""));
  for (const std::string& xml :
       {"<a xmlns:xi='http://www.w3.org/2001/XInclude'>x<xi:include href='" + file + "'/></a>",
        "<a xmlns:xi='http://www.w3.org/2001/XInclude'>x<xi:include parse='text' href='" + file +
            "'><xi:fallback/></xi:include></a>",
        "<a xmlns:xsi='http://www.w3.org/2001/XMLSchema-instance' xsi:schemaLocation='urn:x " +
            file + "' xsi:noNamespaceSchemaLocation='" + file + "'>x</a>",
        "<?xml-stylesheet href='" + file + "'?><?xml-model href='" + file + "'?><a>x</a>"}) {
    EXPECT_EQ(ParseOutcome(xml), "text: x");
    EXPECT_EQ(HardenedOutcome(xml), "text: x");
    EXPECT_FALSE(watch.SawOne()) << xml;
  }
}

// A server on this machine that hangs up on whoever calls.
class HangUpServer {
 public:
  HangUpServer() : socket_(socket(AF_INET, SOCK_STREAM, 0)) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof address;
    EXPECT_EQ(bind(socket_, reinterpret_cast<sockaddr*>(&address), size), 0);
    EXPECT_EQ(listen(socket_, 8), 0);
    EXPECT_EQ(getsockname(socket_, reinterpret_cast<sockaddr*>(&address), &size), 0);
    port_ = ntohs(address.sin_port);
    thread_ = std::thread([this] {
      for (int client; (client = accept(socket_, nullptr, nullptr)) >= 0; close(client)) {
        ++n_calls_;  // before the caller can know that it was heard
      }
    });
  }
  ~HangUpServer() { Stop(); }
  HangUpServer(const HangUpServer&) = delete;
  HangUpServer& operator=(const HangUpServer&) = delete;

  std::string Url(const std::string& scheme) const {
    return scheme + "://127.0.0.1:" + std::to_string(port_) + "/x";
  }

  // How many called until now: connections are accepted in order, and this one is the last.
  int CallsAfterOneOfOurOwn() {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    address.sin_port = htons(static_cast<std::uint16_t>(port_));
    const int client = socket(AF_INET, SOCK_STREAM, 0);
    EXPECT_EQ(connect(client, reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
    char byte;
    EXPECT_LE(read(client, &byte, 1), 0);  // until it hangs up
    close(client);
    return n_calls_;
  }

 private:
  void Stop() {
    shutdown(socket_, SHUT_RDWR);
    thread_.join();
    close(socket_);
  }

  int socket_;
  int port_ = 0;
  std::atomic<int> n_calls_{0};
  std::thread thread_;
};

TEST(MCXParsePolicyReach, NobodyIsCalledOverTheNetwork) {
  setenv("no_proxy", "*", 1);
  HangUpServer server;
  for (const char* scheme : {"http", "ftp", "https"}) {
    for (const std::string& xml : Requests(server.Url(scheme))) {
      EXPECT_THAT(HardenedOutcome(xml), HasSubstr("(doctype = kRefused)")) << xml;
      EXPECT_THAT(InternalOutcome(xml), HasSubstr("(doctype = kInternal)")) << xml;
    }
  }
  EXPECT_EQ(server.CallsAfterOneOfOurOwn(), 1) << "only that one";
}

TEST(MCXParsePolicyReach, ByDefaultTheNetworkIsUsed) {
  setenv("no_proxy", "*", 1);
  const xml_test::IgnoreLeaks of_the_network_library;
  const MCXMLReadWrite platform;
  HangUpServer server;
  EXPECT_THAT(ParseOutcome(Requests(server.Url("http")).front()), StartsWith("malformed: "));
  const bool can_call = xercesc::XMLPlatformUtils::fgNetAccessor != nullptr;
  EXPECT_EQ(server.CallsAfterOneOfOurOwn() > 1, can_call);
}

}  // namespace
