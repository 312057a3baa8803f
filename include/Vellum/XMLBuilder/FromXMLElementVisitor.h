#ifndef VELLUM_XMLBUILDER_FROMXMLELEMENTVISITOR_H
#define VELLUM_XMLBUILDER_FROMXMLELEMENTVISITOR_H

#include "Vellum/Metadata/Visitors/NonConstElementVisitor.h"
#include "Vellum/Templates/Templates.h"
#include "Vellum/Types/Identifiers.h"
#include "Vellum/Types/SimpleDataType.h"
#include "Vellum/XMLBuilder/Export.h"
#include "Vellum/XMLBuilder/XMLNode.h"

namespace Vellum::MetaMetadata {
class MetaElement;
} // namespace Vellum::MetaMetadata

namespace Vellum::Metadata {
class CollectionElement;
class MetadataSet;
class PartitionMetadata;
class ReferenceCollectionElement;
} // namespace Vellum::Metadata

namespace Vellum::Types {
class Reference;
} // namespace Vellum::Types

namespace Vellum::XMLBuilder {

class ImportTables;

/// Fills one element of a set from the XML node that holds its value: a simple value through
/// FromXMLValueParser, a batch or array item by item (the element children, in order), a
/// reference to a set written inline (made in the partition and read recursively through
/// FromXMLMetadataSetVisitor), or a reference by name: a child whose name holds "_REF", whose
/// first attribute that is not a namespace declaration names the target. A reference by name
/// is stored unverified with the identifier the reference name table gives that name (a new
/// one the first time); no later pass links references.
///
/// Items of a variable-size type are stored at one size, the first non-empty item's; items of
/// a fixed-size type at the type's size. An item element without text is an empty string or
/// byte string where the type allows one. Missing children, set names the dictionary does not
/// know and references of a type other than StrongReference or WeakReference store nothing,
/// without error. A reference collection without children is stored present and empty.
class VELLUM_XMLBUILDER_EXPORT FromXMLElementVisitor
    : public Metadata::Visitors::NonConstElementVisitor {
public:
    /// How deeply sets written inline may nest (a top-level set is at depth 0).
    static constexpr unsigned maximumInlineDepth = 1000;
    /// Source name recorded in the exceptions of the element reader.
    static constexpr const char* sourceName = "Vellum/XMLBuilder/FromXMLElementVisitor";

    /// `element` holds the value. `metaElement` is the element's definition, or nullptr to
    /// read the value as Unknown (hexadecimal). `depth` is the nesting depth of the set that
    /// owns the element. Everything is borrowed; sets written inline are made in (and owned
    /// by) `partition`.
    FromXMLElementVisitor(const XMLNode& element, const MetaMetadata::MetaElement* metaElement,
                          Metadata::PartitionMetadata& partition, ImportTables& tables,
                          unsigned depth = 0) noexcept;
    /// The same for a simple value written as the attribute `attribute`; the other kinds of
    /// element read nothing from an attribute.
    FromXMLElementVisitor(const XMLAttribute& attribute,
                          const MetaMetadata::MetaElement* metaElement,
                          Metadata::PartitionMetadata& partition, ImportTables& tables,
                          unsigned depth = 0) noexcept;
    ~FromXMLElementVisitor() override;

    /// The visits throw what FromXMLValueParser throws; InvalidLength when the items of a
    /// batch or array of a variable-size type differ in size; InvalidFormat for an item that
    /// holds no value; ParseError for a reference element without attribute and for sets
    /// nested deeper than maximumInlineDepth; and what the metadata model throws.
    void visit(Metadata::ReferenceBatchElement& element) override;
    void visit(Metadata::ReferenceArrayElement& element) override;
    void visit(Metadata::ReferenceElement& element) override;
    void visit(Metadata::BatchElement& element) override;
    void visit(Metadata::ArrayElement& element) override;
    void visit(Metadata::SimpleElement& element) override;

private:
    Templates::vector<Templates::auto_ptr<Types::SimpleDataType>>
    readItems(const XMLNode& property, Types::Identifiers::Identifier itemType) const;
    std::uint32_t
    itemSize(const Templates::vector<Templates::auto_ptr<Types::SimpleDataType>>& items,
             Types::Identifiers::Identifier itemType) const;
    template <class CollectionType, class ElementType>
    void readCollection(ElementType& element);
    void readReferenceCollection(Metadata::ReferenceCollectionElement& element);
    Templates::auto_ptr<Types::Reference> referenceByName(const XMLNode& child,
                                                          Types::Identifiers::Identifier kind);
    Metadata::MetadataSet* readInlineSet(const XMLNode& child);

    /// Where the value is: an element, or else an attribute.
    const XMLNode* m_element;
    const XMLAttribute* m_attribute;
    Types::Identifiers::Identifier m_dataType;
    Metadata::PartitionMetadata& m_partition;
    ImportTables& m_tables;
    unsigned m_depth;
};

} // namespace Vellum::XMLBuilder

#endif
