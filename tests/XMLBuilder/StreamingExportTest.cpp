#include "Metadata/HeaderMetadataBytes.h"
#include "Support/AppCorpus.h"
#include "Support/Samples.h"
#include "XMLBuilder/ImportTestSupport.h"

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

// The streaming text export against the DOM export serialised by Xerces-C, byte for byte, for
// real files (header metadata built to hold what is hard to write: LosslessRoundTripTest).
namespace {

using namespace Vellum;
using namespace VellumTest;
using Encoding = XMLUtils::EncodingType;

// Real files: the bundled samples, then those beside the checkout when they are there.

class SampleStreaming : public ::testing::TestWithParam<std::string> {};

TEST_P(SampleStreaming, TextEqualsTheSerialisedDocument) {
    const auto partition = Metadata::PartitionMetadata::readFile(
        GetParam(), "header", MetaMetadata::Dictionary::builtIn());
    expectStreamingEqualsDOM(*partition, nullptr);
}

INSTANTIATE_TEST_SUITE_P(Samples, SampleStreaming, ::testing::ValuesIn(corpusPaths()),
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
    const Bytes bytes = header({}, {});
    const auto partition = Metadata::PartitionMetadata::read({bytes.data(), bytes.size()}, 0,
                                                             MetaMetadata::Dictionary::builtIn());
    std::ostringstream out;
    out.setstate(std::ios::badbit);
    EXPECT_THROW(XMLBuilder::partition2XML(partition.get(), false, false, Encoding::UTF8, out),
                 Exceptions::IOError);
}

} // namespace
