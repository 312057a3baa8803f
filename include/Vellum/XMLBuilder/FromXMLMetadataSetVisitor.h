#ifndef VELLUM_XMLBUILDER_FROMXMLMETADATASETVISITOR_H
#define VELLUM_XMLBUILDER_FROMXMLMETADATASETVISITOR_H

#include "Vellum/Metadata/Visitors/NonConstMetadataSetVisitor.h"
#include "Vellum/Templates/Templates.h"
#include "Vellum/XMLBuilder/Export.h"
#include "Vellum/XMLBuilder/XMLNode.h"

namespace Vellum::MetaMetadata {
class Dictionary;
class MetaElement;
} // namespace Vellum::MetaMetadata

namespace Vellum::Metadata {
class Element;
class PartitionMetadata;
} // namespace Vellum::Metadata

namespace Vellum::XMLBuilder {

class ImportTables;

/// Fills a set fresh from PartitionMetadata::createMetadataSet from the XML element that
/// describes it.
///
/// Each of the set's dictionary elements is looked for as the first child named by its
/// "XMLDefaultPrefix" and "XMLTagName" (a prefix unbound at the set's element is taken as
/// the rp210 namespace); children the dictionary does not ask for are ignored. The two
/// identity elements come from the attributes "rp210:InstanceUID" (its text is a reference
/// name: the set takes the identifier the reference name table gives that name, or enters
/// its own; an empty one leaves the set without identifier, as the export writes a set
/// stored without one) and "rp210:GenerationUID". The children of
/// "groups:ExtensionElements" (read only where the prefix "groups" is bound) become invalid
/// elements: misplaced ones when the dictionary knows their namespace and name (taken from
/// the root element's declarations), unknown ones otherwise, identified by
/// "groups:StaticLocalTag" or "groups:UniversalLabel".
class VELLUM_XMLBUILDER_EXPORT FromXMLMetadataSetVisitor
    : public Metadata::Visitors::NonConstMetadataSetVisitor {
public:
    /// `element` describes the set; `depth` is how deeply the set is nested inline (0 at the
    /// top level). Everything is borrowed.
    FromXMLMetadataSetVisitor(const XMLNode& element, Metadata::PartitionMetadata& partition,
                              ImportTables& tables, unsigned depth = 0) noexcept
        : m_element(element)
        , m_partition(partition)
        , m_tables(tables)
        , m_depth(depth) {}
    ~FromXMLMetadataSetVisitor() override;

    /// Reads `set`; the elements read so far stay when it throws. Throws ParseError for an
    /// unknown extension element that carries neither "groups:StaticLocalTag" nor
    /// "groups:UniversalLabel", what the element reader throws, and what the metadata model
    /// throws for malformed identifier, tag or label text.
    void visit(Metadata::MetadataSet& set) override;

private:
    void readIdentity(Metadata::MetadataSet& set, Metadata::Element& element,
                      const MetaMetadata::MetaElement& meta, const WString& tagName);
    void readMisplacedIdentity(Metadata::MetadataSet& set);
    void readExtensionElements(Metadata::MetadataSet& set);
    void readExtensionElement(Metadata::MetadataSet& set, const XMLNode& node);
    void readUnknownElement(Metadata::MetadataSet& set, const XMLNode& node);
    void readElement(const XMLNode& node, const MetaMetadata::MetaElement* meta,
                     Metadata::Element& element);

    const XMLNode& m_element;
    Metadata::PartitionMetadata& m_partition;
    ImportTables& m_tables;
    unsigned m_depth;
};

} // namespace Vellum::XMLBuilder

#endif
