#ifndef VELLUM_TYPES_VALUETEXT_H
#define VELLUM_TYPES_VALUETEXT_H

#include "Vellum/Core/Export.h"
#include "Vellum/Templates/Templates.h"
#include "Vellum/Types/Visitors/Visitor.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace Vellum::Types {

class BaseType;
class Collection;

/// A one-line text form of any value, for listings and comparisons.
///
/// Numbers are decimal (a VersionType as major x 256 + minor, a Boolean as 1 or 0, as the XML
/// export writes them); identifiers, labels, references, UMIDs and local tags use their
/// dotted-hex text form; strings are quoted, up to their first NUL, with `\"`, `\\` and
/// `\xHH` / `\uHHHH` escapes for quotes, backslashes and control characters; raw bytes
/// (unknown values, data values and streams) are two upper-case hexadecimal digits a byte.
/// Compound values are written field by field: a rational as "N/D", a time stamp as
/// "YYYY-MM-DD hh:mm:ss.mmm" (milliseconds as stored, in 4 ms steps), a product version as
/// "major.minor.patch.build.release", an RGBA layout as its used slots ("R8 G8 B8"),
/// collections as "[item, item]".
///
/// Different values may share a text (a string with NUL padding and the same string without
/// it); compare stored bytes, not texts, to tell values apart.
class VELLUM_CORE_EXPORT ValueText : public Visitors::Visitor {
public:
    /// The text form of `value`.
    static WString format(const BaseType& value);
    /// Two upper-case hexadecimal digits a byte, no separators ("0A1B").
    static WString hex(const std::uint8_t* bytes, std::size_t count);

    ValueText() = default;
    ~ValueText() override;

    /// The text written so far.
    const WString& text() const noexcept { return m_text; }

    void visit(const J2KQuantisationDefault& value) override;
    void visit(const J2KCodingStyleDefault& value) override;
    void visit(const J2KPictureComponent& value) override;
    void visit(const DataValue& value) override;
    void visit(const StrongReference& value) override;
    void visit(const WeakReference& value) override;
    void visit(const Unknown& value) override;
    void visit(const VersionType& value) override;
    void visit(const UUID& value) override;
    void visit(const UTF16String& value) override;
    void visit(const UTF16& value) override;
    void visit(const UniversalLabel& value) override;
    void visit(const UMID64& value) override;
    void visit(const UMID32& value) override;
    void visit(const UInt8& value) override;
    void visit(const UInt64& value) override;
    void visit(const UInt32& value) override;
    void visit(const UInt16& value) override;
    void visit(const Timestamp& value) override;
    void visit(const SignalStandard& value) override;
    void visit(const RGBALayout& value) override;
    void visit(const Rational& value) override;
    void visit(const ProductVersion& value) override;
    void visit(const Position& value) override;
    void visit(const Orientation& value) override;
    void visit(const LocalTag& value) override;
    void visit(const Length& value) override;
    void visit(const ISO7String& value) override;
    void visit(const Int8& value) override;
    void visit(const Int64& value) override;
    void visit(const Int32& value) override;
    void visit(const Int16& value) override;
    void visit(const DataStream& value) override;
    void visit(const Boolean& value) override;
    void visit(const Batch& value) override;
    void visit(const Array& value) override;

private:
    void appendDecimal(long long value);
    void appendUnsigned(unsigned long long value);
    void appendQuoted(const WString& text);
    void appendHex(const std::vector<std::uint8_t>& bytes);
    void appendItems(const Collection& items);

    WString m_text;
};

} // namespace Vellum::Types

#endif
