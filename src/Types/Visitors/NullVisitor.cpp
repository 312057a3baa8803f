#include "Vellum/Types/Visitors/NullVisitor.h"

namespace Vellum::Types::Visitors {

NullVisitor::~NullVisitor() = default;

void NullVisitor::visit(const J2KQuantisationDefault& /*value*/) {}
void NullVisitor::visit(const J2KCodingStyleDefault& /*value*/) {}
void NullVisitor::visit(const J2KPictureComponent& /*value*/) {}
void NullVisitor::visit(const DataValue& /*value*/) {}
void NullVisitor::visit(const StrongReference& /*value*/) {}
void NullVisitor::visit(const WeakReference& /*value*/) {}
void NullVisitor::visit(const Unknown& /*value*/) {}
void NullVisitor::visit(const VersionType& /*value*/) {}
void NullVisitor::visit(const UUID& /*value*/) {}
void NullVisitor::visit(const UTF16String& /*value*/) {}
void NullVisitor::visit(const UTF16& /*value*/) {}
void NullVisitor::visit(const UniversalLabel& /*value*/) {}
void NullVisitor::visit(const UMID64& /*value*/) {}
void NullVisitor::visit(const UMID32& /*value*/) {}
void NullVisitor::visit(const UInt8& /*value*/) {}
void NullVisitor::visit(const UInt64& /*value*/) {}
void NullVisitor::visit(const UInt32& /*value*/) {}
void NullVisitor::visit(const UInt16& /*value*/) {}
void NullVisitor::visit(const Timestamp& /*value*/) {}
void NullVisitor::visit(const SignalStandard& /*value*/) {}
void NullVisitor::visit(const RGBALayout& /*value*/) {}
void NullVisitor::visit(const Rational& /*value*/) {}
void NullVisitor::visit(const ProductVersion& /*value*/) {}
void NullVisitor::visit(const Position& /*value*/) {}
void NullVisitor::visit(const Orientation& /*value*/) {}
void NullVisitor::visit(const LocalTag& /*value*/) {}
void NullVisitor::visit(const Length& /*value*/) {}
void NullVisitor::visit(const ISO7String& /*value*/) {}
void NullVisitor::visit(const Int8& /*value*/) {}
void NullVisitor::visit(const Int64& /*value*/) {}
void NullVisitor::visit(const Int32& /*value*/) {}
void NullVisitor::visit(const Int16& /*value*/) {}
void NullVisitor::visit(const DataStream& /*value*/) {}
void NullVisitor::visit(const Boolean& /*value*/) {}
void NullVisitor::visit(const Batch& /*value*/) {}
void NullVisitor::visit(const Array& /*value*/) {}

} // namespace Vellum::Types::Visitors
