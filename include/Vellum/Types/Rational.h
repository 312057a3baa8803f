#ifndef VELLUM_TYPES_RATIONAL_H
#define VELLUM_TYPES_RATIONAL_H

#include "Vellum/Types/TypedValue.h"

#include <cstdint>

namespace Vellum::Types {

/// A fraction of two signed 32-bit numbers, numerator first (8 bytes). A zero denominator is
/// kept as it is: files use 0/0 for "unknown".
class VELLUM_CORE_EXPORT Rational final : public TypedValue<Rational, Identifiers::Rational> {
public:
    /// 0/0.
    Rational() = default;
    Rational(std::int32_t numerator, std::int32_t denominator) noexcept
        : m_numerator(numerator)
        , m_denominator(denominator) {}
    ~Rational() override;

    /// Reads the stored form; throws InvalidLength unless `bytes` is 8 bytes.
    static Rational fromBytes(DataIO::Slice bytes);

    /// The two parts, as stored.
    std::int32_t numerator() const noexcept { return m_numerator; }
    std::int32_t denominator() const noexcept { return m_denominator; }

    void serialize(DataIO::DataSink& sink) const override;
    std::uint32_t serializedSize() const override { return 8; }

private:
    std::int32_t m_numerator = 0;
    std::int32_t m_denominator = 0;
};

} // namespace Vellum::Types

#endif
