#include "Vellum/XMLBuilder/NodeSelector.h"

#include "Support/ExpectThrow.h"
#include "Support/PrintCase.h"
#include "XMLBuilder/ImportTestSupport.h"

#include "Vellum/Exceptions/ParseError.h"

#include <gtest/gtest.h>

#include <string>

namespace {

using namespace Vellum;
using XMLBuilder::NodeSelector;
using XMLBuilder::XMLNode;

struct Case {
    const char* name;
    const char* xml; // the context is the root's first child
    const char16_t* prefix;
    const char16_t* localName;
    const char16_t* fallback;
    int selected; // the index of the child "./prefix:localName" selects; -1 for none
};
VELLUM_PRINT_CASE_NAME(Case)

// What XPath evaluation of "./prefix:localName" selects, the reference of the selections.
const Case cases[] = {
    {"OtherPrefixSameNamespace",
     R"(<r xmlns:a="urn:a" xmlns:b="urn:a"><c><a:X/><b:Y>1</b:Y><a:Y>2</a:Y></c></r>)", u"a", u"Y",
     nullptr, 1},
    {"DeeperMatchNotSelected", R"(<r xmlns:a="urn:a"><c><a:X><a:Y/></a:X></c></r>)", u"a", u"Y",
     nullptr, -1},
    {"PrefixRedeclaredAtContext",
     R"(<r xmlns:a="urn:a"><c xmlns:a="urn:b"><x:Y xmlns:x="urn:a"/><x:Y xmlns:x="urn:b"/></c></r>)",
     u"a", u"Y", nullptr, 1},
    {"ChildRedeclaresItsPrefix", R"(<r xmlns:a="urn:a"><c><a:Y xmlns:a="urn:b"/></c></r>)", u"a",
     u"Y", nullptr, -1},
    {"DefaultNamespaceChild", R"(<r xmlns:d="urn:d"><c xmlns="urn:d"><Y/></c></r>)", u"d", u"Y",
     nullptr, 0},
    {"NoPrefixMeansNoNamespace", R"(<r xmlns:a="urn:a"><c><a:Y/><Y/></c></r>)", u"", u"Y", nullptr,
     1},
    {"UndeclaredDefaultIsNoNamespace", R"(<r xmlns="urn:d"><c><Y/><Y xmlns=""/></c></r>)", u"",
     u"Y", nullptr, 1},
    {"TextAndCommentsSkipped", R"(<r xmlns:a="urn:a"><c>text<!-- note --><a:Y/>more</c></r>)", u"a",
     u"Y", nullptr, 0},
    {"FallbackForUnboundPrefix", R"(<r xmlns:f="urn:f"><c><f:Y/></c></r>)", u"q", u"Y", u"urn:f",
     0},
    {"BoundPrefixIgnoresFallback", R"(<r xmlns:q="urn:q" xmlns:f="urn:f"><c><f:Y/><q:Y/></c></r>)",
     u"q", u"Y", u"urn:f", 1},
    {"NoChildren", R"(<r xmlns:a="urn:a"><c/></r>)", u"a", u"Y", nullptr, -1},
};

class Selection : public ::testing::TestWithParam<Case> {};

TEST_P(Selection, IsTheFirstChildOfTheResolvedNamespaceAndName) {
    const Case& c = GetParam();
    const VellumTest::ParsedXML xml(c.xml);
    const XMLNode& context = xml.first();
    const WString fallback = c.fallback != nullptr ? c.fallback : u"";
    const XMLNode* expected = nullptr;
    int index = 0;
    for (const XMLNode& child : context.children()) {
        if (index++ == c.selected) {
            expected = &child;
        }
    }
    EXPECT_EQ(NodeSelector::firstChild(context, c.prefix, c.localName,
                                       c.fallback != nullptr ? &fallback : nullptr),
              expected);
}

INSTANTIATE_TEST_SUITE_P(Cases, Selection, ::testing::ValuesIn(cases),
                         [](const auto& p) { return std::string(p.param.name); });

TEST(NodeSelector, UnboundPrefixFailsAsXPathDoesNamingThePrefixAndTheElement) {
    const VellumTest::ParsedXML xml("<r>\n  <c><Y/></c></r>");
    const XMLNode& context = xml.first();
    EXPECT_THROW_MSG(
        NodeSelector::firstChild(context, u"zz", u"Y"), ParseError,
        "DOMException:: attempt is made to create or change an object in a way which is "
        "incorrect with respect to namespaces(14): the prefix 'zz' is not bound at c, "
        "line 2, column 3");
    EXPECT_FALSE(NodeSelector::isPrefixBound(context, u"zz"));
    EXPECT_TRUE(NodeSelector::isPrefixBound(context, u"xml"));
    EXPECT_FALSE(NodeSelector::isPrefixBound(context, u"")) << "no prefix is no binding";
}

} // namespace
