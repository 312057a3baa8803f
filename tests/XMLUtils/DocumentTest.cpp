#include "Vellum/XMLUtils/Document.h"

#include "Support/ExpectThrow.h"
#include "Support/PrintCase.h"
#include "Support/TempDir.h"
#include "XMLTestSupport.h"

#include "Vellum/Exceptions/InvalidFormat.h"
#include "Vellum/Exceptions/ParseError.h"
#include "Vellum/XMLUtils/Initializer.h"
#include "Vellum/XMLUtils/UnicodeString.h"
#include "Vellum/XMLUtils/Utils.h"

#include <gtest/gtest.h>
#include <xercesc/dom/DOMDocument.hpp>
#include <xercesc/dom/DOMElement.hpp>
#include <xercesc/dom/DOMNodeList.hpp>
#include <xercesc/dom/DOMText.hpp>
#include <xercesc/sax/SAXParseException.hpp>

#include <chrono>
#include <cstdint>
#include <ostream>
#include <string>
#include <vector>

namespace {

using Vellum::WString;
using namespace Vellum::XMLUtils;
using VellumTest::compactXml;
using VellumTest::parseXml;
using VellumTest::translatedError;
using VellumTest::utf8;

const char* const sampleXml = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                              "<v:Preface xmlns:v=\"urn:vellum:test\" v:id=\"p&amp;1\">\n"
                              "  <v:Title>Clapper \xF0\x9F\x8E\xAC &lt;one&gt;</v:Title>\n"
                              "  <Plain/>\n"
                              "</v:Preface>\n";

std::vector<std::uint8_t> bytesOf(const std::string& text) {
    return {text.begin(), text.end()};
}

TEST(LoadDocument, FromBufferKeepsNamespacesAndText) {
    const DocumentPtr document = parseXml(sampleXml);
    const xercesc::DOMElement* root = document->getDocumentElement();
    ASSERT_NE(root, nullptr);
    EXPECT_EQ(WString(root->getNamespaceURI()), u"urn:vellum:test");
    EXPECT_EQ(WString(root->getLocalName()), u"Preface");
    EXPECT_EQ(WString(root->getAttributeNS(u"urn:vellum:test", u"id")), u"p&1");
    const xercesc::DOMElement* title = root->getFirstElementChild();
    ASSERT_NE(title, nullptr);
    EXPECT_EQ(WString(title->getTextContent()), u"Clapper \U0001F3AC <one>");
    EXPECT_EQ(title->getNextElementSibling()->getNamespaceURI(), nullptr);
}

TEST(LoadDocument, FromFileMatchesFromBufferAndAMissingFileIsNamed) {
    const VellumTest::TempDir dir;
    const std::string path = dir.write("sample.xml", bytesOf(sampleXml));
    const ParserPtr parser = Initializer::instance().createParser();
    const DocumentPtr fromFile = loadDocumentFromFile(UnicodeString(path.c_str()).utf16(), *parser);
    const DocumentPtr fromBuffer = parseXml(sampleXml);
    EXPECT_TRUE(fromFile->getDocumentElement()->isEqualNode(fromBuffer->getDocumentElement()));
    const std::string absent = dir.file("absent.xml");
    const Vellum::Exceptions::ParseError error = translatedError(
        [&] { loadDocumentFromFile(UnicodeString(absent.c_str()).utf16(), *parser); });
    EXPECT_NE(utf8(error.message()).find("absent.xml"), std::string::npos) << utf8(error.message());
}

struct MalformedCase {
    const char* name;
    std::string text;
    const char* line = "1";
};

VELLUM_PRINT_CASE_NAME(MalformedCase)

class MalformedBuffer : public ::testing::TestWithParam<MalformedCase> {};

TEST_P(MalformedBuffer, IsRefusedWithTheClassNameAndPlace) {
    const Vellum::Exceptions::ParseError error = translatedError([] { parseXml(GetParam().text); });
    const std::string message = utf8(error.message());
    const std::string place = std::string("XML buffer, line ") + GetParam().line + ", column ";
    EXPECT_EQ(message.rfind("xercesc_3_2::SAXException: " + place, 0), 0U) << message;
    EXPECT_EQ(error.sourceName(), "Vellum/XMLUtils/Utils");
}

INSTANTIATE_TEST_SUITE_P(
    Texts, MalformedBuffer,
    ::testing::Values(MalformedCase{"Empty", ""}, MalformedCase{"UnclosedTag", "<a><b></a>"},
                      MalformedCase{"UnclosedTagOnLineThree", "<a>\n  <b>\n</a>", "3"},
                      MalformedCase{"TruncatedDocument", "<a><b>text</b>"},
                      MalformedCase{"TwoRoots", "<a/><b/>"},
                      MalformedCase{"UndefinedEntity", "<a>&nope;</a>"},
                      MalformedCase{"UnboundPrefix", "<x:a/>"},
                      MalformedCase{"BadUtf8", std::string("<a>\xC3\x28</a>")},
                      MalformedCase{"Binary", std::string("\0\1\2\3garbage", 11)}),
    [](const auto& p) { return p.param.name; });

TEST(LoadDocument, NullBufferWithBytesOrNullNodeIsInvalidFormat) {
    const ParserPtr parser = Initializer::instance().createParser();
    EXPECT_THROW_MSG_HAS(loadDocumentFromBuffer(nullptr, 4, *parser), InvalidFormat, "null buffer");
    std::string bytes;
    EXPECT_THROW(domToBytes(nullptr, bytes, EncodingType::UTF8), Vellum::Exceptions::InvalidFormat);
}

std::string nested(int depth) {
    std::string text;
    text.reserve(static_cast<std::size_t>(depth) * 8);
    for (int i = 0; i < depth; ++i) {
        text += "<a> ";
    }
    for (int i = 0; i < depth; ++i) {
        text += "</a>";
    }
    return text;
}

TEST(LoadDocument, NestingLimitIsTenThousandLevels) {
    const DocumentPtr document = parseXml(nested(10000));
    cleanEmptyTextNodes(document.get());
    int levels = 0;
    for (const xercesc::DOMNode* n = document->getDocumentElement(); n != nullptr;
         n = n->getFirstChild()) {
        ASSERT_EQ(n->getNodeType(), xercesc::DOMNode::ELEMENT_NODE);
        ++levels;
    }
    EXPECT_EQ(levels, 10000);
    EXPECT_THROW(parseXml(nested(10001)), Vellum::Exceptions::ParseError);
    // Far deeper documents fail as cleanly, and quickly.
    const auto start = std::chrono::steady_clock::now();
    const Vellum::Exceptions::ParseError error = translatedError([] { parseXml(nested(100000)); });
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(5));
    EXPECT_EQ(utf8(error.message()),
              "xercesc_3_2::SAXException: XML buffer: elements nest more than 10000 levels deep");
}

TEST(LoadDocument, ParserWorksAgainAfterAFailure) {
    const ParserPtr parser = Initializer::instance().createParser();
    const auto load = [&](const std::string& text) {
        return loadDocumentFromBuffer(reinterpret_cast<const std::uint8_t*>(text.data()),
                                      text.size(), *parser);
    };
    for (const std::string& bad : {std::string("<a>"), nested(10001)}) {
        EXPECT_THROW(load(bad), xercesc::SAXParseException);
        const DocumentPtr document = load("<a><b>fine</b></a>");
        EXPECT_EQ(compactXml(document.get()), "<a><b>fine</b></a>");
    }
}

TEST(CleanEmptyTextNodes, RemovesOnlyWhitespaceTextOfTheGivenSubtree) {
    const DocumentPtr document = parseXml("<r>\n  <a> x </a>\t<b>\r\n</b><c><![CDATA[  ]]></c>"
                                          "<!-- note --> <d attr=\"  \"/>\n</r>");
    cleanEmptyTextNodes(document.get());
    EXPECT_EQ(compactXml(document.get()),
              "<r><a> x </a><b/><c><![CDATA[  ]]></c><!-- note --><d attr=\"  \"/></r>");
    const DocumentPtr partly = parseXml("<r> <a> <b/> </a> <c> </c> </r>");
    cleanEmptyTextNodes(partly->getDocumentElement()->getFirstElementChild());
    EXPECT_EQ(compactXml(partly.get()), "<r> <a><b/></a> <c> </c> </r>");
    cleanEmptyTextNodes(nullptr);
}

TEST(CleanEmptyTextNodes, HandlesDeepDocumentsBuiltInMemory) {
    constexpr int depth = 20000;
    xercesc::DOMImplementation& dom = Initializer::instance().implementation();
    const DocumentPtr document(dom.createDocument(nullptr, u"level", nullptr));
    xercesc::DOMNode* parent = document->getDocumentElement();
    for (int i = 1; i < depth; ++i) {
        parent->appendChild(document->createTextNode(u" \n"));
        xercesc::DOMNode* child = parent->appendChild(document->createElement(u"level"));
        parent->appendChild(document->createTextNode(u"\t"));
        parent = child;
    }
    parent->appendChild(document->createTextNode(u"leaf"));
    cleanEmptyTextNodes(document.get());

    int levels = 0;
    const xercesc::DOMNode* n = document->getDocumentElement();
    for (; n->getNodeType() == xercesc::DOMNode::ELEMENT_NODE; n = n->getFirstChild()) {
        ASSERT_EQ(n->getChildNodes()->getLength(), 1U) << "at level " << levels;
        ++levels;
    }
    EXPECT_EQ(levels, depth);
    EXPECT_EQ(WString(n->getNodeValue()), u"leaf");
}

// Every encoding and layout: the bytes start right, are indented or on one line, and parse
// back to the same document.
TEST(Serialize, BytesStartRightAndParseBackToTheSameDocument) {
    const DocumentPtr original = parseXml(sampleXml);
    cleanEmptyTextNodes(original.get());
    for (const EncodingType encoding : {EncodingType::UTF8, EncodingType::UTF16}) {
        const bool utf8 = encoding == EncodingType::UTF8;
        const std::string prefix = utf8 ? "<?xml" : std::string("\xFF\xFE<\0?\0x\0m\0l\0", 12);
        const std::string newline = utf8 ? "\n" : std::string("\n\0", 2);
        const std::string indent = utf8 ? "\n  <" : std::string("\n\0 \0 \0<\0", 8);
        for (const bool pretty : {true, false}) {
            SCOPED_TRACE(std::string(utf8 ? "UTF-8" : "UTF-16") + (pretty ? " pretty" : ""));
            std::string bytes;
            SerializeOptions options;
            options.prettyPrint = pretty;
            domToBytes(original.get(), bytes, encoding, options);
            EXPECT_EQ(bytes.substr(0, prefix.size()), prefix);
            EXPECT_EQ(bytes.find(indent) != std::string::npos, pretty);
            EXPECT_EQ(bytes.find(newline) != std::string::npos, pretty);
            const DocumentPtr again = parseXml(bytes);
            cleanEmptyTextNodes(again.get());
            EXPECT_TRUE(again->getDocumentElement()->isEqualNode(original->getDocumentElement()))
                << compactXml(again.get());
        }
    }
}

TEST(Serialize, BufferIsTheSameTextInBothEncodings) {
    const DocumentPtr document = parseXml(sampleXml);
    WString fromUtf8;
    WString fromUtf16;
    domToBuffer(document.get(), fromUtf8, EncodingType::UTF8);
    domToBuffer(document.get(), fromUtf16, EncodingType::UTF16);
    EXPECT_EQ(fromUtf8.rfind(u"<?xml version=\"1.0\" encoding=\"UTF-8\"", 0), 0U);
    EXPECT_EQ(fromUtf16.rfind(u"<?xml version=\"1.0\" encoding=\"UTF-16\"", 0), 0U);
    EXPECT_NE(fromUtf16.find(u"Clapper \U0001F3AC &lt;one&gt;"), WString::npos);
    fromUtf16.replace(fromUtf16.find(u"UTF-16"), 6, u"UTF-8");
    EXPECT_EQ(fromUtf16, fromUtf8);
}

TEST(Serialize, DeclarationCanBeLeftOut) {
    const DocumentPtr document = parseXml("<a>1</a>");
    SerializeOptions options;
    options.xmlDeclaration = false;
    options.prettyPrint = false;
    WString text;
    domToBuffer(document.get(), text, EncodingType::UTF16, options);
    EXPECT_EQ(text, u"<a>1</a>");
    std::string bytes;
    domToBytes(document->getDocumentElement(), bytes, EncodingType::UTF8, options);
    EXPECT_EQ(bytes, "<a>1</a>");
}

TEST(Utf16ToWstring, CopiesTextAndTreatsNullAsEmpty) {
    WString out = u"old";
    utf16ToWstring(u"n\u00E9w", out);
    EXPECT_EQ(out, u"n\u00E9w");
    utf16ToWstring(nullptr, out);
    EXPECT_TRUE(out.empty());
}

} // namespace
