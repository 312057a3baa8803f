#ifndef VELLUM_TYPES_UTF16STRING_H
#define VELLUM_TYPES_UTF16STRING_H

#include "Vellum/Templates/Templates.h"
#include "Vellum/Types/TypedValue.h"

#include <cstdint>

namespace Vellum::Types {

/// A UTF-16 string stored big-endian, two bytes a code unit, with no length field or
/// terminator of its own.
///
/// Every stored code unit is kept, terminating or padding NULs and lone surrogates too, so
/// the value writes back exactly as it was read; `value()` gives the text up to the first NUL.
class VELLUM_CORE_EXPORT UTF16String final
    : public TypedValue<UTF16String, Identifiers::UTF16String> {
public:
    /// The empty string.
    UTF16String() = default;
    /// Stores the code units of `text` as they are (NULs included); throws InvalidLength for
    /// more bytes than a 32-bit size can count.
    explicit UTF16String(WString text);
    UTF16String(const UTF16String&) = default;
    UTF16String(UTF16String&&) noexcept = default;
    UTF16String& operator=(const UTF16String&) = default;
    UTF16String& operator=(UTF16String&&) noexcept = default;
    ~UTF16String() override;

    /// Reads big-endian code units; throws InvalidLength for an odd number of bytes.
    static UTF16String fromBytes(DataIO::Slice bytes);

    /// The text up to (not including) the first NUL unit, or all of it if there is none.
    WString value() const;
    /// Every stored code unit.
    const WString& storedUnits() const noexcept { return m_units; }

    void serialize(DataIO::DataSink& sink) const override;
    std::uint32_t serializedSize() const override;

private:
    WString m_units;
};

} // namespace Vellum::Types

#endif
