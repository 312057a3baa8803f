#include "XMLBuilder/TextMarkupWriter.h"

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

// Documents made at random from a few names, namespaces, attributes and texts that the writer
// treats differently (escapes, white space around line breaks, namespaces rebound or declared
// where first used, attributes sorted and given again, empty elements and mixed content), so
// that the rules meet in every order; the same seeds every run.
void randomElement(MarkupSink& s, std::mt19937& random, int depth) {
    static const char16_t* const names[] = {u"a:X", u"b:Y", u"c:Z", u"W"};
    static const char16_t* const spaces[] = {u"urn:a", u"urn:b", u"urn:c", u""};
    static const char16_t* const texts[] = {u"",
                                            u" ",
                                            u"\n",
                                            u" \n    ",
                                            u"\r\n  ",
                                            u"t&<>",
                                            u"      \n                  ",
                                            u"&<>\"'\t\r\n]]> \U0001F600\uFFFD\u0085\u2028"};
    static const char16_t* const attributes[] = {u"A", u"a", u"z"};
    const auto pick = [&random](std::size_t count) {
        return std::uniform_int_distribution<std::size_t>(0, count - 1)(random);
    };
    // Now and then an element in another namespace than its prefix has (never none for a
    // prefixed name, which a DOM refuses).
    const std::size_t name = pick(4);
    const std::size_t space = pick(8) == 0 ? pick(3) : name;
    s.startElement(spaces[space], names[name]);
    // Attributes that differ in namespace or in case only, now and then one given again.
    for (std::size_t i = pick(5); i > 0; --i) {
        const std::size_t prefix = pick(3);
        const std::u16string qname =
            std::u16string(names[prefix]).substr(0, 2) + attributes[pick(3)];
        s.attribute(spaces[prefix], qname, texts[pick(8)]);
    }
    for (std::size_t i = depth < 4 ? pick(5) : 0; i > 0; --i) {
        if (pick(2) == 0) {
            s.text(texts[pick(8)]);
        } else {
            randomElement(s, random, depth + 1);
        }
    }
    s.endElement();
}

// Documents whose root holds up to two random elements.
Script randomDocument(unsigned seed) {
    return [seed](MarkupSink& s) {
        std::mt19937 random(seed);
        root(s);
        for (auto i = std::uniform_int_distribution<int>(0, 2)(random); i > 0; --i) {
            randomElement(s, random, 1);
        }
        s.endElement();
    };
}

TEST(TextWriter, RandomDocumentsAsTheDOMSerialiserWritesThem) {
    for (unsigned seed = 1; seed <= 60; ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        expectSameText(randomDocument(seed));
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
