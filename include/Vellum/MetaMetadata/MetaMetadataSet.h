#ifndef VELLUM_METAMETADATA_METAMETADATASET_H
#define VELLUM_METAMETADATA_METAMETADATASET_H

#include "Vellum/Core/Export.h"
#include "Vellum/KLV/Key.h"
#include "Vellum/Templates/Templates.h"
#include "Vellum/Types/UniversalLabel.h"

#include <atomic>
#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

namespace Vellum::MetaMetadata {

class DictionaryTableLoader;
class MetaAttribute;
class MetaElement;

/// The dictionary's definition of one set (or pack): key, name, parent, flags, XML mapping
/// and every element it has, its own and the inherited ones.
///
/// Inheritance is resolved by the dictionary: a CDCIEssenceDescriptor lists the elements of
/// GenericPictureEssenceDescriptor, FileDescriptor, GenericDescriptor and InterchangeObject as
/// well. The built-in sets make their elements on first use of any element accessor, which is
/// safe from several threads at once. Owned by the `Dictionary`; pointers to it stay valid as
/// long as the dictionary lives, while loading more definitions may change its element tables.
class VELLUM_CORE_EXPORT MetaMetadataSet {
public:
    /// How the set is coded in a file.
    enum class Kind : std::uint8_t {
        LocalSet = 0, ///< a local set of header metadata (tag, length, value items)
        Pack = 1,     ///< a fixed pack (partition, primer, random index)
    };

    /// The facts of one set definition, as the dictionary file gives them.
    struct Definition {
        /// Nothing for an abstract set that has no key of its own.
        std::optional<KLV::Key> key;
        WString name;
        Kind kind = Kind::LocalSet;
        bool abstract = false;
        bool structural = false;
        WString xmlTagName;
        WString xmlPrefix;
        WString xmlNamespace;
    };

    /// Elements by label, in label order.
    using ElementMap = std::map<Types::UniversalLabel, const MetaElement*>;
    using ElementList = std::vector<const MetaElement*>;

    /// Made by the dictionary's loader. `parent` is borrowed (nullptr for a root set) and
    /// must outlive this set.
    MetaMetadataSet(Definition definition, const MetaMetadataSet* parent);
    MetaMetadataSet(const MetaMetadataSet&) = delete;
    MetaMetadataSet& operator=(const MetaMetadataSet&) = delete;
    ~MetaMetadataSet();

    /// The set's key; all zero for a set without one (see `hasKey`).
    const KLV::Key& key() const noexcept { return m_key; }
    bool hasKey() const noexcept { return m_definition.key.has_value(); }
    /// The usual MXF name ("Preface", "CDCIEssenceDescriptor" ...).
    const WString& name() const noexcept { return m_definition.name; }
    Kind kind() const noexcept { return m_definition.kind; }
    /// The set it inherits from, or nullptr.
    const MetaMetadataSet* parent() const noexcept { return m_parent; }
    /// Steps from the root of its inheritance chain (InterchangeObject = 0).
    unsigned depth() const noexcept { return m_depth; }
    /// An abstract set is never written on its own, only through a set derived from it.
    bool isAbstract() const noexcept { return m_definition.abstract; }
    /// Whether the set is structural metadata (not descriptive or application metadata).
    bool isStructural() const noexcept { return m_definition.structural; }
    /// Whether this set is `other` or inherits from it.
    bool isKindOf(const MetaMetadataSet& other) const noexcept;

    /// A named text property: "XMLTagName", "XMLDefaultPrefix" or "XMLNamespaceURI"; nullptr
    /// for any other name. The text lives as long as this set.
    const WString* property(const WString& propertyName) const noexcept;

    /// All elements, inherited ones included, in label order.
    ElementMap::const_iterator elementsBegin() const { return elements().begin(); }
    ElementMap::const_iterator elementsEnd() const { return elements().end(); }
    const ElementMap& elements() const;
    /// All elements, inherited ones included, by schema index: inherited ones first.
    const ElementList& elementsBySchemaIndex() const;
    /// The elements this set defines itself, in table order.
    const ElementList& ownElements() const;

    /// The element with this label, own or inherited; byte 8 (the registry version) is not
    /// compared. nullptr if the set has no such element.
    const MetaElement* findElement(const Types::UniversalLabel& ul) const;
    /// The element with this static local tag, own or inherited, or nullptr.
    const MetaElement* findElementByTag(std::uint16_t tag) const;
    /// The shared attribute of the element with this label (see `findElement`), or an empty
    /// pointer if the set has no such element.
    Templates::SharedPtr<const MetaAttribute> attribute(const Types::UniversalLabel& ul) const;

private:
    friend class DictionaryBuilder;
    friend class DictionaryTableLoader;

    Definition m_definition;
    KLV::Key m_key;
    const MetaMetadataSet* m_parent;
    unsigned m_depth;
    std::vector<std::unique_ptr<MetaElement>> m_ownedElements;
    ElementList m_ownElements;
    ElementMap m_elements;
    ElementList m_bySchemaIndex;
    std::vector<std::pair<std::uint16_t, const MetaElement*>> m_byTag;
    /// For a built-in set whose elements are made on first use: the loader and the set's
    /// place in its tables. Borrowed; the dictionary owns both.
    DictionaryTableLoader* m_loader = nullptr;
    std::uint16_t m_tableIndex = 0;
    /// Whether the element lists above are complete.
    std::atomic<bool> m_materialized{true};

    /// Makes the elements if they are not made yet.
    void materialize() const;
};

} // namespace Vellum::MetaMetadata

#endif
