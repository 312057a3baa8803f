#ifndef VELLUM_TESTS_APP_XMLCHECK_H
#define VELLUM_TESTS_APP_XMLCHECK_H

#include <cstddef>
#include <string>

/// @file
/// Checks of the XML the vellum program writes, through the toolkit's Xerces-C set-up.

namespace VellumTest {

/// What a parsed document looks like, in forms that compare easily.
struct XmlSummary {
    std::string rootName;  ///< qualified name of the document element
    std::string canonical; ///< compact UTF-8 text without white-space-only text nodes
};

/// Parses `bytes` (any encoding the document declares) and summarises it. Throws the
/// toolkit's ParseError for a malformed document.
XmlSummary summariseXml(const std::string& bytes);

} // namespace VellumTest

#endif
