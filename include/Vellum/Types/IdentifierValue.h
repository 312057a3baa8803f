#ifndef VELLUM_TYPES_IDENTIFIERVALUE_H
#define VELLUM_TYPES_IDENTIFIERVALUE_H

#include "Vellum/DataIO/DataSink.h"
#include "Vellum/DataIO/Slice.h"
#include "Vellum/Exceptions/InvalidFormat.h"
#include "Vellum/Exceptions/InvalidLength.h"
#include "Vellum/Exceptions/Throw.h"
#include "Vellum/Templates/Templates.h"
#include "Vellum/Types/StringRepresentation.h"
#include "Vellum/Types/TypedValue.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <string>

namespace Vellum::Types {

/// A value that is a fixed run of `N` identifier bytes (UUID, universal label, UMIDs), with
/// checked byte access, a dotted-hex text form and ordering. Each identifier type is its own
/// class deriving from this template.
template <class Derived, std::size_t N, Identifiers::Identifier Id>
class VELLUM_CORE_EXPORT IdentifierValue : public TypedValue<Derived, Id> {
public:
    /// Bytes of the identifier.
    static constexpr std::size_t byteCount = N;
    using Bytes = std::array<std::uint8_t, N>;

    /// All bytes zero.
    IdentifierValue() = default;
    explicit IdentifierValue(const Bytes& bytes) noexcept
        : m_bytes(bytes) {}
    /// From `count` raw bytes (copied); throws InvalidLength unless `count` is `N` and
    /// InvalidFormat for a null pointer.
    IdentifierValue(const std::uint8_t* bytes, std::size_t count) {
        if (count != N) {
            VELLUM_THROW(InvalidLength, std::string("a ") + Identifiers::typeName(Id) + " has " +
                                            std::to_string(N) + " bytes, not " +
                                            std::to_string(count));
        }
        if (bytes == nullptr) {
            VELLUM_THROW(InvalidFormat,
                         std::string("no bytes given for a ") + Identifiers::typeName(Id));
        }
        std::copy(bytes, bytes + N, m_bytes.begin());
    }
    /// From its text form (encoding 0: two hexadecimal digits a byte joined by "."). Throws
    /// InvalidFormat naming the text if it has the wrong length, a missing "." or a character
    /// that is not a hexadecimal digit.
    IdentifierValue(const WString& text, StringRepresentationEncodingType encoding) {
        StringRepresentation::parse(text, m_bytes.data(), N, Identifiers::typeName(Id), encoding);
    }

    /// Reads the stored form; throws InvalidLength unless `bytes` holds exactly `N` bytes.
    static Derived fromBytes(DataIO::Slice bytes) {
        SimpleDataType::requireSize(bytes, N, Id);
        return Derived(bytes.begin(), N);
    }

    /// The byte at `index`, modifiable; throws InvalidLength if `index` is not below `N`.
    std::uint8_t& operator[](std::size_t index) {
        if (index >= N) {
            throwBadIndex(index);
        }
        return m_bytes[index];
    }
    /// The byte at `index`; throws InvalidLength if `index` is not below `N`.
    std::uint8_t operator[](std::size_t index) const {
        if (index >= N) {
            throwBadIndex(index);
        }
        return m_bytes[index];
    }
    /// `N`.
    static constexpr std::size_t size() noexcept { return N; }
    /// The text form; throws InvalidFormat for an unsupported encoding.
    WString toString(StringRepresentationEncodingType encoding = DottedHex) const {
        return StringRepresentation::format(m_bytes.data(), N, encoding);
    }
    /// All `N` bytes.
    const Bytes& bytes() const noexcept { return m_bytes; }
    /// The first of the `N` bytes.
    const std::uint8_t* data() const noexcept { return m_bytes.data(); }

    /// Writes the `N` bytes as they are.
    void serialize(DataIO::DataSink& sink) const override { sink.write(m_bytes.data(), N); }
    std::uint32_t serializedSize() const override { return static_cast<std::uint32_t>(N); }

    /// Byte-wise comparisons.
    friend bool operator==(const Derived& a, const Derived& b) noexcept {
        return a.bytes() == b.bytes();
    }
    friend bool operator!=(const Derived& a, const Derived& b) noexcept {
        return a.bytes() != b.bytes();
    }
    friend bool operator<(const Derived& a, const Derived& b) noexcept {
        return a.bytes() < b.bytes();
    }

private:
    [[noreturn]] static void throwBadIndex(std::size_t index) {
        VELLUM_THROW(InvalidLength, "byte index " + std::to_string(index) + " is outside the " +
                                        std::to_string(N) + " bytes of a " +
                                        Identifiers::typeName(Id));
    }

    Bytes m_bytes{};
};

} // namespace Vellum::Types

#endif
