#include "Vellum/DataIO/DataSource.h"

#include "Vellum/DataIO/BigEndian.h"
#include "Vellum/Exceptions/InvalidLength.h"
#include "Vellum/Exceptions/Throw.h"

#include <string>

namespace Vellum::DataIO {

DataSource::~DataSource() = default;

void DataSource::require(std::uint64_t count, const char* what) const {
    const std::uint64_t left = remaining();
    if (count > left) {
        VELLUM_THROW(InvalidLength, std::string(what) + " needs " + std::to_string(count) +
                                        " bytes at offset " + std::to_string(position()) +
                                        ", but only " + std::to_string(left) + " remain");
    }
}

void DataSource::read(std::uint8_t* out, std::uint64_t count) {
    require(count, "read");
    readUnchecked(out, count);
}

void DataSource::skip(std::uint64_t count) {
    require(count, "skip");
    seek(position() + count);
}

std::uint8_t DataSource::readUInt8() {
    std::uint8_t b = 0;
    read(&b, 1);
    return b;
}

std::uint16_t DataSource::readUInt16() {
    std::uint8_t b[2] = {};
    read(b, sizeof b);
    return BigEndian::load16(b);
}

std::uint32_t DataSource::readUInt32() {
    std::uint8_t b[4] = {};
    read(b, sizeof b);
    return BigEndian::load32(b);
}

std::uint64_t DataSource::readUInt64() {
    std::uint8_t b[8] = {};
    read(b, sizeof b);
    return BigEndian::load64(b);
}

} // namespace Vellum::DataIO
