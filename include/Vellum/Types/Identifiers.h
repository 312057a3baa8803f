#ifndef VELLUM_TYPES_IDENTIFIERS_H
#define VELLUM_TYPES_IDENTIFIERS_H

#include "Vellum/Core/Export.h"

#include <cstdint>
#include <optional>

namespace Vellum::Types::Identifiers {

/// The toolkit's numbering of value types. The numbers are stable: the meta-dictionary's data
/// names types by them.
enum Identifier : std::uint8_t {
    Batch = 0, ///< collection kind: unordered batch
    Array = 1, ///< collection kind: ordered array
    Boolean = 2,
    DataStream = 3,
    Float = 4, ///< reserved; no value class
    Int16 = 5,
    Int32 = 6,
    Int64 = 7,
    Int8 = 8,
    ISO7String = 9,
    Indirect = 10, ///< reserved; no value class
    Length = 11,
    PackageID = 12, ///< reserved; no value class
    Position = 13,
    ProductVersion = 14,
    Rational = 15,
    Timestamp = 16,
    UInt16 = 17,
    UInt32 = 18,
    UInt64 = 19,
    UInt8 = 20,
    UMID32 = 21,
    UMID64 = 22,
    UniversalLabel = 23,
    Unknown = 24,
    UTF16 = 25,
    UTF16String = 26,
    UUID = 27,
    VersionType = 28,
    StrongReference = 29,
    WeakReference = 30,
    Opaque = 31, ///< reserved; no value class
    Stream = 32, ///< reserved; no value class
    Orientation = 33,
    RGBALayout = 34,
    SignalStandard = 35,
    VariableSize = 36, ///< variable-size value that is measured, not parsed
    J2KPictureComponent = 37,
    J2KCodingStyleDefault = 38,
    J2KQuantisationDefault = 39,
};

/// The fixed size in bytes of a value of this type, or nothing for variable-size types.
VELLUM_CORE_EXPORT std::optional<std::uint32_t> typeSize(Identifier identifier) noexcept;

/// The type's name ("UInt16", "StrongReference" ...), or nullptr for a number out of range.
VELLUM_CORE_EXPORT const char* typeName(Identifier identifier) noexcept;

/// Whether `value` is a defined identifier number.
VELLUM_CORE_EXPORT bool isValid(unsigned value) noexcept;

} // namespace Vellum::Types::Identifiers

#endif
