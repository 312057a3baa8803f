#include "Vellum/Types/Factories/UID.h"

#include "Vellum/DataIO/BigEndian.h"
#include "Vellum/Exceptions/InvalidFormat.h"
#include "Vellum/Exceptions/Throw.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <mutex>
#include <random>
#include <string>

namespace Vellum::Types::Factories {
namespace {

// 100 ns intervals between 1582-10-15 (the start of the Gregorian calendar) and 1970-01-01.
constexpr std::uint64_t gregorianToUnixTicks = 0x01B21DD213814000ULL;

// Process-wide state of the generator, guarded by its mutex.
class Generator {
public:
    Generator() {
        std::random_device device;
        std::seed_seq seed{
            device(),
            device(),
            device(),
            device(),
            device(),
            device(),
            static_cast<unsigned>(std::chrono::steady_clock::now().time_since_epoch().count())};
        m_random.seed(seed);
        m_clockSequence = static_cast<std::uint16_t>(m_random() & 0x3FFFU);
        DataIO::BigEndian::store16(m_node.data(), static_cast<std::uint16_t>(m_random()));
        DataIO::BigEndian::store32(m_node.data() + 2, static_cast<std::uint32_t>(m_random()));
        m_node[0] |= 0x01U; // multicast bit: this node ID is not a hardware address
    }

    UUID timeBased() {
        const std::lock_guard<std::mutex> lock(m_mutex);
        const std::uint64_t ticks = nextTicks();
        UUID::Bytes bytes{};
        DataIO::BigEndian::store32(bytes.data(), static_cast<std::uint32_t>(ticks));
        DataIO::BigEndian::store16(bytes.data() + 4, static_cast<std::uint16_t>(ticks >> 32U));
        DataIO::BigEndian::store16(
            bytes.data() + 6, static_cast<std::uint16_t>(((ticks >> 48U) & 0x0FFFU) | 0x1000U));
        bytes[8] = static_cast<std::uint8_t>(((m_clockSequence >> 8U) & 0x3FU) | 0x80U);
        bytes[9] = static_cast<std::uint8_t>(m_clockSequence);
        std::copy(m_node.begin(), m_node.end(), bytes.begin() + 10);
        return UUID(bytes);
    }

    UUID random() {
        const std::lock_guard<std::mutex> lock(m_mutex);
        UUID::Bytes bytes{};
        DataIO::BigEndian::store64(bytes.data(), m_random());
        DataIO::BigEndian::store64(bytes.data() + 8, m_random());
        bytes[6] = static_cast<std::uint8_t>((bytes[6] & 0x0FU) | 0x40U);
        bytes[8] = static_cast<std::uint8_t>((bytes[8] & 0x3FU) | 0x80U);
        return UUID(bytes);
    }

private:
    // The current time in 100 ns ticks since 1582-10-15, moved past the last one handed out
    // so that no two time-based UUIDs of this process are equal.
    std::uint64_t nextTicks() {
        const auto sinceUnix = std::chrono::duration_cast<std::chrono::nanoseconds>(
            std::chrono::system_clock::now().time_since_epoch());
        // A clock set before 1970 counts as 1970.
        const auto nanoseconds = std::max<std::chrono::nanoseconds::rep>(sinceUnix.count(), 0);
        std::uint64_t ticks = gregorianToUnixTicks + static_cast<std::uint64_t>(nanoseconds) / 100U;
        if (ticks <= m_lastTicks) {
            ticks = m_lastTicks + 1;
        }
        m_lastTicks = ticks;
        return ticks;
    }

    std::mutex m_mutex;
    std::mt19937_64 m_random;
    std::uint16_t m_clockSequence = 0;
    std::array<std::uint8_t, 6> m_node{};
    std::uint64_t m_lastTicks = 0;
};

Generator& generator() {
    static Generator instance;
    return instance;
}

} // namespace

UUID UID::generateUUID(TimeSnapVersion version) {
    switch (version) {
    case TimeBased:
        return generator().timeBased();
    case Random:
        return generator().random();
    }
    VELLUM_THROW(InvalidFormat, "UUID version " + std::to_string(static_cast<unsigned>(version)) +
                                    " is not supported (1 time-based, 4 random)");
}

} // namespace Vellum::Types::Factories
