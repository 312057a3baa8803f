#include "Vellum/XMLUtils/Initializer.h"

#include "Support/PrintCase.h"
#include "XMLTestSupport.h"

#include "Vellum/Exceptions/ParseError.h"
#include "Vellum/XMLUtils/Document.h"

#include <gtest/gtest.h>
#include <xercesc/dom/DOMConfiguration.hpp>
#include <xercesc/dom/DOMElement.hpp>
#include <xercesc/util/XMLUni.hpp>

#include <atomic>
#include <chrono>
#include <fstream>
#include <iterator>
#include <ostream>
#include <string>
#include <thread>
#include <vector>

namespace {

using Vellum::WString;
using namespace Vellum::XMLUtils;
using VellumTest::parseXml;
using VellumTest::translatedError;
using VellumTest::utf8;
using xercesc::XMLUni;

bool flag(const xercesc::DOMConfiguration& config, const XMLCh* name) {
    return config.getParameter(name) != nullptr;
}

TEST(Initializer, InstanceIsOneObject) {
    EXPECT_EQ(&Initializer::instance(), &Initializer::instance());
}

// What the tests of behaviour below cannot show: the parser neither validates nor loads
// schemas. (Namespaces, refused entities, the unread external DTD, the error handler and the
// adopted documents are each shown by a test of what the parser does.)
TEST(Initializer, ParserNeitherValidatesNorLoadsSchemas) {
    const ParserPtr parser = Initializer::instance().createParser();
    ASSERT_TRUE(parser);
    const xercesc::DOMConfiguration& config = *parser->getDomConfig();
    EXPECT_FALSE(flag(config, XMLUni::fgDOMValidate));
    EXPECT_FALSE(flag(config, XMLUni::fgXercesLoadSchema));
}

TEST(Initializer, DocumentOutlivesItsParser) {
    DocumentPtr document;
    {
        const ParserPtr parser = Initializer::instance().createParser();
        const std::string text = "<kept>yes</kept>";
        document = loadDocumentFromBuffer(reinterpret_cast<const std::uint8_t*>(text.data()),
                                          text.size(), *parser);
    }
    EXPECT_EQ(WString(document->getDocumentElement()->getTextContent()), u"yes");
}

/// Ten levels of ten references: 10^9 expansions if nothing stops them.
std::string billionLaughs(bool inAttribute) {
    std::string text = "<!DOCTYPE lolz [\n<!ENTITY lol0 \"lol\">\n";
    for (int level = 1; level <= 9; ++level) {
        text += "<!ENTITY lol" + std::to_string(level) + " \"";
        for (int i = 0; i < 10; ++i) {
            text += "&lol" + std::to_string(level - 1) + ";";
        }
        text += "\">\n";
    }
    text += "]>\n";
    text += inAttribute ? "<lolz a=\"&lol9;\"/>" : "<lolz>&lol9;</lolz>";
    return text;
}

std::string passwdContent() {
    std::ifstream in("/etc/passwd");
    return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

struct HostileCase {
    const char* name;
    std::string text;
    const char* expected; ///< part of the translated message
};

VELLUM_PRINT_CASE_NAME(HostileCase)

class HostileDocument : public ::testing::TestWithParam<HostileCase> {};

TEST_P(HostileDocument, IsRefusedQuicklyWithoutReadingFiles) {
    const auto start = std::chrono::steady_clock::now();
    const Vellum::Exceptions::ParseError error = translatedError([] { parseXml(GetParam().text); });
    const auto elapsed = std::chrono::steady_clock::now() - start;
    EXPECT_LT(elapsed, std::chrono::seconds(5));
    const std::string message = utf8(error.message());
    EXPECT_NE(message.find(GetParam().expected), std::string::npos) << message;
    // A file the parser tried to open would show up as an error about opening it.
    EXPECT_EQ(message.find("open"), std::string::npos) << message;
    const std::string passwd = passwdContent();
    if (passwd.size() > 8) {
        EXPECT_EQ(message.find(passwd.substr(0, 8)), std::string::npos) << message;
    }
    EXPECT_EQ(message.find("root:"), std::string::npos) << message;
}

constexpr const char* expansionRefused = "more than '0' entity expansions";
constexpr const char* declarationRefused = "XML buffer: the DOCTYPE declares entities";

INSTANTIATE_TEST_SUITE_P(
    Attacks, HostileDocument,
    ::testing::Values(
        HostileCase{"BillionLaughsInContent", billionLaughs(false), expansionRefused},
        HostileCase{"BillionLaughsInAttribute", billionLaughs(true), expansionRefused},
        HostileCase{"ExternalEntity",
                    "<!DOCTYPE r [<!ENTITY xxe SYSTEM \"file:///etc/passwd\">]><r>&xxe;</r>",
                    expansionRefused},
        HostileCase{"ExternalEntityToMissingFile",
                    "<!DOCTYPE r [<!ENTITY x SYSTEM \"file:///nonexistent/v.xml\">]><r>&x;</r>",
                    expansionRefused},
        HostileCase{"UnusedExternalEntity",
                    "<!DOCTYPE r [<!ENTITY xxe SYSTEM \"file:///etc/passwd\">]><r/>",
                    declarationRefused},
        HostileCase{"ExternalParameterEntity",
                    "<!DOCTYPE r [<!ENTITY % p SYSTEM \"file:///etc/passwd\"> %p;]><r/>",
                    declarationRefused},
        HostileCase{"InternalEntity", "<!DOCTYPE r [<!ENTITY e \"text\">]><r>&e;</r>",
                    expansionRefused},
        HostileCase{"UnusedInternalEntity", "<!DOCTYPE r [<!ENTITY e \"text\">]><r/>",
                    declarationRefused}),
    [](const auto& p) { return p.param.name; });

// What the guards must let through: an external DTD, which is not read (read as a DTD,
// /etc/passwd would be a fatal syntax error), and any number of predefined entities and
// character references.
TEST(Initializer, AnExternalDtdIsNotReadAndPredefinedEntitiesAreNotLimited) {
    const DocumentPtr dtd = parseXml("<!DOCTYPE r SYSTEM \"file:///etc/passwd\"><r>ok</r>");
    EXPECT_EQ(WString(dtd->getDocumentElement()->getTextContent()), u"ok");
    std::string text = "<r>";
    for (int i = 0; i < 5000; ++i) {
        text += "&amp;&#x41;";
    }
    const DocumentPtr references = parseXml(text + "</r>");
    EXPECT_EQ(WString(references->getDocumentElement()->getTextContent()).size(), 10000U);
}

TEST(Initializer, TwoThreadsParseConcurrently) {
    std::atomic<int> loaded{0};
    std::atomic<int> failures{0};
    const auto work = [&](int id) {
        try {
            const ParserPtr parser = Initializer::instance().createParser();
            for (int i = 0; i < 200; ++i) {
                const std::string text =
                    "<t id=\"" + std::to_string(id) + "\"><n>" + std::to_string(i) + "</n></t>";
                const DocumentPtr document = loadDocumentFromBuffer(
                    reinterpret_cast<const std::uint8_t*>(text.data()), text.size(), *parser);
                const WString expected = Vellum::Utils::stringToWstring(std::to_string(i));
                if (WString(document->getDocumentElement()->getTextContent()) == expected) {
                    ++loaded;
                }
            }
        } catch (...) {
            ++failures;
        }
    };
    std::thread first(work, 1);
    std::thread second(work, 2);
    first.join();
    second.join();
    EXPECT_EQ(failures.load(), 0);
    EXPECT_EQ(loaded.load(), 400);
}

} // namespace
