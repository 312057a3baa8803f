#include "Vellum/Types/SimpleDataType.h"

#include "Vellum/DataIO/Memory/MemoryDataSink.h"
#include "Vellum/Exceptions/InvalidLength.h"
#include "Vellum/Exceptions/Throw.h"

#include <limits>
#include <string>

namespace Vellum::Types {
namespace {

std::string typeText(Identifiers::Identifier type) {
    const char* name = Identifiers::typeName(type);
    return name != nullptr ? name : "type " + std::to_string(static_cast<unsigned>(type));
}

} // namespace

SimpleDataType::~SimpleDataType() = default;

std::vector<std::uint8_t> SimpleDataType::rawBuffer() const {
    DataIO::Memory::MemoryDataSink sink(serializedSize());
    serialize(sink);
    return sink.release();
}

void SimpleDataType::requireSize(DataIO::Slice bytes, std::uint64_t expected,
                                 Identifiers::Identifier type) {
    if (bytes.size() != expected) {
        VELLUM_THROW(InvalidLength, "a " + typeText(type) + " value has " +
                                        std::to_string(expected) + " bytes, not " +
                                        std::to_string(bytes.size()));
    }
}

void SimpleDataType::requireMinimumSize(DataIO::Slice bytes, std::uint64_t minimum,
                                        Identifiers::Identifier type) {
    if (minimum > bytes.size()) {
        VELLUM_THROW(InvalidLength, "a " + typeText(type) + " value needs at least " +
                                        std::to_string(minimum) + " bytes, got " +
                                        std::to_string(bytes.size()));
    }
}

std::uint32_t SimpleDataType::checkedSize(std::uint64_t count, Identifiers::Identifier type) {
    if (count > std::numeric_limits<std::uint32_t>::max()) {
        VELLUM_THROW(InvalidLength, "a " + typeText(type) + " value of " + std::to_string(count) +
                                        " bytes is longer than a 32-bit size allows");
    }
    return static_cast<std::uint32_t>(count);
}

} // namespace Vellum::Types
