#include "Metadata/HeaderMetadataBytes.h"
#include "Support/PrintCase.h"
#include "Support/Samples.h"

#include "Vellum/Exceptions/IOError.h"
#include "Vellum/MetaMetadata/Dictionary.h"
#include "Vellum/Metadata/PartitionMetadata.h"
#include "Vellum/XMLBuilder/Partition2XML.h"
#include "Vellum/XMLUtils/Document.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

// The streaming text export against the DOM export serialised by Xerces-C: byte for byte the
// same text, for real files and for header metadata built to hold what is hard to write.
namespace {

using namespace Vellum;
using namespace VellumTest;
using Encoding = XMLUtils::EncodingType;

// Every layout, encoding and option of both text overloads, against the DOM path; from
// `start`, or from the first Preface when it is null.
void expectStreamingEqualsDOM(const Metadata::PartitionMetadata& partition,
                              const Metadata::MetadataSet* start) {
    const auto dom = [&](bool typed, bool structural) {
        return start != nullptr ? XMLBuilder::partition2XML(&partition, start, typed, structural)
                                : XMLBuilder::partition2XML(&partition, typed, structural);
    };
    const auto stream = [&](bool typed, bool structural, Encoding encoding, std::ostream& out,
                            const XMLUtils::SerializeOptions& options) {
        return start != nullptr ? XMLBuilder::partition2XML(&partition, start, typed, structural,
                                                            encoding, out, options)
                                : XMLBuilder::partition2XML(&partition, typed, structural, encoding,
                                                            out, options);
    };
    const auto units = [&](bool typed, bool structural, Encoding encoding, WString& out) {
        if (start != nullptr) {
            XMLBuilder::partition2XML(&partition, start, typed, structural, encoding, out);
        } else {
            XMLBuilder::partition2XML(&partition, typed, structural, encoding, out);
        }
    };
    for (const bool structural : {false, true}) {
        for (const bool typed : {false, true}) {
            SCOPED_TRACE(std::string(typed ? "typed" : "flat") +
                         (structural ? ", structural targets only" : ""));
            const auto document = dom(typed, structural);
            ASSERT_TRUE(document);
            for (const Encoding encoding : {Encoding::UTF8, Encoding::UTF16}) {
                for (const XMLUtils::SerializeOptions options :
                     {XMLUtils::SerializeOptions{true, true},
                      XMLUtils::SerializeOptions{false, true},
                      XMLUtils::SerializeOptions{true, false},
                      XMLUtils::SerializeOptions{false, false}}) {
                    std::string expected;
                    XMLUtils::domToBytes(document.get(), expected, encoding, options);
                    std::ostringstream streamed;
                    ASSERT_TRUE(stream(typed, structural, encoding, streamed, options));
                    EXPECT_EQ(streamed.str(), expected)
                        << "UTF-" << (encoding == Encoding::UTF8 ? 8 : 16) << ", pretty "
                        << options.prettyPrint << ", declaration " << options.xmlDeclaration;
                }
                WString expected;
                XMLUtils::domToBuffer(document.get(), expected, encoding);
                WString text;
                units(typed, structural, encoding, text);
                EXPECT_EQ(text, expected) << "code units";
            }
        }
    }
}

// ---- Real files: the bundled samples, then those beside the checkout when they are there.

const std::filesystem::path realSamples =
    std::filesystem::path(VELLUM_SOURCE_DIR) / ".." / "shared" / "samples" / "mxf-real";
const std::string realSamplesAbsent = "mxf-real (absent)";

std::vector<std::string> samplePaths() {
    std::vector<std::string> paths;
    for (const std::string& name : sampleNames()) {
        paths.push_back(sampleDir() + "/" + name);
    }
    std::error_code ignored;
    if (!std::filesystem::is_directory(realSamples, ignored)) {
        paths.push_back(realSamplesAbsent);
        return paths;
    }
    std::vector<std::string> real;
    for (const auto& entry : std::filesystem::directory_iterator(realSamples, ignored)) {
        if (entry.path().extension() == ".mxf") {
            real.push_back(entry.path().string());
        }
    }
    std::sort(real.begin(), real.end());
    paths.insert(paths.end(), real.begin(), real.end());
    return paths;
}

class SampleStreaming : public ::testing::TestWithParam<std::string> {};

TEST_P(SampleStreaming, TextEqualsTheSerialisedDocument) {
    if (GetParam() == realSamplesAbsent) {
        GTEST_SKIP() << "no folder " << realSamples;
    }
    const auto partition = Metadata::PartitionMetadata::readFile(
        GetParam(), "header", MetaMetadata::Dictionary::builtIn());
    expectStreamingEqualsDOM(*partition, nullptr);
}

INSTANTIATE_TEST_SUITE_P(Samples, SampleStreaming, ::testing::ValuesIn(samplePaths()),
                         [](const auto& p) {
                             const std::filesystem::path path(p.param);
                             return testName(path.parent_path().filename().string() + "_" +
                                             path.filename().string());
                         });

// Exports on several threads at once give the documents of exports one after another.
TEST(SampleStreaming, ConcurrentExportsGiveTheSameDocuments) {
    const std::vector<std::string> names = {"ffmpeg-op1a-mpeg2-pcm-bitexact.mxf",
                                            "gst-mxfmux-multi-mpeg2-pcm-mp3-ac3.mxf"};
    const auto readSample = [](const std::string& name) {
        return Metadata::PartitionMetadata::readFile(sampleDir() + "/" + name, "header",
                                                     MetaMetadata::Dictionary::builtIn());
    };
    std::vector<WString> expected(names.size());
    for (std::size_t i = 0; i < names.size(); ++i) {
        XMLBuilder::partition2XML(readSample(names[i]).get(), true, false, Encoding::UTF8,
                                  expected[i]);
    }
    std::vector<WString> results(names.size() * 4);
    std::vector<std::thread> threads;
    for (std::size_t t = 0; t < results.size(); ++t) {
        threads.emplace_back([&, t] {
            XMLBuilder::partition2XML(readSample(names[t % names.size()]).get(), true, false,
                                      Encoding::UTF8, results[t]);
        });
    }
    for (auto& thread : threads) {
        thread.join();
    }
    for (std::size_t t = 0; t < results.size(); ++t) {
        EXPECT_EQ(results[t], expected[t % names.size()]) << "thread " << t;
    }
}

// ---- Header metadata built byte by byte.

Bytes privateSet(std::uint8_t id, const Bytes& items) {
    return klv(privateSetKey, concat({item(0x3C0A, uuid(id)), items}));
}

Bytes identifications(std::initializer_list<Bytes> ids) {
    return item(0x3B06, batchOf(ids, 16));
}

struct Case {
    const char* name;
    Bytes bytes;
    bool fromLastSet = false; ///< start from the last set rather than the Preface
};

VELLUM_PRINT_CASE_NAME(Case)

const Case cases[] = {
    {"EscapedCharacters",
     header(identifications({uuid(0x22)}),
            identification(0x22, concat({item(0x3C01, utf16(u"a&b<c>d\"e'f\tg\rh\ni]]>j")),
                                         item(0x3C02, utf16(u"\U0001F600 \uFFFD \u0085"))})))},
    {"CharactersXMLCannotHold",
     header(identifications({uuid(0x22)}),
            identification(0x22, concat({item(0x3C01, utf16(std::u16string(u"A\x01\0B", 4))),
                                         item(0x3C02, utf16(u"x\xD800y\xDC00\uFFFE"))})))},
    {"EmptyAndWhiteSpaceOnlyStrings",
     header(identifications({uuid(0x22), uuid(0x33)}),
            concat({identification(0x22, concat({item(0x3C01, utf16(u" \n   ")), item(0x3C02, {}),
                                                 item(0x3C04, utf16(u"\r"))})),
                    identification(0x33, concat({item(0x3C01, utf16(u"\n")),
                                                 item(0x3C02, utf16(u"      \n          "))}))}))},
    {"ExtensionElementsAmongDefinedOnes",
     header(concat({item(0x3C01, utf16(u"misplaced")), item(0x8001, {1, 2}),
                    identifications({uuid(0x22)}), item(0x7E01, {3}), item(0x0102, uuid(0x77))}),
            identification(0x22, concat({item(0x8001, {}), item(0x3C01, utf16(u"defined"))})))},
    {"UnknownSetsReachedFromThePreface",
     header(identifications({uuid(0x22), uuid(0x33), uuid(0x44)}),
            concat({identification(0x22, {}), privateSet(0x33, item(0x8001, uuid(0x44))),
                    identification(0x44, {}), privateSet(0x55, item(0x8001, {9}))}))},
    {"FloatingSetsWithTargetsThenAnUnknownSet",
     header(identifications({uuid(0x22)}),
            concat({identification(0x22, {}),
                    klv(prefaceKey, concat({item(0x3C0A, uuid(0x66)),
                                            identifications({uuid(0x67), uuid(0x68)})})),
                    identification(0x67, {}), identification(0x68, {}), privateSet(0x69, {}),
                    klv(Bytes(16, 0x80), {1, 2, 3})}))},
    {"DanglingWeakAndSharedReferences",
     header(concat({item(0x3B08, uuid(0x22)), item(0x3B03, uuid(0x99)),
                    identifications({uuid(0x00), uuid(0x22), uuid(0x33)})}),
            concat({identification(0x22, item(0x3C01, utf16(u"first"))),
                    identification(0x22, item(0x3C01, utf16(u"second"))),
                    identification(0x33, item(0x3C01, utf16(u"third")))}))},
    {"EmptyBatchesOddBooleanAndPaddedString",
     header(concat({item(0x3B0B, batchOf({}, 0)), item(0x3B01, {0x4D, 0x4D}),
                    identifications({uuid(0x22)})}),
            identification(0x22, item(0x3C04, utf16(std::u16string(u"1.0\0\0", 5)))))},
    {"StartedFromAFloatingSet",
     header(identifications({uuid(0x22)}),
            concat({identification(0x22, {}), identification(0x33, item(0x3C01, utf16(u"x")))})),
     true},
};

class PartitionStreaming : public ::testing::TestWithParam<Case> {};

TEST_P(PartitionStreaming, TextEqualsTheSerialisedDocument) {
    const Case& c = GetParam();
    const auto partition = Metadata::PartitionMetadata::read({c.bytes.data(), c.bytes.size()}, 0,
                                                             MetaMetadata::Dictionary::builtIn());
    expectStreamingEqualsDOM(*partition, c.fromLastSet ? partition->sets().back() : nullptr);
}

INSTANTIATE_TEST_SUITE_P(Cases, PartitionStreaming, ::testing::ValuesIn(cases),
                         [](const auto& p) { return std::string(p.param.name); });

TEST(PartitionStreaming, NothingIsWrittenWithoutAPartitionOrAPreface) {
    const Metadata::PartitionMetadata empty(MetaMetadata::Dictionary::builtIn());
    for (const Metadata::PartitionMetadata* partition :
         {&empty, static_cast<const Metadata::PartitionMetadata*>(nullptr)}) {
        std::ostringstream out;
        EXPECT_FALSE(XMLBuilder::partition2XML(partition, false, false, Encoding::UTF8, out));
        EXPECT_TRUE(out.str().empty());
        EXPECT_FALSE(XMLBuilder::partition2XML(partition, false, false));
        WString untouched = u"keep";
        XMLBuilder::partition2XML(partition, false, false, Encoding::UTF8, untouched);
        EXPECT_EQ(untouched, u"keep");
    }
}

TEST(PartitionStreaming, AFailingStreamIsAnIOError) {
    const Bytes bytes = cases[0].bytes;
    const auto partition = Metadata::PartitionMetadata::read({bytes.data(), bytes.size()}, 0,
                                                             MetaMetadata::Dictionary::builtIn());
    std::ostringstream out;
    out.setstate(std::ios::badbit);
    EXPECT_THROW(XMLBuilder::partition2XML(partition.get(), false, false, Encoding::UTF8, out),
                 Exceptions::IOError);
}

} // namespace
