#include "Vellum/Types/RGBALayout.h"

#include "Vellum/DataIO/DataSink.h"
#include "Vellum/Exceptions/InvalidLength.h"
#include "Vellum/Exceptions/Throw.h"

#include <string>

namespace Vellum::Types {

RGBALayout::~RGBALayout() = default;

RGBALayout RGBALayout::fromBytes(DataIO::Slice bytes) {
    requireSize(bytes, 2 * componentCount, Identifiers::RGBALayout);
    RGBALayout layout;
    for (std::size_t i = 0; i < componentCount; ++i) {
        layout.m_components[i] = {bytes.begin()[2 * i], bytes.begin()[2 * i + 1]};
    }
    return layout;
}

RGBALayout::RGBAComponent RGBALayout::get(std::size_t index) const {
    checkIndex(index);
    return m_components[index];
}

void RGBALayout::set(std::size_t index, RGBAComponent component) {
    checkIndex(index);
    m_components[index] = component;
}

void RGBALayout::serialize(DataIO::DataSink& sink) const {
    for (const RGBAComponent& component : m_components) {
        sink.writeUInt8(component.code);
        sink.writeUInt8(component.depth);
    }
}

void RGBALayout::checkIndex(std::size_t index) {
    if (index >= componentCount) {
        VELLUM_THROW(InvalidLength, "RGBA layout component index " + std::to_string(index) +
                                        " is outside the " + std::to_string(componentCount) +
                                        " slots");
    }
}

} // namespace Vellum::Types
