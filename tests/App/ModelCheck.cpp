#include "ModelCheck.h"

#include "Vellum/MetaMetadata/Dictionary.h"
#include "Vellum/MetaMetadata/MetaElement.h"
#include "Vellum/Metadata/ReferenceArrayElement.h"
#include "Vellum/Metadata/ReferenceBatchElement.h"
#include "Vellum/Metadata/ReferenceElement.h"
#include "Vellum/Metadata/Visitors/ElementVisitor.h"
#include "Vellum/Utils/StringConversion.h"

#include <cstdlib>
#include <tuple>

namespace VellumTest {
namespace {

class Collector : public Vellum::Metadata::Visitors::ElementVisitor {
public:
    Collector(std::string from, std::vector<ModelReference>& found)
        : m_from(std::move(from))
        , m_found(found) {}

    void visit(const Vellum::Metadata::ReferenceBatchElement& element) override {
        collection(element);
    }
    void visit(const Vellum::Metadata::ReferenceArrayElement& element) override {
        collection(element);
    }
    void visit(const Vellum::Metadata::ReferenceElement& element) override {
        if (element.value() != nullptr) {
            add(element, element.value()->uuid());
        }
    }
    void visit(const Vellum::Metadata::BatchElement& /*element*/) override {}
    void visit(const Vellum::Metadata::ArrayElement& /*element*/) override {}
    void visit(const Vellum::Metadata::SimpleElement& /*element*/) override {}

private:
    void collection(const Vellum::Metadata::ReferenceCollectionElement& element) {
        for (std::uint32_t i = 0; i < element.size(); ++i) {
            add(element, element.referenceAt(i).uuid());
        }
    }
    void add(const Vellum::Metadata::Element& element, const Vellum::Types::UUID& to) {
        const auto* meta = element.metaElement();
        const bool weak =
            meta != nullptr &&
            meta->referenceKind() == Vellum::MetaMetadata::MetaElement::ReferenceKind::Weak;
        m_found.push_back({m_from, Vellum::Utils::wstringToString(to.toString()), weak});
    }

    std::string m_from;
    std::vector<ModelReference>& m_found;
};

} // namespace

std::unique_ptr<Vellum::Metadata::PartitionMetadata> readModel(const std::string& path) {
    return Vellum::Metadata::PartitionMetadata::readFile(
        path, "header", Vellum::MetaMetadata::Dictionary::builtIn());
}

std::string uidText(const Vellum::Metadata::MetadataSet& set) {
    const Vellum::Types::UUID* uid = set.instanceUID();
    return uid != nullptr ? Vellum::Utils::wstringToString(uid->toString()) : "-";
}

bool ModelReference::operator<(const ModelReference& other) const {
    return std::tie(from, to, weak) < std::tie(other.from, other.to, other.weak);
}

bool ModelReference::operator==(const ModelReference& other) const {
    return std::tie(from, to, weak) == std::tie(other.from, other.to, other.weak);
}

std::vector<ModelReference> referencesOf(const Vellum::Metadata::PartitionMetadata& metadata) {
    std::vector<ModelReference> references;
    for (const Vellum::Metadata::MetadataSet* set : metadata.sets()) {
        Collector collector(uidText(*set), references);
        for (const Vellum::Metadata::Element* element : set->serializationOrder()) {
            element->accept(collector);
        }
    }
    return references;
}

bool hasGraphviz() {
    return std::system("dot -V >/dev/null 2>&1") == 0;
}

} // namespace VellumTest
