#ifndef VELLUM_SRC_XMLBUILDER_XMLNAMES_H
#define VELLUM_SRC_XMLBUILDER_XMLNAMES_H

#include "XMLBuilder/NamespaceRecord.h"

#include "Vellum/Templates/Templates.h"
#include "Vellum/Types/Identifiers.h"
#include "Vellum/XMLBuilder/Export.h"
#include "Vellum/XMLBuilder/ToXMLMetaAttributeVisitor.h"

#include <cstdint>
#include <deque>
#include <memory>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace Vellum::MetaMetadata {
class AbstractMetaAttribute;
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

/// What one export pass works out once per definition rather than once per set: the XML
/// names it writes, what it needs of each meta-attribute, and the order in which the sets of
/// a definition have their elements written; with the pass's namespace record (a name's
/// namespace is entered the first time the pass writes it, so the record holds exactly the
/// namespaces the document uses, each with the prefix met first) and the lists the set
/// writers reuse. Names the dictionary gives are checked to be XML qualified names;
/// InvalidFormat names the definition otherwise.
class VELLUM_XMLBUILDER_EXPORT XMLNames {
public:
    /// The element name of a set definition and of a reference to such a set.
    struct SetName {
        bool valid = false; ///< the definition has a tag name, a prefix and a namespace
        bool named = false; ///< it has a tag name and a prefix
        WString namespaceName;
        WString prefix;
        WString qualifiedName; ///< "<prefix>:<tag>", when named
        WString refName;       ///< "<prefix>:<tag>_REF", when named
        bool entered = false;  ///< its namespace is in the pass's record
    };

    /// An element's name as written: its definition's, with the prefix the record holds for
    /// its namespace.
    struct ElementName {
        WString namespaceName;
        WString prefix;
        WString qualifiedName;
        WString itemName;      ///< "<prefix>:Element", a collection item
        bool identity = false; ///< "rp210:InstanceUID" or "rp210:GenerationUID"
        bool extendedClipID = false;
    };

    /// What the export needs to know of an element's meta-attribute.
    struct Item {
        ToXMLMetaAttributeVisitor::Kind kind = ToXMLMetaAttributeVisitor::Unknown;
        const MetaMetadata::MetaElement* meta = nullptr;
        bool ordered = false;       ///< has a "SchemaIndex"
        std::uint32_t orderKey = 0; ///< the index as an unsigned key
        bool writesEmptyCollection = false;
        Types::Identifiers::Identifier dataType = Types::Identifiers::Unknown;
        WString localTagText;     ///< of an unknown element
        bool identityTag = false; ///< its tag name is "InstanceUID" or "GenerationUID"
        mutable const ElementName* name = nullptr; ///< once the pass has named it
        /// Placed in "groups:ExtensionElements" rather than in the set element.
        bool extension() const noexcept {
            return meta == nullptr || kind != ToXMLMetaAttributeVisitor::Defined;
        }
    };

    /// One element of a set with what the export knows of it.
    struct Entry {
        const Metadata::Element* element;
        const Item* item;
    };

    /// Lists a set writer fills and empties, kept for the next set at the same depth.
    struct Scratch {
        std::vector<Entry> order;
        std::vector<const Metadata::Element*> elements;
        std::vector<const Metadata::Element*> identities;
    };

    /// The order in which the sets of one definition have their valid elements written: by
    /// "SchemaIndex", equal indexes in label order; each by its position among the set's
    /// valid elements, in label order.
    struct Plan {
        std::vector<const MetaMetadata::AbstractMetaAttribute*> attributes; ///< by label
        std::vector<std::pair<std::size_t, const Item*>> ordered;
    };

    explicit XMLNames(NamespaceRecord& namespaces) noexcept;
    XMLNames(const XMLNames&) = delete;
    XMLNames& operator=(const XMLNames&) = delete;
    ~XMLNames();

    NamespaceRecord& namespaces() noexcept { return m_namespaces; }

    /// The names of sets of `definition`; nothing is entered.
    SetName& set(const MetaMetadata::MetaMetadataSet& definition);
    /// `name`'s namespace entered with its prefix (once in the pass).
    void enter(SetName& name);

    /// The classification of `element`'s meta-attribute.
    const Item& item(const Metadata::Element& element);
    /// The plan of the sets of `set`'s definition, made from `set` the first time.
    const Plan& plan(const Metadata::MetadataSet& set);
    /// The lists of the set being written, one level deeper than the last one opened (sets
    /// nest with typed references); each open is matched by a close.
    Scratch& openScratch();
    void closeScratch() noexcept { --m_depth; }
    /// The name `item`'s element is written with; enters its namespace.
    const ElementName& name(const Item& item);
    /// Whether `name(item)` would now give an identity name (nothing is entered).
    bool wouldBeIdentity(const Item& item) const;
    /// Whether the namespace and tag name of `meta` name another element of `dictionary`
    /// first: the import, which finds an element by its name, would then read it as that one.
    bool namesAnother(const MetaMetadata::MetaElement& meta,
                      const MetaMetadata::Dictionary& dictionary);

    /// The namespaces of the child elements of compound values ("types", "s422mTypes"),
    /// each entered unless its prefix is bound already.
    void enterValueNamespaces();
    /// "groups" entered.
    void enterGroups();
    /// Whether enterGroups was called.
    bool groupsEntered() const noexcept { return m_groups; }
    /// "types" entered.
    void enterTypes();
    /// "types" entered unless its prefix is bound already.
    void enterTypesIfUnbound();

    /// Throws InvalidFormat unless `qualifiedName` is an XML qualified name in `namespaceName`
    /// that a DOM accepts; `owner` names where the name comes from.
    static void requireQualifiedName(std::u16string_view namespaceName,
                                     std::u16string_view qualifiedName, const WString& owner);

private:
    NamespaceRecord& m_namespaces;
    std::unordered_map<const MetaMetadata::MetaMetadataSet*, std::unique_ptr<SetName>> m_sets;
    std::unordered_map<const MetaMetadata::AbstractMetaAttribute*, std::unique_ptr<Item>> m_items;
    std::unordered_map<const MetaMetadata::MetaElement*, std::unique_ptr<ElementName>> m_names;
    std::unordered_map<const MetaMetadata::MetaMetadataSet*, std::unique_ptr<Plan>> m_plans;
    std::unordered_map<const MetaMetadata::MetaElement*, bool> m_namesAnother;
    /// The import's index of elements by name, made on first use.
    std::unique_ptr<ElementNameIndex> m_elementNames;
    const MetaMetadata::MetaMetadataSet* m_lastSet = nullptr; ///< of the last set() answer
    SetName* m_lastSetName = nullptr;
    const MetaMetadata::MetaMetadataSet* m_lastPlanned = nullptr; ///< of the last plan() answer
    const Plan* m_lastPlan = nullptr;
    std::deque<Scratch> m_scratch;
    std::size_t m_depth = 0;
    std::unique_ptr<ElementName> m_unknownName;
    bool m_valueNamespaces = false;
    bool m_groups = false;
    bool m_types = false;
    bool m_typesIfUnbound = false;
};

} // namespace Vellum::XMLBuilder

#endif
