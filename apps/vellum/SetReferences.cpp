#include "SetReferences.h"

#include "Vellum/MetaMetadata/MetaElement.h"
#include "Vellum/Metadata/MetadataSet.h"
#include "Vellum/Metadata/ReferenceArrayElement.h"
#include "Vellum/Metadata/ReferenceBatchElement.h"
#include "Vellum/Metadata/ReferenceElement.h"
#include "Vellum/Metadata/Visitors/ElementVisitor.h"
#include "Vellum/Utils/StringConversion.h"

namespace Vellum::App {
namespace {

// Collects the references an element holds.
class ReferenceCollector : public Metadata::Visitors::ElementVisitor {
public:
    explicit ReferenceCollector(std::vector<SetReferences::Reference>& found) noexcept
        : m_found(found) {}

    void visit(const Metadata::ReferenceBatchElement& element) override { collection(element); }
    void visit(const Metadata::ReferenceArrayElement& element) override { collection(element); }
    void visit(const Metadata::ReferenceElement& element) override {
        if (element.value() != nullptr) {
            m_found.push_back(
                {elementName(element), std::nullopt, isWeak(element), element.value()->uuid()});
        }
    }
    void visit(const Metadata::BatchElement& /*element*/) override {}
    void visit(const Metadata::ArrayElement& /*element*/) override {}
    void visit(const Metadata::SimpleElement& /*element*/) override {}

private:
    static std::string elementName(const Metadata::Element& element) {
        const MetaMetadata::MetaElement* meta = element.metaElement();
        return meta != nullptr ? Utils::wstringToString(meta->name()) : "(unknown)";
    }
    static bool isWeak(const Metadata::Element& element) {
        const MetaMetadata::MetaElement* meta = element.metaElement();
        return meta != nullptr &&
               meta->referenceKind() == MetaMetadata::MetaElement::ReferenceKind::Weak;
    }
    void collection(const Metadata::ReferenceCollectionElement& element) {
        const std::string name = elementName(element);
        for (std::uint32_t i = 0; i < element.size(); ++i) {
            m_found.push_back({name, i, isWeak(element), element.referenceAt(i).uuid()});
        }
    }

    std::vector<SetReferences::Reference>& m_found;
};

} // namespace

std::string SetReferences::Reference::label() const {
    return item ? element + "[" + std::to_string(*item) + "]" : element;
}

std::vector<SetReferences::Reference> SetReferences::of(const Metadata::MetadataSet& set) {
    std::vector<Reference> references;
    ReferenceCollector collector(references);
    for (const Metadata::Element* element : set.serializationOrder()) {
        element->accept(collector);
    }
    return references;
}

} // namespace Vellum::App
