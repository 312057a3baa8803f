#include "Vellum/DataIO/Slice.h"

#include "Vellum/Exceptions/InvalidLength.h"
#include "Vellum/Exceptions/Throw.h"

namespace Vellum::DataIO {

Slice Slice::sub(std::uint64_t offset, std::uint64_t count) const {
    if (offset > m_size || count > m_size - offset) {
        VELLUM_THROW(InvalidLength, "slice of " + std::to_string(count) + " bytes at " +
                                        std::to_string(offset) + " lies outside " +
                                        std::to_string(m_size) + " bytes");
    }
    return {m_begin + offset, count};
}

} // namespace Vellum::DataIO
