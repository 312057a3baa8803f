#include "Vellum/MXF/RandomIndexPack.h"

#include "Vellum/DataIO/Memory/MemoryDataSource.h"
#include "Vellum/Exceptions/InvalidLength.h"
#include "Vellum/Exceptions/Throw.h"

#include <string>

namespace Vellum::MXF {

RandomIndexPack RandomIndexPack::parse(DataIO::Slice value, std::uint64_t offset) {
    constexpr std::uint64_t entrySize = 12;
    if (value.size() < 4 || (value.size() - 4) % entrySize != 0) {
        VELLUM_THROW(InvalidLength,
                     "a random index pack holds 12-byte entries and a 4-byte length; "
                     "the one at offset " +
                         std::to_string(offset) + " has " + std::to_string(value.size()) +
                         " bytes");
    }
    RandomIndexPack pack;
    pack.m_offset = offset;
    DataIO::Memory::MemoryDataSource source(value);
    const std::uint64_t count = (value.size() - 4) / entrySize;
    pack.m_entries.reserve(count);
    for (std::uint64_t i = 0; i < count; ++i) {
        Entry entry{};
        entry.bodySID = source.readUInt32();
        entry.byteOffset = source.readUInt64();
        pack.m_entries.push_back(entry);
    }
    pack.m_overallLength = source.readUInt32();
    return pack;
}

} // namespace Vellum::MXF
