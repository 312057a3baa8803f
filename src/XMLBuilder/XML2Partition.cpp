#include "Vellum/XMLBuilder/XML2Partition.h"

#include "XMLBuilder/DarkMetadataReader.h"
#include "XMLBuilder/ImportTables.h"
#include "XMLBuilder/Vocabulary.h"
#include "XMLBuilder/XMLStreamReader.h"

#include "Vellum/Exceptions/BaseException.h"
#include "Vellum/Exceptions/InvalidFormat.h"
#include "Vellum/Exceptions/ParseError.h"
#include "Vellum/Exceptions/Throw.h"
#include "Vellum/MetaMetadata/Dictionary.h"
#include "Vellum/MetaMetadata/MetaMetadataSet.h"
#include "Vellum/Metadata/MetadataSet.h"
#include "Vellum/Metadata/PartitionMetadata.h"
#include "Vellum/XMLBuilder/FromXMLMetadataSetVisitor.h"

#include <unordered_map>
#include <utility>

namespace Vellum::XML2Partition {
namespace {

using SetList = Templates::list<Metadata::MetadataSet*>;
using XMLBuilder::XMLName;
using XMLBuilder::XMLNode;
using XMLBuilder::XMLStreamReader;

/// Where failures that are not translated into a known exception are reported.
constexpr const char* entrySource = "Vellum/XMLBuilder/XML2Partition";
constexpr unsigned bufferEntryLine = 282;
constexpr unsigned stringEntryLine = 298;
constexpr unsigned fileEntryLine = 313;

/// Reads the document one top-level element at a time: every child of the root that names a
/// set, and every child of a top-level "groups:FloatingDarkMetadata", is built, read into the
/// partition and freed; other top-level elements are skipped unread.
class Importer : public XMLStreamReader::Handler {
public:
    Importer(Metadata::PartitionMetadata& partition, Identifiers identifiers)
        : m_partition(partition)
        , m_dictionary(partition.partitionDictionary().dictionary())
        , m_tables(*m_dictionary, identifiers == Identifiers::Renew) {}

    // Called on the reading thread: uses only its own cache and the tables' fixed part.
    XMLStreamReader::Disposition disposition(const XMLNode* container,
                                             const XMLName& name) override {
        if (container == nullptr) {
            return XMLStreamReader::Disposition::Container; // the root
        }
        if (container->parent() != nullptr) {
            return XMLStreamReader::Disposition::Unit; // in groups:FloatingDarkMetadata
        }
        auto known = m_namesSets.find(&name);
        if (known == m_namesSets.end()) {
            known = m_namesSets.emplace(&name, m_tables.setNamed(name.localName) != nullptr).first;
        }
        if (known->second) {
            return XMLStreamReader::Disposition::Unit;
        }
        return name.qualifiedName == XMLBuilder::Vocabulary::floatingDarkMetadata
                   ? XMLStreamReader::Disposition::Container
                   : XMLStreamReader::Disposition::Skip;
    }

    void unit(const XMLNode& element) override {
        // Units are sets, or children of "groups:FloatingDarkMetadata" of any name.
        if (const MetaMetadata::MetaMetadataSet* definition = m_tables.setNamed(element.name())) {
            readSet(element, *definition);
        } else if (XMLBuilder::DarkMetadataReader::isParsedGroup(element)) {
            m_result.push_back(
                XMLBuilder::DarkMetadataReader::readParsedGroup(element, m_partition, m_tables));
        } else {
            XMLBuilder::DarkMetadataReader::read(element, m_partition);
        }
    }

    SetList takeResult() noexcept { return std::move(m_result); }

private:
    /// Makes the set `definition` describes, lists it before reading it (so that a set whose
    /// reading fails is still in the partition), and reads it from `element`.
    void readSet(const XMLNode& element, const MetaMetadata::MetaMetadataSet& definition) {
        Metadata::MetadataSet* set =
            m_partition.createMetadataSet(m_tables.setKeyOf(element, definition));
        m_result.push_back(set);
        XMLBuilder::FromXMLMetadataSetVisitor reader(element, m_partition, m_tables);
        set->accept(reader);
    }

    Metadata::PartitionMetadata& m_partition;
    const Templates::SharedPtr<MetaMetadata::Dictionary> m_dictionary;
    XMLBuilder::ImportTables m_tables;
    /// Whether a name names a set, for the reading thread.
    std::unordered_map<const XMLName*, bool> m_namesSets;
    SetList m_result;
};

template <class Read>
SetList importDocument(Metadata::PartitionMetadata* partition, Identifiers identifiers,
                       const Read& read) {
    VELLUM_CHECK(partition != nullptr, "no partition given to import into");
    Importer importer(*partition, identifiers);
    XMLStreamReader reader(importer);
    read(reader);
    return importer.takeResult();
}

/// Rethrows the exception being handled: the toolkit's own unchanged, anything else as a
/// ParseError located at the entry.
[[noreturn]] void rethrowAtEntry(unsigned entryLine) {
    try {
        throw;
    } catch (const Exceptions::BaseException&) {
        throw;
    } catch (...) {
        throw Exceptions::ParseError(WString(u"Unknown error in Xerces or XQilla"), entrySource,
                                     entryLine);
    }
}

} // namespace

SetList getPartitionMetadataFromBuffer(const std::uint8_t* buffer, std::uint32_t size,
                                       Metadata::PartitionMetadata* partition,
                                       Identifiers identifiers) {
    try {
        VELLUM_CHECK(buffer != nullptr || size == 0, "a null buffer cannot hold XML bytes");
        return importDocument(partition, identifiers, [buffer, size](XMLStreamReader& reader) {
            reader.readBuffer(buffer, size);
        });
    } catch (...) {
        rethrowAtEntry(bufferEntryLine);
    }
}

SetList getPartitionMetadataFromString(const WString& text, Metadata::PartitionMetadata* partition,
                                       Identifiers identifiers) {
    try {
        return importDocument(partition, identifiers,
                              [&text](XMLStreamReader& reader) { reader.readText(text); });
    } catch (...) {
        rethrowAtEntry(stringEntryLine);
    }
}

SetList getPartitionMetadataFromFile(const char16_t* path, Metadata::PartitionMetadata* partition,
                                     Identifiers identifiers) {
    try {
        VELLUM_CHECK(path != nullptr, "no file name given to load XML from");
        return importDocument(partition, identifiers,
                              [path](XMLStreamReader& reader) { reader.readFile(path); });
    } catch (...) {
        rethrowAtEntry(fileEntryLine);
    }
}

} // namespace Vellum::XML2Partition
