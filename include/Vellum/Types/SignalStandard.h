#ifndef VELLUM_TYPES_SIGNALSTANDARD_H
#define VELLUM_TYPES_SIGNALSTANDARD_H

#include "Vellum/Types/IntegerValue.h"

#include <cstdint>

namespace Vellum::Types {

/// A signal standard code (1 byte).
class VELLUM_CORE_EXPORT SignalStandard final
    : public IntegerValue<SignalStandard, std::uint8_t, Identifiers::SignalStandard> {
public:
    using IntegerValue::IntegerValue;
    ~SignalStandard() override;
};

} // namespace Vellum::Types

#endif
