#ifndef VELLUM_TYPES_ARRAY_H
#define VELLUM_TYPES_ARRAY_H

#include "Vellum/Types/Collection.h"

#include <cstdint>

namespace Vellum::Types {

/// An ordered collection of simple values (type number 1).
class VELLUM_CORE_EXPORT Array final : public Collection {
public:
    /// An empty array of items of type `itemType`, each `itemSize` bytes. Throws
    /// InvalidFormat if `itemType` is not a value type and InvalidLength if `itemType` has a
    /// fixed size other than `itemSize`.
    Array(std::uint32_t itemSize, Identifiers::Identifier itemType);
    Array(Array&&) noexcept = default;
    Array& operator=(Array&&) noexcept = default;
    ~Array() override;

    /// Calls `visitor.visit(Array&)` for the collection itself, not its items.
    void accept(Visitors::NonConstVisitor& visitor) override;
    /// Calls `visitor.visit(const Array&)` for the collection itself, not its items.
    void accept(Visitors::Visitor& visitor) const override;
    Templates::auto_ptr<Collection> clone() const override;
    /// Identifiers::Array.
    Identifiers::Identifier identifier() const override;
};

} // namespace Vellum::Types

#endif
