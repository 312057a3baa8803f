#ifndef VELLUM_DATAIO_BIGENDIAN_H
#define VELLUM_DATAIO_BIGENDIAN_H

#include <cstdint>

/// @file
/// Big-endian loads and stores on raw bytes. Callers check bounds first.

namespace Vellum::DataIO::BigEndian {

constexpr std::uint16_t load16(const std::uint8_t* p) noexcept {
    return static_cast<std::uint16_t>((p[0] << 8U) | p[1]);
}

constexpr std::uint32_t load32(const std::uint8_t* p) noexcept {
    return (std::uint32_t{p[0]} << 24U) | (std::uint32_t{p[1]} << 16U) |
           (std::uint32_t{p[2]} << 8U) | std::uint32_t{p[3]};
}

constexpr std::uint64_t load64(const std::uint8_t* p) noexcept {
    return (std::uint64_t{load32(p)} << 32U) | load32(p + 4);
}

constexpr void store16(std::uint8_t* p, std::uint16_t v) noexcept {
    p[0] = static_cast<std::uint8_t>(v >> 8U);
    p[1] = static_cast<std::uint8_t>(v);
}

constexpr void store32(std::uint8_t* p, std::uint32_t v) noexcept {
    store16(p, static_cast<std::uint16_t>(v >> 16U));
    store16(p + 2, static_cast<std::uint16_t>(v));
}

constexpr void store64(std::uint8_t* p, std::uint64_t v) noexcept {
    store32(p, static_cast<std::uint32_t>(v >> 32U));
    store32(p + 4, static_cast<std::uint32_t>(v));
}

} // namespace Vellum::DataIO::BigEndian

#endif
