#include "Vellum/Types/Visitors/NonConstNullVisitor.h"

namespace Vellum::Types::Visitors {

NonConstNullVisitor::~NonConstNullVisitor() = default;

void NonConstNullVisitor::visit(J2KQuantisationDefault& /*value*/) {}
void NonConstNullVisitor::visit(J2KCodingStyleDefault& /*value*/) {}
void NonConstNullVisitor::visit(J2KPictureComponent& /*value*/) {}
void NonConstNullVisitor::visit(DataValue& /*value*/) {}
void NonConstNullVisitor::visit(StrongReference& /*value*/) {}
void NonConstNullVisitor::visit(WeakReference& /*value*/) {}
void NonConstNullVisitor::visit(Unknown& /*value*/) {}
void NonConstNullVisitor::visit(VersionType& /*value*/) {}
void NonConstNullVisitor::visit(UUID& /*value*/) {}
void NonConstNullVisitor::visit(UTF16String& /*value*/) {}
void NonConstNullVisitor::visit(UTF16& /*value*/) {}
void NonConstNullVisitor::visit(UniversalLabel& /*value*/) {}
void NonConstNullVisitor::visit(UMID64& /*value*/) {}
void NonConstNullVisitor::visit(UMID32& /*value*/) {}
void NonConstNullVisitor::visit(UInt8& /*value*/) {}
void NonConstNullVisitor::visit(UInt64& /*value*/) {}
void NonConstNullVisitor::visit(UInt32& /*value*/) {}
void NonConstNullVisitor::visit(UInt16& /*value*/) {}
void NonConstNullVisitor::visit(Timestamp& /*value*/) {}
void NonConstNullVisitor::visit(SignalStandard& /*value*/) {}
void NonConstNullVisitor::visit(RGBALayout& /*value*/) {}
void NonConstNullVisitor::visit(Rational& /*value*/) {}
void NonConstNullVisitor::visit(ProductVersion& /*value*/) {}
void NonConstNullVisitor::visit(Position& /*value*/) {}
void NonConstNullVisitor::visit(Orientation& /*value*/) {}
void NonConstNullVisitor::visit(LocalTag& /*value*/) {}
void NonConstNullVisitor::visit(Length& /*value*/) {}
void NonConstNullVisitor::visit(ISO7String& /*value*/) {}
void NonConstNullVisitor::visit(Int8& /*value*/) {}
void NonConstNullVisitor::visit(Int64& /*value*/) {}
void NonConstNullVisitor::visit(Int32& /*value*/) {}
void NonConstNullVisitor::visit(Int16& /*value*/) {}
void NonConstNullVisitor::visit(DataStream& /*value*/) {}
void NonConstNullVisitor::visit(Boolean& /*value*/) {}
void NonConstNullVisitor::visit(Batch& /*value*/) {}
void NonConstNullVisitor::visit(Array& /*value*/) {}

} // namespace Vellum::Types::Visitors
