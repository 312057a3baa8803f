#ifndef VELLUM_TYPES_J2KQUANTISATIONDEFAULT_H
#define VELLUM_TYPES_J2KQUANTISATIONDEFAULT_H

#include "Vellum/Types/DataStream.h"
#include "Vellum/Types/TypedValue.h"

#include <cstdint>

namespace Vellum::Types {

/// The default quantisation of a JPEG 2000 codestream: Sqcd (1 byte) and the SPqcd bytes that
/// fill the rest of the value.
class VELLUM_CORE_EXPORT J2KQuantisationDefault final
    : public TypedValue<J2KQuantisationDefault, Identifiers::J2KQuantisationDefault> {
public:
    /// Bytes before the SPqcd bytes.
    static constexpr std::uint32_t headerSize = 1;

    /// Zero Sqcd, no SPqcd bytes.
    J2KQuantisationDefault() = default;
    /// Copies `sPgcdLength` SPqcd bytes. Throws InvalidFormat for a null pointer with a
    /// non-zero length and InvalidLength for a value longer than a 32-bit size can count.
    J2KQuantisationDefault(std::uint8_t sqcd, const std::uint8_t* sPgcd, std::uint64_t sPgcdLength);
    J2KQuantisationDefault(const J2KQuantisationDefault&) = default;
    J2KQuantisationDefault(J2KQuantisationDefault&&) noexcept = default;
    J2KQuantisationDefault& operator=(const J2KQuantisationDefault&) = default;
    J2KQuantisationDefault& operator=(J2KQuantisationDefault&&) noexcept = default;
    ~J2KQuantisationDefault() override;

    /// Reads the stored form; throws InvalidLength for an empty value.
    static J2KQuantisationDefault fromBytes(DataIO::Slice bytes);

    /// Quantisation style and guard bits.
    std::uint8_t sqcd() const noexcept { return m_sqcd; }
    /// The SPqcd bytes.
    const DataStream& sPgcd() const noexcept { return m_sPgcd; }

    void serialize(DataIO::DataSink& sink) const override;
    std::uint32_t serializedSize() const override;

private:
    std::uint8_t m_sqcd = 0;
    DataStream m_sPgcd;
};

} // namespace Vellum::Types

#endif
