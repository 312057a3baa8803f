#include "Vellum/XMLUtils/Utils.h"

#include "Support/ExpectThrow.h"
#include "Support/PrintCase.h"
#include "XMLTestSupport.h"

#include "Vellum/Exceptions/InvalidFormat.h"
#include "Vellum/Exceptions/ParseError.h"
#include "Vellum/Exceptions/Throw.h"
#include "Vellum/XMLUtils/Initializer.h"

#include <gtest/gtest.h>
#include <xercesc/dom/DOMException.hpp>
#include <xercesc/dom/DOMLSException.hpp>
#include <xercesc/dom/DOMXPathException.hpp>
#include <xercesc/sax/SAXParseException.hpp>
#include <xercesc/util/RuntimeException.hpp>
#include <xercesc/util/UTFDataFormatException.hpp>

#include <functional>
#include <ostream>
#include <stdexcept>
#include <string>

namespace {

using Vellum::WString;
using namespace Vellum::XMLUtils;
using VellumTest::translatedError;
using VellumTest::utf8;

/// The message Xerces-C gives an exception, read back from a thrown copy.
template <class Error>
WString messageOf(const Error& error) {
    WString text;
    utf16ToWstring(error.getMessage(), text);
    return text;
}

struct LadderCase {
    const char* name;
    std::function<void()> raise;
    /// The exact translated message, computed from the same exception's own text.
    std::function<WString()> expected;
    bool atTranslationSite; ///< located at Utils:207 rather than at the entry
};

VELLUM_PRINT_CASE_NAME(LadderCase)

class TranslationLadder : public ::testing::TestWithParam<LadderCase> {
protected:
    void SetUp() override { Initializer::instance(); }
};

TEST_P(TranslationLadder, GivesParseErrorWithExactMessageAndLocation) {
    const LadderCase& c = GetParam();
    const Vellum::Exceptions::ParseError error = translatedError(c.raise);
    EXPECT_EQ(utf8(error.message()), utf8(c.expected()));
    if (c.atTranslationSite) {
        EXPECT_EQ(error.sourceName(), "Vellum/XMLUtils/Utils");
        EXPECT_EQ(error.line(), 207U);
    } else {
        EXPECT_EQ(error.sourceName(), "entry.cpp");
        EXPECT_EQ(error.line(), 11U);
    }
}

WString xpathText() {
    return messageOf(xercesc::DOMXPathException(xercesc::DOMXPathException::TYPE_ERR));
}

WString domText() {
    return messageOf(xercesc::DOMException(xercesc::DOMException::NOT_FOUND_ERR));
}

WString lsText() {
    return messageOf(xercesc::DOMLSException(xercesc::DOMLSException::PARSE_ERR, 0,
                                             xercesc::XMLPlatformUtils::fgMemoryManager));
}

xercesc::UTFDataFormatException utfError() {
    return xercesc::UTFDataFormatException("here.cpp", 3,
                                           xercesc::XMLExcepts::UTF8_Invalid_3BytesSeq);
}

xercesc::RuntimeException runtimeError() {
    return xercesc::RuntimeException("here.cpp", 4, xercesc::XMLExcepts::Gen_ParseInProgress);
}

INSTANTIATE_TEST_SUITE_P(
    Rows, TranslationLadder,
    ::testing::Values(
        LadderCase{"DOMXPathException",
                   [] { throw xercesc::DOMXPathException(xercesc::DOMXPathException::TYPE_ERR); },
                   [] { return u"DOMXPathException:: " + xpathText() + u"(52)"; }, true},
        LadderCase{"DOMException",
                   [] { throw xercesc::DOMException(xercesc::DOMException::NOT_FOUND_ERR); },
                   [] { return u"DOMException:: " + domText() + u"(8)"; }, true},
        LadderCase{"DOMLSException",
                   [] {
                       throw xercesc::DOMLSException(xercesc::DOMLSException::PARSE_ERR, 0,
                                                     xercesc::XMLPlatformUtils::fgMemoryManager);
                   },
                   [] { return u"xercesc_3_2::DOMLSException: " + lsText() + u"(81)"; }, true},
        LadderCase{"UTFDataFormatException", [] { throw utfError(); },
                   [] { return u"xercesc_3_2::UTFDataFormatException: " + messageOf(utfError()); },
                   true},
        LadderCase{"SAXParseException",
                   [] { throw xercesc::SAXParseException(u"bad \u00E9", nullptr, nullptr, 3, 4); },
                   [] { return WString(u"xercesc_3_2::SAXException: bad \u00E9"); }, true},
        LadderCase{"SAXException", [] { throw xercesc::SAXException(u"plain"); },
                   [] { return WString(u"xercesc_3_2::SAXException: plain"); }, true},
        LadderCase{"XMLException", [] { throw runtimeError(); },
                   [] { return u"xercesc_3_2::XMLException: " + messageOf(runtimeError()); }, true},
        LadderCase{"Int", [] { throw 42; },
                   [] { return WString(u"Unknown error in Xerces or XQilla"); }, false},
        LadderCase{"StdException", [] { throw std::runtime_error("boom"); },
                   [] { return WString(u"Unknown error in Xerces or XQilla"); }, false}),
    [](const auto& p) { return p.param.name; });

TEST_F(TranslationLadder, ToolkitExceptionsPassUnchanged) {
    EXPECT_TRUE(VellumTest::whenThrown<Vellum::Exceptions::InvalidFormat>(
        [] {
            try {
                VELLUM_THROW(InvalidFormat, "the tag is wrong");
            } catch (...) {
                rethrowTranslated("entry.cpp", 11);
            }
        },
        [&](const Vellum::Exceptions::InvalidFormat& e) {
            EXPECT_EQ(e.utf8Message(), "the tag is wrong");
            EXPECT_EQ(e.sourceName(), "tests/XMLUtils/UtilsTest.cpp");
        }));
}

TEST_F(TranslationLadder, CalledWithoutAnExceptionStillThrows) {
    EXPECT_TRUE(VellumTest::whenThrown<Vellum::Exceptions::ParseError>(
        [] { rethrowTranslated("entry.cpp", 11); },
        [&](const Vellum::Exceptions::ParseError& e) {
            EXPECT_NE(e.utf8Message().find("no exception"), std::string::npos);
            EXPECT_EQ(e.sourceName(), "entry.cpp");
        }));
}

} // namespace
