#include "Vellum/XMLBuilder/XMLNode.h"

#include <algorithm>

namespace Vellum::XMLBuilder {
namespace {

/// Declarations an element may have before they are looked up through an index.
constexpr std::size_t indexedDeclarations = 8;

constexpr std::u16string_view xmlPrefix = u"xml";
const WString& xmlNamespace() {
    static const WString name(u"http://www.w3.org/XML/1998/namespace");
    return name;
}

bool isBlank(char16_t c) {
    return c == u' ' || c == u'\t' || c == u'\r' || c == u'\n';
}

void appendTextContent(const XMLNode& node, WString& out) {
    out += node.text();
    for (const XMLNode& child : node.children()) {
        appendTextContent(child, out);
    }
}

} // namespace

XMLNamespaceDeclarations::XMLNamespaceDeclarations(
    std::vector<XMLNamespaceDeclaration> declarations)
    : m_list(std::move(declarations)) {
    if (m_list.size() > indexedDeclarations) {
        m_index.reserve(m_list.size());
        for (std::size_t i = 0; i < m_list.size(); ++i) {
            // The parser refuses a prefix declared twice on one element.
            m_index.emplace(m_list[i].prefix, i);
        }
    }
}

XMLNamespaceDeclarations::~XMLNamespaceDeclarations() = default;

const WString* XMLNamespaceDeclarations::find(std::u16string_view prefix) const noexcept {
    if (!m_index.empty()) {
        const auto found = m_index.find(prefix);
        return found != m_index.end() ? &m_list[found->second].namespaceURI : nullptr;
    }
    for (const XMLNamespaceDeclaration& declaration : m_list) {
        if (declaration.prefix == prefix) {
            return &declaration.namespaceURI;
        }
    }
    return nullptr;
}

WString XMLNode::textContent() const {
    WString out;
    appendTextContent(*this, out);
    const bool blank = std::all_of(out.begin(), out.end(), isBlank);
    return blank ? WString() : out;
}

const XMLAttribute* XMLNode::attribute(std::u16string_view qualifiedName) const noexcept {
    for (const XMLAttribute& attribute : attributes()) {
        if (attribute.name->qualifiedName == qualifiedName) {
            return &attribute;
        }
    }
    return nullptr;
}

const XMLAttribute* XMLNode::attribute(std::u16string_view namespaceURI,
                                       std::u16string_view localName) const noexcept {
    for (const XMLAttribute& attribute : attributes()) {
        if (attribute.name->localName == localName &&
            attribute.name->namespaceURI == namespaceURI) {
            return &attribute;
        }
    }
    return nullptr;
}

const std::vector<XMLNamespaceDeclaration>& XMLNode::namespaceDeclarations() const noexcept {
    static const std::vector<XMLNamespaceDeclaration> none;
    return m_declarations != nullptr ? m_declarations->list() : none;
}

const WString* XMLNode::lookupNamespace(std::u16string_view prefix) const noexcept {
    if (prefix == xmlPrefix) {
        return &xmlNamespace();
    }
    // Only the elements that declare namespaces are visited.
    for (const XMLNode* node = m_scope; node != nullptr;
         node = node->m_parent != nullptr ? node->m_parent->m_scope : nullptr) {
        if (const WString* found = node->declaredNamespace(prefix)) {
            // An undeclared default namespace ("xmlns=''") binds nothing.
            return found->empty() ? nullptr : found;
        }
    }
    return nullptr;
}

} // namespace Vellum::XMLBuilder
