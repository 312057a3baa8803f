#include "Vellum/MetaMetadata/Dictionary.h"

#include "MetaMetadata/BuiltInDictionaryTables.h"
#include "MetaMetadata/BuiltInDictionaryText.h"
#include "MetaMetadata/DictionaryBuilder.h"
#include "MetaMetadata/DictionaryParser.h"
#include "MetaMetadata/DictionaryTableLoader.h"

#include "Vellum/DataIO/File/FileDataSource.h"
#include "Vellum/Exceptions/InvalidLength.h"
#include "Vellum/Exceptions/Throw.h"

#include <string>
#include <vector>

namespace Vellum::MetaMetadata {
namespace {

// A dictionary file is a few hundred kilobytes; this bound only stops a wrong path from
// loading something huge.
constexpr std::uint64_t maxFileSize = std::uint64_t{64} * 1024 * 1024;

} // namespace

Dictionary::Dictionary() = default;

Dictionary::~Dictionary() = default;

Templates::SharedPtr<Dictionary> Dictionary::builtIn() {
    auto dictionary = std::make_shared<Dictionary>();
    dictionary->m_builtIn =
        std::make_unique<DictionaryTableLoader>(*dictionary, BuiltInTables::tables());
    dictionary->m_builtIn->load();
    return dictionary;
}

std::string_view Dictionary::builtInText() {
    return builtInDictionaryText();
}

void Dictionary::loadFile(const std::string& path) {
    DataIO::File::FileDataSource source(path);
    if (source.size() > maxFileSize) {
        VELLUM_THROW(InvalidLength,
                     "dictionary file " + path + " has " + std::to_string(source.size()) +
                         " bytes, more than the limit of " + std::to_string(maxFileSize));
    }
    std::string text(static_cast<std::size_t>(source.size()), '\0');
    source.read(reinterpret_cast<std::uint8_t*>(text.data()), text.size());
    loadText(text, path);
}

void Dictionary::loadText(std::string_view text, const std::string& sourceName) {
    DictionaryParser parser(text, sourceName);
    parser.parse();
    // The builder checks and extends complete element tables and indexes.
    if (m_builtIn != nullptr) {
        m_builtIn->materializeAll();
    }
    DictionaryBuilder(*this, parser).build();
}

bool Dictionary::setsFromTables() const noexcept {
    return m_builtIn != nullptr && !m_builtIn->allSetsMade();
}

void Dictionary::makeAllSets() const {
    if (m_builtIn != nullptr) {
        m_builtIn->makeAllSets();
    }
}

Dictionary::SetMap::const_iterator Dictionary::metaMetadataSetBegin() const {
    makeAllSets();
    return m_sets.begin();
}

Dictionary::SetMap::const_iterator Dictionary::metaMetadataSetEnd() const {
    makeAllSets();
    return m_sets.end();
}

std::size_t Dictionary::metaMetadataSetCount() const {
    makeAllSets();
    return m_sets.size();
}

Dictionary::SetMap::const_iterator Dictionary::packBegin() const {
    makeAllSets();
    return m_packs.begin();
}

Dictionary::SetMap::const_iterator Dictionary::packEnd() const {
    makeAllSets();
    return m_packs.end();
}

std::size_t Dictionary::packCount() const {
    makeAllSets();
    return m_packs.size();
}

std::size_t Dictionary::setDefinitionCount() const noexcept {
    return setsFromTables() ? m_builtIn->setCount() : m_setsByName.size();
}

const MetaMetadataSet* Dictionary::findByKey(const KLV::Key& key) const {
    if (setsFromTables()) {
        return m_builtIn->findSet(key);
    }
    const auto found = m_setsByBaseKey.find(key.withoutVersion());
    return found == m_setsByBaseKey.end() ? nullptr : found->second;
}

const MetaMetadataSet* Dictionary::findSet(const KLV::Key& key) const {
    const MetaMetadataSet* found = findByKey(key);
    return found != nullptr && found->kind() == MetaMetadataSet::Kind::LocalSet ? found : nullptr;
}

const MetaMetadataSet* Dictionary::findPack(const KLV::Key& key) const {
    const MetaMetadataSet* found = findByKey(key);
    return found != nullptr && found->kind() == MetaMetadataSet::Kind::Pack ? found : nullptr;
}

const MetaMetadataSet* Dictionary::findSetByName(const WString& name) const {
    if (setsFromTables()) {
        return m_builtIn->findSetByName(name);
    }
    const auto found = m_setsByName.find(name);
    return found == m_setsByName.end() ? nullptr : found->second;
}

const MetaMetadataSet* Dictionary::findSetByTagName(std::u16string_view tagName) const {
    if (setsFromTables()) {
        return m_builtIn->findSetByTagName(tagName);
    }
    const auto found = m_setsByTagName.find(tagName);
    return found == m_setsByTagName.end() ? nullptr : found->second;
}

void Dictionary::indexTagName(const MetaMetadataSet& set) {
    static const WString tagProperty(u"XMLTagName");
    const WString* tag = set.property(tagProperty);
    if (!set.hasKey() || set.kind() != MetaMetadataSet::Kind::LocalSet || tag == nullptr ||
        tag->empty()) {
        return;
    }
    const auto [entry, added] = m_setsByTagName.emplace(*tag, &set);
    if (!added && set.key() < entry->second->key()) {
        entry->second = &set;
    }
}

Dictionary::ElementMap::const_iterator Dictionary::metaElementBegin() const {
    if (m_builtIn != nullptr) {
        m_builtIn->materializeAll();
    }
    return m_elements.begin();
}

Dictionary::ElementMap::const_iterator Dictionary::metaElementEnd() const {
    if (m_builtIn != nullptr) {
        m_builtIn->materializeAll();
    }
    return m_elements.end();
}

const MetaElement* Dictionary::findElement(const Types::UniversalLabel& ul) const {
    if (m_builtIn != nullptr && !m_builtIn->complete()) {
        return m_builtIn->findElement(ul);
    }
    const auto found = m_elementsByBaseLabel.find(DictionaryBuilder::baseLabel(ul));
    return found == m_elementsByBaseLabel.end() ? nullptr : found->second;
}

const MetaElement* Dictionary::findElementByStaticTag(std::uint16_t tag) const {
    if (m_builtIn != nullptr && !m_builtIn->complete()) {
        return m_builtIn->findElementByStaticTag(tag);
    }
    const auto found = m_elementsByTag.find(tag);
    return found == m_elementsByTag.end() ? nullptr : found->second;
}

} // namespace Vellum::MetaMetadata
