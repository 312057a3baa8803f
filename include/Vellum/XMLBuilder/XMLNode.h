#ifndef VELLUM_XMLBUILDER_XMLNODE_H
#define VELLUM_XMLBUILDER_XMLNODE_H

#include "Vellum/Templates/Templates.h"
#include "Vellum/XMLBuilder/Export.h"

#include <cstddef>
#include <cstdint>
#include <iterator>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace Vellum::XMLBuilder {

class XMLStreamReader;

/// The name of an element or attribute as the import reads it: its namespace (empty for none),
/// its local name and the qualified name it is written with ("prefix:local", or "local").
/// The reader makes one object per distinct name of a document and keeps it until it is
/// destroyed, so nodes share their names.
struct XMLName {
    WString namespaceURI;
    WString localName;
    WString qualifiedName;

    /// The prefix the name is written with (empty for none).
    std::u16string_view prefix() const noexcept {
        return std::u16string_view(qualifiedName)
            .substr(0, qualifiedName.size() - localName.size() -
                           (qualifiedName.size() > localName.size() ? 1 : 0));
    }
};

/// An attribute of an element that is not a namespace declaration. The value is stored with
/// the element's node.
struct XMLAttribute {
    const XMLName* name = nullptr;
    std::u16string_view value;
};

/// A namespace declaration of an element: "xmlns:prefix" (or "xmlns", with an empty prefix)
/// and the namespace it binds (empty where a default namespace is undeclared).
struct XMLNamespaceDeclaration {
    WString prefix;
    WString namespaceURI;
};

/// The namespace declarations of one element, indexed when there are many.
class VELLUM_XMLBUILDER_EXPORT XMLNamespaceDeclarations {
public:
    explicit XMLNamespaceDeclarations(std::vector<XMLNamespaceDeclaration> declarations);
    XMLNamespaceDeclarations(const XMLNamespaceDeclarations&) = delete;
    XMLNamespaceDeclarations& operator=(const XMLNamespaceDeclarations&) = delete;
    ~XMLNamespaceDeclarations();

    /// In document order.
    const std::vector<XMLNamespaceDeclaration>& list() const noexcept { return m_list; }
    /// The namespace these bind `prefix` to, or nullptr.
    const WString* find(std::u16string_view prefix) const noexcept;

private:
    std::vector<XMLNamespaceDeclaration> m_list;
    /// Prefix to declaration, made when there are many.
    std::unordered_map<std::u16string_view, std::size_t> m_index;
};

/// One element of an imported document with its attributes, its own text and its element
/// children, made by XMLStreamReader. The import reads the document one top-level element at
/// a time; each is a tree of these nodes that lives until that element is read. The nodes,
/// their texts and their attributes are stored together by the reader.
///
/// The text is the element's own character data, with every run of it that holds nothing but
/// blanks (space, tab, CR, LF) between two pieces of markup dropped, and the remaining runs
/// joined; CDATA sections are kept as they are. Comments and processing instructions are not
/// kept. Each node knows its parent, so that the prefixes in scope can be resolved.
class VELLUM_XMLBUILDER_EXPORT XMLNode {
public:
    XMLNode() = default;
    XMLNode(const XMLNode&) = delete;
    XMLNode& operator=(const XMLNode&) = delete;
    ~XMLNode() = default;

    /// Iterates over the element children, in document order.
    class ChildIterator {
    public:
        using iterator_category = std::forward_iterator_tag;
        using value_type = XMLNode;
        using difference_type = std::ptrdiff_t;
        using pointer = const XMLNode*;
        using reference = const XMLNode&;

        explicit ChildIterator(const XMLNode* node) noexcept
            : m_node(node) {}
        reference operator*() const noexcept { return *m_node; }
        pointer operator->() const noexcept { return m_node; }
        ChildIterator& operator++() noexcept {
            m_node = m_node->m_nextSibling;
            return *this;
        }
        bool operator==(const ChildIterator& other) const noexcept {
            return m_node == other.m_node;
        }
        bool operator!=(const ChildIterator& other) const noexcept {
            return m_node != other.m_node;
        }

    private:
        const XMLNode* m_node;
    };

    /// The attributes as a range.
    struct Attributes {
        const XMLAttribute* first;
        std::size_t count;
        const XMLAttribute* begin() const noexcept { return first; }
        const XMLAttribute* end() const noexcept { return first + count; }
        std::size_t size() const noexcept { return count; }
        bool empty() const noexcept { return count == 0; }
        const XMLAttribute& operator[](std::size_t index) const noexcept { return first[index]; }
    };

    /// The element children as a range.
    struct Children {
        const XMLNode* first;
        ChildIterator begin() const noexcept { return ChildIterator(first); }
        ChildIterator end() const noexcept { return ChildIterator(nullptr); }
        bool empty() const noexcept { return first == nullptr; }
    };

    const XMLName& name() const noexcept { return *m_name; }
    const WString& namespaceURI() const noexcept { return m_name->namespaceURI; }
    const WString& localName() const noexcept { return m_name->localName; }
    const WString& qualifiedName() const noexcept { return m_name->qualifiedName; }

    /// The parent element; nullptr for the document's root.
    const XMLNode* parent() const noexcept { return m_parent; }
    Children children() const noexcept { return Children{m_firstChild}; }
    const XMLNode* firstChild() const noexcept { return m_firstChild; }
    const XMLNode* nextSibling() const noexcept { return m_nextSibling; }
    /// How many element children there are.
    std::size_t childCount() const noexcept { return m_childCount; }

    /// The element's own text (see above).
    std::u16string_view text() const noexcept { return m_text; }
    /// The text of the element and of all its descendants, each element's own text followed
    /// by its children's; a text of blanks only is given as empty.
    WString textContent() const;
    /// Whether the element has neither element children nor text.
    bool isEmpty() const noexcept { return m_firstChild == nullptr && m_text.empty(); }

    /// The attributes (namespace declarations excepted), in document order.
    Attributes attributes() const noexcept { return Attributes{m_attributes, m_attributeCount}; }
    /// The first attribute written with the qualified name `qualifiedName`, or nullptr.
    const XMLAttribute* attribute(std::u16string_view qualifiedName) const noexcept;
    /// The attribute in namespace `namespaceURI` (empty for none) with the local name
    /// `localName`, or nullptr.
    const XMLAttribute* attribute(std::u16string_view namespaceURI,
                                  std::u16string_view localName) const noexcept;

    /// The namespace declarations written on this element, in document order.
    const std::vector<XMLNamespaceDeclaration>& namespaceDeclarations() const noexcept;
    /// The namespace bound to `prefix` in scope of this element ("xml" included), or nullptr
    /// when the prefix is not bound. An empty prefix asks for the default namespace.
    const WString* lookupNamespace(std::u16string_view prefix) const noexcept;
    /// The namespace bound to `prefix` by this element's own declarations, or nullptr.
    const WString* declaredNamespace(std::u16string_view prefix) const noexcept {
        return m_declarations != nullptr ? m_declarations->find(prefix) : nullptr;
    }

    /// Where the element's start tag begins in the document (1-based line and column).
    std::uint32_t line() const noexcept { return m_line; }
    std::uint32_t column() const noexcept { return m_column; }
    /// How deeply the element nests: 1 for the root, 2 for its children, and so on.
    std::uint32_t depth() const noexcept { return m_depth; }

private:
    friend class XMLStreamReader;

    const XMLName* m_name = nullptr;
    const XMLNode* m_parent = nullptr;
    /// The nearest of this element and its ancestors that declares namespaces, or nullptr.
    const XMLNode* m_scope = nullptr;
    XMLNode* m_firstChild = nullptr;
    XMLNode* m_nextSibling = nullptr;
    std::u16string_view m_text;
    const XMLAttribute* m_attributes = nullptr;
    const XMLNamespaceDeclarations* m_declarations = nullptr;
    std::uint32_t m_attributeCount = 0;
    std::uint32_t m_childCount = 0;
    std::uint32_t m_line = 0;
    std::uint32_t m_column = 0;
    std::uint32_t m_depth = 0;
};

} // namespace Vellum::XMLBuilder

#endif
