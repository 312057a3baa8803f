#ifndef VELLUM_XMLUTILS_DOCUMENT_H
#define VELLUM_XMLUTILS_DOCUMENT_H

#include "Vellum/Templates/Templates.h"
#include "Vellum/XMLUtils/EncodingType.h"
#include "Vellum/XMLUtils/Export.h"
#include "Vellum/XMLUtils/SerializeOptions.h"
#include "Vellum/XMLUtils/XercesPtr.h"

#include <cstdint>
#include <string>

/// @file
/// Loading, cleaning and serialising DOM documents.

namespace Vellum::XMLUtils {

/// Parses the local file at `path` (UTF-16; never fetched over a network) with `parser`
/// (from Initializer::createParser). The caller owns the result, which is always a whole
/// document. For the parse the parser's error handler and filter are replaced by ones that
/// stop at the first error and at elements nested more than 10,000 levels deep; the previous
/// ones are put back afterwards. Throws xercesc::SAXParseException for a malformed, unreadable
/// or too deeply nested document (message "<file>, line L, column C: <problem>"),
/// Exceptions::ParseError for a document whose DOCTYPE declares entities, and
/// Exceptions::InvalidFormat for a null path; other Xerces-C exceptions pass through. Wrap
/// the call in a catch that uses rethrowTranslated (Vellum/XMLUtils/Utils.h) to see only
/// toolkit exceptions.
VELLUM_XMLUTILS_EXPORT DocumentPtr loadDocumentFromFile(const XMLCh* path,
                                                        xercesc::DOMLSParser& parser);

/// Parses `size` bytes of XML in memory (any encoding the document declares), as
/// loadDocumentFromFile does; errors are placed in "XML buffer". The bytes are not kept. The
/// caller owns the result. Throws as loadDocumentFromFile; a null `bytes` with a non-zero
/// `size` is InvalidFormat.
VELLUM_XMLUTILS_EXPORT DocumentPtr loadDocumentFromBuffer(const std::uint8_t* bytes,
                                                          std::uint64_t size,
                                                          xercesc::DOMLSParser& parser);

/// Removes every text node below `node` that holds only white space (space, tab, CR, LF);
/// CDATA sections, comments and the contents of entity references stay. Iterative, so deep
/// documents cannot exhaust the stack. A null `node` does nothing.
VELLUM_XMLUTILS_EXPORT void cleanEmptyTextNodes(xercesc::DOMNode* node);

/// Serialises `node` as text into `out` (replaced), laid out as `options` say; the XML declaration
/// names `encoding`, and the text is what a file in that encoding would hold, without a byte order
/// mark. Throws Exceptions::InvalidFormat for a null node and Exceptions::ParseError when Xerces-C
/// cannot serialise it (e.g. a character the encoding cannot hold).
VELLUM_XMLUTILS_EXPORT void domToBuffer(const xercesc::DOMNode* node, WString& out,
                                        EncodingType encoding,
                                        const SerializeOptions& options = {});

/// Serialises `node` into `out` (replaced) as bytes in `encoding`: what a file of that
/// encoding holds (UTF-16 little-endian with a byte order mark). Throws as domToBuffer.
VELLUM_XMLUTILS_EXPORT void domToBytes(const xercesc::DOMNode* node, std::string& out,
                                       EncodingType encoding, const SerializeOptions& options = {});

/// Converts Xerces-C text (null gives empty) into the toolkit's wide string.
VELLUM_XMLUTILS_EXPORT void utf16ToWstring(const XMLCh* text, WString& out);

} // namespace Vellum::XMLUtils

#endif
