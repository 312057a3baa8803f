#include "Metadata/ReferenceWalker.h"

#include "Vellum/Metadata/PartitionMetadata.h"
#include "Vellum/Metadata/ReferenceArrayElement.h"
#include "Vellum/Metadata/ReferenceBatchElement.h"
#include "Vellum/Metadata/ReferenceElement.h"
#include "Vellum/Metadata/Visitors/ElementVisitor.h"

#include <vector>

namespace Vellum::Metadata::detail {
namespace {

// Collects the references an element holds, in order.
class ReferenceCollector final : public Visitors::ElementVisitor {
public:
    explicit ReferenceCollector(bool followWeak) noexcept
        : m_followWeak(followWeak) {}

    void visit(const ReferenceBatchElement& element) override { addAll(element); }
    void visit(const ReferenceArrayElement& element) override { addAll(element); }
    void visit(const ReferenceElement& element) override {
        if (element.value() != nullptr) {
            add(*element.value());
        }
    }
    void visit(const BatchElement& /*element*/) override {}
    void visit(const ArrayElement& /*element*/) override {}
    void visit(const SimpleElement& /*element*/) override {}

    std::vector<const Types::Reference*> references;

private:
    void addAll(const ReferenceCollectionElement& element) {
        for (std::uint32_t i = 0; i < element.size(); ++i) {
            add(element.referenceAt(i));
        }
    }
    void add(const Types::Reference& reference) {
        if (m_followWeak || reference.identifier() == Types::Identifiers::StrongReference) {
            references.push_back(&reference);
        }
    }

    bool m_followWeak;
};

} // namespace

void ReferenceWalker::walk(const MetadataSet& start,
                           const std::function<bool(const MetadataSet&)>& visit) const {
    std::vector<const MetadataSet*> stack{&start};
    while (!stack.empty()) {
        const MetadataSet* set = stack.back();
        stack.pop_back();
        if (!visit(*set)) {
            continue;
        }
        ReferenceCollector collector(m_followWeak);
        for (const Element* element : set->serializationOrder()) {
            element->accept(collector);
        }
        // Pushed in reverse, so that the first reference is walked first.
        for (auto it = collector.references.rbegin(); it != collector.references.rend(); ++it) {
            const auto& targets = m_partition.findByInstanceUID((*it)->uuid());
            for (auto target = targets.rbegin(); target != targets.rend(); ++target) {
                stack.push_back(*target);
            }
        }
    }
}

} // namespace Vellum::Metadata::detail
