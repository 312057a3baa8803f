#include "Vellum/Types/Identifiers.h"

namespace Vellum::Types::Identifiers {
namespace {

struct TypeInfo {
    const char* name;
    std::uint32_t size; // 0: variable
};

// Indexed by identifier number.
constexpr TypeInfo typeTable[] = {
    {"Batch", 0},
    {"Array", 0},
    {"Boolean", 1},
    {"DataStream", 0},
    {"Float", 0},
    {"Int16", 2},
    {"Int32", 4},
    {"Int64", 8},
    {"Int8", 1},
    {"ISO7String", 0},
    {"Indirect", 0},
    {"Length", 8},
    {"PackageID", 32},
    {"Position", 8},
    {"ProductVersion", 10},
    {"Rational", 8},
    {"Timestamp", 8},
    {"UInt16", 2},
    {"UInt32", 4},
    {"UInt64", 8},
    {"UInt8", 1},
    {"UMID32", 32},
    {"UMID64", 64},
    {"UniversalLabel", 16},
    {"Unknown", 0},
    {"UTF16", 2},
    {"UTF16String", 0},
    {"UUID", 16},
    {"VersionType", 2},
    {"StrongReference", 16},
    {"WeakReference", 16},
    {"Opaque", 0},
    {"Stream", 0},
    {"Orientation", 1},
    {"RGBALayout", 16},
    {"SignalStandard", 1},
    {"VariableSize", 0},
    {"J2KPictureComponent", 3},
    {"J2KCodingStyleDefault", 0},
    {"J2KQuantisationDefault", 0},
};

constexpr unsigned typeCount = sizeof typeTable / sizeof typeTable[0];
static_assert(typeCount == J2KQuantisationDefault + 1, "one row per identifier");

} // namespace

bool isValid(unsigned value) noexcept {
    return value < typeCount;
}

std::optional<std::uint32_t> typeSize(Identifier identifier) noexcept {
    if (!isValid(identifier) || typeTable[identifier].size == 0) {
        return std::nullopt;
    }
    return typeTable[identifier].size;
}

const char* typeName(Identifier identifier) noexcept {
    return isValid(identifier) ? typeTable[identifier].name : nullptr;
}

} // namespace Vellum::Types::Identifiers
