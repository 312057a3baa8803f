#ifndef VELLUM_SRC_XMLBUILDER_STOREDBYTESREADER_H
#define VELLUM_SRC_XMLBUILDER_STOREDBYTESREADER_H

#include "Vellum/Templates/Templates.h"
#include "Vellum/Types/Identifiers.h"

#include <cstdint>
#include <vector>

namespace Vellum::Types {
class SimpleDataType;
} // namespace Vellum::Types

namespace Vellum::XMLBuilder {

class XMLNode;

/// The import's reading of "groups:StoredBytes" (see StoredBytes, which the export uses to
/// write it): the stored bytes of a value whose text does not give them back, used when the
/// value was not edited.
class StoredBytesReader {
public:
    StoredBytesReader() = delete;

    /// The stored form of an empty collection: the "groups:StoredBytes" of `element` when it
    /// has them and no items; empty otherwise.
    static std::vector<std::uint8_t> emptyCollection(const XMLNode& element);

    /// The value of `element` read from its "groups:StoredBytes" as `type`, when it has them
    /// and its text is what the export writes for them (the value was not edited); otherwise
    /// nothing, and the text is to be read.
    static Templates::auto_ptr<Types::SimpleDataType> read(const XMLNode& element,
                                                           Types::Identifiers::Identifier type);
};

} // namespace Vellum::XMLBuilder

#endif
