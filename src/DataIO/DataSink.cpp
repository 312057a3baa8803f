#include "Vellum/DataIO/DataSink.h"

#include "Vellum/DataIO/BigEndian.h"

namespace Vellum::DataIO {

DataSink::~DataSink() = default;

void DataSink::writeUInt8(std::uint8_t value) {
    write(&value, 1);
}

void DataSink::writeUInt16(std::uint16_t value) {
    std::uint8_t b[2] = {};
    BigEndian::store16(b, value);
    write(b, sizeof b);
}

void DataSink::writeUInt32(std::uint32_t value) {
    std::uint8_t b[4] = {};
    BigEndian::store32(b, value);
    write(b, sizeof b);
}

void DataSink::writeUInt64(std::uint64_t value) {
    std::uint8_t b[8] = {};
    BigEndian::store64(b, value);
    write(b, sizeof b);
}

} // namespace Vellum::DataIO
