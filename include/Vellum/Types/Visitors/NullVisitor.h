#ifndef VELLUM_TYPES_VISITORS_NULLVISITOR_H
#define VELLUM_TYPES_VISITORS_NULLVISITOR_H

#include "Vellum/Types/Visitors/Visitor.h"

namespace Vellum::Types::Visitors {

/// A `Visitor` whose every visit does nothing: derive from it to handle only some types.
class VELLUM_CORE_EXPORT NullVisitor : public Visitor {
public:
    ~NullVisitor() override;

    /// Each visit below does nothing.
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
};

} // namespace Vellum::Types::Visitors

#endif
