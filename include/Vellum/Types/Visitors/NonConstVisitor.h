#ifndef VELLUM_TYPES_VISITORS_NONCONSTVISITOR_H
#define VELLUM_TYPES_VISITORS_NONCONSTVISITOR_H

#include "Vellum/Core/Export.h"

namespace Vellum::Types {
class J2KQuantisationDefault;
class J2KCodingStyleDefault;
class J2KPictureComponent;
class DataValue;
class StrongReference;
class WeakReference;
class Unknown;
class VersionType;
class UUID;
class UTF16String;
class UTF16;
class UniversalLabel;
class UMID64;
class UMID32;
class UInt8;
class UInt64;
class UInt32;
class UInt16;
class Timestamp;
class SignalStandard;
class RGBALayout;
class Rational;
class ProductVersion;
class Position;
class Orientation;
class LocalTag;
class Length;
class ISO7String;
class Int8;
class Int64;
class Int32;
class Int16;
class DataStream;
class Boolean;
class Batch;
class Array;
} // namespace Vellum::Types

namespace Vellum::Types::Visitors {

/// Visitor over modifiable values, in the same order as `Visitor`; reached through the value's
/// `accept(NonConstVisitor&)`. The visitor may change the value it is given.
class VELLUM_CORE_EXPORT NonConstVisitor {
public:
    NonConstVisitor() = default;
    NonConstVisitor(const NonConstVisitor&) = default;
    NonConstVisitor& operator=(const NonConstVisitor&) = default;
    virtual ~NonConstVisitor();

    /// Each visit below handles one value of its type, which it may change (one overload per
    /// concrete type, in this fixed order).
    virtual void visit(J2KQuantisationDefault& value) = 0;
    virtual void visit(J2KCodingStyleDefault& value) = 0;
    virtual void visit(J2KPictureComponent& value) = 0;
    virtual void visit(DataValue& value) = 0;
    virtual void visit(StrongReference& value) = 0;
    virtual void visit(WeakReference& value) = 0;
    virtual void visit(Unknown& value) = 0;
    virtual void visit(VersionType& value) = 0;
    virtual void visit(UUID& value) = 0;
    virtual void visit(UTF16String& value) = 0;
    virtual void visit(UTF16& value) = 0;
    virtual void visit(UniversalLabel& value) = 0;
    virtual void visit(UMID64& value) = 0;
    virtual void visit(UMID32& value) = 0;
    virtual void visit(UInt8& value) = 0;
    virtual void visit(UInt64& value) = 0;
    virtual void visit(UInt32& value) = 0;
    virtual void visit(UInt16& value) = 0;
    virtual void visit(Timestamp& value) = 0;
    virtual void visit(SignalStandard& value) = 0;
    virtual void visit(RGBALayout& value) = 0;
    virtual void visit(Rational& value) = 0;
    virtual void visit(ProductVersion& value) = 0;
    virtual void visit(Position& value) = 0;
    virtual void visit(Orientation& value) = 0;
    virtual void visit(LocalTag& value) = 0;
    virtual void visit(Length& value) = 0;
    virtual void visit(ISO7String& value) = 0;
    virtual void visit(Int8& value) = 0;
    virtual void visit(Int64& value) = 0;
    virtual void visit(Int32& value) = 0;
    virtual void visit(Int16& value) = 0;
    virtual void visit(DataStream& value) = 0;
    virtual void visit(Boolean& value) = 0;
    virtual void visit(Batch& value) = 0;
    virtual void visit(Array& value) = 0;
};

} // namespace Vellum::Types::Visitors

#endif
