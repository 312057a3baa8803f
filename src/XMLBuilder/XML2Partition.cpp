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
#include "Vellum/Types/Identifiers.h"
#include "Vellum/XMLBuilder/FromXMLElementVisitor.h"
#include "Vellum/XMLBuilder/FromXMLMetadataSetVisitor.h"
#include "Vellum/XMLBuilder/NodeSelector.h"

#include <algorithm>
#include <unordered_map>
#include <utility>
#include <vector>

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
///
/// Sets written inline (typed references) are read as units of their own too, before the set
/// that holds them, so that a Preface holding a whole header is never built at once. That set
/// and the ones holding it are made first, so that sets are still made in document order; the
/// holder's reading then takes the set made for the element rather than making it again. The
/// reading thread asks about exactly the elements the holder's reading would read inline: a
/// reference property's element read by its set (the first of its name), and in it the
/// elements naming a set (of a single reference, the first only), not "_REF" ones.
class Importer : public XMLStreamReader::Handler {
public:
    Importer(Metadata::PartitionMetadata& partition, Identifiers identifiers)
        : m_partition(partition)
        , m_dictionary(partition.partitionDictionary().dictionary())
        , m_tables(*m_dictionary, identifiers == Identifiers::Renew) {}

    // Called on the reading thread: uses only its own caches and the tables' fixed part.
    XMLStreamReader::Disposition disposition(const XMLNode* container,
                                             const XMLName& name) override {
        using Disposition = XMLStreamReader::Disposition;
        if (container == nullptr) {
            return Disposition::Container; // the root
        }
        if (container->depth() == 1) {
            if (const Facts& facts = factsOf(name); facts.set != nullptr) {
                return facts.references.empty() ? Disposition::Unit : Disposition::AskingUnit;
            }
            return name.qualifiedName == XMLBuilder::Vocabulary::floatingDarkMetadata
                       ? Disposition::Container
                       : Disposition::Skip;
        }
        if (container->depth() == 2 && factsOf(container->name()).set == nullptr) {
            return Disposition::Unit; // in groups:FloatingDarkMetadata
        }
        // Sets are at even depths, their properties at odd ones.
        return container->depth() % 2 == 0 ? propertyOf(*container, name)
                                           : inReference(*container, name);
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
    /// A reference element of a set definition as its XML element is found.
    struct Reference {
        const WString* tagName;
        const WString* prefix;
        bool collection;
    };
    /// What a name names: a set definition (or none), with its reference elements.
    struct Facts {
        const MetaMetadata::MetaMetadataSet* set = nullptr;
        std::vector<Reference> references;
    };
    /// A set element whose children are being asked about, with the references read so far.
    struct OpenSet {
        const XMLNode* node;
        std::uint32_t line;
        std::uint32_t column;
        std::vector<const Reference*> read;
    };

    const Facts& factsOf(const XMLName& name) {
        auto [entry, made] = m_facts.try_emplace(&name);
        if (made) {
            static const WString tagProperty(XMLBuilder::Vocabulary::xmlTagName);
            static const WString prefixProperty(XMLBuilder::Vocabulary::xmlDefaultPrefix);
            Facts& facts = entry->second;
            facts.set = m_tables.setNamed(std::u16string_view(name.localName));
            if (facts.set != nullptr) {
                for (const auto& [label, meta] : facts.set->elements()) {
                    const Types::Identifiers::Identifier type = meta->valueType();
                    const WString* tag = meta->property(tagProperty);
                    const WString* prefix = meta->property(prefixProperty);
                    if ((type == Types::Identifiers::StrongReference ||
                         type == Types::Identifiers::WeakReference) &&
                        tag != nullptr && prefix != nullptr) {
                        facts.references.push_back({tag, prefix, meta->isCollection()});
                    }
                }
            }
        }
        return entry->second;
    }

    /// A child of a set element: the reference property its reading reads (the first child
    /// of that name in the namespace its prefix selects there) is asked about.
    XMLStreamReader::Disposition propertyOf(const XMLNode& set, const XMLName& name) {
        static const WString rp210(XMLBuilder::Vocabulary::rp210Namespace);
        for (const Reference& reference : factsOf(set.name()).references) {
            if (*reference.tagName != name.localName ||
                XMLBuilder::NodeSelector::selectedNamespace(set, *reference.prefix, &rp210) !=
                    name.namespaceURI) {
                continue;
            }
            std::vector<const Reference*>& read = openSet(set).read;
            if (std::find(read.begin(), read.end(), &reference) != read.end()) {
                break;
            }
            read.push_back(&reference);
            return XMLStreamReader::Disposition::AskingPart;
        }
        return XMLStreamReader::Disposition::Part;
    }

    /// A child of a reference property: a set written inline becomes a unit of its own.
    XMLStreamReader::Disposition inReference(const XMLNode& property, const XMLName& name) {
        const Reference* reference = nullptr;
        for (const Reference& candidate : factsOf(property.parent()->name()).references) {
            if (*candidate.tagName == property.localName()) {
                reference = &candidate;
                break;
            }
        }
        const bool read =
            reference != nullptr &&
            (reference->collection
                 ? !holdsRefSuffix(name.qualifiedName)
                 : property.childCount() == 0 && !holdsRefSuffix(name.localName)) &&
            (property.depth() + 1) / 2 - 1 <= XMLBuilder::FromXMLElementVisitor::maximumInlineDepth;
        const Facts& facts = factsOf(name);
        if (!read || facts.set == nullptr) {
            return XMLStreamReader::Disposition::Part;
        }
        return facts.references.empty() ? XMLStreamReader::Disposition::Unit
                                        : XMLStreamReader::Disposition::AskingUnit;
    }

    static bool holdsRefSuffix(const WString& name) {
        return name.find(XMLBuilder::Vocabulary::refSuffix) != WString::npos;
    }

    /// The record of `set`, the innermost open set element asked about; records of set
    /// elements that have ended are dropped (an element is known by its place in the text,
    /// as its node may be used again).
    OpenSet& openSet(const XMLNode& set) {
        while (!m_openSets.empty() && m_openSets.back().node->depth() >= set.depth() &&
               !isRecordOf(m_openSets.back(), set)) {
            m_openSets.pop_back();
        }
        if (m_openSets.empty() || !isRecordOf(m_openSets.back(), set)) {
            m_openSets.push_back({&set, set.line(), set.column(), {}});
        }
        return m_openSets.back();
    }

    static bool isRecordOf(const OpenSet& record, const XMLNode& set) noexcept {
        return record.node == &set && record.line == set.line() && record.column == set.column();
    }

    /// How deeply a set element is written inline: 0 for a top-level one.
    static unsigned inlineLevel(const XMLNode& element) noexcept {
        return element.depth() < 4 ? 0 : (element.depth() - 2) / 2;
    }

    /// Reads the set `element` describes into the set made for it ahead, or a new one.
    void readSet(const XMLNode& element, const MetaMetadata::MetaMetadataSet& definition) {
        const unsigned level = inlineLevel(element);
        Metadata::MetadataSet* set =
            level == 0 ? m_tables.takeMadeSet(element) : m_tables.madeSet(element);
        if (set == nullptr) {
            set = makeSet(element, definition, level > 0);
        }
        XMLBuilder::FromXMLMetadataSetVisitor reader(element, m_partition, m_tables, level);
        set->accept(reader);
        if (level == 0) {
            // Nested sets its reading did not take stay as made, referred to by nothing.
            m_tables.forgetMadeSets();
        }
    }

    /// Makes the set `definition` describes, after the sets that hold it, and lists it before
    /// reading it (so that a set whose reading fails is still in the partition). A set made
    /// ahead of its reading is kept in the tables for it.
    Metadata::MetadataSet* makeSet(const XMLNode& element,
                                   const MetaMetadata::MetaMetadataSet& definition, bool ahead) {
        const unsigned level = inlineLevel(element);
        if (level > 0) {
            const XMLNode& holder = *element.parent()->parent();
            const MetaMetadata::MetaMetadataSet* holderDefinition =
                m_tables.setNamed(holder.name());
            if (holderDefinition != nullptr && m_tables.madeSet(holder) == nullptr) {
                makeSet(holder, *holderDefinition, true);
            }
        }
        Metadata::MetadataSet* set =
            m_partition.createMetadataSet(m_tables.setKeyOf(element, definition));
        if (level == 0) {
            m_result.push_back(set);
        }
        if (ahead) {
            m_tables.keepMadeSet(element, *set);
        }
        return set;
    }

    Metadata::PartitionMetadata& m_partition;
    const Templates::SharedPtr<MetaMetadata::Dictionary> m_dictionary;
    XMLBuilder::ImportTables m_tables;
    /// For the reading thread: what each name names, and the set elements asked about.
    std::unordered_map<const XMLName*, Facts> m_facts;
    std::vector<OpenSet> m_openSets;
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
