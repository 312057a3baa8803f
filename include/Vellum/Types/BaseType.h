#ifndef VELLUM_TYPES_BASETYPE_H
#define VELLUM_TYPES_BASETYPE_H

#include "Vellum/Core/Export.h"
#include "Vellum/Types/Identifiers.h"
#include "Vellum/Types/Visitors/Visitable.h"

#include <cstdint>

namespace Vellum::DataIO {
class DataSink;
} // namespace Vellum::DataIO

namespace Vellum::Types {

/// Any value of a metadata property: a simple value or a collection of simple values.
class VELLUM_CORE_EXPORT BaseType : public Visitors::Visitable {
public:
    ~BaseType() override;

    /// Writes the value's stored bytes (big-endian MXF encoding). Throws what the sink throws.
    virtual void serialize(DataIO::DataSink& sink) const = 0;
    /// The number of bytes `serialize` writes.
    virtual std::uint32_t serializedSize() const = 0;
    /// The type number of this value, as the meta-dictionary names types (see Identifiers.h).
    virtual Identifiers::Identifier identifier() const = 0;

protected:
    BaseType() = default;
    BaseType(const BaseType&) = default;
    BaseType(BaseType&&) = default;
    BaseType& operator=(const BaseType&) = default;
    BaseType& operator=(BaseType&&) = default;
};

} // namespace Vellum::Types

#endif
