#ifndef VELLUM_METAMETADATA_METAELEMENT_H
#define VELLUM_METAMETADATA_METAELEMENT_H

#include "Vellum/Core/Export.h"
#include "Vellum/MetaMetadata/AttributeRequiredStatus.h"
#include "Vellum/Templates/Templates.h"
#include "Vellum/Types/Identifiers.h"
#include "Vellum/Types/LocalTag.h"
#include "Vellum/Types/UniversalLabel.h"

#include <cstdint>
#include <optional>

namespace Vellum::MetaMetadata {

class MetaAttribute;
class MetaMetadataSet;

/// The dictionary's definition of one element (property) as one set defines it: label,
/// name, type, static local tag, reference target, required status and XML mapping.
///
/// The same label may be defined by several unrelated sets (BodySID in EssenceContainerData
/// and in a partition pack); each set then has its own definition, and the dictionary's
/// label index picks one of them (see `Dictionary::findElement`). Owned by the defining
/// `MetaMetadataSet`; valid as long as the `Dictionary` lives.
class VELLUM_CORE_EXPORT MetaElement {
public:
    /// What a value of the element points at.
    enum class ReferenceKind : std::uint8_t {
        None = 0,   ///< a plain value
        Strong = 1, ///< owns the target set, by its InstanceUID
        Weak = 2,   ///< names the target set by its InstanceUID
        Global = 3, ///< a UUID equal to the target's own ID property, not its InstanceUID
    };

    /// The facts of one element definition, as the dictionary file gives them.
    struct Definition {
        Types::UniversalLabel ul;
        WString name;
        std::optional<std::uint16_t> staticLocalTag;
        /// The type of one value; for a collection, the type of one item.
        Types::Identifiers::Identifier valueType = Types::Identifiers::Unknown;
        ReferenceKind referenceKind = ReferenceKind::None;
        /// Name of the target set of a reference; empty otherwise.
        WString targetSetName;
        AttributeRequiredStatus::Status requiredStatus = AttributeRequiredStatus::Optional;
        /// Position in the defining set's own table, from 1.
        unsigned order = 0;
        unsigned schemaIndex = 0;
        WString xmlTagName;
        WString xmlPrefix;
        WString xmlNamespace;
    };

    /// Made by the dictionary's loader. `definingSet` is borrowed and must outlive this.
    MetaElement(Definition definition, const MetaMetadataSet& definingSet);
    MetaElement(const MetaElement&) = delete;
    MetaElement& operator=(const MetaElement&) = delete;
    virtual ~MetaElement();

    const Types::UniversalLabel& ul() const noexcept { return m_definition.ul; }
    /// The usual MXF name ("InstanceUID", "Tracks" ...).
    const WString& name() const noexcept { return m_definition.name; }
    /// The static local tag, or nothing when writers give the element a dynamic tag.
    const std::optional<Types::LocalTag>& staticLocalTag() const noexcept { return m_localTag; }

    /// The value's type; for a collection its kind (Batch or Array, see `isCollection`).
    virtual Types::Identifiers::Identifier dataType() const noexcept;
    /// Whether this is a `MetaCollectionElement`.
    virtual bool isCollection() const noexcept;
    /// The type of one value, or of one item of a collection.
    Types::Identifiers::Identifier valueType() const noexcept { return m_definition.valueType; }

    /// The set whose table lists this element.
    const MetaMetadataSet& definingSet() const noexcept { return *m_definingSet; }
    ReferenceKind referenceKind() const noexcept { return m_definition.referenceKind; }
    /// Name of the target set of a reference; empty for a plain value.
    const WString& targetSetName() const noexcept { return m_definition.targetSetName; }
    /// The target set of a reference, or nullptr for a plain value.
    const MetaMetadataSet* targetSet() const noexcept { return m_targetSet; }

    AttributeRequiredStatus::Status requiredStatus() const noexcept {
        return m_definition.requiredStatus;
    }
    /// Position in the defining set's own table, from 1.
    unsigned order() const noexcept { return m_definition.order; }
    /// Place among all elements of a set, parent-first: order + 100 x depth of the defining
    /// set in its inheritance chain.
    unsigned schemaIndex() const noexcept { return m_definition.schemaIndex; }

    /// A named text property: "XMLTagName", "XMLDefaultPrefix", "XMLNamespaceURI" or
    /// "SchemaIndex" (decimal). nullptr for any other name. The text lives as long as this.
    const WString* property(const WString& propertyName) const noexcept;

    /// The attribute of this element where the dictionary places it (in its defining set and
    /// the sets inheriting from it), shared by all elements that use it. Never null.
    const Templates::SharedPtr<const MetaAttribute>& attribute() const noexcept {
        return m_attribute;
    }

    /// The definition as loaded.
    const Definition& definition() const noexcept { return m_definition; }

private:
    friend class DictionaryBuilder;
    friend class DictionaryTableLoader;

    Definition m_definition;
    std::optional<Types::LocalTag> m_localTag;
    WString m_schemaIndexText;
    const MetaMetadataSet* m_definingSet;
    const MetaMetadataSet* m_targetSet = nullptr;
    Templates::SharedPtr<const MetaAttribute> m_attribute;
};

} // namespace Vellum::MetaMetadata

#endif
