#ifndef VELLUM_TYPES_VISITORS_NONCONSTNULLVISITOR_H
#define VELLUM_TYPES_VISITORS_NONCONSTNULLVISITOR_H

#include "Vellum/Types/Visitors/NonConstVisitor.h"

namespace Vellum::Types::Visitors {

/// A `NonConstVisitor` whose every visit does nothing: derive from it to handle only some types.
class VELLUM_CORE_EXPORT NonConstNullVisitor : public NonConstVisitor {
public:
    ~NonConstNullVisitor() override;

    /// Each visit below does nothing.
    void visit(J2KQuantisationDefault& value) override;
    void visit(J2KCodingStyleDefault& value) override;
    void visit(J2KPictureComponent& value) override;
    void visit(DataValue& value) override;
    void visit(StrongReference& value) override;
    void visit(WeakReference& value) override;
    void visit(Unknown& value) override;
    void visit(VersionType& value) override;
    void visit(UUID& value) override;
    void visit(UTF16String& value) override;
    void visit(UTF16& value) override;
    void visit(UniversalLabel& value) override;
    void visit(UMID64& value) override;
    void visit(UMID32& value) override;
    void visit(UInt8& value) override;
    void visit(UInt64& value) override;
    void visit(UInt32& value) override;
    void visit(UInt16& value) override;
    void visit(Timestamp& value) override;
    void visit(SignalStandard& value) override;
    void visit(RGBALayout& value) override;
    void visit(Rational& value) override;
    void visit(ProductVersion& value) override;
    void visit(Position& value) override;
    void visit(Orientation& value) override;
    void visit(LocalTag& value) override;
    void visit(Length& value) override;
    void visit(ISO7String& value) override;
    void visit(Int8& value) override;
    void visit(Int64& value) override;
    void visit(Int32& value) override;
    void visit(Int16& value) override;
    void visit(DataStream& value) override;
    void visit(Boolean& value) override;
    void visit(Batch& value) override;
    void visit(Array& value) override;
};

} // namespace Vellum::Types::Visitors

#endif
