#include "Vellum/XMLBuilder/XML2Partition.h"

#include "Vellum/Exceptions/InvalidFormat.h"
#include "Vellum/Exceptions/Throw.h"
#include "Vellum/MetaMetadata/Dictionary.h"
#include "Vellum/MetaMetadata/MetaMetadataSet.h"
#include "Vellum/Metadata/MetadataSet.h"
#include "Vellum/Metadata/PartitionMetadata.h"
#include "Vellum/XMLBuilder/DarkMetadataReader.h"
#include "Vellum/XMLBuilder/FromXMLMetadataSetVisitor.h"
#include "Vellum/XMLBuilder/ImportTables.h"
#include "Vellum/XMLBuilder/NodeSelector.h"
#include "Vellum/XMLBuilder/Vocabulary.h"
#include "Vellum/XMLUtils/Document.h"
#include "Vellum/XMLUtils/Initializer.h"
#include "Vellum/XMLUtils/Utils.h"

#include <xercesc/dom/DOMDocument.hpp>
#include <xercesc/dom/DOMElement.hpp>
#include <xercesc/util/XMLString.hpp>

#include <optional>
#include <utility>
#include <vector>

namespace Vellum::XML2Partition {
namespace {

using SetList = Templates::list<Metadata::MetadataSet*>;

/// Where failures that are not translated into a known exception are reported.
constexpr const char* entrySource = "Vellum/XMLBuilder/XML2Partition";
constexpr unsigned bufferEntryLine = 282;
constexpr unsigned stringEntryLine = 298;
constexpr unsigned fileEntryLine = 313;

XMLBuilder::SetTagTable buildSetTagTable(const MetaMetadata::Dictionary& dictionary) {
    static const WString tagName(XMLBuilder::Vocabulary::xmlTagName);
    XMLBuilder::SetTagTable table;
    for (auto it = dictionary.metaMetadataSetBegin(); it != dictionary.metaMetadataSetEnd(); ++it) {
        const WString* tag = it->second.property(tagName);
        if (tag != nullptr && !tag->empty()) {
            table.emplace(*tag, &it->second); // the first in key order keeps a shared name
        }
    }
    return table;
}

WString localNameOf(const xercesc::DOMElement& element) {
    const XMLCh* local = element.getLocalName();
    return WString(local != nullptr ? local : element.getNodeName());
}

/// What every reader of one document shares.
struct ImportState {
    Metadata::PartitionMetadata& partition;
    const XMLBuilder::SetTagTable& setTags;
    XMLBuilder::ReferenceNameTable names;
    SetList result;
};

/// Makes the set `definition` describes, lists it before reading it (so that a set whose
/// reading fails is still in the partition), and reads it from `node`.
void readSet(xercesc::DOMElement& node, const MetaMetadata::MetaMetadataSet& definition,
             ImportState& state) {
    const KLV::Key key = definition.key();
    Metadata::MetadataSet* set = state.partition.createMetadataSet(key);
    state.result.push_back(set);
    XMLBuilder::FromXMLMetadataSetVisitor reader(node, state.setTags, state.partition, state.names);
    set->accept(reader);
}

/// The children of "groups:FloatingDarkMetadata": sets where the dictionary knows the name,
/// dark metadata otherwise (a nested container included).
void readFloating(xercesc::DOMElement& container, ImportState& state) {
    for (xercesc::DOMElement* child : XMLBuilder::NodeSelector::elementChildren(container)) {
        const auto known = state.setTags.find(localNameOf(*child));
        if (known != state.setTags.end()) {
            readSet(*child, *known->second, state);
        } else if (XMLBuilder::DarkMetadataReader::isParsedGroup(*child)) {
            state.result.push_back(XMLBuilder::DarkMetadataReader::readParsedGroup(
                *child, state.partition, state.setTags, state.names));
        } else {
            XMLBuilder::DarkMetadataReader::read(*child, state.partition);
        }
    }
}

template <class Load>
SetList importDocument(Metadata::PartitionMetadata* partition, Identifiers identifiers,
                       const Load& load) {
    VELLUM_CHECK(partition != nullptr, "no partition given to import into");
    const XMLUtils::ParserPtr parser = XMLUtils::Initializer::instance().createParser();
    const auto dictionary = partition->partitionDictionary().dictionary();
    const XMLBuilder::SetTagTable setTags = buildSetTagTable(*dictionary);
    const XMLUtils::DocumentPtr document = load(*parser);
    XMLUtils::cleanEmptyTextNodes(document.get());

    ImportState state{
        *partition, setTags, XMLBuilder::ReferenceNameTable(identifiers == Identifiers::Renew), {}};
    xercesc::DOMElement& root = *document->getDocumentElement();
    for (xercesc::DOMElement* node : XMLBuilder::NodeSelector::elementChildren(root)) {
        const auto known = setTags.find(localNameOf(*node));
        if (known != setTags.end()) {
            readSet(*node, *known->second, state);
        } else if (xercesc::XMLString::equals(node->getNodeName(),
                                              XMLBuilder::Vocabulary::floatingDarkMetadata)) {
            readFloating(*node, state);
        }
    }
    return std::move(state.result);
}

bool isBlank(char16_t c) {
    return c == u' ' || c == u'\t' || c == u'\r' || c == u'\n';
}

/// Where the text's XML declaration (at `start`) names its encoding: the first and the end
/// position of the name between its quotes; nothing when there is no such name.
std::optional<std::pair<std::size_t, std::size_t>> declaredEncoding(const WString& text,
                                                                    std::size_t start) {
    static const WString opening = u"<?xml";
    static const WString pseudoAttribute = u"encoding";
    const std::size_t end = text.find(u"?>", start);
    if (end == WString::npos || text.compare(start, opening.size(), opening) != 0 ||
        start + opening.size() >= end || !isBlank(text[start + opening.size()])) {
        return std::nullopt;
    }
    std::size_t i = text.find(pseudoAttribute, start);
    if (i >= end) {
        return std::nullopt;
    }
    for (i += pseudoAttribute.size(); i < end && isBlank(text[i]); ++i) {
    }
    if (i >= end || text[i] != u'=') {
        return std::nullopt;
    }
    for (++i; i < end && isBlank(text[i]); ++i) {
    }
    if (i >= end || (text[i] != u'"' && text[i] != u'\'')) {
        return std::nullopt;
    }
    const std::size_t close = text.find(text[i], i + 1);
    if (close >= end) {
        return std::nullopt;
    }
    return std::make_pair(i + 1, close);
}

/// The text as UTF-16 little-endian bytes after a byte order mark, its XML declaration (if
/// any) naming UTF-16: the parser then reads the code units as they are, whatever encoding
/// the declaration named.
std::vector<std::uint8_t> utf16Document(const WString& text) {
    static const WString utf16Name = u"UTF-16";
    const std::size_t start = !text.empty() && text[0] == u'\xFEFF' ? 1 : 0;
    const auto encoding = declaredEncoding(text, start);
    std::vector<std::uint8_t> bytes;
    bytes.reserve(2 * (text.size() + utf16Name.size() + 1));
    const auto put = [&bytes](char16_t unit) {
        bytes.push_back(static_cast<std::uint8_t>(unit & 0xFFU));
        bytes.push_back(static_cast<std::uint8_t>(unit >> 8U));
    };
    const auto putRange = [&](std::size_t from, std::size_t to) {
        for (std::size_t i = from; i < to; ++i) {
            put(text[i]);
        }
    };
    put(u'\xFEFF');
    if (encoding) {
        putRange(start, encoding->first);
        for (const char16_t unit : utf16Name) {
            put(unit);
        }
        putRange(encoding->second, text.size());
    } else {
        putRange(start, text.size());
    }
    return bytes;
}

} // namespace

SetList getPartitionMetadataFromBuffer(const std::uint8_t* buffer, std::uint32_t size,
                                       Metadata::PartitionMetadata* partition,
                                       Identifiers identifiers) {
    try {
        return importDocument(partition, identifiers, [buffer, size](xercesc::DOMLSParser& parser) {
            return XMLUtils::loadDocumentFromBuffer(buffer, size, parser);
        });
    } catch (...) {
        XMLUtils::rethrowTranslated(entrySource, bufferEntryLine);
    }
}

SetList getPartitionMetadataFromString(const WString& text, Metadata::PartitionMetadata* partition,
                                       Identifiers identifiers) {
    try {
        const std::vector<std::uint8_t> bytes = utf16Document(text);
        // The count is cut to the buffer entry's 32 bits, deliberately.
        return getPartitionMetadataFromBuffer(
            bytes.data(), static_cast<std::uint32_t>(bytes.size()), partition, identifiers);
    } catch (...) {
        XMLUtils::rethrowTranslated(entrySource, stringEntryLine);
    }
}

SetList getPartitionMetadataFromFile(const char16_t* path, Metadata::PartitionMetadata* partition,
                                     Identifiers identifiers) {
    try {
        return importDocument(partition, identifiers, [path](xercesc::DOMLSParser& parser) {
            return XMLUtils::loadDocumentFromFile(path, parser);
        });
    } catch (...) {
        XMLUtils::rethrowTranslated(entrySource, fileEntryLine);
    }
}

} // namespace Vellum::XML2Partition
