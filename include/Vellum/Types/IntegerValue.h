#ifndef VELLUM_TYPES_INTEGERVALUE_H
#define VELLUM_TYPES_INTEGERVALUE_H

#include "Vellum/DataIO/BigEndian.h"
#include "Vellum/DataIO/DataSink.h"
#include "Vellum/DataIO/Slice.h"
#include "Vellum/Types/TypedValue.h"

#include <cstdint>
#include <type_traits>

namespace Vellum::Types {

/// A value that is one big-endian integer of type `T` (1, 2, 4 or 8 bytes). The integer,
/// length, position, orientation, signal standard, UTF-16 unit and local tag types are all
/// this shape; each is its own class deriving from this template.
template <class Derived, class T, Identifiers::Identifier Id>
class VELLUM_CORE_EXPORT IntegerValue : public TypedValue<Derived, Id> {
    static_assert(std::is_integral_v<T> && !std::is_same_v<T, bool>, "an integer type");
    static_assert(sizeof(T) == 1 || sizeof(T) == 2 || sizeof(T) == 4 || sizeof(T) == 8,
                  "1, 2, 4 or 8 bytes");
    using Bits = std::make_unsigned_t<T>;

public:
    using ValueType = T;
    /// Bytes of the stored form.
    static constexpr std::uint32_t byteCount = sizeof(T);

    /// Zero.
    IntegerValue() = default;
    explicit IntegerValue(T value) noexcept
        : m_value(value) {}

    /// Reads the stored form; throws InvalidLength unless `bytes` holds exactly `byteCount`
    /// bytes.
    static Derived fromBytes(DataIO::Slice bytes) {
        SimpleDataType::requireSize(bytes, byteCount, Id);
        const std::uint8_t* p = bytes.begin();
        if constexpr (sizeof(T) == 1) {
            return Derived(static_cast<T>(p[0]));
        } else if constexpr (sizeof(T) == 2) {
            return Derived(static_cast<T>(DataIO::BigEndian::load16(p)));
        } else if constexpr (sizeof(T) == 4) {
            return Derived(static_cast<T>(DataIO::BigEndian::load32(p)));
        } else {
            return Derived(static_cast<T>(DataIO::BigEndian::load64(p)));
        }
    }

    /// The integer.
    T value() const noexcept { return m_value; }
    /// Replaces the integer.
    void setValue(T value) noexcept { m_value = value; }

    /// Writes the integer big-endian.
    void serialize(DataIO::DataSink& sink) const override {
        const auto bits = static_cast<Bits>(m_value);
        if constexpr (sizeof(T) == 1) {
            sink.writeUInt8(static_cast<std::uint8_t>(bits));
        } else if constexpr (sizeof(T) == 2) {
            sink.writeUInt16(static_cast<std::uint16_t>(bits));
        } else if constexpr (sizeof(T) == 4) {
            sink.writeUInt32(static_cast<std::uint32_t>(bits));
        } else {
            sink.writeUInt64(static_cast<std::uint64_t>(bits));
        }
    }
    std::uint32_t serializedSize() const override { return byteCount; }

private:
    T m_value{};
};

} // namespace Vellum::Types

#endif
