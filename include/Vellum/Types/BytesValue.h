#ifndef VELLUM_TYPES_BYTESVALUE_H
#define VELLUM_TYPES_BYTESVALUE_H

#include "Vellum/DataIO/DataSink.h"
#include "Vellum/DataIO/Slice.h"
#include "Vellum/Exceptions/InvalidFormat.h"
#include "Vellum/Exceptions/Throw.h"
#include "Vellum/Types/TypedValue.h"

#include <cstdint>
#include <utility>
#include <vector>

namespace Vellum::Types {

/// A value that is an uninterpreted run of bytes with no header of its own (data streams,
/// values of unknown type, raw data values). Each such type is its own class deriving from
/// this template. It owns a copy of its bytes.
template <class Derived, Identifiers::Identifier Id>
class VELLUM_CORE_EXPORT BytesValue : public TypedValue<Derived, Id> {
public:
    /// No bytes.
    BytesValue() = default;
    /// Copies `count` bytes. Throws InvalidFormat for a null pointer with a non-zero count and
    /// InvalidLength for more bytes than a 32-bit size can count.
    BytesValue(const std::uint8_t* bytes, std::uint64_t count) {
        if (bytes == nullptr && count != 0) {
            VELLUM_THROW(InvalidFormat, std::string("no bytes given for a ") +
                                            Identifiers::typeName(Id) + " of " +
                                            std::to_string(count) + " bytes");
        }
        SimpleDataType::checkedSize(count, Id);
        m_bytes.assign(bytes, bytes + count);
    }
    /// Takes over `bytes`; throws InvalidLength for more than a 32-bit size can count.
    explicit BytesValue(std::vector<std::uint8_t> bytes)
        : m_bytes(std::move(bytes)) {
        SimpleDataType::checkedSize(m_bytes.size(), Id);
    }

    /// Copies the stored form (any number of bytes that a 32-bit size can count).
    static Derived fromBytes(DataIO::Slice bytes) { return Derived(bytes.begin(), bytes.size()); }

    /// The stored bytes.
    const std::vector<std::uint8_t>& bytes() const noexcept { return m_bytes; }

    /// Writes the bytes as they are.
    void serialize(DataIO::DataSink& sink) const override {
        sink.write(m_bytes.data(), m_bytes.size());
    }
    /// A copy of the bytes.
    std::vector<std::uint8_t> rawBuffer() const override { return m_bytes; }
    std::uint32_t serializedSize() const override {
        return static_cast<std::uint32_t>(m_bytes.size());
    }

private:
    std::vector<std::uint8_t> m_bytes;
};

} // namespace Vellum::Types

#endif
