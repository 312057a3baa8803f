#ifndef VELLUM_METADATA_REFERENCEELEMENT_H
#define VELLUM_METADATA_REFERENCEELEMENT_H

#include "Vellum/Metadata/Element.h"
#include "Vellum/Types/Reference.h"

namespace Vellum::Metadata {

/// An element holding one reference to another set, by the target's instance identifier.
/// Strong or weak as the dictionary defines the element.
class VELLUM_CORE_EXPORT ReferenceElement : public Element {
public:
    ReferenceElement(MetadataSet& owner, AttributePtr attribute);
    ~ReferenceElement() override;

    void accept(Visitors::ElementVisitor& visitor) const override;
    void accept(Visitors::NonConstElementVisitor& visitor) override;

    /// The reference, or nullptr when the element holds none.
    const Types::Reference* value() const noexcept { return m_value.get(); }

    /// Refers to `target`, a set that exists, by its instance identifier. Throws InvalidFormat
    /// for a null target or one without an instance identifier.
    void set(const MetadataSet* target);
    /// Takes a reference by identifier whose target is not checked.
    void setUnverifiedReference(Templates::auto_ptr<Types::Reference> reference);

    bool isEmpty() const noexcept override { return !m_value; }
    void clear() noexcept override;
    std::uint64_t valueSize() const override;
    void serializeValue(DataIO::DataSink& sink) const override;
    void readValue(DataIO::Slice bytes) override;

private:
    Templates::auto_ptr<Types::Reference> m_value;
};

} // namespace Vellum::Metadata

#endif
