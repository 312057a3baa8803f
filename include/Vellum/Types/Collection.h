#ifndef VELLUM_TYPES_COLLECTION_H
#define VELLUM_TYPES_COLLECTION_H

#include "Vellum/Templates/Templates.h"
#include "Vellum/Types/BaseType.h"
#include "Vellum/Types/Identifiers.h"
#include "Vellum/Types/SimpleDataType.h"

#include <cstdint>
#include <vector>

namespace Vellum::Types {

/// A run of simple values of one type and one stored size: the common part of `Batch` and
/// `Array`.
///
/// Stored form: the item count (big-endian 32-bit), the item size (big-endian 32-bit), then
/// the items back to back. The collection owns its items. It is move-only; `clone()` makes a
/// deep copy.
class VELLUM_CORE_EXPORT Collection : public BaseType {
public:
    Collection(const Collection&) = delete;
    Collection& operator=(const Collection&) = delete;
    ~Collection() override;

    void accept(Visitors::NonConstVisitor& visitor) override = 0;
    void accept(Visitors::Visitor& visitor) const override = 0;
    /// Writes the header and every item in order. Throws what the sink throws.
    void serialize(DataIO::DataSink& sink) const override;
    /// 8 header bytes plus item count times item size.
    std::uint32_t serializedSize() const override;
    /// A deep copy (every item cloned), of the same kind, owned by the caller.
    virtual Templates::auto_ptr<Collection> clone() const = 0;

    /// The number of items.
    std::uint32_t size() const noexcept { return static_cast<std::uint32_t>(m_items.size()); }
    /// The item at `index`; throws InvalidLength if `index` is not below `size()`.
    const SimpleDataType& at(std::uint32_t index) const;
    /// The item at `index`, modifiable (it stays owned by the collection); throws
    /// InvalidLength if `index` is not below `size()`.
    SimpleDataType& at(std::uint32_t index);

    /// The stored size of every item.
    std::uint32_t itemSize() const noexcept { return m_itemSize; }
    /// The type of every item.
    Identifiers::Identifier itemType() const noexcept { return m_itemType; }
    /// Takes ownership of `item` and adds it at the end. Throws InvalidFormat for a null item
    /// or an item of another type, InvalidLength for an item whose serialised size is not
    /// `itemSize()` or when the collection's size would no longer fit 32 bits.
    void append(Templates::auto_ptr<SimpleDataType> item);

protected:
    /// An empty collection. Throws InvalidFormat if `itemType` is not a value type and
    /// InvalidLength if `itemType` has a fixed size other than `itemSize`. An item size of 0
    /// (what writers store for an empty collection) is allowed; the first item appended sets it.
    Collection(std::uint32_t itemSize, Identifiers::Identifier itemType);
    Collection(Collection&&) noexcept = default;
    Collection& operator=(Collection&&) noexcept = default;

    /// Appends a clone of every item of `other` (a collection of the same item type and size).
    void appendClonesOf(const Collection& other);

private:
    std::uint32_t m_itemSize;
    Identifiers::Identifier m_itemType;
    std::vector<Templates::auto_ptr<SimpleDataType>> m_items;
};

} // namespace Vellum::Types

#endif
