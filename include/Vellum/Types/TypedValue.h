#ifndef VELLUM_TYPES_TYPEDVALUE_H
#define VELLUM_TYPES_TYPEDVALUE_H

#include "Vellum/Core/Export.h"
#include "Vellum/Templates/Templates.h"
#include "Vellum/Types/Identifiers.h"
#include "Vellum/Types/SimpleDataType.h"
#include "Vellum/Types/Visitors/NonConstVisitor.h"
#include "Vellum/Types/Visitors/Visitor.h"

#include <memory>

namespace Vellum::Types {

/// The part every concrete value type shares: visitor dispatch, cloning and the type number.
///
/// `Derived` is the concrete class (which derives from this one), `Id` its type number and
/// `Base` the class it extends (SimpleDataType, or Reference for the two reference kinds).
/// Copying and moving are those of the concrete class.
template <class Derived, Identifiers::Identifier Id, class Base = SimpleDataType>
class VELLUM_CORE_EXPORT TypedValue : public Base {
public:
    using Base::Base;

    /// Calls `visitor.visit(Derived&)`.
    void accept(Visitors::NonConstVisitor& visitor) override {
        visitor.visit(static_cast<Derived&>(*this));
    }
    /// Calls `visitor.visit(const Derived&)`.
    void accept(Visitors::Visitor& visitor) const override {
        visitor.visit(static_cast<const Derived&>(*this));
    }
    /// A copy of this value as a new `Derived`, owned by the caller.
    Templates::auto_ptr<SimpleDataType> clone() const override {
        return std::make_unique<Derived>(static_cast<const Derived&>(*this));
    }
    /// `Id`.
    Identifiers::Identifier identifier() const override { return Id; }
};

} // namespace Vellum::Types

#endif
