#include "XMLBuilder/TextMarkupWriter.h"

#include "Support/PrintCase.h"
#include "XMLBuilder/DOMMarkupSink.h"

#include "Vellum/Exceptions/InvalidFormat.h"
#include "Vellum/XMLUtils/Document.h"
#include "Vellum/XMLUtils/Initializer.h"

#include <gtest/gtest.h>

#include <functional>
#include <random>
#include <sstream>
#include <string>
#include <vector>

// The text writer against Xerces-C's serialiser of the same events built into a DOM: the
// same bytes in every encoding and layout.
namespace {

using namespace Vellum;
using XMLBuilder::MarkupSink;
using Encoding = XMLUtils::EncodingType;
using Script = std::function<void(MarkupSink&)>;

constexpr char16_t xmlns[] = u"http://www.w3.org/2000/xmlns/";

std::string viaDOM(const Script& script, Encoding encoding,
                   const XMLUtils::SerializeOptions& options) {
    XMLUtils::Initializer::instance();
    XMLBuilder::DOMMarkupSink sink;
    script(sink);
    const auto document = sink.release();
    std::string out;
    XMLUtils::domToBytes(document.get(), out, encoding, options);
    return out;
}

std::string viaText(const Script& script, Encoding encoding,
                    const XMLUtils::SerializeOptions& options) {
    std::string out;
    XMLBuilder::TextMarkupWriter writer(out, encoding, options);
    script(writer);
    EXPECT_TRUE(writer.complete());
    return out;
}

void expectSameText(const Script& script) {
    for (const Encoding encoding : {Encoding::UTF8, Encoding::UTF16}) {
        for (const bool pretty : {true, false}) {
            for (const bool declaration : {true, false}) {
                const XMLUtils::SerializeOptions options{pretty, declaration};
                EXPECT_EQ(viaText(script, encoding, options), viaDOM(script, encoding, options))
                    << "UTF-" << (encoding == Encoding::UTF8 ? 8 : 16) << ", pretty " << pretty
                    << ", declaration " << declaration;
            }
        }
    }
}

// Starts the document element a:Root declaring a (urn:a) and b (urn:b).
void root(MarkupSink& sink) {
    sink.startElement(u"urn:a", u"a:Root");
    sink.attribute(xmlns, u"xmlns:b", u"urn:b");
    sink.attribute(xmlns, u"xmlns:a", u"urn:a");
}

void leaf(MarkupSink& sink, const char16_t* name, const char16_t* text = nullptr) {
    sink.startElement(u"urn:a", name);
    if (text != nullptr) {
        sink.text(text);
    }
    sink.endElement();
}

struct WriterCase {
    const char* name;
    Script script;
};

VELLUM_PRINT_CASE_NAME(WriterCase)

const WriterCase writerCases[] = {
    {"EmptyDocumentElement",
     [](MarkupSink& s) {
         root(s);
         s.endElement();
     }},
    {"EmptyElementAndEmptyText",
     [](MarkupSink& s) {
         root(s);
         leaf(s, u"a:Empty");
         leaf(s, u"a:EmptyText", u"");
         s.endElement();
     }},
    {"EscapesInTextAndAttributes",
     [](MarkupSink& s) {
         const char16_t* tricky = u"&<>\"'\t\r\n]]> \U0001F600\uFFFD\u0085\u2028";
         root(s);
         s.startElement(u"urn:a", u"a:E");
         s.attribute(u"urn:b", u"b:v", tricky);
         s.text(tricky);
         s.endElement();
         s.endElement();
     }},
    {"AttributesSortedAndReplaced",
     [](MarkupSink& s) {
         root(s);
         s.startElement(u"urn:a", u"a:E");
         for (const char16_t* name : {u"b:z", u"a:A", u"b:B", u"b:A", u"a:a"}) {
             s.attribute(name[0] == u'a' ? u"urn:a" : u"urn:b", name, name);
         }
         s.attribute(u"urn:b", u"b:B", u"replaced");
         s.endElement();
         s.endElement();
     }},
    {"NamespacesDeclaredWhereUnbound",
     [](MarkupSink& s) {
         root(s);
         s.startElement(u"urn:other", u"a:Rebound"); // a bound elsewhere
         s.startElement(u"urn:other", u"a:Inner");   // bound by its parent now
         s.endElement();
         s.endElement();
         s.startElement(u"urn:c", u"c:New");
         s.attribute(u"urn:d", u"d:attr", u"1");
         s.attribute(u"urn:b", u"b:attr", u"2");
         s.startElement(u"urn:e", u"Default");
         s.startElement(u"urn:e", u"Default");
         s.endElement();
         s.endElement();
         s.endElement();
         leaf(s, u"a:After");
         s.endElement();
     }},
    {"WhiteSpaceTextMovesLineBreaksAndIndentation",
     [](MarkupSink& s) {
         root(s);
         leaf(s, u"a:A", u" \n   ");
         leaf(s, u"a:B", u"\r");
         s.startElement(u"urn:a", u"a:C");
         leaf(s, u"a:D", u"\n      ");
         leaf(s, u"a:E", u"x");
         s.text(u"\n");
         s.endElement();
         leaf(s, u"a:F", u"      \n              ");
         leaf(s, u"a:G");
         s.endElement();
     }},
    {"MixedContent",
     [](MarkupSink& s) {
         root(s);
         s.startElement(u"urn:a", u"a:M");
         s.text(u"before");
         leaf(s, u"a:In", u"1");
         s.text(u"");
         s.text(u"after");
         s.endElement();
         s.endElement();
     }},
};

class TextWriter : public ::testing::TestWithParam<WriterCase> {};

TEST_P(TextWriter, WritesWhatTheDOMSerialiserWrites) {
    expectSameText(GetParam().script);
}

INSTANTIATE_TEST_SUITE_P(Cases, TextWriter, ::testing::ValuesIn(writerCases),
                         [](const auto& p) { return std::string(p.param.name); });

// Documents made at random from a few names, namespaces and texts that the rules above treat
// differently, so that the rules meet in every order.
void randomElement(MarkupSink& s, std::mt19937& random, int depth) {
    static const char16_t* const names[] = {u"a:X", u"b:Y", u"c:Z", u"W"};
    static const char16_t* const spaces[] = {u"urn:a", u"urn:b", u"urn:c", u""};
    static const char16_t* const texts[] = {
        u"", u" ", u"\n", u" \n    ", u"\r\n  ", u"t&<>", u"      \n                  "};
    const auto pick = [&random](std::size_t count) {
        return std::uniform_int_distribution<std::size_t>(0, count - 1)(random);
    };
    // Now and then an element in another namespace than its prefix has (never none for a
    // prefixed name, which a DOM refuses).
    const std::size_t name = pick(4);
    const std::size_t space = pick(8) == 0 ? pick(3) : name;
    s.startElement(spaces[space], names[name]);
    for (std::size_t i = pick(3); i > 0; --i) {
        const std::size_t attribute = pick(3);
        s.attribute(spaces[attribute], std::u16string(names[attribute]) + u"attr", texts[pick(7)]);
    }
    for (std::size_t i = depth < 4 ? pick(5) : 0; i > 0; --i) {
        if (pick(2) == 0) {
            s.text(texts[pick(7)]);
        } else {
            randomElement(s, random, depth + 1);
        }
    }
    s.endElement();
}

TEST(TextWriter, RandomDocumentsAsTheDOMSerialiserWritesThem) {
    for (unsigned seed = 1; seed <= 60; ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        expectSameText([seed](MarkupSink& s) {
            std::mt19937 random(seed);
            root(s);
            randomElement(s, random, 1);
            randomElement(s, random, 1);
            s.endElement();
        });
    }
}

TEST(TextWriter, WritesBlocksToAStream) {
    std::ostringstream stream;
    std::string bytes;
    const XMLUtils::SerializeOptions options;
    XMLBuilder::TextMarkupWriter toStream(stream, Encoding::UTF16, options);
    XMLBuilder::TextMarkupWriter toBytes(bytes, Encoding::UTF16, options);
    for (MarkupSink* sink :
         {static_cast<MarkupSink*>(&toStream), static_cast<MarkupSink*>(&toBytes)}) {
        root(*sink);
        for (int i = 0; i < 20000; ++i) {
            leaf(*sink, u"a:Leaf", u"\u00E9t\u00E9");
        }
        sink->endElement();
    }
    EXPECT_EQ(stream.str(), bytes);
    EXPECT_EQ(bytes.substr(0, 2), "\xFF\xFE");
}

TEST(TextWriter, RefusesEventsOutOfPlace) {
    std::string out;
    XMLBuilder::TextMarkupWriter writer(out, Encoding::UTF8, {});
    EXPECT_THROW(writer.text(u"x"), Exceptions::InvalidFormat);
    root(writer);
    writer.text(u"x");
    EXPECT_THROW(writer.attribute(u"", u"late", u"1"), Exceptions::InvalidFormat);
    writer.endElement();
    EXPECT_THROW(writer.startElement(u"", u"Second"), Exceptions::InvalidFormat);
}

} // namespace
