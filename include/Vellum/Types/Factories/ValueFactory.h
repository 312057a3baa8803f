#ifndef VELLUM_TYPES_FACTORIES_VALUEFACTORY_H
#define VELLUM_TYPES_FACTORIES_VALUEFACTORY_H

#include "Vellum/Core/Export.h"
#include "Vellum/DataIO/Slice.h"
#include "Vellum/Templates/Templates.h"
#include "Vellum/Types/Collection.h"
#include "Vellum/Types/Identifiers.h"
#include "Vellum/Types/SimpleDataType.h"

namespace Vellum::Types::Factories {

/// Builds values from their stored bytes, by type number.
///
/// Every value it builds serialises back to exactly the bytes it was built from.
class VELLUM_CORE_EXPORT ValueFactory {
public:
    ValueFactory() = delete;

    /// Whether `type` has a value class that `create` builds (the reserved numbers 4, 10, 12,
    /// 31, 32 and 36 and the collection kinds do not).
    static bool hasValueClass(Identifiers::Identifier type) noexcept;

    /// A new value of type `type` read from `bytes` (copied; the result does not refer to
    /// them), owned by the caller.
    ///
    /// Throws InvalidFormat for a type number without a value class or out of range, and
    /// InvalidLength when the byte count does not fit the type: a fixed size other than the
    /// type's, too few bytes for a compound header, an odd count for UTF-16 text, more than a
    /// 32-bit size can count.
    static Templates::auto_ptr<SimpleDataType> create(Identifiers::Identifier type,
                                                      DataIO::Slice bytes);

    /// A new batch or array (`kind` is Identifiers::Batch or Identifiers::Array) of items of
    /// type `itemType`, read from `bytes`: item count and item size (big-endian 32-bit each),
    /// then the items. Owned by the caller. Zero items is valid.
    ///
    /// Throws InvalidFormat for another `kind` or an item type without a value class, and
    /// InvalidLength, naming the counts, for fewer than 8 bytes, an item count times item size
    /// that is not exactly the bytes after the header, an item size that is not the item
    /// type's fixed size, zero-size items, or an item whose bytes do not fit its type.
    static Templates::auto_ptr<Collection> createCollection(Identifiers::Identifier kind,
                                                            Identifiers::Identifier itemType,
                                                            DataIO::Slice bytes);
};

} // namespace Vellum::Types::Factories

#endif
