#ifndef VELLUM_XMLBUILDER_IMPORTTABLES_H
#define VELLUM_XMLBUILDER_IMPORTTABLES_H

#include "XMLBuilder/ReferenceNameTable.h"

#include "Vellum/Templates/Templates.h"
#include "Vellum/XMLBuilder/Export.h"

#include <functional>
#include <memory>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace Vellum::KLV {
class Key;
} // namespace Vellum::KLV

namespace Vellum::Types {
class UniversalLabel;
} // namespace Vellum::Types

namespace Vellum::MetaMetadata {
class Dictionary;
class MetaElement;
class MetaMetadataSet;
} // namespace Vellum::MetaMetadata

namespace Vellum::Metadata {
class Element;
class MetadataSet;
} // namespace Vellum::Metadata

namespace Vellum::XMLBuilder {

class ElementNameIndex;
struct XMLName;
class XMLNode;

/// What one import shares among all its readers: the dictionary's sets by XML name, the
/// reference names of the document, and the lookups of element definitions, made on first
/// use. The dictionary is borrowed. Only `setNamed(std::u16string_view)` may be called while
/// another thread uses the tables.
class VELLUM_XMLBUILDER_EXPORT ImportTables {
public:
    /// Tables over `dictionary`; `renewIdentifiers` gives every reference name a fresh
    /// identifier (see ReferenceNameTable).
    ImportTables(const MetaMetadata::Dictionary& dictionary, bool renewIdentifiers);
    ImportTables(const ImportTables&) = delete;
    ImportTables& operator=(const ImportTables&) = delete;
    ~ImportTables();

    const MetaMetadata::Dictionary& dictionary() const noexcept { return m_dictionary; }
    ReferenceNameTable& names() noexcept { return m_names; }

    /// The set whose "XMLTagName" is `localName`; where two sets share a name, the first in
    /// key order; nullptr for none.
    const MetaMetadata::MetaMetadataSet* setNamed(std::u16string_view localName) const;
    /// The same for the local name of `name`, remembered per name.
    const MetaMetadata::MetaMetadataSet* setNamed(const XMLName& name);
    /// The key to make the set `element` describes under: its "groups:Key" (a set stored under
    /// another form of its definition's key), else the key of `definition`. Throws ParseError
    /// when "groups:Key" is not a key text or is not a key of `definition`.
    KLV::Key setKeyOf(const XMLNode& element,
                      const MetaMetadata::MetaMetadataSet& definition) const;

    /// The element definition whose "XMLNamespaceURI" is `namespaceURI` and whose
    /// "XMLTagName" is `tagName`; where two share them, the first in label order; nullptr for
    /// none.
    const MetaMetadata::MetaElement* elementNamed(std::u16string_view namespaceURI,
                                                  std::u16string_view tagName);

    /// The label of GenerationUID.
    static const Types::UniversalLabel& generationUIDLabel();

    /// The dictionary's definitions of the identity elements InstanceUID and GenerationUID
    /// (nullptr when it has none).
    const MetaMetadata::MetaElement* instanceUIDElement() const noexcept { return m_instanceUID; }
    const MetaMetadata::MetaElement* generationUIDElement() const noexcept {
        return m_generationUID;
    }

    /// How a set's valid element is read: its definition, the XML tag name and prefix of its
    /// XML element (nullptr when it has none, and the element is not read), and whether it is
    /// an identity element (read from an attribute of the set's XML element).
    struct ElementReading {
        const MetaMetadata::MetaElement* meta = nullptr;
        const WString* tagName = nullptr;
        const WString* prefix = nullptr;
        bool identity = false;
    };
    /// The reading of `element`.
    static ElementReading readingOf(const Metadata::Element& element);
    /// The readings of the valid elements of the sets of `set`'s definition, in label order,
    /// made from `set` on first use. A reader uses an entry only for an element whose
    /// definition is the entry's `meta`, and `readingOf` for any other.
    const std::vector<ElementReading>& readingsOf(const Metadata::MetadataSet& set);

    /// Sets made for elements before they were read: nested sets the reader handed over
    /// before the set that holds them, and the sets made to hold them. The holder's reading
    /// takes its nested sets from here instead of making them again.
    void keepMadeSet(const XMLNode& element, Metadata::MetadataSet& set);
    /// The set made for `element`, or nullptr.
    Metadata::MetadataSet* madeSet(const XMLNode& element) const;
    /// The set made for `element` (nullptr for none), which is then forgotten.
    Metadata::MetadataSet* takeMadeSet(const XMLNode& element);
    /// Forgets every set made ahead (their elements are about to be used again).
    void forgetMadeSets() noexcept { m_madeSets.clear(); }

private:
    const MetaMetadata::Dictionary& m_dictionary;
    ReferenceNameTable m_names;
    std::unordered_map<const XMLName*, const MetaMetadata::MetaMetadataSet*> m_setsByName;
    /// Element definitions by XML name, made on first use.
    std::unique_ptr<ElementNameIndex> m_elements;
    const MetaMetadata::MetaElement* m_instanceUID;
    const MetaMetadata::MetaElement* m_generationUID;
    /// By set definition: the readings of its elements, made once per import rather than
    /// once per set.
    std::unordered_map<const MetaMetadata::MetaMetadataSet*, std::vector<ElementReading>>
        m_readings;
    std::unordered_map<const XMLNode*, Metadata::MetadataSet*> m_madeSets;
};

} // namespace Vellum::XMLBuilder

#endif
