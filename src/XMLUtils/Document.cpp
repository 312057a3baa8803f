#include "Vellum/XMLUtils/Document.h"

#include "Vellum/Exceptions/ParseError.h"
#include "Vellum/Exceptions/Throw.h"
#include "Vellum/Utils/StringConversion.h"
#include "Vellum/XMLUtils/Initializer.h"
#include "Vellum/XMLUtils/Utils.h"

#include <xercesc/dom/DOMConfiguration.hpp>
#include <xercesc/dom/DOMDocumentType.hpp>
#include <xercesc/dom/DOMError.hpp>
#include <xercesc/dom/DOMErrorHandler.hpp>
#include <xercesc/dom/DOMImplementation.hpp>
#include <xercesc/dom/DOMLSException.hpp>
#include <xercesc/dom/DOMLSOutput.hpp>
#include <xercesc/dom/DOMLSParserFilter.hpp>
#include <xercesc/dom/DOMLocator.hpp>
#include <xercesc/dom/DOMNamedNodeMap.hpp>
#include <xercesc/dom/DOMNode.hpp>
#include <xercesc/dom/DOMText.hpp>
#include <xercesc/framework/LocalFileInputSource.hpp>
#include <xercesc/framework/MemBufFormatTarget.hpp>
#include <xercesc/framework/MemBufInputSource.hpp>
#include <xercesc/framework/Wrapper4InputSource.hpp>
#include <xercesc/sax/SAXParseException.hpp>
#include <xercesc/util/XMLUni.hpp>

#include <cstddef>
#include <limits>
#include <string>

namespace Vellum::XMLUtils {

namespace {

using xercesc::DOMNode;
using xercesc::XMLUni;

/// The deepest element nesting a loaded document may have.
constexpr std::size_t maximumNestingDepth = 10000;

/// Keeps the first error or fatal error a parser or serialiser reports and stops it there.
class ErrorCollector : public xercesc::DOMErrorHandler {
public:
    bool handleError(const xercesc::DOMError& error) override {
        if (error.getSeverity() == xercesc::DOMError::DOM_SEVERITY_WARNING) {
            return true;
        }
        if (!m_failed) {
            m_failed = true;
            utf16ToWstring(error.getMessage(), m_message);
            if (const xercesc::DOMLocator* where = error.getLocation()) {
                utf16ToWstring(where->getURI(), m_uri);
                m_line = where->getLineNumber();
                m_column = where->getColumnNumber();
            }
        }
        return false;
    }

    bool failed() const noexcept { return m_failed; }
    const WString& message() const noexcept { return m_message; }
    const WString& uri() const noexcept { return m_uri; }
    XMLFileLoc line() const noexcept { return m_line; }
    XMLFileLoc column() const noexcept { return m_column; }

private:
    bool m_failed = false;
    WString m_message;
    WString m_uri;
    XMLFileLoc m_line = 0;
    XMLFileLoc m_column = 0;
};

/// Counts how deeply elements nest while a document is built and interrupts the parser past
/// maximumNestingDepth: Xerces-C's scanning time grows with the square of the depth.
class NestingLimit : public xercesc::DOMLSParserFilter {
public:
    FilterAction startElement(xercesc::DOMElement* /*element*/) override {
        if (++m_depth > maximumNestingDepth) {
            m_exceeded = true;
            return FILTER_INTERRUPT;
        }
        return FILTER_ACCEPT;
    }

    FilterAction acceptNode(DOMNode* /*node*/) override {
        // Called as each element ends (only elements are shown).
        --m_depth;
        return FILTER_ACCEPT;
    }

    xercesc::DOMNodeFilter::ShowType getWhatToShow() const override {
        return xercesc::DOMNodeFilter::SHOW_ELEMENT;
    }

    bool exceeded() const noexcept { return m_exceeded; }

private:
    std::size_t m_depth = 0;
    bool m_exceeded = false;
};

/// Points a parser's error handler and filter at `handler` and `filter` for one parse and
/// restores the previous ones.
class ParseScope {
public:
    ParseScope(xercesc::DOMLSParser& parser, xercesc::DOMErrorHandler& handler,
               xercesc::DOMLSParserFilter& filter)
        : m_parser(parser)
        , m_config(*parser.getDomConfig())
        , m_previousHandler(m_config.getParameter(XMLUni::fgDOMErrorHandler))
        , m_previousFilter(const_cast<xercesc::DOMLSParserFilter*>(parser.getFilter())) {
        m_config.setParameter(XMLUni::fgDOMErrorHandler, static_cast<const void*>(&handler));
        m_parser.setFilter(&filter);
    }
    ParseScope(const ParseScope&) = delete;
    ParseScope& operator=(const ParseScope&) = delete;
    ~ParseScope() {
        m_parser.setFilter(m_previousFilter);
        m_config.setParameter(XMLUni::fgDOMErrorHandler, m_previousHandler);
    }

private:
    xercesc::DOMLSParser& m_parser;
    xercesc::DOMConfiguration& m_config;
    const void* m_previousHandler;
    xercesc::DOMLSParserFilter* m_previousFilter;
};

WString decimal(std::uint64_t value) {
    return Utils::stringToWstring(std::to_string(value));
}

/// "<where>, line L, column C: <message>" for the error `errors` kept; without the line and
/// column when the error has none (a file that cannot be opened).
WString describe(const ErrorCollector& errors, const WString& where) {
    WString text = errors.uri().empty() ? where : errors.uri();
    if (errors.line() != 0) {
        text += u", line " + decimal(errors.line()) + u", column " + decimal(errors.column());
    }
    return text + u": " + errors.message();
}

/// Refuses a document whose DOCTYPE declares entities: the toolkit's documents never do, and
/// declared entities are how documents smuggle in other files or expand without bound.
void refuseEntityDeclarations(const xercesc::DOMDocument& document, const WString& where) {
    const xercesc::DOMDocumentType* type = document.getDoctype();
    if (type == nullptr) {
        return;
    }
    const xercesc::DOMNamedNodeMap* entities = type->getEntities();
    WString subset;
    utf16ToWstring(type->getInternalSubset(), subset);
    if ((entities != nullptr && entities->getLength() > 0) ||
        subset.find(u"<!ENTITY") != WString::npos) {
        VELLUM_THROW(ParseError, where + u": the DOCTYPE declares entities, which are refused");
    }
}

/// Parses `input`; any error the parser reports becomes a SAXParseException naming the place.
DocumentPtr parseChecked(xercesc::DOMLSParser& parser, const xercesc::DOMLSInput& input,
                         const WString& where) {
    ErrorCollector errors;
    NestingLimit nesting;
    DocumentPtr document;
    try {
        const ParseScope scope(parser, errors, nesting);
        document.reset(parser.parse(&input));
    } catch (const xercesc::DOMLSException&) {
        if (!nesting.exceeded()) {
            throw;
        }
    }
    if (nesting.exceeded()) {
        const WString text =
            where + u": elements nest more than " + decimal(maximumNestingDepth) + u" levels deep";
        throw xercesc::SAXParseException(text.c_str(), nullptr, nullptr, 0, 0);
    }
    if (errors.failed()) {
        document.reset();
        const WString text = describe(errors, where);
        throw xercesc::SAXParseException(text.c_str(), nullptr, errors.uri().c_str(), errors.line(),
                                         errors.column());
    }
    if (!document || document->getDocumentElement() == nullptr) {
        VELLUM_THROW(ParseError, where + u": the parser produced no document");
    }
    refuseEntityDeclarations(*document, where);
    return document;
}

bool isBlank(const XMLCh* text) {
    for (; text != nullptr && *text != 0; ++text) {
        if (*text != u' ' && *text != u'\t' && *text != u'\n' && *text != u'\r') {
            return false;
        }
    }
    return true;
}

/// The node after `current` in document order once `current`'s children are skipped, without
/// leaving the subtree of `root`; null at the end.
DOMNode* nextSkippingChildren(DOMNode* current, const DOMNode* root) {
    while (current != nullptr && current != root) {
        if (DOMNode* sibling = current->getNextSibling()) {
            return sibling;
        }
        current = current->getParentNode();
    }
    return nullptr;
}

/// Serialises `node` into `out` as bytes in `encoding`; UTF-16 comes out little-endian with a
/// byte order mark.
void serialize(const DOMNode* node, std::string& out, EncodingType encoding,
               const SerializeOptions& options) {
    VELLUM_CHECK(node != nullptr, "there is no node to serialise");
    const bool utf16 = encoding == EncodingType::UTF16;
    VELLUM_CHECK(utf16 || encoding == EncodingType::UTF8, "unknown encoding type");

    xercesc::DOMImplementation& dom = Initializer::instance().implementation();
    const SerializerPtr serializer(dom.createLSSerializer());
    const std::unique_ptr<xercesc::DOMLSOutput, ReleaseDeleter> output(dom.createLSOutput());
    ErrorCollector errors;
    xercesc::DOMConfiguration& config = *serializer->getDomConfig();
    config.setParameter(XMLUni::fgDOMErrorHandler, static_cast<const void*>(&errors));
    config.setParameter(XMLUni::fgDOMWRTFormatPrettyPrint, options.prettyPrint);
    config.setParameter(XMLUni::fgDOMXMLDeclaration, options.xmlDeclaration);
    config.setParameter(XMLUni::fgDOMWRTBOM, utf16);

    xercesc::MemBufFormatTarget target;
    output->setByteStream(&target);
    output->setEncoding(utf16 ? u"UTF-16" : u"UTF-8");
    bool written = false;
    try {
        written = serializer->write(node, output.get());
    } catch (const Exceptions::BaseException&) {
        throw;
    } catch (...) {
        // Whatever Xerces-C throws while writing reaches the caller as a ParseError.
        rethrowTranslated("Vellum/XMLUtils/Document", __LINE__);
    }
    if (!written || errors.failed()) {
        VELLUM_THROW(ParseError, u"cannot serialise the XML node: " + errors.message());
    }
    out.assign(reinterpret_cast<const char*>(target.getRawBuffer()), target.getLen());
    // "UTF-16" is written in the machine's byte order; the toolkit's is little-endian.
    if (utf16 && out.size() >= 2 && out[0] == '\xFE' && out[1] == '\xFF') {
        for (std::size_t i = 0; i + 1 < out.size(); i += 2) {
            std::swap(out[i], out[i + 1]);
        }
    }
}

} // namespace

DocumentPtr loadDocumentFromFile(const XMLCh* path, xercesc::DOMLSParser& parser) {
    VELLUM_CHECK(path != nullptr, "no file name given to load XML from");
    WString where;
    utf16ToWstring(path, where);
    // A local file source never goes to the network, whatever the name looks like.
    xercesc::LocalFileInputSource source(path);
    const xercesc::Wrapper4InputSource input(&source, false);
    return parseChecked(parser, input, where);
}

DocumentPtr loadDocumentFromBuffer(const std::uint8_t* bytes, std::uint64_t size,
                                   xercesc::DOMLSParser& parser) {
    VELLUM_CHECK(bytes != nullptr || size == 0, "a null buffer cannot hold XML bytes");
    if constexpr (std::numeric_limits<XMLSize_t>::max() <
                  std::numeric_limits<std::uint64_t>::max()) {
        VELLUM_CHECK(size <= std::numeric_limits<XMLSize_t>::max(),
                     "the XML buffer is too large for this platform");
    }
    static constexpr std::uint8_t nothing[1] = {0};
    const WString where = u"XML buffer";
    xercesc::MemBufInputSource source(bytes == nullptr ? nothing : bytes,
                                      static_cast<XMLSize_t>(size), where.c_str(), false);
    const xercesc::Wrapper4InputSource input(&source, false);
    return parseChecked(parser, input, where);
}

void cleanEmptyTextNodes(DOMNode* node) {
    if (node == nullptr) {
        return;
    }
    DOMNode* current = node->getFirstChild();
    while (current != nullptr) {
        const DOMNode::NodeType type = current->getNodeType();
        if (type == DOMNode::TEXT_NODE && isBlank(current->getNodeValue())) {
            DOMNode* const next = nextSkippingChildren(current, node);
            current->getParentNode()->removeChild(current)->release();
            current = next;
        } else if (type != DOMNode::ENTITY_REFERENCE_NODE && current->getFirstChild() != nullptr) {
            // Entity references hold read-only copies; they are left as they are.
            current = current->getFirstChild();
        } else {
            current = nextSkippingChildren(current, node);
        }
    }
}

void domToBytes(const DOMNode* node, std::string& out, EncodingType encoding,
                const SerializeOptions& options) {
    serialize(node, out, encoding, options);
}

void domToBuffer(const DOMNode* node, WString& out, EncodingType encoding,
                 const SerializeOptions& options) {
    std::string bytes;
    serialize(node, bytes, encoding, options);
    if (encoding == EncodingType::UTF8) {
        out = Utils::stringToWstring(std::string_view(bytes));
        return;
    }
    // Little-endian code units after the byte order mark.
    const bool bom = bytes.size() >= 2 && bytes[0] == '\xFF' && bytes[1] == '\xFE';
    const std::size_t start = bom ? 2 : 0;
    out.clear();
    out.reserve((bytes.size() - start) / 2);
    for (std::size_t i = start; i + 1 < bytes.size(); i += 2) {
        out.push_back(static_cast<char16_t>(static_cast<unsigned char>(bytes[i]) |
                                            (static_cast<unsigned char>(bytes[i + 1]) << 8)));
    }
}

void utf16ToWstring(const XMLCh* text, WString& out) {
    if (text == nullptr) {
        out.clear();
    } else {
        out.assign(text);
    }
}

} // namespace Vellum::XMLUtils
