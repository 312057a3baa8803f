#ifndef VELLUM_TYPES_DATAVALUE_H
#define VELLUM_TYPES_DATAVALUE_H

#include "Vellum/Types/BytesValue.h"

namespace Vellum::Types {

/// Raw value bytes whose type is measured, not parsed; it reports the variable-size type
/// number (36), which has no parser of its own.
class VELLUM_CORE_EXPORT DataValue final : public BytesValue<DataValue, Identifiers::VariableSize> {
public:
    using BytesValue::BytesValue;
    DataValue(const DataValue&) = default;
    DataValue(DataValue&&) noexcept = default;
    DataValue& operator=(const DataValue&) = default;
    DataValue& operator=(DataValue&&) noexcept = default;
    ~DataValue() override;
};

} // namespace Vellum::Types

#endif
