#ifndef VELLUM_TESTS_TYPES_TYPESTESTSUPPORT_H
#define VELLUM_TESTS_TYPES_TYPESTESTSUPPORT_H

#include "Support/PrintCase.h"

#include "Vellum/DataIO/Memory/MemoryDataSink.h"
#include "Vellum/Types/BaseType.h"
#include "Vellum/Types/Identifiers.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

namespace VellumTypesTest {

using Bytes = std::vector<std::uint8_t>;
namespace Id = Vellum::Types::Identifiers;

/// One stored value: a type number and bytes of that type, chosen to expose byte-order,
/// sign and "keep every stored byte" faults.
struct Sample {
    const char* name;
    Id::Identifier type;
    Bytes bytes;
};
VELLUM_PRINT_CASE_NAME(Sample)

inline Bytes counting(std::size_t n, std::uint8_t first) {
    Bytes out(n);
    for (std::size_t i = 0; i < n; ++i) {
        out[i] = static_cast<std::uint8_t>(first + i);
    }
    return out;
}

/// At least one sample of every type that has a value class.
inline std::vector<Sample> samples() {
    return {
        {"Boolean", Id::Boolean, {0x02}},
        {"DataStream", Id::DataStream, {0x00, 0xAB, 0xFF}},
        {"DataStreamEmpty", Id::DataStream, {}},
        {"Int16", Id::Int16, {0x80, 0x01}},
        {"Int32", Id::Int32, {0xFF, 0xFF, 0xFF, 0xFE}},
        {"Int64", Id::Int64, {0x80, 0, 0, 0, 0, 0, 0, 0x01}},
        {"Int8", Id::Int8, {0x80}},
        {"ISO7String", Id::ISO7String, {'a', 'b', 0, 0}},
        {"ISO7StringEmpty", Id::ISO7String, {}},
        {"Length", Id::Length, {0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF}},
        {"Position", Id::Position, {0, 0, 0, 0, 0x12, 0x34, 0x56, 0x78}},
        {"ProductVersion", Id::ProductVersion, {0, 1, 0, 2, 0, 3, 0x01, 0x04, 0xFF, 0xFF}},
        {"Rational", Id::Rational, {0xFF, 0xFF, 0xFF, 0xFF, 0, 0, 0x03, 0xE9}},
        {"Timestamp", Id::Timestamp, {0x07, 0xE8, 2, 29, 23, 59, 59, 0xFF}},
        {"UInt16", Id::UInt16, {0xBE, 0xEF}},
        {"UInt32", Id::UInt32, {0xDE, 0xAD, 0xBE, 0xEF}},
        {"UInt64", Id::UInt64, {0xFF, 0, 0, 0, 0, 0, 0, 0x01}},
        {"UInt8", Id::UInt8, {0xFE}},
        {"UMID32", Id::UMID32, counting(32, 0x10)},
        {"UMID64", Id::UMID64, counting(64, 0x40)},
        {"UniversalLabel", Id::UniversalLabel, counting(16, 0x06)},
        {"Unknown", Id::Unknown, {0x01, 0x00, 0x02}},
        {"UTF16", Id::UTF16, {0xD8, 0x00}},
        {"UTF16String", Id::UTF16String, {0, 'A', 0xD8, 0x3D, 0xDE, 0x00, 0, 0, 0, 'z'}},
        {"UTF16StringEmpty", Id::UTF16String, {}},
        {"UUID", Id::UUID, counting(16, 0xF0)},
        {"VersionType", Id::VersionType, {1, 2}},
        {"StrongReference", Id::StrongReference, counting(16, 0x30)},
        {"WeakReference", Id::WeakReference, counting(16, 0x50)},
        {"Orientation", Id::Orientation, {0x03}},
        {"RGBALayout", Id::RGBALayout, {'R', 8, 'G', 8, 'B', 8, 'A', 8, 0, 0, 0, 0, 0, 0, 0, 0}},
        {"SignalStandard", Id::SignalStandard, {0x04}},
        {"J2KPictureComponent", Id::J2KPictureComponent, {0x87, 1, 2}},
        {"J2KCodingStyleDefault", Id::J2KCodingStyleDefault, {1, 0x80, 0, 0, 5, 0xAA, 0xBB}},
        {"J2KCodingStyleDefaultBare", Id::J2KCodingStyleDefault, {1, 0, 0, 0, 0}},
        {"J2KQuantisationDefault", Id::J2KQuantisationDefault, {0x22, 1, 2, 3}},
        {"J2KQuantisationDefaultBare", Id::J2KQuantisationDefault, {0x22}},
    };
}

/// The bytes `value.serialize` writes.
inline Bytes serialized(const Vellum::Types::BaseType& value) {
    Vellum::DataIO::Memory::MemoryDataSink sink;
    value.serialize(sink);
    return sink.release();
}

} // namespace VellumTypesTest

#endif
