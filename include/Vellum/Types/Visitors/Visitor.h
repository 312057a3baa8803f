#ifndef VELLUM_TYPES_VISITORS_VISITOR_H
#define VELLUM_TYPES_VISITORS_VISITOR_H

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

/// Read-only visitor over every value type: one `visit` per concrete type, reached through the
/// value's `accept(Visitor&) const`. Batches and arrays are visited as a whole; a visitor that
/// wants their items walks them itself.
class VELLUM_CORE_EXPORT Visitor {
public:
    Visitor() = default;
    Visitor(const Visitor&) = default;
    Visitor& operator=(const Visitor&) = default;
    virtual ~Visitor();

    /// Each visit below handles one value of its type (one overload per concrete type, in this
    /// fixed order).
    virtual void visit(const J2KQuantisationDefault& value) = 0;
    virtual void visit(const J2KCodingStyleDefault& value) = 0;
    virtual void visit(const J2KPictureComponent& value) = 0;
    virtual void visit(const DataValue& value) = 0;
    virtual void visit(const StrongReference& value) = 0;
    virtual void visit(const WeakReference& value) = 0;
    virtual void visit(const Unknown& value) = 0;
    virtual void visit(const VersionType& value) = 0;
    virtual void visit(const UUID& value) = 0;
    virtual void visit(const UTF16String& value) = 0;
    virtual void visit(const UTF16& value) = 0;
    virtual void visit(const UniversalLabel& value) = 0;
    virtual void visit(const UMID64& value) = 0;
    virtual void visit(const UMID32& value) = 0;
    virtual void visit(const UInt8& value) = 0;
    virtual void visit(const UInt64& value) = 0;
    virtual void visit(const UInt32& value) = 0;
    virtual void visit(const UInt16& value) = 0;
    virtual void visit(const Timestamp& value) = 0;
    virtual void visit(const SignalStandard& value) = 0;
    virtual void visit(const RGBALayout& value) = 0;
    virtual void visit(const Rational& value) = 0;
    virtual void visit(const ProductVersion& value) = 0;
    virtual void visit(const Position& value) = 0;
    virtual void visit(const Orientation& value) = 0;
    virtual void visit(const LocalTag& value) = 0;
    virtual void visit(const Length& value) = 0;
    virtual void visit(const ISO7String& value) = 0;
    virtual void visit(const Int8& value) = 0;
    virtual void visit(const Int64& value) = 0;
    virtual void visit(const Int32& value) = 0;
    virtual void visit(const Int16& value) = 0;
    virtual void visit(const DataStream& value) = 0;
    virtual void visit(const Boolean& value) = 0;
    virtual void visit(const Batch& value) = 0;
    virtual void visit(const Array& value) = 0;
};

} // namespace Vellum::Types::Visitors

#endif
