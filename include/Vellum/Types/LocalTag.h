#ifndef VELLUM_TYPES_LOCALTAG_H
#define VELLUM_TYPES_LOCALTAG_H

#include "Vellum/Templates/Templates.h"
#include "Vellum/Types/IntegerValue.h"
#include "Vellum/Types/StringRepresentation.h"

#include <cstdint>

namespace Vellum::Types {

/// The 2-byte local tag that names an item inside a local set (text form "3C.0A").
///
/// Local tags have no number of their own in the type table; a local tag is stored as an
/// unsigned 16-bit integer, so `identifier()` reports UInt16.
class VELLUM_CORE_EXPORT LocalTag final
    : public IntegerValue<LocalTag, std::uint16_t, Identifiers::UInt16> {
public:
    using IntegerValue::IntegerValue;
    /// From its text form (encoding 0: "3C.0A"). Throws InvalidFormat naming the text if it
    /// has the wrong length, a missing "." or a character that is not a hexadecimal digit.
    LocalTag(const WString& text, StringRepresentationEncodingType encoding);
    ~LocalTag() override;

    /// Tags below 0x8000 are static (fixed by registration); the others are dynamic
    /// (allocated by each file's primer).
    bool isStaticLocalTag() const noexcept { return value() < 0x8000; }
    /// The text form; throws InvalidFormat for an unsupported encoding.
    WString toString(StringRepresentationEncodingType encoding = DottedHex) const;

    /// Comparisons of the tag numbers.
    friend bool operator==(const LocalTag& a, const LocalTag& b) noexcept {
        return a.value() == b.value();
    }
    friend bool operator!=(const LocalTag& a, const LocalTag& b) noexcept {
        return a.value() != b.value();
    }
    friend bool operator<(const LocalTag& a, const LocalTag& b) noexcept {
        return a.value() < b.value();
    }
};

} // namespace Vellum::Types

#endif
