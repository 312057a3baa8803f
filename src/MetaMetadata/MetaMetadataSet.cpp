#include "Vellum/MetaMetadata/MetaMetadataSet.h"

#include "MetaMetadata/DictionaryTableLoader.h"

#include "Vellum/MetaMetadata/MetaAttribute.h"
#include "Vellum/MetaMetadata/MetaElement.h"

#include <algorithm>
#include <string_view>

namespace Vellum::MetaMetadata {

using namespace std::string_view_literals;
namespace {

bool equalIgnoringVersion(const Types::UniversalLabel& a, const Types::UniversalLabel& b) noexcept {
    const auto& x = a.bytes();
    const auto& y = b.bytes();
    return std::equal(x.begin(), x.begin() + 7, y.begin()) &&
           std::equal(x.begin() + 8, x.end(), y.begin() + 8);
}

} // namespace

MetaMetadataSet::MetaMetadataSet(Definition definition, const MetaMetadataSet* parent)
    : m_definition(std::move(definition))
    , m_key(m_definition.key.value_or(KLV::Key()))
    , m_parent(parent)
    , m_depth(parent == nullptr ? 0 : parent->depth() + 1) {}

MetaMetadataSet::~MetaMetadataSet() = default;

bool MetaMetadataSet::isKindOf(const MetaMetadataSet& other) const noexcept {
    for (const MetaMetadataSet* set = this; set != nullptr; set = set->m_parent) {
        if (set == &other) {
            return true;
        }
    }
    return false;
}

const WString* MetaMetadataSet::property(const WString& propertyName) const noexcept {
    // Views compare lengths first: the export asks for these names once per element.
    const std::u16string_view name(propertyName);
    if (name == u"XMLTagName"sv) {
        return &m_definition.xmlTagName;
    }
    if (name == u"XMLDefaultPrefix"sv) {
        return &m_definition.xmlPrefix;
    }
    if (name == u"XMLNamespaceURI"sv) {
        return &m_definition.xmlNamespace;
    }
    return nullptr;
}

void MetaMetadataSet::materialize() const {
    if (!m_materialized.load(std::memory_order_acquire)) {
        m_loader->materialize(*this);
    }
}

const MetaMetadataSet::ElementMap& MetaMetadataSet::elements() const {
    materialize();
    return m_elements;
}

const MetaMetadataSet::ElementList& MetaMetadataSet::elementsBySchemaIndex() const {
    materialize();
    return m_bySchemaIndex;
}

const MetaMetadataSet::ElementList& MetaMetadataSet::ownElements() const {
    materialize();
    return m_ownElements;
}

const MetaElement* MetaMetadataSet::findElement(const Types::UniversalLabel& ul) const {
    materialize();
    const auto exact = m_elements.find(ul);
    if (exact != m_elements.end()) {
        return exact->second;
    }
    // Every label of a set shares its first seven bytes with almost every other, so a label
    // written with another version byte is looked for by a scan.
    for (const auto& [label, element] : m_elements) {
        if (equalIgnoringVersion(label, ul)) {
            return element;
        }
    }
    return nullptr;
}

const MetaElement* MetaMetadataSet::findElementByTag(std::uint16_t tag) const {
    materialize();
    const auto found = std::lower_bound(
        m_byTag.begin(), m_byTag.end(), tag,
        [](const auto& entry, std::uint16_t value) { return entry.first < value; });
    return found != m_byTag.end() && found->first == tag ? found->second : nullptr;
}

Templates::SharedPtr<const MetaAttribute>
MetaMetadataSet::attribute(const Types::UniversalLabel& ul) const {
    const MetaElement* element = findElement(ul);
    return element == nullptr ? nullptr : element->attribute();
}

} // namespace Vellum::MetaMetadata
