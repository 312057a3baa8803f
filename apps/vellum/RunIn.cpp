#include "RunIn.h"

#include "Vellum/DataIO/DataSource.h"
#include "Vellum/Exceptions/InvalidFormat.h"
#include "Vellum/Exceptions/Throw.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <vector>

namespace Vellum::App {
namespace {

constexpr std::array<std::uint8_t, 4> smptePrefix = {0x06, 0x0E, 0x2B, 0x34};
constexpr std::size_t partitionPrefixLength = 13;
constexpr std::size_t versionByte = 7;
constexpr std::array<std::uint8_t, partitionPrefixLength> partitionPrefix = {
    0x06, 0x0E, 0x2B, 0x34, 0x02, 0x05, 0x01, 0x00, 0x0D, 0x01, 0x02, 0x01, 0x01};

// Whether the partition pack prefix starts at `at`; the registry version byte may be anything.
bool partitionPrefixAt(const std::vector<std::uint8_t>& bytes, std::size_t at) {
    for (std::size_t i = 0; i < partitionPrefixLength; ++i) {
        if (i != versionByte && bytes[at + i] != partitionPrefix[i]) {
            return false;
        }
    }
    return true;
}

} // namespace

std::uint64_t findKlvStart(DataIO::DataSource& source, const std::string& name) {
    source.seek(0);
    const std::uint64_t wanted = maxRunInLength + partitionPrefixLength;
    std::vector<std::uint8_t> head(static_cast<std::size_t>(std::min(source.remaining(), wanted)));
    source.read(head.data(), head.size());
    std::uint64_t start = 0;
    const bool startsWithKey = head.size() >= smptePrefix.size() &&
                               std::equal(smptePrefix.begin(), smptePrefix.end(), head.begin());
    if (!startsWithKey) {
        std::size_t at = 0;
        while (partitionPrefixLength <= head.size() - at && !partitionPrefixAt(head, at)) {
            ++at;
        }
        if (partitionPrefixLength > head.size() - at) {
            VELLUM_THROW(InvalidFormat,
                         "'" + name +
                             "' is not an MXF file: it does not start with a SMPTE key "
                             "(06.0E.2B.34), and no partition pack key starts within "
                             "its first " +
                             std::to_string(maxRunInLength + 1) + " bytes");
        }
        start = at;
    }
    source.seek(start);
    return start;
}

} // namespace Vellum::App
