#ifndef VELLUM_TYPES_ORIENTATION_H
#define VELLUM_TYPES_ORIENTATION_H

#include "Vellum/Types/IntegerValue.h"

#include <cstdint>

namespace Vellum::Types {

/// A picture orientation code (1 byte).
class VELLUM_CORE_EXPORT Orientation final
    : public IntegerValue<Orientation, std::uint8_t, Identifiers::Orientation> {
public:
    using IntegerValue::IntegerValue;
    ~Orientation() override;
};

} // namespace Vellum::Types

#endif
