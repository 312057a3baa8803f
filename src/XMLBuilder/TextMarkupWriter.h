#ifndef VELLUM_SRC_XMLBUILDER_TEXTMARKUPWRITER_H
#define VELLUM_SRC_XMLBUILDER_TEXTMARKUPWRITER_H

#include "XMLBuilder/MarkupSink.h"

#include "Vellum/Templates/Templates.h"
#include "Vellum/XMLBuilder/Export.h"
#include "Vellum/XMLUtils/EncodingType.h"
#include "Vellum/XMLUtils/SerializeOptions.h"

#include <cstddef>
#include <iosfwd>
#include <string>
#include <vector>

namespace Vellum::XMLBuilder {

/// Writes a document as XML text while its events arrive, byte for byte as Xerces-C's DOM
/// serialiser writes the same document (XMLUtils::domToBytes / domToBuffer): the same
/// declaration, line breaks and indentation (a blank line before each child of the document
/// element; white-space-only text shifting the next indentation), the same escapes, attributes
/// in the order of their qualified names, and a namespace declaration wherever an element or
/// attribute uses a prefix not bound to its namespace where it is.
///
/// The document starts when the writer is made (byte order mark, declaration) and ends with
/// its document element, when the text is complete and handed to the destination; meanwhile
/// it goes out in blocks. Throws IOError when the stream fails.
class VELLUM_XMLBUILDER_EXPORT TextMarkupWriter final : public MarkupSink {
public:
    /// The bytes of a file in `encoding` (UTF-16 little-endian with a byte order mark), to
    /// `out`. `out` is borrowed.
    TextMarkupWriter(std::ostream& out, XMLUtils::EncodingType encoding,
                     const XMLUtils::SerializeOptions& options);
    /// The same bytes, appended to `out`.
    TextMarkupWriter(std::string& out, XMLUtils::EncodingType encoding,
                     const XMLUtils::SerializeOptions& options);
    /// The text as UTF-16 code units, appended to `out`, without a byte order mark; the
    /// declaration names `encoding`.
    TextMarkupWriter(WString& out, XMLUtils::EncodingType encoding,
                     const XMLUtils::SerializeOptions& options);
    ~TextMarkupWriter() override;

    void startElement(std::u16string_view namespaceURI, std::u16string_view qualifiedName) override;
    void attribute(std::u16string_view namespaceURI, std::u16string_view qualifiedName,
                   std::u16string_view value) override;
    void text(std::u16string_view value) override;
    void endElement() override;

    /// Whether the document element has ended and the whole text reached the destination.
    bool complete() const noexcept { return m_complete; }

private:
    /// A stretch of one of the text pools.
    struct Span {
        std::size_t start = 0;
        std::size_t length = 0;
    };
    struct OpenElement {
        Span name;                ///< in m_names
        std::size_t bindings = 0; ///< namespace bindings in scope before it
        unsigned long nodeLine = 0;
    };
    struct PendingAttribute {
        Span namespaceURI;
        Span name;
        Span localName;
        Span value; ///< all in m_attributeText
    };
    struct Binding {
        WString prefix;
        WString uri;
        std::size_t depth = 0;
        bool noNamespace = false; ///< made for an element in no namespace: no binding to find
    };

    TextMarkupWriter(XMLUtils::EncodingType encoding, const XMLUtils::SerializeOptions& options);
    void beginDocument();
    void closeStartTag();
    void writeStartTag();
    bool isBindingActive(std::u16string_view prefix, std::u16string_view uri) const;
    bool isBoundHere(std::u16string_view prefix, std::size_t depth) const;
    void bind(std::u16string_view prefix, std::u16string_view uri, std::size_t depth,
              bool noNamespace = false);
    void writeDeclaration(std::u16string_view prefix, std::u16string_view uri);
    void newLine();
    void indent(std::size_t depth);

    std::u16string_view view(const std::u16string& pool, Span span) const noexcept {
        return std::u16string_view(pool).substr(span.start, span.length);
    }
    static Span append(std::u16string& pool, std::u16string_view text);

    // Output.
    void put(char16_t c);
    void put(std::u16string_view text);
    void putAscii(std::string_view text);
    void putEscaped(std::u16string_view text, bool inAttribute);
    char* room8(std::size_t count) {
        if (m_used8 + count > m_buffer8.size()) {
            growBuffer(count);
        }
        return m_buffer8.data() + m_used8;
    }
    char16_t* room16(std::size_t count) {
        if (m_used16 + count > m_buffer16.size()) {
            growBuffer(count);
        }
        return m_buffer16.data() + m_used16;
    }
    void growBuffer(std::size_t count);
    void flushIfFull();
    void flush();

    std::ostream* m_stream = nullptr;
    std::string* m_bytes = nullptr;
    WString* m_units = nullptr;
    XMLUtils::EncodingType m_encoding;
    bool m_pretty;
    bool m_declaration;
    bool m_utf8Buffer = false;   ///< the buffer holds UTF-8 (else UTF-16 code units)
    std::vector<char> m_buffer8; ///< pending UTF-8 output, the first m_used8 bytes
    std::size_t m_used8 = 0;
    std::vector<char16_t> m_buffer16; ///< pending UTF-16 output, the first m_used16 units
    std::size_t m_used16 = 0;

    std::vector<OpenElement> m_open;
    std::u16string m_names;
    bool m_startTagOpen = false;
    std::u16string m_pendingNamespace;
    std::vector<PendingAttribute> m_attributes;
    std::u16string m_attributeText;
    std::vector<Binding> m_bindings;
    /// Answers of isBindingActive since the bindings last changed.
    struct KnownBinding {
        WString prefix;
        WString uri;
        bool active = false;
    };
    mutable KnownBinding m_known[4];
    mutable std::size_t m_knownCount = 0;
    mutable std::size_t m_knownNext = 0;

    unsigned long m_currentLine = 0;
    bool m_lineFeedInText = false;
    std::size_t m_lastWhiteSpace = 0;
    bool m_started = false;
    bool m_complete = false;
};

} // namespace Vellum::XMLBuilder

#endif
