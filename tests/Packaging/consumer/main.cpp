// Uses the installed or built Vellum from outside the project: parses a key's text, classifies
// it, catches the library's exception for a malformed text, and exports a partition.
#include "Vellum/Exceptions/InvalidFormat.h"
#include "Vellum/KLV/Key.h"
#include "Vellum/KLV/KeyClassification.h"
#include "Vellum/MetaMetadata/Dictionary.h"
#include "Vellum/Metadata/PartitionMetadata.h"
#include "Vellum/Utils/StringConversion.h"
#include "Vellum/XMLBuilder/Partition2XML.h"

#include <iostream>

int main() {
    using Vellum::KLV::Key;
    const Key key(Vellum::Utils::stringToWstring("06.0e.2b.34.02.05.01.01.0d.01.02.01.01.02.04.00"),
                  Vellum::Types::DottedHex);
    std::cout << key.toUtf8()
              << (Vellum::KLV::isPartitionPack(key) ? " is a partition pack" : " is not a pack")
              << '\n';
    try {
        const Key bad(Vellum::Utils::stringToWstring("06.0E.2B"), Vellum::Types::DottedHex);
        std::cout << "parsed a malformed key: " << bad.toUtf8() << '\n';
        return 1;
    } catch (const Vellum::Exceptions::InvalidFormat& error) {
        std::cout << "caught InvalidFormat: " << error.utf8Message() << '\n';
    }
    Vellum::Metadata::PartitionMetadata empty(Vellum::MetaMetadata::Dictionary::builtIn());
    const auto document = Vellum::XMLBuilder::partition2XML(&empty, false, false);
    std::cout << "exported an empty partition: " << (document ? "a document" : "no document")
              << '\n';
    return 0;
}
