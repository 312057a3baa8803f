#include "XMLBuilder/TextMarkupWriter.h"

#include "Vellum/Exceptions/IOError.h"
#include "Vellum/Exceptions/Throw.h"

#include <algorithm>
#include <iterator>
#include <ostream>

namespace Vellum::XMLBuilder {
namespace {

constexpr std::u16string_view xmlnsNamespace = u"http://www.w3.org/2000/xmlns/";
constexpr std::u16string_view xmlNamespace = u"http://www.w3.org/XML/1998/namespace";

/// Output goes to the destination in blocks of about this many bytes or code units.
constexpr std::size_t blockSize = 1U << 16U;
constexpr std::size_t firstBufferSize = 1U << 12U;

/// The replacement of a character below 0x40 in text (index 0) and in attribute values
/// (index 1), or nullptr when it is written as it is.
const char* escapeOf(char16_t c, bool inAttribute) {
    switch (c) {
    case u'&':
        return "&amp;";
    case u'<':
        return "&lt;";
    case u'>':
        return inAttribute ? nullptr : "&gt;";
    case u'"':
        return inAttribute ? "&quot;" : nullptr;
    case u'\r':
        return "&#xD;";
    case u'\n':
        return inAttribute ? "&#xA;" : nullptr;
    case u'\t':
        return inAttribute ? "&#x9;" : nullptr;
    default:
        return nullptr;
    }
}

bool isSpace(char16_t c) {
    return c == u' ' || c == u'\t' || c == u'\n' || c == u'\r';
}

std::u16string_view prefixOf(std::u16string_view qualifiedName) {
    const std::size_t colon = qualifiedName.find(u':');
    return colon == std::u16string_view::npos ? std::u16string_view()
                                              : qualifiedName.substr(0, colon);
}

std::u16string_view localNameOf(std::u16string_view qualifiedName) {
    const std::size_t colon = qualifiedName.find(u':');
    return colon == std::u16string_view::npos ? qualifiedName : qualifiedName.substr(colon + 1);
}

} // namespace

TextMarkupWriter::TextMarkupWriter(XMLUtils::EncodingType encoding,
                                   const XMLUtils::SerializeOptions& options)
    : m_encoding(encoding)
    , m_pretty(options.prettyPrint)
    , m_declaration(options.xmlDeclaration) {
    VELLUM_CHECK(encoding == XMLUtils::EncodingType::UTF8 ||
                     encoding == XMLUtils::EncodingType::UTF16,
                 "unknown encoding type");
}

TextMarkupWriter::TextMarkupWriter(std::ostream& out, XMLUtils::EncodingType encoding,
                                   const XMLUtils::SerializeOptions& options)
    : TextMarkupWriter(encoding, options) {
    m_stream = &out;
    beginDocument();
}

TextMarkupWriter::TextMarkupWriter(std::string& out, XMLUtils::EncodingType encoding,
                                   const XMLUtils::SerializeOptions& options)
    : TextMarkupWriter(encoding, options) {
    m_bytes = &out;
    beginDocument();
}

TextMarkupWriter::TextMarkupWriter(WString& out, XMLUtils::EncodingType encoding,
                                   const XMLUtils::SerializeOptions& options)
    : TextMarkupWriter(encoding, options) {
    m_units = &out;
    beginDocument();
}

TextMarkupWriter::~TextMarkupWriter() = default;

void TextMarkupWriter::beginDocument() {
    const bool utf8 = m_encoding == XMLUtils::EncodingType::UTF8;
    m_utf8Buffer = utf8 && m_units == nullptr;
    // The buffer starts small and grows up to about two blocks: a small document never
    // touches (and so never faults in) memory it does not fill.
    if (m_utf8Buffer) {
        m_buffer8.resize(firstBufferSize);
    } else {
        m_buffer16.resize(firstBufferSize);
    }
    if (!utf8 && m_units == nullptr) {
        put(u'\xFEFF'); // written little-endian: FF FE
    }
    if (m_declaration) {
        putAscii(utf8 ? "<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"no\" ?>"
                      : "<?xml version=\"1.0\" encoding=\"UTF-16\" standalone=\"no\" ?>");
    }
}

TextMarkupWriter::Span TextMarkupWriter::append(std::u16string& pool, std::u16string_view text) {
    const Span span{pool.size(), text.size()};
    pool.append(text);
    return span;
}

void TextMarkupWriter::startElement(std::u16string_view namespaceURI,
                                    std::u16string_view qualifiedName) {
    VELLUM_CHECK(!m_complete, "the document has one document element only");
    if (m_startTagOpen) {
        closeStartTag();
    }
    OpenElement element;
    element.name = append(m_names, qualifiedName);
    element.bindings = m_bindings.size();
    m_open.push_back(element);
    m_pendingNamespace.assign(namespaceURI);
    m_attributes.clear();
    m_attributeText.clear();
    m_startTagOpen = true;
}

void TextMarkupWriter::attribute(std::u16string_view namespaceURI,
                                 std::u16string_view qualifiedName, std::u16string_view value) {
    VELLUM_CHECK(m_startTagOpen, "an attribute comes before the element's content");
    const std::u16string_view localName = localNameOf(qualifiedName);
    // A DOM element keeps one attribute per namespace and local name, its attributes sorted
    // by qualified name (a binary search finds where a new one goes).
    for (PendingAttribute& existing : m_attributes) {
        if (view(m_attributeText, existing.namespaceURI) == namespaceURI &&
            view(m_attributeText, existing.localName) == localName) {
            existing.value = append(m_attributeText, value);
            return;
        }
    }
    int first = 0;
    int last = static_cast<int>(m_attributes.size()) - 1;
    int at = 0;
    while (first <= last) {
        at = (first + last) / 2;
        const int test = qualifiedName.compare(view(m_attributeText, m_attributes[at].name));
        if (test == 0) {
            break;
        }
        if (test < 0) {
            last = at - 1;
        } else {
            first = at + 1;
        }
    }
    if (first > last && first > at) {
        at = first;
    }
    PendingAttribute added;
    added.namespaceURI = append(m_attributeText, namespaceURI);
    added.name = append(m_attributeText, qualifiedName);
    added.localName = {added.name.start + (qualifiedName.size() - localName.size()),
                       localName.size()};
    added.value = append(m_attributeText, value);
    m_attributes.insert(m_attributes.begin() + at, added);
}

void TextMarkupWriter::text(std::u16string_view value) {
    VELLUM_CHECK(!m_open.empty(), "text belongs inside the document element");
    if (m_startTagOpen) {
        closeStartTag();
    }
    if (m_pretty) {
        // White-space-only text decides the next line break and indentation.
        m_lineFeedInText = false;
        m_lastWhiteSpace = 0;
        if (std::all_of(value.begin(), value.end(), isSpace)) {
            std::size_t at = value.rfind(u'\n');
            if (at == std::u16string_view::npos) {
                at = value.rfind(u'\r');
            }
            if (at != std::u16string_view::npos) {
                m_lineFeedInText = true;
                m_lastWhiteSpace = value.size() - at;
            }
        }
    }
    putEscaped(value, false);
    flushIfFull();
}

void TextMarkupWriter::endElement() {
    VELLUM_CHECK(!m_open.empty(), "an element ends that has not started");
    const std::size_t depth = m_open.size() - 1;
    const OpenElement element = m_open.back();
    if (m_startTagOpen) {
        writeStartTag();
        putAscii("/>");
        m_startTagOpen = false;
    } else {
        if (element.nodeLine != m_currentLine) {
            if (!m_lineFeedInText) {
                newLine();
            } else {
                m_lineFeedInText = false;
            }
            if (depth == 0) {
                newLine();
            }
            indent(depth);
        }
        putAscii("</");
        put(view(m_names, element.name));
        put(u'>');
    }
    if (m_bindings.size() != element.bindings) {
        m_bindings.resize(element.bindings);
        m_knownCount = 0;
        m_knownNext = 0;
    }
    m_names.resize(element.name.start);
    m_open.pop_back();
    if (m_open.empty()) {
        newLine();
        flush();
        m_complete = true;
    } else {
        flushIfFull();
    }
}

void TextMarkupWriter::closeStartTag() {
    writeStartTag();
    put(u'>');
    m_startTagOpen = false;
}

void TextMarkupWriter::writeStartTag() {
    const std::size_t depth = m_open.size() - 1;
    OpenElement& element = m_open.back();
    if (!m_lineFeedInText) {
        if (depth == 1) {
            newLine(); // the children of the document element are a blank line apart
        }
        newLine();
    } else {
        m_lineFeedInText = false;
    }
    indent(depth);
    element.nodeLine = m_currentLine;

    const std::u16string_view name = view(m_names, element.name);
    put(u'<');
    put(name);
    const std::u16string_view prefix = prefixOf(name);
    const auto defaultDeclared = [this] {
        return std::any_of(m_bindings.begin(), m_bindings.end(),
                           [](const Binding& b) { return b.prefix.empty() && !b.noNamespace; });
    };
    if ((!m_pendingNamespace.empty() || (prefix.empty() && defaultDeclared())) &&
        !isBindingActive(prefix, m_pendingNamespace)) {
        // Xerces-C keeps the declaration of no namespace as a binding that lookups pass over.
        bind(prefix, m_pendingNamespace, depth, m_pendingNamespace.empty());
        writeDeclaration(prefix, m_pendingNamespace);
    }
    for (const PendingAttribute& attribute : m_attributes) {
        const std::u16string_view space = view(m_attributeText, attribute.namespaceURI);
        const std::u16string_view attributeName = view(m_attributeText, attribute.name);
        const std::u16string_view value = view(m_attributeText, attribute.value);
        if (space == xmlnsNamespace) {
            const std::u16string_view local = view(m_attributeText, attribute.localName);
            const std::u16string_view declared = attributeName == u"xmlns" ? u"" : local;
            if (isBoundHere(declared, depth)) {
                continue; // this element declares the prefix already
            }
            bind(local, value, depth);
        } else if (!space.empty() && space != xmlNamespace) {
            const std::u16string_view attributePrefix = prefixOf(attributeName);
            if (!attributePrefix.empty() && !isBindingActive(attributePrefix, space)) {
                bind(attributePrefix, space, depth);
                writeDeclaration(attributePrefix, space);
            }
        }
        put(u' ');
        put(attributeName);
        putAscii("=\"");
        putEscaped(value, true);
        put(u'"');
    }
}

bool TextMarkupWriter::isBindingActive(std::u16string_view prefix, std::u16string_view uri) const {
    for (std::size_t i = 0; i < m_knownCount; ++i) {
        if (m_known[i].prefix == prefix && m_known[i].uri == uri) {
            return m_known[i].active;
        }
    }
    bool active = false;
    for (auto it = m_bindings.rbegin(); it != m_bindings.rend(); ++it) {
        if (!it->noNamespace && it->prefix == prefix) {
            active = it->uri == uri;
            break;
        }
    }
    KnownBinding& known = m_known[m_knownNext];
    m_knownNext = (m_knownNext + 1) % std::size(m_known);
    m_knownCount = std::max(m_knownCount, m_knownNext == 0 ? std::size(m_known) : m_knownNext);
    known.prefix.assign(prefix);
    known.uri.assign(uri);
    known.active = active;
    return active;
}

bool TextMarkupWriter::isBoundHere(std::u16string_view prefix, std::size_t depth) const {
    for (auto it = m_bindings.rbegin(); it != m_bindings.rend() && it->depth == depth; ++it) {
        if (it->prefix == prefix) {
            return true;
        }
    }
    return false;
}

void TextMarkupWriter::bind(std::u16string_view prefix, std::u16string_view uri, std::size_t depth,
                            bool noNamespace) {
    m_bindings.push_back(Binding{WString(prefix), WString(uri), depth, noNamespace});
    m_knownCount = 0;
    m_knownNext = 0;
}

void TextMarkupWriter::writeDeclaration(std::u16string_view prefix, std::u16string_view uri) {
    putAscii(" xmlns");
    if (!prefix.empty()) {
        put(u':');
        put(prefix);
    }
    putAscii("=\"");
    putEscaped(uri, true);
    put(u'"');
}

void TextMarkupWriter::newLine() {
    if (m_pretty) {
        ++m_currentLine;
        put(u'\n');
    }
}

void TextMarkupWriter::indent(std::size_t depth) {
    if (!m_pretty) {
        return;
    }
    if (m_lastWhiteSpace != 0) {
        // Spaces after the last line break of white-space-only text count as indentation.
        const std::size_t written = m_lastWhiteSpace / 2;
        m_lastWhiteSpace = 0;
        depth = written < depth ? depth - written : 0;
    }
    for (std::size_t i = 0; i < depth; ++i) {
        putAscii("  ");
    }
}

void TextMarkupWriter::growBuffer(std::size_t count) {
    if (m_utf8Buffer) {
        m_buffer8.resize(std::max(m_buffer8.size() * 2, m_used8 + count));
    } else {
        m_buffer16.resize(std::max(m_buffer16.size() * 2, m_used16 + count));
    }
}

void TextMarkupWriter::put(char16_t c) {
    if (m_utf8Buffer && c < 0x80) {
        *room8(1) = static_cast<char>(c);
        ++m_used8;
    } else {
        put(std::u16string_view(&c, 1));
    }
}

void TextMarkupWriter::put(std::u16string_view text) {
    if (!m_utf8Buffer) {
        std::copy(text.begin(), text.end(), room16(text.size()));
        m_used16 += text.size();
        return;
    }
    // At most three bytes a code unit (a surrogate pair, two units, takes four).
    char* const start = room8(text.size() * 3);
    char* out = start;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char32_t c = text[i];
        if (c < 0x80) {
            *out++ = static_cast<char>(c);
        } else if (c < 0x800) {
            *out++ = static_cast<char>(0xC0U | (c >> 6U));
            *out++ = static_cast<char>(0x80U | (c & 0x3FU));
        } else if (c >= 0xD800 && c <= 0xDBFF && i + 1 < text.size() && text[i + 1] >= 0xDC00 &&
                   text[i + 1] <= 0xDFFF) {
            const char32_t code = 0x10000 + ((c - 0xD800) << 10U) + (text[++i] - 0xDC00);
            *out++ = static_cast<char>(0xF0U | (code >> 18U));
            *out++ = static_cast<char>(0x80U | ((code >> 12U) & 0x3FU));
            *out++ = static_cast<char>(0x80U | ((code >> 6U) & 0x3FU));
            *out++ = static_cast<char>(0x80U | (code & 0x3FU));
        } else {
            // A lone surrogate has no UTF-8 form; the export never writes one.
            const char32_t code = c >= 0xD800 && c <= 0xDFFF ? 0xFFFD : c;
            *out++ = static_cast<char>(0xE0U | (code >> 12U));
            *out++ = static_cast<char>(0x80U | ((code >> 6U) & 0x3FU));
            *out++ = static_cast<char>(0x80U | (code & 0x3FU));
        }
    }
    m_used8 += static_cast<std::size_t>(out - start);
}

void TextMarkupWriter::putAscii(std::string_view text) {
    if (m_utf8Buffer) {
        std::copy(text.begin(), text.end(), room8(text.size()));
        m_used8 += text.size();
    } else {
        std::copy(text.begin(), text.end(), room16(text.size()));
        m_used16 += text.size();
    }
}

void TextMarkupWriter::putEscaped(std::u16string_view text, bool inAttribute) {
    std::size_t run = 0;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] >= 0x40) {
            continue;
        }
        if (const char* replacement = escapeOf(text[i], inAttribute)) {
            put(text.substr(run, i - run));
            putAscii(replacement);
            run = i + 1;
        }
    }
    put(text.substr(run));
}

void TextMarkupWriter::flushIfFull() {
    if (m_used8 >= blockSize || m_used16 >= blockSize) {
        flush();
    }
}

void TextMarkupWriter::flush() {
    if (m_units != nullptr) {
        m_units->append(m_buffer16.data(), m_used16);
        m_used16 = 0;
        return;
    }
    std::string converted;
    const char* block = m_buffer8.data();
    std::size_t size = m_used8;
    if (!m_utf8Buffer) {
        // UTF-16 little-endian.
        converted.resize(m_used16 * 2);
        for (std::size_t i = 0; i < m_used16; ++i) {
            converted[2 * i] = static_cast<char>(m_buffer16[i] & 0xFFU);
            converted[2 * i + 1] = static_cast<char>(m_buffer16[i] >> 8U);
        }
        block = converted.data();
        size = converted.size();
    }
    m_used8 = 0;
    m_used16 = 0;
    if (m_bytes != nullptr) {
        m_bytes->append(block, size);
        return;
    }
    m_stream->write(block, static_cast<std::streamsize>(size));
    if (!*m_stream) {
        VELLUM_THROW(IOError, "cannot write the XML text: the output stream failed");
    }
}

} // namespace Vellum::XMLBuilder
