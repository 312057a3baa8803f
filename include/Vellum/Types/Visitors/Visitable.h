#ifndef VELLUM_TYPES_VISITORS_VISITABLE_H
#define VELLUM_TYPES_VISITORS_VISITABLE_H

#include "Vellum/Core/Export.h"

namespace Vellum::Types::Visitors {

class NonConstVisitor;
class Visitor;

/// Something a value visitor can visit: the root of every value type.
class VELLUM_CORE_EXPORT Visitable {
public:
    virtual ~Visitable();

    /// Calls the visitor's `visit` for this object's concrete type; the visitor may change it.
    virtual void accept(NonConstVisitor& visitor) = 0;
    /// Calls the visitor's `visit` for this object's concrete type.
    virtual void accept(Visitor& visitor) const = 0;

protected:
    Visitable() = default;
    Visitable(const Visitable&) = default;
    Visitable(Visitable&&) = default;
    Visitable& operator=(const Visitable&) = default;
    Visitable& operator=(Visitable&&) = default;
};

} // namespace Vellum::Types::Visitors

#endif
