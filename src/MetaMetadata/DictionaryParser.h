#ifndef VELLUM_SRC_METAMETADATA_DICTIONARYPARSER_H
#define VELLUM_SRC_METAMETADATA_DICTIONARYPARSER_H

#include "Vellum/KLV/Key.h"
#include "Vellum/MetaMetadata/AttributeRequiredStatus.h"
#include "Vellum/MetaMetadata/MetaElement.h"
#include "Vellum/MetaMetadata/MetaMetadataSet.h"
#include "Vellum/Types/Identifiers.h"

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace Vellum::MetaMetadata {

/// UTF-8 to UTF-16, with a short cut for ASCII text (every name, once parsed).
WString widen(std::string_view text);

/// Throws InvalidFormat "<sourceName>:<line>: <message>".
[[noreturn]] void throwAtLine(const std::string& sourceName, unsigned line,
                              const std::string& message);

/// Reads the records of one dictionary text (see docs/dictionary-format.md) and checks every
/// field on its own. Names are not resolved here: that needs the whole text and the
/// dictionary it extends (DictionaryBuilder). The records view the text, which must outlive
/// them.
class DictionaryParser {
public:
    /// A "set" or "pack" record. Empty views stand for cells left out or written "-".
    struct SetRecord {
        unsigned line = 0;
        MetaMetadataSet::Kind kind = MetaMetadataSet::Kind::LocalSet;
        std::optional<KLV::Key> key;
        std::string_view name;
        std::string_view parent;
        bool abstract = false;
        bool structural = false;
        std::string_view xmlPrefix;
        std::string_view xmlNamespace;
        std::string_view xmlTag;
    };

    /// An "element" record. Empty views stand for cells left out or written "-".
    struct ElementRecord {
        unsigned line = 0;
        std::string_view set;
        KLV::Key::Bytes ul{};
        std::string_view name;
        std::optional<std::uint16_t> localTag;
        Types::Identifiers::Identifier type = Types::Identifiers::Unknown;
        /// Batch or Array for a collection.
        std::optional<Types::Identifiers::Identifier> collection;
        MetaElement::ReferenceKind reference = MetaElement::ReferenceKind::None;
        std::string_view target;
        AttributeRequiredStatus::Status required = AttributeRequiredStatus::Optional;
        std::optional<unsigned> order;
        std::optional<unsigned> schemaIndex;
        std::string_view xmlPrefix;
        std::string_view xmlNamespace;
        std::string_view xmlTag;
    };

    DictionaryParser(std::string_view text, std::string sourceName);

    /// Reads the whole text; throws InvalidFormat naming the source, the line and the fault.
    void parse();

    const std::vector<SetRecord>& sets() const noexcept { return m_sets; }
    const std::vector<ElementRecord>& elements() const noexcept { return m_elements; }
    const std::string& sourceName() const noexcept { return m_sourceName; }

private:
    enum Column : std::uint8_t {
        KeyColumn,
        NameColumn,
        ParentColumn,
        AbstractColumn,
        StructuralColumn,
        XmlPrefixColumn,
        XmlNamespaceColumn,
        XmlTagColumn,
        SetColumn,
        ULColumn,
        LocalTagColumn,
        TypeColumn,
        CollectionColumn,
        ReferenceColumn,
        TargetColumn,
        RequiredColumn,
        OrderColumn,
        SchemaIndexColumn,
        ColumnCount
    };
    enum RecordKind : std::uint8_t { SetRecordKind, PackRecordKind, ElementRecordKind, KindCount };

    static constexpr std::size_t maxFields = 32;
    struct Fields {
        std::array<std::string_view, maxFields> cells;
        std::size_t count = 0;
    };
    struct Layout {
        bool declared = false;
        std::size_t fieldCount = 0;
        std::array<int, ColumnCount> position{};
    };

    [[noreturn]] void fail(const std::string& message) const;
    Fields split(std::string_view line) const;
    void parseFormat(const Fields& fields) const;
    void parseColumns(const Fields& fields);
    const Layout& layoutFor(RecordKind kind, const Fields& fields) const;
    std::string_view cell(const Fields& fields, const Layout& layout, Column column,
                          bool required) const;
    void parseSet(const Fields& fields, RecordKind kind);
    void parseElement(const Fields& fields);
    void parseElementKind(const Fields& fields, const Layout& layout, ElementRecord& record) const;
    void parseElementXml(const Fields& fields, const Layout& layout, ElementRecord& record) const;

    std::string_view name(std::string_view text, const char* what) const;
    std::string_view xmlNamespace(std::string_view text) const;
    KLV::Key::Bytes label(std::string_view text, const char* what) const;
    bool yesNo(std::string_view text, const char* what) const;
    std::uint16_t localTag(std::string_view text) const;
    Types::Identifiers::Identifier type(std::string_view text) const;
    unsigned number(std::string_view text, const char* what) const;

    std::string_view m_text;
    std::string m_sourceName;
    unsigned m_line = 0;
    std::array<Layout, KindCount> m_layouts{};
    std::vector<SetRecord> m_sets;
    std::vector<ElementRecord> m_elements;
};

} // namespace Vellum::MetaMetadata

#endif
