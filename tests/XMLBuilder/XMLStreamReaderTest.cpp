#include "XMLBuilder/XMLStreamReader.h"

#include "Support/ExpectThrow.h"
#include "Support/PrintCase.h"
#include "Support/TempDir.h"
#include "XMLBuilder/ImportTestSupport.h"

#include "Vellum/Exceptions/InvalidFormat.h"
#include "Vellum/Exceptions/ParseError.h"
#include "Vellum/Utils/StringConversion.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

using namespace Vellum;
using XMLBuilder::XMLAttribute;
using XMLBuilder::XMLName;
using XMLBuilder::XMLNode;
using XMLBuilder::XMLStreamReader;

struct TextCase {
    const char* name;
    const char* inner; // the content of <v>
    const char16_t* text;
};
VELLUM_PRINT_CASE_NAME(TextCase)

const TextCase textCases[] = {
    {"Plain", "abc", u"abc"},
    {"BlanksAroundTextKept", " \n abc\t", u" \n abc\t"},
    {"BlanksOnlyDropped", " \n\t\r ", u""},
    {"CommentJoinsTheRuns", "a<!-- c -->b", u"ab"},
    {"BlankRunAfterACommentDropped", "abc<!-- c -->\n  ", u"abc"},
    {"InstructionJoinsTheRuns", "a<?pi x?>b", u"ab"},
    {"BlankCDATAKept", "<![CDATA[ ]]>", u" "},
    {"CDATAKeepsMarkup", "<![CDATA[<a>&amp;]]>", u"<a>&amp;"},
    {"RunsAroundAChildJoined", "x<b>inner</b>y", u"xy"},
    {"References", "&amp;&lt;&gt;&quot;&apos;&#x41;&#66;", u"&<>\"'AB"},
    {"BeyondTheBasicPlane", "\xF0\x9D\x84\x9E\xC3\xA9\xE4\xB8\xAD", u"\U0001D11E\u00E9\u4E2D"},
};

class Text : public ::testing::TestWithParam<TextCase> {};

TEST_P(Text, IsTheElementsOwnTextWithoutBlankRuns) {
    const TextCase& c = GetParam();
    const VellumTest::ParsedXML xml(std::string("<r><v>") + c.inner + "</v></r>");
    EXPECT_EQ(xml.first().text(), c.text);
    EXPECT_EQ(xml.first().isEmpty(), WString(c.text).empty() && xml.first().childCount() == 0);
}

INSTANTIATE_TEST_SUITE_P(Cases, Text, ::testing::ValuesIn(textCases),
                         [](const auto& p) { return std::string(p.param.name); });

TEST(XMLStreamReader, NodesKeepNamesAttributesChildrenAndPlaces) {
    const VellumTest::ParsedXML xml("<r xmlns:a=\"urn:a\" xmlns=\"urn:d\">\n"
                                    "  <a:x b=\"2\" a:c=\"3\" a=\"1\">one<y/><a:z>two</a:z></a:x>\n"
                                    "</r>");
    const XMLNode& x = xml.first();
    EXPECT_EQ(x.qualifiedName(), u"a:x");
    EXPECT_EQ(x.localName(), u"x");
    EXPECT_EQ(x.namespaceURI(), u"urn:a");
    EXPECT_EQ(x.name().prefix(), u"a");
    EXPECT_EQ(x.line(), 2U);
    EXPECT_EQ(x.column(), 3U);
    EXPECT_EQ(x.parent(), &xml.root());
    ASSERT_EQ(x.attributes().size(), 3U) << "namespace declarations are not attributes";
    EXPECT_EQ(x.attributes()[0].name->qualifiedName, u"b") << "in document order";
    EXPECT_EQ(x.attributes()[0].name->namespaceURI, u"") << "no default namespace";
    EXPECT_EQ(x.attribute(u"a:c")->value, u"3");
    EXPECT_EQ(x.attribute(u"urn:a", u"c")->value, u"3");
    EXPECT_EQ(x.attribute(u"", u"a")->value, u"1");
    EXPECT_EQ(x.attribute(u"c"), nullptr);
    ASSERT_EQ(x.childCount(), 2U);
    EXPECT_EQ(x.firstChild()->namespaceURI(), u"urn:d") << "the default namespace";
    EXPECT_EQ(x.firstChild()->nextSibling()->text(), u"two");
    EXPECT_EQ(x.textContent(), u"onetwo");
    EXPECT_EQ(xml.root().namespaceDeclarations().size(), 2U);
}

TEST(XMLStreamReader, PrefixesResolveThroughTheDeclarationsInScope) {
    std::string many;
    for (int i = 0; i < 100; ++i) {
        many += " xmlns:p" + std::to_string(i) + "=\"urn:" + std::to_string(i) + "\"";
    }
    const VellumTest::ParsedXML xml(
        "<r xmlns:a=\"urn:a\"" + many +
        "><c xmlns:a=\"urn:b\" xmlns=\"urn:d\"><d xmlns=\"\"/></c></r>");
    const XMLNode& d = *xml.first().firstChild();
    EXPECT_EQ(*d.lookupNamespace(u"a"), u"urn:b") << "the nearest declaration";
    EXPECT_EQ(*d.lookupNamespace(u"p57"), u"urn:57");
    EXPECT_EQ(*d.lookupNamespace(u"xml"), u"http://www.w3.org/XML/1998/namespace");
    EXPECT_EQ(d.lookupNamespace(u""), nullptr) << "the default namespace is undeclared";
    EXPECT_EQ(*xml.first().lookupNamespace(u""), u"urn:d");
    EXPECT_EQ(d.lookupNamespace(u"q"), nullptr);
    EXPECT_EQ(*xml.root().declaredNamespace(u"p99"), u"urn:99");
    EXPECT_EQ(xml.first().declaredNamespace(u"p99"), nullptr) << "declared on the root only";
}

/// Records what the reader hands over: the root is a container, and so is every top-level
/// element named "box"; elements named "skip" are skipped.
class Recorder : public XMLStreamReader::Handler {
public:
    XMLStreamReader::Disposition disposition(const XMLNode* container,
                                             const XMLName& name) override {
        if (container == nullptr || (container->parent() == nullptr && name.localName == u"box")) {
            return XMLStreamReader::Disposition::Container;
        }
        return name.localName == u"skip" ? XMLStreamReader::Disposition::Skip
                                         : XMLStreamReader::Disposition::Unit;
    }
    void unit(const XMLNode& element) override {
        std::string line = Utils::wstringToString(element.qualifiedName()) + " in " +
                           Utils::wstringToString(element.parent()->qualifiedName()) + ":";
        for (const XMLNode& child : element.children()) {
            line += " " + Utils::wstringToString(child.qualifiedName());
        }
        units.push_back(line);
        if (element.localName() == u"bad") {
            throw Exceptions::InvalidFormat(std::string("bad unit"), "test", 1);
        }
    }
    std::vector<std::string> units;
};

TEST(XMLStreamReader, HandsOverUnitsAsTheyEnd) {
    Recorder recorder;
    XMLStreamReader reader(recorder);
    const std::string xml =
        "<r><a><a1/><a2/></a><skip><a/></skip><box><b/><skip/><c><c1/></c></box>"
        "<d/></r>";
    reader.readBuffer(reinterpret_cast<const std::uint8_t*>(xml.data()), xml.size());
    EXPECT_EQ(recorder.units,
              (std::vector<std::string>{"a in r: a1 a2", "b in box:", "c in box: c1", "d in r:"}));
    ASSERT_NE(reader.lastUnit(), nullptr);
    EXPECT_EQ(reader.lastUnit()->qualifiedName(), u"d");
}

/// A document of `units` top-level elements <u0/>, <u1/> ... (padded, so that a few thousand
/// of them make a document read on a second thread), `tail` before the root's end tag.
std::string manyUnits(std::size_t units, const std::string& tail = "") {
    std::string xml = "<r>";
    const std::string padding(2000, ' ');
    for (std::size_t i = 0; i < units; ++i) {
        xml += "<u" + std::to_string(i) + padding + "/>";
    }
    return xml + tail + "</r>";
}

std::vector<std::string> expectedUnits(std::size_t units) {
    std::vector<std::string> names;
    for (std::size_t i = 0; i < units; ++i) {
        names.push_back("u" + std::to_string(i) + " in r:");
    }
    return names;
}

// A document large enough to be read on a second thread hands its units over in order, also
// those before a fault that ends the reading.
TEST(XMLStreamReader, LargeDocumentsHandUnitsOverInOrder) {
    const std::size_t units = 3000;
    for (const bool fault : {false, true}) {
        const std::string xml = manyUnits(units, fault ? "<open>" : "");
        ASSERT_GE(xml.size(), XMLStreamReader::pipelineThreshold);
        Recorder recorder;
        XMLStreamReader reader(recorder);
        const auto read = [&] {
            reader.readBuffer(reinterpret_cast<const std::uint8_t*>(xml.data()), xml.size());
        };
        if (fault) {
            EXPECT_THROW_MSG_HAS(read(), ParseError,
                                 "mismatched tag: the end tag of 'open' was expected");
        } else {
            read();
            EXPECT_EQ(reader.lastUnit()->qualifiedName(), u"u2999");
        }
        EXPECT_EQ(recorder.units, expectedUnits(units)) << "fault " << fault;
    }
}

struct FailureCase {
    const char* name;
    std::size_t units;
};
VELLUM_PRINT_CASE_NAME(FailureCase)

class HandlerFailure : public ::testing::TestWithParam<FailureCase> {};

TEST_P(HandlerFailure, PassesUnchangedAndStopsTheReading) {
    const std::size_t before = GetParam().units;
    const std::string xml = manyUnits(before, "<bad/><c/>") + manyUnits(before);
    Recorder recorder;
    XMLStreamReader reader(recorder);
    EXPECT_THROW(reader.readBuffer(reinterpret_cast<const std::uint8_t*>(xml.data()), xml.size()),
                 Exceptions::InvalidFormat);
    ASSERT_EQ(recorder.units.size(), before + 1) << "nothing is handed over after the failure";
    EXPECT_EQ(recorder.units.back(), "bad in r:");
}

INSTANTIATE_TEST_SUITE_P(Cases, HandlerFailure,
                         ::testing::Values(FailureCase{"SmallDocument", 1},
                                           FailureCase{"LargeDocument", 3000}),
                         [](const auto& p) { return std::string(p.param.name); });

/// Makes every top-level element a unit asking about its children: "p" children are asking
/// parts, "n" children of a "p" nested units (asking too), anything else a part. Records
/// each unit as a tree "name#id[children]text".
class NestingRecorder : public XMLStreamReader::Handler {
public:
    XMLStreamReader::Disposition disposition(const XMLNode* container,
                                             const XMLName& name) override {
        using Disposition = XMLStreamReader::Disposition;
        if (container == nullptr) {
            return Disposition::Container;
        }
        if (container->parent() == nullptr) {
            return Disposition::AskingUnit;
        }
        if (name.localName == u"p") {
            return Disposition::AskingPart;
        }
        return name.localName == u"n" && container->localName() == u"p" ? Disposition::AskingUnit
                                                                        : Disposition::Part;
    }
    void unit(const XMLNode& element) override { units.push_back(tree(element)); }

    static std::string tree(const XMLNode& node) {
        std::string out = Utils::wstringToString(node.localName());
        if (const XMLAttribute* id = node.attribute(u"id")) {
            out += "#" + Utils::wstringToString(WString(id->value));
        }
        out += "[";
        for (const XMLNode& child : node.children()) {
            out += tree(child);
        }
        return out + "]" + Utils::wstringToString(WString(node.text()));
    }
    std::vector<std::string> units;
};

TEST(XMLStreamReader, NestedUnitsAreHandedOverFirstAndLeftAsTheirAttributes) {
    // Padded so that the large document's holders stay open across many batches.
    for (const std::size_t count : {1, 3000}) {
        SCOPED_TRACE(count);
        const std::string padding(count == 1 ? 0 : 1500, ' ');
        std::string xml = "<r><s id=\"s\"><a>x</a><p>";
        std::vector<std::string> expected;
        std::string holder = "s#s[a[]xp[";
        for (std::size_t i = 0; i < count; ++i) {
            const std::string id = std::to_string(i);
            xml += "<n id=\"" + id + "\"" + padding + "><q>t</q><p><n id=\"i" + id +
                   "\"><q/></n></p></n>";
            expected.push_back("n#i" + id + "[q[]]");
            expected.push_back("n#" + id + "[q[]tp[n#i" + id + "[]]]");
            holder += "n#" + id + "[]";
        }
        xml += "</p><b>after</b></s><z/></r>";
        expected.push_back(holder + "]b[]after]");
        expected.push_back("z[]");
        NestingRecorder recorder;
        XMLStreamReader reader(recorder);
        reader.readBuffer(reinterpret_cast<const std::uint8_t*>(xml.data()), xml.size());
        EXPECT_EQ(recorder.units, expected);
    }
}

std::string nested(std::size_t levels) {
    std::string xml;
    for (std::size_t i = 0; i < levels; ++i) {
        xml += "<e>";
    }
    for (std::size_t i = 0; i < levels; ++i) {
        xml += "</e>";
    }
    return xml;
}

struct ErrorCase {
    const char* name;
    std::string xml;
    std::string message; // the whole message
};
VELLUM_PRINT_CASE_NAME(ErrorCase)

const ErrorCase errorCases[] = {
    {"Empty", "", "XML buffer, line 1, column 1: no element found"},
    {"Mismatched", "<r>\n <s></r>",
     "XML buffer, line 2, column 7: mismatched tag: the end tag of 's' was expected"},
    {"Unclosed", "<r><s>",
     "XML buffer, line 1, column 7: no element found: the document ends before the end tag of "
     "'s'"},
    {"UnboundElementPrefix", "<r><zz:b/></r>",
     "XML buffer, line 1, column 4: unbound prefix in the start tag of 'zz:b'"},
    {"UnboundAttributePrefix", "<r><b zz:a=\"1\"/></r>",
     "XML buffer, line 1, column 4: unbound prefix in the start tag of 'b'"},
    {"DuplicateAttribute", "<r><b a=\"1\" a=\"2\"/></r>",
     "XML buffer, line 1, column 13: duplicate attribute in the start tag of 'b'"},
    {"NotXML", "\x06\x0E\x2B\x34", "XML buffer, line 1, column 1: not well-formed (invalid token)"},
    {"EntityDeclared", "<!DOCTYPE r [\n<!ENTITY a \"x\">]><r>&a;</r>",
     "XML buffer, line 2, column 12: the DOCTYPE declares entities, which are refused"},
    {"ParameterEntityDeclared", "<!DOCTYPE r [<!ENTITY % a \"x\">]><r/>",
     "XML buffer, line 1, column 27: the DOCTYPE declares entities, which are refused"},
    {"ExternalEntityDeclared", "<!DOCTYPE r [<!ENTITY x SYSTEM \"file:///etc/passwd\">]><r>&x;</r>",
     "XML buffer, line 1, column 52: the DOCTYPE declares entities, which are refused"},
    {"UndeclaredEntityBesideAnExternalSubset", "<!DOCTYPE r SYSTEM \"r.dtd\"><r>&x;</r>",
     "XML buffer, line 1, column 31: the entity '&x;' is not declared"},
    {"UndeclaredEntity", "<r>&x;</r>", "XML buffer, line 1, column 4: undefined entity"},
    {"UnsupportedEncoding", "<?xml version=\"1.0\" encoding=\"windows-1252\"?><r/>",
     "XML buffer, line 1, column 31: the encoding 'windows-1252' is not supported (UTF-8, "
     "UTF-16, ISO-8859-1 and US-ASCII are)"},
    {"NestedTooDeep", nested(XMLStreamReader::maximumNestingDepth + 1),
     "XML buffer, line 1, column 30001: elements nest more than 10000 levels deep"},
};

class Errors : public ::testing::TestWithParam<ErrorCase> {};

TEST_P(Errors, AreParseErrorsNamingThePlace) {
    const ErrorCase& c = GetParam();
    EXPECT_THROW_MSG(VellumTest::ParsedXML{c.xml}, ParseError, c.message);
}

INSTANTIATE_TEST_SUITE_P(Cases, Errors, ::testing::ValuesIn(errorCases),
                         [](const auto& p) { return std::string(p.param.name); });

TEST(XMLStreamReader, EncodingsAreReadFromTheBytes) {
    const std::string latin1 = "<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?><r><v>\xE9</v></r>";
    EXPECT_EQ(VellumTest::ParsedXML(latin1).first().text(), u"\u00E9");
    const std::u16string text = u"<r><v>\u4E2D\U0001D11E</v></r>";
    for (const bool big : {false, true}) {
        std::string bytes = big ? "\xFE\xFF" : "\xFF\xFE";
        for (const char16_t unit : text) {
            const char high = static_cast<char>(unit >> 8U);
            const char low = static_cast<char>(unit & 0xFFU);
            bytes += big ? std::string{high, low} : std::string{low, high};
        }
        EXPECT_EQ(VellumTest::ParsedXML(bytes).first().text(), u"\u4E2D\U0001D11E") << big;
    }
}

TEST(XMLStreamReader, LongTokensAndDeepNestingWithinTheLimitAreRead) {
    EXPECT_EQ(
        VellumTest::ParsedXML(nested(XMLStreamReader::maximumNestingDepth)).first().childCount(),
        1U);
    // Longer than the pieces the reader hands the parser, in an attribute, a text and a name.
    const std::string value(3'000'000, 'v');
    const std::string name = "n" + std::string(700'000, 'x');
    const VellumTest::ParsedXML xml("<r><" + name + " a=\"" + value + "\">" + value + "</" + name +
                                    "></r>");
    EXPECT_EQ(xml.first().localName().size(), name.size());
    EXPECT_EQ(xml.first().attribute(u"a")->value.size(), value.size());
    EXPECT_EQ(xml.first().text().size(), value.size());
}

TEST(XMLStreamReader, FilesAreReadAndTheirFaultsNamed) {
    const VellumTest::TempDir directory;
    const std::string xml = "<r>\n<v>file</v>\n<v></r>";
    const std::string path =
        directory.write("doc.xml", std::vector<std::uint8_t>(xml.begin(), xml.end()));
    const std::string missing = directory.file("missing.xml");
    const std::string folder = directory.path().string();
    const auto wide = [](const std::string& s) {
        return Utils::stringToWstring(s.c_str());
    };
    Recorder recorder;
    XMLStreamReader reader(recorder);
    EXPECT_THROW_MSG(reader.readFile(wide(path)), ParseError,
                     path + ", line 3, column 6: mismatched tag: the end tag of 'v' was expected");
    EXPECT_EQ(recorder.units.size(), 1U);
    EXPECT_THROW_MSG(reader.readFile(wide(missing)), ParseError,
                     missing + ": cannot open the file: No such file or directory");
    EXPECT_THROW_MSG(reader.readFile(wide(folder)), ParseError,
                     folder + ": cannot read the file: Is a directory");
}

} // namespace
