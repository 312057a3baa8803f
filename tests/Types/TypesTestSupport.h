#ifndef VELLUM_TESTS_TYPES_TYPESTESTSUPPORT_H
#define VELLUM_TESTS_TYPES_TYPESTESTSUPPORT_H

#include "Support/PrintCase.h"

#include "Vellum/DataIO/Memory/MemoryDataSink.h"
#include "Vellum/Templates/Templates.h"
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
/// sign and "keep every stored byte" faults, with its text (Types::ValueText).
struct Sample {
    const char* name;
    Id::Identifier type;
    Bytes bytes;
    Vellum::WString text;
};
VELLUM_PRINT_CASE_NAME(Sample)

inline Bytes counting(std::size_t n, std::uint8_t first) {
    Bytes out(n);
    for (std::size_t i = 0; i < n; ++i) {
        out[i] = static_cast<std::uint8_t>(first + i);
    }
    return out;
}

/// The stored form of a batch or an array: item count, item size, then `items`.
inline Bytes collection(std::uint32_t count, std::uint32_t itemSize, const Bytes& items) {
    Bytes out;
    for (const std::uint32_t field : {count, itemSize}) {
        for (int shift = 24; shift >= 0; shift -= 8) {
            out.push_back(static_cast<std::uint8_t>(field >> shift));
        }
    }
    out.insert(out.end(), items.begin(), items.end());
    return out;
}

/// At least one sample of every type that has a value class.
inline std::vector<Sample> samples() {
    return {
        {"Boolean", Id::Boolean, {0x02}, u"1"},
        {"DataStream", Id::DataStream, {0x00, 0xAB, 0xFF}, u"00ABFF"},
        {"DataStreamEmpty", Id::DataStream, {}, u""},
        {"Int16", Id::Int16, {0x80, 0x01}, u"-32767"},
        {"Int32", Id::Int32, {0xFF, 0xFF, 0xFF, 0xFE}, u"-2"},
        {"Int64", Id::Int64, {0x80, 0, 0, 0, 0, 0, 0, 0x01}, u"-9223372036854775807"},
        {"Int8", Id::Int8, {0x80}, u"-128"},
        {"ISO7String", Id::ISO7String, {'a', 'b', 0, 0}, u"\"ab\""},
        {"ISO7StringEmpty", Id::ISO7String, {}, u"\"\""},
        {"Length",
         Id::Length,
         {0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF},
         u"18446744073709551615"},
        {"Position", Id::Position, {0, 0, 0, 0, 0x12, 0x34, 0x56, 0x78}, u"305419896"},
        {"ProductVersion",
         Id::ProductVersion,
         {0, 1, 0, 2, 0, 3, 0x01, 0x04, 0xFF, 0xFF},
         u"1.2.3.260.65535"},
        {"Rational", Id::Rational, {0xFF, 0xFF, 0xFF, 0xFF, 0, 0, 0x03, 0xE9}, u"-1/1001"},
        {"Timestamp",
         Id::Timestamp,
         {0x07, 0xE8, 2, 29, 23, 59, 59, 0xFF},
         u"2024-02-29 23:59:59.1020"},
        {"UInt16", Id::UInt16, {0xBE, 0xEF}, u"48879"},
        {"UInt32", Id::UInt32, {0xDE, 0xAD, 0xBE, 0xEF}, u"3735928559"},
        {"UInt64", Id::UInt64, {0xFF, 0, 0, 0, 0, 0, 0, 0x01}, u"18374686479671623681"},
        {"UInt8", Id::UInt8, {0xFE}, u"254"},
        {"UMID32", Id::UMID32, counting(32, 0x10),
         u"10.11.12.13.14.15.16.17.18.19.1A.1B.1C.1D.1E.1F."
         u"20.21.22.23.24.25.26.27.28.29.2A.2B.2C.2D.2E.2F"},
        {"UMID64", Id::UMID64, counting(64, 0x40),
         u"40.41.42.43.44.45.46.47.48.49.4A.4B.4C.4D.4E.4F."
         u"50.51.52.53.54.55.56.57.58.59.5A.5B.5C.5D.5E.5F."
         u"60.61.62.63.64.65.66.67.68.69.6A.6B.6C.6D.6E.6F."
         u"70.71.72.73.74.75.76.77.78.79.7A.7B.7C.7D.7E.7F"},
        {"UniversalLabel", Id::UniversalLabel, counting(16, 0x06),
         u"06.07.08.09.0A.0B.0C.0D.0E.0F.10.11.12.13.14.15"},
        {"Unknown", Id::Unknown, {0x01, 0x00, 0x02}, u"010002"},
        {"UTF16", Id::UTF16, {0xD8, 0x00}, u"\"\\uD800\""},
        {"UTF16String",
         Id::UTF16String,
         {0, 'A', 0xD8, 0x3D, 0xDE, 0x00, 0, 0, 0, 'z'},
         u"\"A\U0001F600\""},
        {"UTF16StringEmpty", Id::UTF16String, {}, u"\"\""},
        {"UUID", Id::UUID, counting(16, 0xF0), u"F0.F1.F2.F3.F4.F5.F6.F7.F8.F9.FA.FB.FC.FD.FE.FF"},
        {"VersionType", Id::VersionType, {1, 2}, u"258"},
        {"StrongReference", Id::StrongReference, counting(16, 0x30),
         u"30.31.32.33.34.35.36.37.38.39.3A.3B.3C.3D.3E.3F"},
        {"WeakReference", Id::WeakReference, counting(16, 0x50),
         u"50.51.52.53.54.55.56.57.58.59.5A.5B.5C.5D.5E.5F"},
        {"Orientation", Id::Orientation, {0x03}, u"3"},
        {"RGBALayout",
         Id::RGBALayout,
         {'R', 8, 'G', 8, 'B', 8, 'A', 8, 0, 0, 0, 0, 0, 0, 0, 0},
         u"R8 G8 B8 A8"},
        {"SignalStandard", Id::SignalStandard, {0x04}, u"4"},
        {"J2KPictureComponent", Id::J2KPictureComponent, {0x87, 1, 2}, u"Ssiz=135 XRsiz=1 YRsiz=2"},
        {"J2KCodingStyleDefault",
         Id::J2KCodingStyleDefault,
         {1, 0x80, 0, 0, 5, 0xAA, 0xBB},
         u"Scod=1 SGcod=2147483653 SPcod=AABB"},
        {"J2KCodingStyleDefaultBare",
         Id::J2KCodingStyleDefault,
         {1, 0, 0, 0, 0},
         u"Scod=1 SGcod=0 SPcod="},
        {"J2KQuantisationDefault",
         Id::J2KQuantisationDefault,
         {0x22, 1, 2, 3},
         u"Sqcd=34 SPgcd=010203"},
        {"J2KQuantisationDefaultBare", Id::J2KQuantisationDefault, {0x22}, u"Sqcd=34 SPgcd="},
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
