#include "Vellum/Types/Collection.h"

#include "Vellum/DataIO/DataSink.h"
#include "Vellum/Exceptions/InvalidLength.h"
#include "Vellum/Exceptions/Throw.h"
#include "Vellum/Types/Factories/ValueFactory.h"

#include <limits>
#include <string>
#include <utility>

namespace Vellum::Types {
namespace {

constexpr std::uint32_t headerSize = 8;

std::string typeText(Identifiers::Identifier type) {
    const char* name = Identifiers::typeName(type);
    return name != nullptr ? name : "type " + std::to_string(static_cast<unsigned>(type));
}

} // namespace

Collection::Collection(std::uint32_t itemSize, Identifiers::Identifier itemType)
    : m_itemSize(itemSize)
    , m_itemType(itemType) {
    if (!Factories::ValueFactory::hasValueClass(itemType)) {
        VELLUM_THROW(InvalidFormat, "a batch or array cannot hold items of " + typeText(itemType) +
                                        ", which has no value class");
    }
    // Writers store an item size of 0 in a collection without items; it is kept as stored.
    const auto fixedSize = Identifiers::typeSize(itemType);
    if (fixedSize && *fixedSize != itemSize && itemSize != 0) {
        VELLUM_THROW(InvalidLength, "a batch or array of " + typeText(itemType) + " has items of " +
                                        std::to_string(*fixedSize) + " bytes, not " +
                                        std::to_string(itemSize));
    }
}

Collection::~Collection() = default;

void Collection::serialize(DataIO::DataSink& sink) const {
    sink.writeUInt32(size());
    sink.writeUInt32(m_itemSize);
    for (const auto& item : m_items) {
        item->serialize(sink);
    }
}

std::uint32_t Collection::serializedSize() const {
    // append() keeps this within 32 bits.
    return headerSize + size() * m_itemSize;
}

const SimpleDataType& Collection::at(std::uint32_t index) const {
    if (index >= m_items.size()) {
        VELLUM_THROW(InvalidLength, typeText(identifier()) + " index " + std::to_string(index) +
                                        " is past its " + std::to_string(m_items.size()) +
                                        " items");
    }
    return *m_items[index];
}

SimpleDataType& Collection::at(std::uint32_t index) {
    return const_cast<SimpleDataType&>(static_cast<const Collection&>(*this).at(index));
}

void Collection::append(Templates::auto_ptr<SimpleDataType> item) {
    const std::string what = typeText(identifier()) + " of " + typeText(m_itemType);
    if (!item) {
        VELLUM_THROW(InvalidFormat, "no item given to append to a " + what);
    }
    if (item->identifier() != m_itemType) {
        VELLUM_THROW(InvalidFormat,
                     "a " + what + " cannot take an item of " + typeText(item->identifier()));
    }
    if (m_items.empty() && m_itemSize == 0) {
        m_itemSize = item->serializedSize(); // the first item sets an unknown item size
    }
    if (item->serializedSize() != m_itemSize) {
        VELLUM_THROW(InvalidLength, "a " + what + " has items of " + std::to_string(m_itemSize) +
                                        " bytes, not " + std::to_string(item->serializedSize()));
    }
    const std::uint32_t room = std::numeric_limits<std::uint32_t>::max() - serializedSize();
    if (m_itemSize > room) {
        VELLUM_THROW(InvalidLength, "a " + what + " of " + std::to_string(size() + 1U) +
                                        " items of " + std::to_string(m_itemSize) +
                                        " bytes is longer than a 32-bit size allows");
    }
    m_items.push_back(std::move(item));
}

void Collection::appendClonesOf(const Collection& other) {
    m_items.reserve(m_items.size() + other.m_items.size());
    for (const auto& item : other.m_items) {
        append(item->clone());
    }
}

} // namespace Vellum::Types
