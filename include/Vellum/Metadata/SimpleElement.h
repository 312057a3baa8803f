#ifndef VELLUM_METADATA_SIMPLEELEMENT_H
#define VELLUM_METADATA_SIMPLEELEMENT_H

#include "Vellum/Metadata/Element.h"
#include "Vellum/Types/SimpleDataType.h"

namespace Vellum::Metadata {

/// An element holding one simple value (a number, string, identifier, compound value), or
/// the raw bytes of a value the dictionary does not describe (an `Types::Unknown`).
class VELLUM_CORE_EXPORT SimpleElement : public Element {
public:
    SimpleElement(MetadataSet& owner, AttributePtr attribute);
    ~SimpleElement() override;

    void accept(Visitors::ElementVisitor& visitor) const override;
    void accept(Visitors::NonConstElementVisitor& visitor) override;

    /// The value, or nullptr when the element holds none.
    const Types::SimpleDataType* value() const noexcept { return m_value.get(); }

    /// Takes `value` as the new value. With `checkType`, a value whose type is not the one
    /// the dictionary gives the element throws InvalidFormat and the element is unchanged.
    void set(Templates::auto_ptr<Types::SimpleDataType> value, bool checkType = true);

    bool isEmpty() const noexcept override { return !m_value; }
    void clear() noexcept override;
    std::uint64_t valueSize() const override;
    void serializeValue(DataIO::DataSink& sink) const override;
    void readValue(DataIO::Slice bytes) override;

private:
    Templates::auto_ptr<Types::SimpleDataType> m_value;
};

} // namespace Vellum::Metadata

#endif
