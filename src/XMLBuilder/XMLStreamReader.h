#ifndef VELLUM_XMLBUILDER_XMLSTREAMREADER_H
#define VELLUM_XMLBUILDER_XMLSTREAMREADER_H

#include "Vellum/Templates/Templates.h"
#include "Vellum/XMLBuilder/Export.h"
#include "Vellum/XMLBuilder/XMLNode.h"

#include <cstddef>
#include <cstdint>
#include <memory>

namespace Vellum::XMLBuilder {

/// Reads an XML document in one pass and hands it over one part (a "unit") at a time, as a
/// tree of XMLNode, so that memory grows with the largest unit and not with the document.
/// A handler decides, for the root and for each child of a container, whether that element is
/// a unit (its subtree is built and handed over when it ends), a container (kept, without its
/// children, while they are asked about in turn) or skipped (only checked to be well-formed).
///
/// Inside a unit the handler is asked only about the children of elements it made "asking"
/// (AskingUnit, AskingPart). Such a child may be a part of the unit, or a unit of its own (a
/// nested unit): that is handed over when it ends, before the unit that holds it, and then
/// stays in the holder's tree as an element with its attributes but without text or children.
/// So a unit that holds many others never holds all their nodes at once.
///
/// A large document is parsed on a second thread, which hands the units over in batches:
/// `Handler::unit` is always called on the calling thread, in document order of the units'
/// ends, while `Handler::disposition` may run on the other thread at the same time.
///
/// Namespaces are processed (an unbound prefix is an error). For safety the reader refuses a
/// DOCTYPE that declares entities, a reference to an entity that is not declared, elements
/// nested more than maximumNestingDepth deep and encodings other than UTF-8, UTF-16,
/// ISO-8859-1 and US-ASCII; it never reads an external DTD or entity. Every such fault, and
/// every malformed document, is an Exceptions::ParseError "<where>, line L, column C:
/// <problem>", where <where> names the document; what the handler throws passes unchanged.
///
///     class Printer : public XMLStreamReader::Handler { ... };
///     Printer printer;
///     XMLStreamReader(printer).readFile(u"clip.xml");
class VELLUM_XMLBUILDER_EXPORT XMLStreamReader {
public:
    /// What is made of an element.
    enum class Disposition {
        Unit,       ///< built with its subtree and handed to Handler::unit when it ends
        Container,  ///< kept without children; each child is asked about (in a unit: AskingPart)
        Skip,       ///< neither built nor handed over
        AskingUnit, ///< a unit whose children are each asked about
        Part,       ///< in a unit: built as part of it with its subtree (else: a Unit)
        AskingPart, ///< a part whose children are each asked about (else: an AskingUnit)
    };

    /// Decides what is made of the elements and receives the units.
    class VELLUM_XMLBUILDER_EXPORT Handler {
    public:
        Handler() = default;
        Handler(const Handler&) = delete;
        Handler& operator=(const Handler&) = delete;
        virtual ~Handler();

        /// What is made of the element named `name` that starts as a child of `container`
        /// (nullptr for the root). `container` holds its attributes and namespace
        /// declarations, and in a unit the children read so far; a container outside units
        /// holds no children. May be called on the reading thread (see above).
        virtual Disposition disposition(const XMLNode* container, const XMLName& name) = 0;
        /// A unit has ended, and so have the ones before it. Its nodes are valid until this
        /// returns (the last unit's until the reader reads again, see lastUnit()); those of
        /// the elements that hold a nested unit stay valid until their own unit is handed
        /// over. When it throws, reading stops and the exception reaches the caller.
        virtual void unit(const XMLNode& element) = 0;
    };

    /// How deeply elements may nest (the root is at depth 1).
    static constexpr std::size_t maximumNestingDepth = 10000;
    /// The size (in bytes, as far as known beforehand) from which a document is parsed on a
    /// second thread.
    static constexpr std::size_t pipelineThreshold = std::size_t{4} << 20U;
    /// The name given to documents read from memory.
    static constexpr const char16_t* bufferName = u"XML buffer";

    explicit XMLStreamReader(Handler& handler);
    XMLStreamReader(const XMLStreamReader&) = delete;
    XMLStreamReader& operator=(const XMLStreamReader&) = delete;
    ~XMLStreamReader();

    /// Reads the file at `path`, named by its path in messages. A file that cannot be opened
    /// or read is a ParseError "<path>: cannot open the file: <reason>" (or "cannot read").
    void readFile(const WString& path);
    /// Reads `size` bytes at `bytes` in the encoding their byte order mark or XML declaration
    /// shows (UTF-8 without either). `bytes` may be null when `size` is 0.
    void readBuffer(const std::uint8_t* bytes, std::size_t size, const WString& where = bufferName);
    /// Reads `text` as the UTF-16 it is, whatever encoding its XML declaration names; a
    /// leading U+FEFF is a byte order mark.
    void readText(const WString& text, const WString& where = bufferName);

    /// The last unit handed over (the root, when the root is a unit), valid until the reader
    /// reads again or is destroyed; nullptr when there was none.
    const XMLNode* lastUnit() const noexcept;

private:
    class Parse;
    Handler& m_handler;
    std::unique_ptr<Parse> m_parse;
};

} // namespace Vellum::XMLBuilder

#endif
