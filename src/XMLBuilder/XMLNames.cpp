#include "XMLBuilder/XMLNames.h"

#include "XMLBuilder/ElementNameIndex.h"
#include "XMLBuilder/Vocabulary.h"

#include "Vellum/Exceptions/Throw.h"
#include "Vellum/MetaMetadata/AbstractMetaAttribute.h"
#include "Vellum/MetaMetadata/Dictionary.h"
#include "Vellum/MetaMetadata/MetaAttribute.h"
#include "Vellum/MetaMetadata/MetaElement.h"
#include "Vellum/MetaMetadata/MetaMetadataSet.h"
#include "Vellum/MetaMetadata/MisplacedAttribute.h"
#include "Vellum/Metadata/Element.h"
#include "Vellum/Metadata/MetadataSet.h"

#include <algorithm>
#include <cstdlib>
#include <string>

namespace Vellum::XMLBuilder {
namespace {

// The names of the three properties that give a definition's XML name.
const WString& tagNameProperty() {
    static const WString name(Vocabulary::xmlTagName);
    return name;
}

const WString& prefixProperty() {
    static const WString name(Vocabulary::xmlDefaultPrefix);
    return name;
}

const WString& namespaceProperty() {
    static const WString name(Vocabulary::xmlNamespaceURI);
    return name;
}

// The decimal "SchemaIndex" text as an unsigned order key; a negative index wraps round, so
// it sorts after every non-negative one.
std::uint32_t orderKey(const WString& text) {
    const std::string narrow(text.begin(), text.end());
    return static_cast<std::uint32_t>(std::strtol(narrow.c_str(), nullptr, 10));
}

bool inRange(char32_t c, char32_t low, char32_t high) {
    return c >= low && c <= high;
}

// XML 1.0 NameStartChar without ':'.
bool isNameStart(char32_t c) {
    return inRange(c, u'A', u'Z') || c == u'_' || inRange(c, u'a', u'z') ||
           inRange(c, 0xC0, 0xD6) || inRange(c, 0xD8, 0xF6) || inRange(c, 0xF8, 0x2FF) ||
           inRange(c, 0x370, 0x37D) || inRange(c, 0x37F, 0x1FFF) || inRange(c, 0x200C, 0x200D) ||
           inRange(c, 0x2070, 0x218F) || inRange(c, 0x2C00, 0x2FEF) || inRange(c, 0x3001, 0xD7FF) ||
           inRange(c, 0xF900, 0xFDCF) || inRange(c, 0xFDF0, 0xFFFD) || inRange(c, 0x10000, 0xEFFFF);
}

bool isNameChar(char32_t c) {
    return isNameStart(c) || c == u'-' || c == u'.' || inRange(c, u'0', u'9') || c == 0xB7 ||
           inRange(c, 0x300, 0x36F) || inRange(c, 0x203F, 0x2040);
}

// Whether `text` is an XML name without colons.
bool isNCName(std::u16string_view text) {
    if (text.empty()) {
        return false;
    }
    for (std::size_t i = 0; i < text.size(); ++i) {
        char32_t c = text[i];
        if (c >= 0xD800 && c <= 0xDBFF && i + 1 < text.size() && text[i + 1] >= 0xDC00 &&
            text[i + 1] <= 0xDFFF) {
            c = 0x10000 + ((c - 0xD800) << 10U) + (text[++i] - 0xDC00);
        }
        if (!(i == 0 ? isNameStart(c) : isNameChar(c))) {
            return false;
        }
    }
    return true;
}

// Whether every character of `text` is one XML 1.0 holds.
bool isXMLText(std::u16string_view text) {
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char16_t c = text[i];
        if (c >= 0xD800 && c <= 0xDBFF && i + 1 < text.size() && text[i + 1] >= 0xDC00 &&
            text[i + 1] <= 0xDFFF) {
            ++i;
        } else if ((c < 0x20 && c != u'\t' && c != u'\n' && c != u'\r') ||
                   (c >= 0xD800 && c <= 0xDFFF) || c == 0xFFFE || c == 0xFFFF) {
            return false;
        }
    }
    return true;
}

} // namespace

XMLNames::XMLNames(NamespaceRecord& namespaces) noexcept
    : m_namespaces(namespaces) {}

XMLNames::~XMLNames() = default;

void XMLNames::requireQualifiedName(std::u16string_view namespaceName,
                                    std::u16string_view qualifiedName, const WString& owner) {
    const std::size_t colon = qualifiedName.find(u':');
    const std::u16string_view prefix =
        colon == std::u16string_view::npos ? std::u16string_view() : qualifiedName.substr(0, colon);
    const std::u16string_view local =
        colon == std::u16string_view::npos ? qualifiedName : qualifiedName.substr(colon + 1);
    const bool named = (colon == std::u16string_view::npos || isNCName(prefix)) && isNCName(local);
    const bool bound = prefix.empty() || !namespaceName.empty();
    const bool reserved =
        qualifiedName == u"xmlns" || prefix == u"xmlns" ||
        (prefix == u"xml" && namespaceName != u"http://www.w3.org/XML/1998/namespace");
    if (!named || !bound || reserved || !isXMLText(namespaceName)) {
        VELLUM_THROW(InvalidFormat, owner + u" has the XML name '" + WString(qualifiedName) +
                                        u"' in namespace '" + WString(namespaceName) +
                                        u"', which an XML document cannot hold");
    }
}

XMLNames::SetName& XMLNames::set(const MetaMetadata::MetaMetadataSet& definition) {
    if (&definition == m_lastSet) {
        return *m_lastSetName;
    }
    std::unique_ptr<SetName>& slot = m_sets[&definition];
    if (!slot) {
        slot = std::make_unique<SetName>();
        const WString* prefix = definition.property(prefixProperty());
        const WString* tagName = definition.property(tagNameProperty());
        const WString* space = definition.property(namespaceProperty());
        if (prefix != nullptr && tagName != nullptr) {
            slot->named = true;
            slot->valid = space != nullptr;
            slot->namespaceName = space != nullptr ? *space : WString();
            slot->prefix = *prefix;
            slot->qualifiedName = *prefix + u':' + *tagName;
            slot->refName = slot->qualifiedName + Vocabulary::refSuffix;
            // Without a namespace of its own, a reference to the set is named in the
            // namespace of the property; only the name's form can be checked here.
            requireQualifiedName(slot->valid ? std::u16string_view(slot->namespaceName)
                                             : std::u16string_view(u"urn:property"),
                                 slot->qualifiedName, u"the set '" + definition.name() + u"'");
        }
    }
    m_lastSet = &definition;
    m_lastSetName = slot.get();
    return *slot;
}

void XMLNames::enter(SetName& name) {
    if (!name.entered) {
        m_namespaces.enter(name.namespaceName, name.prefix);
        name.entered = true;
    }
}

const XMLNames::Item& XMLNames::item(const Metadata::Element& element) {
    const MetaMetadata::AbstractMetaAttribute* attribute = element.metaAttribute().get();
    if (const auto found = m_items.find(attribute); found != m_items.end()) {
        return *found->second;
    }
    std::unique_ptr<Item>& slot = m_items[attribute];
    {
        slot = std::make_unique<Item>();
        ToXMLMetaAttributeVisitor kind;
        attribute->accept(kind);
        slot->kind = kind.kind();
        slot->meta = kind.metaElement();
        slot->ordered = kind.schemaIndexText() != nullptr;
        slot->orderKey = slot->ordered ? orderKey(*kind.schemaIndexText()) : 0;
        slot->localTagText = kind.localTagText();
        slot->dataType =
            slot->meta != nullptr ? slot->meta->dataType() : Types::Identifiers::Unknown;
        if (slot->meta != nullptr) {
            const WString* tagName = slot->meta->property(tagNameProperty());
            const WString& tag = tagName != nullptr ? *tagName : slot->meta->name();
            slot->identityTag = tag == Vocabulary::instanceUIDLocalName ||
                                tag == Vocabulary::generationUIDLocalName;
        }
        const auto* defined = dynamic_cast<const MetaMetadata::MetaAttribute*>(attribute);
        // A misplaced element holds a value only when it was read (or imported): an empty
        // collection there was stored, and is written so that it comes back.
        slot->writesEmptyCollection =
            dynamic_cast<const MetaMetadata::MisplacedAttribute*>(attribute) != nullptr ||
            (defined != nullptr &&
             (defined->requiredStatus() == MetaMetadata::AttributeRequiredStatus::Required ||
              defined->requiredStatus() == MetaMetadata::AttributeRequiredStatus::Optional));
    }
    return *slot;
}

bool XMLNames::namesAnother(const MetaMetadata::MetaElement& meta,
                            const MetaMetadata::Dictionary& dictionary) {
    if (const auto found = m_namesAnother.find(&meta); found != m_namesAnother.end()) {
        return found->second;
    }
    const WString* space = meta.property(namespaceProperty());
    const WString* tag = meta.property(tagNameProperty());
    bool another = false;
    if (space != nullptr && tag != nullptr) {
        if (!m_elementNames) {
            m_elementNames = std::make_unique<ElementNameIndex>(dictionary);
        }
        const MetaMetadata::MetaElement* found = m_elementNames->find(*space, *tag);
        another = found != nullptr && found != &meta;
    }
    return m_namesAnother.emplace(&meta, another).first->second;
}

const XMLNames::Plan& XMLNames::plan(const Metadata::MetadataSet& set) {
    if (set.definition() == m_lastPlanned) {
        return *m_lastPlan;
    }
    std::unique_ptr<Plan>& slot = m_plans[set.definition()];
    if (!slot) {
        slot = std::make_unique<Plan>();
        for (const auto& [label, element] : set) {
            const Item& found = item(*element);
            if (found.ordered) {
                slot->ordered.emplace_back(slot->attributes.size(), &found);
            }
            slot->attributes.push_back(element->metaAttribute().get());
        }
        std::stable_sort(
            slot->ordered.begin(), slot->ordered.end(),
            [](const auto& a, const auto& b) { return a.second->orderKey < b.second->orderKey; });
    }
    m_lastPlanned = set.definition();
    m_lastPlan = slot.get();
    return *slot;
}

XMLNames::Scratch& XMLNames::openScratch() {
    if (m_scratch.size() <= m_depth) {
        m_scratch.emplace_back();
    }
    Scratch& scratch = m_scratch[m_depth++];
    scratch.order.clear();
    scratch.elements.clear();
    scratch.identities.clear();
    return scratch;
}

const XMLNames::ElementName& XMLNames::name(const Item& item) {
    if (item.name != nullptr) {
        return *item.name;
    }
    if (item.meta == nullptr) {
        if (!m_unknownName) {
            m_unknownName = std::make_unique<ElementName>();
            m_unknownName->prefix = Vocabulary::groupsPrefix;
            m_unknownName->namespaceName = Vocabulary::groupsNamespace;
            m_unknownName->qualifiedName = m_unknownName->prefix + u':' + Vocabulary::darkElement;
            m_unknownName->itemName = m_unknownName->prefix + u':' + Vocabulary::itemElement;
        }
        enterGroups();
        item.name = m_unknownName.get();
        return *m_unknownName;
    }
    std::unique_ptr<ElementName>& slot = m_names[item.meta];
    if (!slot) {
        const MetaMetadata::MetaElement& meta = *item.meta;
        const WString* space = meta.property(namespaceProperty());
        const WString* prefix = meta.property(prefixProperty());
        const WString* tagName = meta.property(tagNameProperty());
        auto name = std::make_unique<ElementName>();
        name->namespaceName = space != nullptr ? *space : WString();
        m_namespaces.enter(name->namespaceName, prefix != nullptr ? *prefix : WString());
        const WString* recorded = m_namespaces.prefixOf(name->namespaceName);
        name->prefix = recorded != nullptr ? *recorded : WString();
        const WString& tag = tagName != nullptr ? *tagName : meta.name();
        name->qualifiedName = name->prefix + u':' + tag;
        name->itemName = name->prefix + u':' + Vocabulary::itemElement;
        name->identity = name->qualifiedName == Vocabulary::instanceUID ||
                         name->qualifiedName == Vocabulary::generationUID;
        name->extendedClipID = tag == u"ExtendedClipID";
        requireQualifiedName(name->namespaceName, name->qualifiedName,
                             u"the element '" + meta.name() + u"'");
        slot = std::move(name);
    }
    item.name = slot.get();
    return *slot;
}

bool XMLNames::wouldBeIdentity(const Item& item) const {
    if (item.meta == nullptr || !item.identityTag) {
        return false;
    }
    if (const auto it = m_names.find(item.meta); it != m_names.end()) {
        return it->second->identity;
    }
    const WString* space = item.meta->property(namespaceProperty());
    const WString* own = item.meta->property(prefixProperty());
    const WString* recorded = m_namespaces.prefixOf(space != nullptr ? *space : WString());
    const WString* prefix = recorded != nullptr ? recorded : own;
    const WString* tagName = item.meta->property(tagNameProperty());
    const WString qualifiedName = (prefix != nullptr ? *prefix : WString()) + u':' +
                                  (tagName != nullptr ? *tagName : item.meta->name());
    return qualifiedName == Vocabulary::instanceUID || qualifiedName == Vocabulary::generationUID;
}

void XMLNames::enterValueNamespaces() {
    if (!m_valueNamespaces) {
        m_namespaces.enterIfPrefixUnbound(Vocabulary::typesNamespace, Vocabulary::typesPrefix);
        m_namespaces.enterIfPrefixUnbound(Vocabulary::s422mTypesNamespace,
                                          Vocabulary::s422mTypesPrefix);
        m_valueNamespaces = true;
    }
}

void XMLNames::enterGroups() {
    if (!m_groups) {
        m_namespaces.enter(Vocabulary::groupsNamespace, Vocabulary::groupsPrefix);
        m_groups = true;
    }
}

void XMLNames::enterTypes() {
    if (!m_types) {
        m_namespaces.enter(Vocabulary::typesNamespace, Vocabulary::typesPrefix);
        m_types = true;
    }
}

void XMLNames::enterTypesIfUnbound() {
    if (!m_typesIfUnbound) {
        m_namespaces.enterIfPrefixUnbound(Vocabulary::typesNamespace, Vocabulary::typesPrefix);
        m_typesIfUnbound = true;
    }
}

} // namespace Vellum::XMLBuilder
