#ifndef VELLUM_TYPES_FACTORIES_UID_H
#define VELLUM_TYPES_FACTORIES_UID_H

#include "Vellum/Core/Export.h"
#include "Vellum/Types/UUID.h"

#include <cstdint>

namespace Vellum::Types::Factories {

/// Makes fresh UUIDs (RFC 4122 layout, variant bits 10).
class VELLUM_CORE_EXPORT UID {
public:
    /// The RFC 4122 version of UUID to make.
    enum TimeSnapVersion : std::uint8_t {
        /// Version 1: a 60-bit count of 100 ns since 1582-10-15, a clock sequence that is random
        /// per process, and a random node ID with the multicast bit set (no hardware address
        /// is used).
        TimeBased = 1,
        /// Version 4: 122 random bits.
        Random = 4,
    };

    UID() = delete;

    /// A new UUID of the given version. Thread-safe. No two time-based UUIDs of one process
    /// are equal (a time stamp that did not advance is moved on by one tick); random ones
    /// differ with the odds of 122 random bits. Throws InvalidFormat for a version other than
    /// 1 or 4.
    static UUID generateUUID(TimeSnapVersion version);
};

} // namespace Vellum::Types::Factories

#endif
