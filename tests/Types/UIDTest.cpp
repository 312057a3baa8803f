#include "Vellum/Types/Factories/UID.h"

#include "Support/ExpectThrow.h"
#include "TypesTestSupport.h"

#include "Vellum/Exceptions/InvalidFormat.h"

#include <gtest/gtest.h>

#include <chrono>
#include <set>
#include <thread>
#include <vector>

namespace {

using namespace VellumTypesTest;
using Vellum::Types::UUID;
using Vellum::Types::Factories::UID;

// The 60-bit time stamp of a version 1 UUID.
std::uint64_t timeOf(const UUID& u) {
    const auto& b = u.bytes();
    const std::uint64_t low = (std::uint64_t{b[0]} << 24U) | (std::uint64_t{b[1]} << 16U) |
                              (std::uint64_t{b[2]} << 8U) | b[3];
    const std::uint64_t mid = (std::uint64_t{b[4]} << 8U) | b[5];
    const std::uint64_t high = (std::uint64_t{b[6] & 0x0FU} << 8U) | b[7];
    return (high << 48U) | (mid << 32U) | low;
}

TEST(UID, TimeBasedHasVersionVariantAndMulticastNode) {
    const UUID first = UID::generateUUID(UID::TimeBased);
    const UUID u = UID::generateUUID(UID::TimeBased);
    EXPECT_EQ(u[6] >> 4U, 1);
    EXPECT_EQ(u[8] & 0xC0U, 0x80U);
    EXPECT_EQ(u[10] & 0x01U, 0x01U) << "random node IDs carry the multicast bit";
    // Clock sequence and node stay the same within the process; the time moves on.
    EXPECT_TRUE(std::equal(u.bytes().begin() + 8, u.bytes().end(), first.bytes().begin() + 8));
    EXPECT_GT(timeOf(u), timeOf(first));
}

TEST(UID, TimeBasedCountsHundredNanosecondsSince1582) {
    const auto now = std::chrono::duration_cast<std::chrono::microseconds>(
                         std::chrono::system_clock::now().time_since_epoch())
                         .count();
    const std::uint64_t expected = 0x01B21DD213814000ULL + static_cast<std::uint64_t>(now) * 10U;
    const std::uint64_t got = timeOf(UID::generateUUID(UID::TimeBased));
    const std::uint64_t minute = 600000000ULL;
    EXPECT_LT(got > expected ? got - expected : expected - got, minute);
}

TEST(UID, RandomHasVersionFourAndVariant) {
    const UUID u = UID::generateUUID(UID::Random);
    EXPECT_EQ(u[6] >> 4U, 4);
    EXPECT_EQ(u[8] & 0xC0U, 0x80U);
}

TEST(UID, NeverRepeatsAcrossCallsAndThreads) {
    constexpr std::size_t threads = 4;
    constexpr int perThread = 5000;
    std::vector<std::vector<UUID>> made(threads);
    std::vector<std::thread> workers;
    workers.reserve(threads);
    for (std::size_t t = 0; t < threads; ++t) {
        workers.emplace_back([&made, t] {
            for (int i = 0; i < perThread; ++i) {
                made[t].push_back(UID::generateUUID(i % 2 == 0 ? UID::TimeBased : UID::Random));
            }
        });
    }
    for (auto& w : workers) {
        w.join();
    }
    std::set<UUID> all;
    for (const auto& list : made) {
        all.insert(list.begin(), list.end());
    }
    EXPECT_EQ(all.size(), threads * perThread);
}

TEST(UID, OtherVersionsThrow) {
    EXPECT_THROW_MSG_HAS(UID::generateUUID(static_cast<UID::TimeSnapVersion>(2)), InvalidFormat,
                         "UUID version 2");
}

} // namespace
