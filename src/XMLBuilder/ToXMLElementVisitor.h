#ifndef VELLUM_SRC_XMLBUILDER_TOXMLELEMENTVISITOR_H
#define VELLUM_SRC_XMLBUILDER_TOXMLELEMENTVISITOR_H

#include "XMLBuilder/MarkupSink.h"
#include "XMLBuilder/WriterContext.h"

#include "Vellum/Metadata/Visitors/ElementVisitor.h"
#include "Vellum/XMLBuilder/Export.h"

#include <vector>

namespace Vellum::Metadata {
class CollectionElement;
class Element;
class ReferenceCollectionElement;
} // namespace Vellum::Metadata

namespace Vellum::Types {
class Reference;
class SimpleDataType;
} // namespace Vellum::Types

namespace Vellum::XMLBuilder {

/// Writes the elements (properties) of one set, inside the set's element in a sink: values
/// through the value writer, collections item by item, elements the dictionary does not place
/// in the set inside "groups:ExtensionElements", and references by identifier ("_REF") or by
/// nesting the target. An element holding no value is not written, nor one the set element
/// holds as an attribute (an identity element). Without typed references, the strong targets
/// to write under the document element after the set are added to a list.
class VELLUM_XMLBUILDER_EXPORT ToXMLElementVisitor : public Metadata::Visitors::ElementVisitor {
public:
    using TargetList = std::vector<const Metadata::MetadataSet*>;
    using ElementList = std::vector<const Metadata::Element*>;

    /// All borrowed: `identities` are the elements written as attributes, `targets` receives
    /// the strong targets to write later.
    ToXMLElementVisitor(MarkupSink& sink, const WriterContext& context,
                        const ElementList& identities, TargetList& targets) noexcept
        : m_sink(sink)
        , m_context(context)
        , m_identities(identities)
        , m_targets(targets) {}
    ~ToXMLElementVisitor() override;

    /// Writes the element of `entry`.
    void write(const XMLNames::Entry& entry);
    /// Ends "groups:ExtensionElements" if an element was written into it; the elements that
    /// follow go into the set element.
    void closeExtensionElements();

    void visit(const Metadata::ReferenceBatchElement& element) override;
    void visit(const Metadata::ReferenceArrayElement& element) override;
    void visit(const Metadata::ReferenceElement& element) override;
    void visit(const Metadata::BatchElement& element) override;
    void visit(const Metadata::ArrayElement& element) override;
    void visit(const Metadata::SimpleElement& element) override;

private:
    /// Starts the element of `item` (named `name`) and writes the attributes of an unknown
    /// element's identity.
    /// Returns its namespace (valid until the next call).
    const WString& startProperty(const XMLNames::Item& item, const XMLNames::ElementName& name);
    /// The content of the element just started for `value`: "groups:StoredBytes" when need
    /// be, then the value (`localName` is the element's, for reading the text back).
    void writeValue(const Types::SimpleDataType& value, Types::Identifiers::Identifier type,
                    std::u16string_view localName);
    void writeCollection(const Metadata::CollectionElement& element);
    void writeReferenceCollection(const Metadata::ReferenceCollectionElement& element);
    void writeReference(const Types::Reference& reference, const WString& propertyNamespace);
    void writeDangling(const Types::Reference& reference);
    void writeByIdentifier(const Types::Reference& reference, const WString& propertyNamespace,
                           const InstanceIndex::Sets& targets);
    /// What the pass knows of `element`'s meta-attribute.
    const XMLNames::Item& itemOf(const Metadata::Element& element) const {
        return m_item != nullptr ? *m_item : m_context.names.item(element);
    }
    void writeTargetInstance(const Types::Reference& reference);

    MarkupSink& m_sink;
    WriterContext m_context;
    const ElementList& m_identities;
    TargetList& m_targets;
    bool m_extensionOpen = false;
    const XMLNames::Item* m_item = nullptr; ///< of the element being written, when known
    WString m_unknownNamespace;             ///< the namespace of the last unknown element started
};

} // namespace Vellum::XMLBuilder

#endif
