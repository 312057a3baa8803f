#ifndef VELLUM_DATAIO_SLICE_H
#define VELLUM_DATAIO_SLICE_H

#include "Vellum/Core/Export.h"

#include <cstddef>
#include <cstdint>

namespace Vellum::DataIO {

/// A non-owning view of bytes. The owner of the bytes must outlive the slice.
class VELLUM_CORE_EXPORT Slice {
public:
    constexpr Slice() noexcept = default;
    constexpr Slice(const std::uint8_t* begin, std::uint64_t size) noexcept
        : m_begin(begin)
        , m_size(size) {}

    constexpr const std::uint8_t* begin() const noexcept { return m_begin; }
    constexpr const std::uint8_t* end() const noexcept { return m_begin + m_size; }
    constexpr std::uint64_t size() const noexcept { return m_size; }
    constexpr bool empty() const noexcept { return m_size == 0; }

    /// The bytes [offset, offset + count); throws InvalidLength if they are not all inside.
    Slice sub(std::uint64_t offset, std::uint64_t count) const;

private:
    const std::uint8_t* m_begin = nullptr;
    std::uint64_t m_size = 0;
};

} // namespace Vellum::DataIO

#endif
