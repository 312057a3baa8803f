#ifndef VELLUM_TYPES_DATASTREAM_H
#define VELLUM_TYPES_DATASTREAM_H

#include "Vellum/Types/BytesValue.h"

namespace Vellum::Types {

/// A stream of bytes kept as they are (type 3).
class VELLUM_CORE_EXPORT DataStream final : public BytesValue<DataStream, Identifiers::DataStream> {
public:
    using BytesValue::BytesValue;
    DataStream(const DataStream&) = default;
    DataStream(DataStream&&) noexcept = default;
    DataStream& operator=(const DataStream&) = default;
    DataStream& operator=(DataStream&&) noexcept = default;
    ~DataStream() override;
};

} // namespace Vellum::Types

#endif
