#ifndef VELLUM_TYPES_BOOLEAN_H
#define VELLUM_TYPES_BOOLEAN_H

#include "Vellum/Types/TypedValue.h"

#include <cstdint>

namespace Vellum::Types {

/// A truth value stored in one byte. Any non-zero byte reads as true; the stored byte is kept,
/// so a value read as 0x02 writes back 0x02.
class VELLUM_CORE_EXPORT Boolean final : public TypedValue<Boolean, Identifiers::Boolean> {
public:
    /// False.
    Boolean() = default;
    /// Stores 1 for true, 0 for false.
    explicit Boolean(bool value) noexcept
        : m_byte(value ? 1 : 0) {}
    ~Boolean() override;

    /// Reads the stored byte, whatever it is; throws InvalidLength unless `bytes` is 1 byte.
    static Boolean fromBytes(DataIO::Slice bytes);

    /// Whether the stored byte is non-zero.
    bool value() const noexcept { return m_byte != 0; }
    /// The stored byte.
    std::uint8_t storedByte() const noexcept { return m_byte; }

    void serialize(DataIO::DataSink& sink) const override;
    std::uint32_t serializedSize() const override { return 1; }

private:
    std::uint8_t m_byte = 0;
};

} // namespace Vellum::Types

#endif
