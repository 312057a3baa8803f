#ifndef VELLUM_TYPES_RGBALAYOUT_H
#define VELLUM_TYPES_RGBALAYOUT_H

#include "Vellum/Types/TypedValue.h"

#include <array>
#include <cstddef>
#include <cstdint>

namespace Vellum::Types {

/// The component layout of an RGBA picture: 8 slots of (component code, depth in bits), one
/// byte each (16 bytes). Unused slots hold code 0.
class VELLUM_CORE_EXPORT RGBALayout final : public TypedValue<RGBALayout, Identifiers::RGBALayout> {
public:
    /// One slot of the layout.
    struct RGBAComponent {
        /// The component's code ('R', 'G', 'B', 'A', 'F' ...; 0 for an unused slot).
        std::uint8_t code = 0;
        /// Bits of the component.
        std::uint8_t depth = 0;
    };

    /// Number of slots.
    static constexpr std::size_t componentCount = 8;

    /// All slots zero.
    RGBALayout() = default;
    ~RGBALayout() override;

    /// Reads the stored form; throws InvalidLength unless `bytes` is 16 bytes.
    static RGBALayout fromBytes(DataIO::Slice bytes);

    /// The slot at `index`; throws InvalidLength if `index` is not below `componentCount`.
    RGBAComponent get(std::size_t index) const;
    /// Sets the slot at `index`; throws InvalidLength if `index` is not below
    /// `componentCount`.
    void set(std::size_t index, RGBAComponent component);

    void serialize(DataIO::DataSink& sink) const override;
    std::uint32_t serializedSize() const override { return 2 * componentCount; }

private:
    static void checkIndex(std::size_t index);

    std::array<RGBAComponent, componentCount> m_components{};
};

} // namespace Vellum::Types

#endif
