#ifndef VELLUM_SRC_XMLBUILDER_STOREDBYTES_H
#define VELLUM_SRC_XMLBUILDER_STOREDBYTES_H

#include "Vellum/Templates/Templates.h"
#include "Vellum/Types/Identifiers.h"
#include "Vellum/XMLBuilder/Export.h"

#include <cstdint>
#include <string_view>

namespace Vellum::Metadata {
class Element;
} // namespace Vellum::Metadata

namespace Vellum::Types {
class SimpleDataType;
} // namespace Vellum::Types

namespace Vellum::XMLBuilder {

/// When the export adds "groups:StoredBytes", the stored bytes of a value in hexadecimal, to
/// a value's element: when its text does not give them back (strings with terminators or
/// padding, characters XML cannot hold, whitespace-only or empty strings, odd booleans, RGBA
/// layouts beyond five components, raw values), so that an unedited value imports to exactly
/// the bytes it was read from. Decided from the value alone, before its element is written.
class VELLUM_XMLBUILDER_EXPORT StoredBytes {
public:
    StoredBytes() = delete;

    /// Whether the element `localName` that holds `value` as the export writes it needs the
    /// stored bytes: the import, reading its text as `type`, would not give `value`'s bytes.
    static bool needed(const Types::SimpleDataType& value, Types::Identifiers::Identifier type,
                       std::u16string_view localName);

    /// The same, always reading the value's text back as the import does (no shortcut for
    /// the common types); `needed` gives the same answer, faster.
    static bool neededByReading(const Types::SimpleDataType& value,
                                Types::Identifiers::Identifier type, std::u16string_view localName);

    /// The stored bytes in hexadecimal of an empty collection whose stored form (count and
    /// item size) is not the one the import makes for no items (a count of 0 and
    /// `importedItemSize`); empty when it is.
    static WString emptyCollection(const Metadata::Element& collection,
                                   std::uint32_t importedItemSize);
};

} // namespace Vellum::XMLBuilder

#endif
