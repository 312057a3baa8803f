#ifndef VELLUM_TYPES_SIMPLEDATATYPE_H
#define VELLUM_TYPES_SIMPLEDATATYPE_H

#include "Vellum/DataIO/Slice.h"
#include "Vellum/Templates/Templates.h"
#include "Vellum/Types/BaseType.h"

#include <cstdint>
#include <vector>

namespace Vellum::Types {

/// One value of a scalar, string, identifier or compound type.
///
/// Every value built from bytes serialises back to exactly those bytes. Concrete types are
/// small copyable classes; through this base they are copied with `clone()`.
class VELLUM_CORE_EXPORT SimpleDataType : public BaseType {
public:
    ~SimpleDataType() override;

    void accept(Visitors::NonConstVisitor& visitor) override = 0;
    void accept(Visitors::Visitor& visitor) const override = 0;
    void serialize(DataIO::DataSink& sink) const override = 0;
    /// The bytes `serialize` writes, as a new buffer owned by the caller.
    virtual std::vector<std::uint8_t> rawBuffer() const;
    std::uint32_t serializedSize() const override = 0;
    /// A deep copy of this value, of the same concrete type, owned by the caller.
    virtual Templates::auto_ptr<SimpleDataType> clone() const = 0;

protected:
    SimpleDataType() = default;
    SimpleDataType(const SimpleDataType&) = default;
    SimpleDataType(SimpleDataType&&) = default;
    SimpleDataType& operator=(const SimpleDataType&) = default;
    SimpleDataType& operator=(SimpleDataType&&) = default;

    /// Throws InvalidLength, naming the type and both counts, unless `bytes` holds exactly
    /// `expected` bytes.
    static void requireSize(DataIO::Slice bytes, std::uint64_t expected,
                            Identifiers::Identifier type);
    /// Throws InvalidLength, naming the type and both counts, if `bytes` holds fewer than
    /// `minimum` bytes.
    static void requireMinimumSize(DataIO::Slice bytes, std::uint64_t minimum,
                                   Identifiers::Identifier type);
    /// `count` as a 32-bit size; throws InvalidLength, naming the type, if it does not fit.
    static std::uint32_t checkedSize(std::uint64_t count, Identifiers::Identifier type);
};

} // namespace Vellum::Types

#endif
