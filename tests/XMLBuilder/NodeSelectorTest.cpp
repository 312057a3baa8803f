#include "Vellum/XMLBuilder/NodeSelector.h"

#include "XMLBuilder/ImportTestSupport.h"

#include "Vellum/XMLUtils/XercesPtr.h"

#include <gtest/gtest.h>
#include <xercesc/dom/DOMAttr.hpp>
#include <xercesc/dom/DOMDocument.hpp>
#include <xercesc/dom/DOMException.hpp>
#include <xercesc/dom/DOMXPathExpression.hpp>

#include <memory>
#include <string>

namespace {

using namespace Vellum;
using xercesc::DOMElement;

// Xerces-C's own XPath evaluation, the reference the selections must agree with: the
// element a "./prefix:name" or "./*" expression selects first, evaluated at `context`.
DOMElement* xpathFirst(DOMElement& context, const std::u16string& expression,
                       const char16_t* fallback) {
    XMLUtils::XPathNSResolverPtr resolver(context.getOwnerDocument()->createNSResolver(&context));
    const auto colon = expression.find(u':');
    if (fallback != nullptr && colon != std::u16string::npos) {
        const std::u16string prefix = expression.substr(2, colon - 2);
        if (resolver->lookupNamespaceURI(prefix.c_str()) == nullptr) {
            resolver->addNamespaceBinding(prefix.c_str(), fallback);
        }
    }
    const std::unique_ptr<xercesc::DOMXPathExpression, XMLUtils::ReleaseDeleter> compiled(
        context.getOwnerDocument()->createExpression(expression.c_str(), resolver.get()));
    XMLUtils::XPathResultPtr result(
        compiled->evaluate(&context, xercesc::DOMXPathResult::FIRST_ORDERED_NODE_TYPE, nullptr));
    return static_cast<DOMElement*>(result->getNodeValue());
}

std::vector<DOMElement*> xpathChildren(DOMElement& context) {
    XMLUtils::XPathNSResolverPtr resolver(context.getOwnerDocument()->createNSResolver(&context));
    const std::unique_ptr<xercesc::DOMXPathExpression, XMLUtils::ReleaseDeleter> compiled(
        context.getOwnerDocument()->createExpression(u"./*", resolver.get()));
    XMLUtils::XPathResultPtr result(
        compiled->evaluate(&context, xercesc::DOMXPathResult::ORDERED_NODE_SNAPSHOT_TYPE, nullptr));
    std::vector<DOMElement*> children;
    for (XMLSize_t i = 0; i < result->getSnapshotLength(); ++i) {
        result->snapshotItem(i);
        children.push_back(static_cast<DOMElement*>(result->getNodeValue()));
    }
    return children;
}

struct Case {
    const char* name;
    const char* xml; // the context is the root's first child
    const char16_t* prefix;
    const char16_t* localName;
    const char16_t* fallback;
};

const Case cases[] = {
    {"OtherPrefixSameNamespace",
     R"(<r xmlns:a="urn:a" xmlns:b="urn:a"><c><a:X/><b:Y>1</b:Y><a:Y>2</a:Y></c></r>)", u"a", u"Y",
     nullptr},
    {"DeeperMatchNotSelected", R"(<r xmlns:a="urn:a"><c><a:X><a:Y/></a:X></c></r>)", u"a", u"Y",
     nullptr},
    {"PrefixRedeclaredAtContext",
     R"(<r xmlns:a="urn:a"><c xmlns:a="urn:b"><x:Y xmlns:x="urn:a"/><x:Y xmlns:x="urn:b"/></c></r>)",
     u"a", u"Y", nullptr},
    {"ChildRedeclaresItsPrefix", R"(<r xmlns:a="urn:a"><c><a:Y xmlns:a="urn:b"/></c></r>)", u"a",
     u"Y", nullptr},
    {"DefaultNamespaceChild", R"(<r xmlns:d="urn:d"><c xmlns="urn:d"><Y/></c></r>)", u"d", u"Y",
     nullptr},
    {"NoPrefixMeansNoNamespace", R"(<r xmlns:a="urn:a"><c><a:Y/><Y/></c></r>)", u"", u"Y", nullptr},
    {"TextAndCommentsSkipped", R"(<r xmlns:a="urn:a"><c>text<!-- note --><a:Y/>more</c></r>)", u"a",
     u"Y", nullptr},
    {"FallbackForUnboundPrefix", R"(<r xmlns:f="urn:f"><c><f:Y/></c></r>)", u"q", u"Y", u"urn:f"},
    {"BoundPrefixIgnoresFallback", R"(<r xmlns:q="urn:q" xmlns:f="urn:f"><c><f:Y/><q:Y/></c></r>)",
     u"q", u"Y", u"urn:f"},
    {"NoChildren", R"(<r xmlns:a="urn:a"><c/></r>)", u"a", u"Y", nullptr},
};

class NodeSelectorMatchesXPath : public ::testing::TestWithParam<Case> {};

TEST_P(NodeSelectorMatchesXPath, SelectsTheSameNodes) {
    const Case& c = GetParam();
    const VellumTest::ParsedXML xml(c.xml);
    DOMElement& context = xml.first();
    const std::u16string prefix = c.prefix;
    const std::u16string expression =
        prefix.empty() ? u"./" + std::u16string(c.localName) : u"./" + prefix + u":" + c.localName;
    EXPECT_EQ(XMLBuilder::NodeSelector::firstChild(context, prefix, c.localName, c.fallback),
              xpathFirst(context, expression, c.fallback));
    EXPECT_EQ(XMLBuilder::NodeSelector::elementChildren(context), xpathChildren(context));
    EXPECT_EQ(XMLBuilder::NodeSelector::firstElementChild(context),
              xpathFirst(context, u"./*", nullptr));
}

INSTANTIATE_TEST_SUITE_P(Cases, NodeSelectorMatchesXPath, ::testing::ValuesIn(cases),
                         [](const auto& p) { return std::string(p.param.name); });

TEST(NodeSelector, UnboundPrefixFailsAsXPathDoes) {
    const VellumTest::ParsedXML xml(R"(<r><c><Y/></c></r>)");
    DOMElement& context = xml.first();
    short xpathCode = 0;
    try {
        xpathFirst(context, u"./zz:Y", nullptr);
    } catch (const xercesc::DOMException& error) {
        xpathCode = error.code;
    }
    EXPECT_EQ(xpathCode, xercesc::DOMException::NAMESPACE_ERR);
    try {
        XMLBuilder::NodeSelector::firstChild(context, u"zz", u"Y");
        FAIL() << "an unbound prefix must fail";
    } catch (const xercesc::DOMException& error) {
        EXPECT_EQ(error.code, xpathCode);
    }
    EXPECT_FALSE(XMLBuilder::NodeSelector::isPrefixBound(context, u"zz"));
    EXPECT_TRUE(XMLBuilder::NodeSelector::isPrefixBound(context, u"xml"));
}

TEST(NodeSelector, TextOfElementsAndAttributes) {
    const VellumTest::ParsedXML xml(
        R"(<r a="attr"><c>first<d/>second</c><e/><f><g>inner</g></f></r>)");
    DOMElement& root = xml.root();
    EXPECT_EQ(XMLBuilder::NodeSelector::text(*root.getAttributeNode(u"a")), u"attr");
    EXPECT_EQ(XMLBuilder::NodeSelector::text(xml.first()), u"first")
        << "only the first child node counts";
    EXPECT_EQ(XMLBuilder::NodeSelector::text(*xml.first().getNextElementSibling()), u"");
    EXPECT_EQ(XMLBuilder::NodeSelector::text(*root.getLastElementChild()), u"")
        << "an element child has no value of its own";
}

} // namespace
