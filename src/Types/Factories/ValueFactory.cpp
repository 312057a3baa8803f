#include "Vellum/Types/Factories/ValueFactory.h"

#include "Vellum/DataIO/BigEndian.h"
#include "Vellum/Exceptions/InvalidLength.h"
#include "Vellum/Exceptions/Throw.h"
#include "Vellum/Types/Array.h"
#include "Vellum/Types/Batch.h"
#include "Vellum/Types/Boolean.h"
#include "Vellum/Types/DataStream.h"
#include "Vellum/Types/ISO7String.h"
#include "Vellum/Types/Int16.h"
#include "Vellum/Types/Int32.h"
#include "Vellum/Types/Int64.h"
#include "Vellum/Types/Int8.h"
#include "Vellum/Types/J2KCodingStyleDefault.h"
#include "Vellum/Types/J2KPictureComponent.h"
#include "Vellum/Types/J2KQuantisationDefault.h"
#include "Vellum/Types/Length.h"
#include "Vellum/Types/Orientation.h"
#include "Vellum/Types/Position.h"
#include "Vellum/Types/ProductVersion.h"
#include "Vellum/Types/RGBALayout.h"
#include "Vellum/Types/Rational.h"
#include "Vellum/Types/SignalStandard.h"
#include "Vellum/Types/StrongReference.h"
#include "Vellum/Types/Timestamp.h"
#include "Vellum/Types/UInt16.h"
#include "Vellum/Types/UInt32.h"
#include "Vellum/Types/UInt64.h"
#include "Vellum/Types/UInt8.h"
#include "Vellum/Types/UMID32.h"
#include "Vellum/Types/UMID64.h"
#include "Vellum/Types/UTF16.h"
#include "Vellum/Types/UTF16String.h"
#include "Vellum/Types/UUID.h"
#include "Vellum/Types/UniversalLabel.h"
#include "Vellum/Types/Unknown.h"
#include "Vellum/Types/VersionType.h"
#include "Vellum/Types/WeakReference.h"

#include <limits>
#include <memory>
#include <string>

namespace Vellum::Types::Factories {
namespace {

using Decoder = Templates::auto_ptr<SimpleDataType> (*)(DataIO::Slice);

// Every value class reads its own stored form (and checks its size) in fromBytes().
template <class Value>
Templates::auto_ptr<SimpleDataType> decode(DataIO::Slice bytes) {
    return std::make_unique<Value>(Value::fromBytes(bytes));
}

// Indexed by type number; nullptr where the number has no value class.
constexpr Decoder decoders[] = {
    nullptr,                         // 0 Batch (a collection kind)
    nullptr,                         // 1 Array (a collection kind)
    &decode<Boolean>,                // 2
    &decode<DataStream>,             // 3
    nullptr,                         // 4 Float
    &decode<Int16>,                  // 5
    &decode<Int32>,                  // 6
    &decode<Int64>,                  // 7
    &decode<Int8>,                   // 8
    &decode<ISO7String>,             // 9
    nullptr,                         // 10 Indirect
    &decode<Length>,                 // 11
    nullptr,                         // 12 PackageID
    &decode<Position>,               // 13
    &decode<ProductVersion>,         // 14
    &decode<Rational>,               // 15
    &decode<Timestamp>,              // 16
    &decode<UInt16>,                 // 17
    &decode<UInt32>,                 // 18
    &decode<UInt64>,                 // 19
    &decode<UInt8>,                  // 20
    &decode<UMID32>,                 // 21
    &decode<UMID64>,                 // 22
    &decode<UniversalLabel>,         // 23
    &decode<Unknown>,                // 24
    &decode<UTF16>,                  // 25
    &decode<UTF16String>,            // 26
    &decode<UUID>,                   // 27
    &decode<VersionType>,            // 28
    &decode<StrongReference>,        // 29
    &decode<WeakReference>,          // 30
    nullptr,                         // 31 Opaque
    nullptr,                         // 32 Stream
    &decode<Orientation>,            // 33
    &decode<RGBALayout>,             // 34
    &decode<SignalStandard>,         // 35
    nullptr,                         // 36 VariableSize (measured, not parsed)
    &decode<J2KPictureComponent>,    // 37
    &decode<J2KCodingStyleDefault>,  // 38
    &decode<J2KQuantisationDefault>, // 39
};
static_assert(sizeof decoders / sizeof decoders[0] == Identifiers::J2KQuantisationDefault + 1,
              "one decoder slot per type number");

constexpr std::uint32_t collectionHeaderSize = 8;

std::string typeText(Identifiers::Identifier type) {
    const char* name = Identifiers::typeName(type);
    return name != nullptr ? name : "type " + std::to_string(static_cast<unsigned>(type));
}

Decoder decoderFor(Identifiers::Identifier type) {
    if (!Identifiers::isValid(type)) {
        VELLUM_THROW(InvalidFormat,
                     "unknown type number " + std::to_string(static_cast<unsigned>(type)));
    }
    if (decoders[type] == nullptr) {
        VELLUM_THROW(InvalidFormat, typeText(type) + " (type number " +
                                        std::to_string(static_cast<unsigned>(type)) +
                                        ") has no value class to read bytes into");
    }
    return decoders[type];
}

Templates::auto_ptr<Collection> emptyCollection(Identifiers::Identifier kind,
                                                std::uint32_t itemSize,
                                                Identifiers::Identifier itemType) {
    if (kind == Identifiers::Batch) {
        return std::make_unique<Batch>(itemSize, itemType);
    }
    return std::make_unique<Array>(itemSize, itemType);
}

// Throws unless `count` items of `itemSize` bytes exactly fill `remaining` bytes. The product
// is never formed before the division check, so it cannot overflow.
void checkItemsFill(const std::string& what, std::uint32_t count, std::uint32_t itemSize,
                    std::uint64_t remaining) {
    if (itemSize == 0 && count != 0) {
        VELLUM_THROW(InvalidLength, what + " header at byte offset 0 declares " +
                                        std::to_string(count) + " items of 0 bytes");
    }
    if ((itemSize != 0 && count > remaining / itemSize) ||
        std::uint64_t{count} * itemSize != remaining) {
        VELLUM_THROW(InvalidLength,
                     what + " header at byte offset 0 declares " + std::to_string(count) +
                         " items of " + std::to_string(itemSize) + " bytes, but " +
                         std::to_string(remaining) + " bytes follow the 8-byte header");
    }
}

// Reads one item and appends it; a failure names the item and its byte offset.
void appendItem(Collection& collection, Decoder decodeItem, DataIO::Slice bytes,
                std::uint32_t index, const std::string& what) {
    const std::uint64_t offset =
        collectionHeaderSize + std::uint64_t{index} * collection.itemSize();
    const DataIO::Slice itemBytes = bytes.sub(offset, collection.itemSize());
    const std::string where = what + ", item " + std::to_string(index) + " at byte offset " +
                              std::to_string(offset) + ": ";
    try {
        collection.append(decodeItem(itemBytes));
    } catch (const Exceptions::InvalidLength& e) {
        VELLUM_THROW(InvalidLength, where + e.utf8Message());
    } catch (const Exceptions::InvalidFormat& e) {
        VELLUM_THROW(InvalidFormat, where + e.utf8Message());
    }
}

} // namespace

bool ValueFactory::hasValueClass(Identifiers::Identifier type) noexcept {
    return Identifiers::isValid(type) && decoders[type] != nullptr;
}

Templates::auto_ptr<SimpleDataType> ValueFactory::create(Identifiers::Identifier type,
                                                         DataIO::Slice bytes) {
    return decoderFor(type)(bytes);
}

Templates::auto_ptr<Collection> ValueFactory::createCollection(Identifiers::Identifier kind,
                                                               Identifiers::Identifier itemType,
                                                               DataIO::Slice bytes) {
    if (kind != Identifiers::Batch && kind != Identifiers::Array) {
        VELLUM_THROW(InvalidFormat, typeText(kind) + " is not a collection kind (Batch or Array)");
    }
    const std::string what = "a " + typeText(kind) + " of " + typeText(itemType);
    if (collectionHeaderSize > bytes.size()) {
        VELLUM_THROW(InvalidLength, what + " needs an 8-byte header (item count, item size), got " +
                                        std::to_string(bytes.size()) + " bytes");
    }
    if (bytes.size() > std::numeric_limits<std::uint32_t>::max()) {
        VELLUM_THROW(InvalidLength, what + " of " + std::to_string(bytes.size()) +
                                        " bytes is longer than a 32-bit size allows");
    }
    const std::uint32_t count = DataIO::BigEndian::load32(bytes.begin());
    const std::uint32_t itemSize = DataIO::BigEndian::load32(bytes.begin() + 4);
    auto collection = emptyCollection(kind, itemSize, itemType);
    const std::uint64_t remaining = bytes.size() - collectionHeaderSize;
    checkItemsFill(what, count, itemSize, remaining);
    const Decoder decodeItem = decoderFor(itemType);
    for (std::uint32_t i = 0; i < count; ++i) {
        appendItem(*collection, decodeItem, bytes, i, what);
    }
    return collection;
}

} // namespace Vellum::Types::Factories
