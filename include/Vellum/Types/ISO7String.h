#ifndef VELLUM_TYPES_ISO7STRING_H
#define VELLUM_TYPES_ISO7STRING_H

#include "Vellum/Types/TypedValue.h"

#include <cstdint>
#include <string>

namespace Vellum::Types {

/// An 8-bit string stored as its bytes, with no length field or terminator of its own.
///
/// Every stored byte is kept, terminating or padding NULs too, so the value writes back
/// exactly as it was read; `value()` gives the text up to the first NUL.
class VELLUM_CORE_EXPORT ISO7String final : public TypedValue<ISO7String, Identifiers::ISO7String> {
public:
    /// The empty string.
    ISO7String() = default;
    /// Stores the bytes of `text` as they are (NULs included); throws InvalidLength for more
    /// bytes than a 32-bit size can count.
    explicit ISO7String(std::string text);
    ISO7String(const ISO7String&) = default;
    ISO7String(ISO7String&&) noexcept = default;
    ISO7String& operator=(const ISO7String&) = default;
    ISO7String& operator=(ISO7String&&) noexcept = default;
    ~ISO7String() override;

    /// Copies the stored bytes; throws InvalidLength for more than a 32-bit size can count.
    static ISO7String fromBytes(DataIO::Slice bytes);

    /// The text up to (not including) the first NUL byte, or all of it if there is none.
    std::string value() const;
    /// Every stored byte.
    const std::string& storedBytes() const noexcept { return m_bytes; }

    void serialize(DataIO::DataSink& sink) const override;
    std::uint32_t serializedSize() const override;

private:
    std::string m_bytes;
};

} // namespace Vellum::Types

#endif
