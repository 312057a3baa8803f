#ifndef VELLUM_TESTS_XMLBUILDER_IMPORTTESTSUPPORT_H
#define VELLUM_TESTS_XMLBUILDER_IMPORTTESTSUPPORT_H

#include "XMLBuilder/XMLStreamReader.h"

#include "Vellum/MetaMetadata/Dictionary.h"
#include "Vellum/Metadata/PartitionMetadata.h"
#include "Vellum/Templates/Templates.h"
#include "Vellum/Types/UniversalLabel.h"
#include "Vellum/XMLBuilder/XMLNode.h"

#include <cstdint>
#include <map>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

namespace VellumTest {

/// The document text of `partition`'s export, as UTF-8.
std::string exportText(Vellum::Metadata::PartitionMetadata& partition, bool typedReferences);

/// Expects the streaming text export of `partition` to be the DOM export serialised by
/// Xerces-C, in every layout, encoding and option of both text overloads; from `start`, or
/// from the first Preface when it is null.
void expectStreamingEqualsDOM(const Vellum::Metadata::PartitionMetadata& partition,
                              const Vellum::Metadata::MetadataSet* start);

/// A new empty partition over the built-in dictionary.
std::unique_ptr<Vellum::Metadata::PartitionMetadata> emptyPartition();

/// `partition` written as KLV and read back.
std::unique_ptr<Vellum::Metadata::PartitionMetadata>
serializedAndReadBack(Vellum::Metadata::PartitionMetadata& partition);

/// The differences from `a` to `b`, one line each; empty when they hold equal header metadata.
std::string differences(const Vellum::Metadata::PartitionMetadata& a,
                        const Vellum::Metadata::PartitionMetadata& b);

/// The built-in dictionary plus the test set "probe:ImportProbe" (namespace urn:vellum:probe,
/// key probeKey) whose elements cover the collection and reference kinds: Names (batch of
/// ISO7String), Titles (array of UTF16String), Counts (array of UInt16), Blobs (batch of
/// DataStream), Components (array of J2KPictureComponent), Children (strong reference array),
/// Child (strong reference), Friend (weak reference) and Note (UTF16String).
Vellum::Templates::SharedPtr<Vellum::MetaMetadata::Dictionary> probeDictionary();
extern const char16_t* const probeKey;
/// A new empty partition over probeDictionary().
std::unique_ptr<Vellum::Metadata::PartitionMetadata> probePartition();
/// The label of the ImportProbe element `name` (Names, Titles, Counts, Blobs, Components,
/// Children, Child, Friend, Note).
Vellum::Types::UniversalLabel probeLabel(const std::string& name);

/// A document whose root (s377m:MetadataSets) declares the s377m, rp210, types, s422mTypes,
/// groups and probe namespaces, holding `body`.
std::string document(const std::string& body);

/// Imports `document(body)` (UTF-8 bytes) into `partition`.
Vellum::Templates::list<Vellum::Metadata::MetadataSet*>
importBody(const std::string& body, Vellum::Metadata::PartitionMetadata& partition);

/// An XML text (UTF-8) read whole into nodes by the import's reader, kept alive with it.
class ParsedXML {
public:
    explicit ParsedXML(const std::string& xml);
    const Vellum::XMLBuilder::XMLNode& root() const;
    /// The first element child of the root.
    const Vellum::XMLBuilder::XMLNode& first() const;

private:
    /// Reads the root as one unit.
    class WholeDocument : public Vellum::XMLBuilder::XMLStreamReader::Handler {
    public:
        Vellum::XMLBuilder::XMLStreamReader::Disposition
        disposition(const Vellum::XMLBuilder::XMLNode* /*container*/,
                    const Vellum::XMLBuilder::XMLName& /*name*/) override {
            return Vellum::XMLBuilder::XMLStreamReader::Disposition::Unit;
        }
        void unit(const Vellum::XMLBuilder::XMLNode& /*element*/) override {}
    };

    WholeDocument m_handler;
    Vellum::XMLBuilder::XMLStreamReader m_reader;
};

/// `bytes` as upper-case hexadecimal digit pairs.
std::string hexOf(const std::vector<std::uint8_t>& bytes);

/// The element of `set` with `label`, as `T`; throws when the set has no such element.
template <class T>
const T& elementOf(const Vellum::Metadata::MetadataSet& set,
                   const Vellum::Types::UniversalLabel& label) {
    const T* element = set.findElementAs<T>(label);
    if (element == nullptr) {
        throw std::logic_error("the set has no element of that kind with that label");
    }
    return *element;
}

/// Label text to label.
Vellum::Types::UniversalLabel label(const char16_t* text);

} // namespace VellumTest

#endif
