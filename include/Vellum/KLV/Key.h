#ifndef VELLUM_KLV_KEY_H
#define VELLUM_KLV_KEY_H

#include "Vellum/Core/Export.h"
#include "Vellum/Templates/Templates.h"
#include "Vellum/Types/StringRepresentation.h"

#include <array>
#include <cstddef>
#include <cstdint>

namespace Vellum::DataIO {
class DataSink;
class DataSource;
} // namespace Vellum::DataIO

namespace Vellum::KLV {

/// A 16-byte SMPTE key (a universal label that introduces a KLV triplet).
class VELLUM_CORE_EXPORT Key {
public:
    static constexpr std::size_t byteCount = 16;
    using Bytes = std::array<std::uint8_t, byteCount>;

    /// The all-zero key.
    constexpr Key() noexcept = default;
    constexpr explicit Key(const Bytes& bytes) noexcept
        : m_bytes(bytes) {}
    /// From `count` raw bytes; throws InvalidLength unless `count` is 16.
    Key(const std::uint8_t* bytes, std::size_t count);
    /// From its text form; throws InvalidFormat for a malformed text.
    Key(const WString& text, Types::StringRepresentationEncodingType encoding);

    /// Reads 16 bytes from `source`; throws InvalidLength if fewer remain.
    static Key read(DataIO::DataSource& source);

    WString toString(Types::StringRepresentationEncodingType encoding = Types::DottedHex) const;
    /// The text form as UTF-8, for messages.
    std::string toUtf8() const;
    void serialize(DataIO::DataSink& sink) const;
    constexpr std::uint16_t serializedSize() const noexcept { return byteCount; }

    constexpr const Bytes& bytes() const noexcept { return m_bytes; }
    constexpr const std::uint8_t* data() const noexcept { return m_bytes.data(); }
    constexpr std::uint8_t operator[](std::size_t index) const noexcept { return m_bytes[index]; }

    /// Whether the key starts with the SMPTE label prefix 06.0E.2B.34.
    bool isSMPTELabel() const noexcept;
    /// Equality that ignores byte 8, the registry version, which writers do not agree on.
    bool equalsIgnoringVersion(const Key& other) const noexcept;
    /// The key with byte 8, the registry version, cleared: keys that differ only in their
    /// version give the same result.
    constexpr Key withoutVersion() const noexcept {
        Bytes bytes = m_bytes;
        bytes[7] = 0;
        return Key(bytes);
    }

    friend bool operator==(const Key& a, const Key& b) noexcept { return a.m_bytes == b.m_bytes; }
    friend bool operator!=(const Key& a, const Key& b) noexcept { return a.m_bytes != b.m_bytes; }
    friend bool operator<(const Key& a, const Key& b) noexcept { return a.m_bytes < b.m_bytes; }

private:
    Bytes m_bytes{};
};

} // namespace Vellum::KLV

#endif
