#ifndef VELLUM_TYPES_BATCH_H
#define VELLUM_TYPES_BATCH_H

#include "Vellum/Types/Collection.h"

#include <cstdint>

namespace Vellum::Types {

/// An unordered collection of simple values (type number 0). Items keep the order in which
/// they were read or appended, so a batch writes back as it was read.
class VELLUM_CORE_EXPORT Batch final : public Collection {
public:
    /// An empty batch of items of type `itemType`, each `itemSize` bytes. Throws
    /// InvalidFormat if `itemType` is not a value type and InvalidLength if `itemType` has a
    /// fixed size other than `itemSize`.
    Batch(std::uint32_t itemSize, Identifiers::Identifier itemType);
    Batch(Batch&&) noexcept = default;
    Batch& operator=(Batch&&) noexcept = default;
    ~Batch() override;

    /// Calls `visitor.visit(Batch&)` for the collection itself, not its items.
    void accept(Visitors::NonConstVisitor& visitor) override;
    /// Calls `visitor.visit(const Batch&)` for the collection itself, not its items.
    void accept(Visitors::Visitor& visitor) const override;
    Templates::auto_ptr<Collection> clone() const override;
    /// Identifiers::Batch.
    Identifiers::Identifier identifier() const override;
};

} // namespace Vellum::Types

#endif
