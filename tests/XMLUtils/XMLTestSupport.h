#ifndef VELLUM_TESTS_XMLUTILS_XMLTESTSUPPORT_H
#define VELLUM_TESTS_XMLUTILS_XMLTESTSUPPORT_H

#include "Support/ExpectThrow.h"

#include "Vellum/Exceptions/ParseError.h"
#include "Vellum/Utils/StringConversion.h"
#include "Vellum/XMLUtils/Document.h"
#include "Vellum/XMLUtils/Initializer.h"
#include "Vellum/XMLUtils/Utils.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <string>

namespace VellumTest {

/// Parses `text` with a fresh parser; Xerces-C errors come out translated.
inline Vellum::XMLUtils::DocumentPtr parseXml(const std::string& text) {
    using namespace Vellum::XMLUtils;
    try {
        const ParserPtr parser = Initializer::instance().createParser();
        return loadDocumentFromBuffer(reinterpret_cast<const std::uint8_t*>(text.data()),
                                      text.size(), *parser);
    } catch (...) {
        rethrowTranslated(__FILE__, __LINE__);
    }
}

/// Runs `action` and returns the ParseError it ends in after translation; fails the test and
/// returns an empty error when it ends otherwise.
inline Vellum::Exceptions::ParseError translatedError(const std::function<void()>& action) {
    using Vellum::Exceptions::ParseError;
    ParseError caught("", "", 0);
    EXPECT_TRUE(whenThrown<ParseError>(
        [&] {
            try {
                action();
            } catch (...) {
                Vellum::XMLUtils::rethrowTranslated("entry.cpp", 11);
            }
        },
        [&](const ParseError& error) { caught = error; }, "ParseError"));
    return caught;
}

/// UTF-8 text of a toolkit string, for readable assertions.
inline std::string utf8(const Vellum::WString& text) {
    return Vellum::Utils::wstringToString(text);
}

/// Compact UTF-8 serialisation of `node` without an XML declaration.
inline std::string compactXml(const xercesc::DOMNode* node) {
    std::string out;
    Vellum::XMLUtils::SerializeOptions options;
    options.prettyPrint = false;
    options.xmlDeclaration = false;
    Vellum::XMLUtils::domToBytes(node, out, Vellum::XMLUtils::EncodingType::UTF8, options);
    return out;
}

} // namespace VellumTest

#endif
