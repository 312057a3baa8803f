#include "Support/PrintCase.h"
#include "Support/Samples.h"

#include "Vellum/MetaMetadata/Dictionary.h"
#include "Vellum/Metadata/PartitionMetadata.h"
#include "Vellum/XMLBuilder/Partition2XML.h"
#include "Vellum/XMLUtils/Document.h"
#include "Vellum/XMLUtils/UnicodeString.h"

#include <gtest/gtest.h>
#include <xercesc/dom/DOMDocument.hpp>
#include <xercesc/dom/DOMElement.hpp>
#include <xercesc/dom/DOMNodeList.hpp>
#include <xercesc/util/XMLString.hpp>

#include <map>
#include <thread>

namespace {

using namespace Vellum;

std::unique_ptr<Metadata::PartitionMetadata> readSample(const std::string& name) {
    return Metadata::PartitionMetadata::readFile(VellumTest::sampleDir() + "/" + name, "header",
                                                 MetaMetadata::Dictionary::builtIn());
}

bool named(const xercesc::DOMNode* node, const char16_t* name) {
    return xercesc::XMLString::equals(node->getNodeName(), name);
}

// Every element below `node` that carries rp210:InstanceUID (a set element), by identifier.
void collectSets(xercesc::DOMElement* node, std::multimap<WString, xercesc::DOMElement*>& sets) {
    std::vector<xercesc::DOMElement*> stack{node};
    while (!stack.empty()) {
        xercesc::DOMElement* element = stack.back();
        stack.pop_back();
        if (const XMLCh* uid = element->getAttribute(u"rp210:InstanceUID");
            uid != nullptr && *uid != 0) {
            sets.emplace(uid, element);
        }
        for (auto* child = element->getFirstElementChild(); child != nullptr;
             child = child->getNextElementSibling()) {
            stack.push_back(child);
        }
    }
}

// Properties written for a set element: identity attributes, child property elements, and the
// children of its extension container.
std::size_t propertiesOf(const xercesc::DOMElement& setElement) {
    std::size_t count = 0;
    for (const char16_t* identity : {u"rp210:InstanceUID", u"rp210:GenerationUID"}) {
        count += setElement.getAttributeNode(identity) != nullptr ? 1 : 0;
    }
    for (auto* child = setElement.getFirstElementChild(); child != nullptr;
         child = child->getNextElementSibling()) {
        count += named(child, u"groups:ExtensionElements") ? child->getChildElementCount() : 1;
    }
    return count;
}

struct Mode {
    bool typed;
    const char* name;
};
VELLUM_PRINT_CASE_NAME(Mode)

class SampleExport : public ::testing::TestWithParam<std::tuple<std::string, Mode>> {};

TEST_P(SampleExport, WritesEverySetOnceWithEveryValue) {
    const auto& [sample, mode] = GetParam();
    auto partition = readSample(sample);
    const auto document = XMLBuilder::partition2XML(partition.get(), mode.typed, false);
    ASSERT_TRUE(document);
    auto* root = static_cast<xercesc::DOMDocument*>(document.get())->getDocumentElement();
    EXPECT_TRUE(named(root, u"s377m:MetadataSets"));
    EXPECT_EQ(WString(root->getNamespaceURI()), u"urn:SMPTE:S377M");

    std::multimap<WString, xercesc::DOMElement*> sets;
    collectSets(root, sets);
    EXPECT_EQ(sets.size(), partition->sets().size());
    for (const Metadata::MetadataSet* set : partition->sets()) {
        const WString uid = set->instanceUID()->toString();
        ASSERT_EQ(sets.count(uid), 1U) << "set " << set->key().toUtf8();
        const xercesc::DOMElement& element = *sets.find(uid)->second;
        EXPECT_EQ(propertiesOf(element), set->valueCount())
            << "set " << set->key().toUtf8() << " in " << sample;
    }
    EXPECT_EQ(root->getElementsByTagName(u"groups:FloatingDarkMetadata")->getLength(), 0U)
        << "these samples have no dark or floating sets";
}

INSTANTIATE_TEST_SUITE_P(Samples, SampleExport,
                         ::testing::Combine(::testing::ValuesIn(VellumTest::sampleNames()),
                                            ::testing::Values(Mode{false, "untyped"},
                                                              Mode{true, "typed"})),
                         [](const auto& p) {
                             return VellumTest::testName(std::get<0>(p.param)) + "_" +
                                    std::get<1>(p.param).name;
                         });

TEST(SampleExport, ConcurrentExportsGiveTheSameDocuments) {
    const std::vector<std::string> names = {"ffmpeg-op1a-mpeg2-pcm-bitexact.mxf",
                                            "gst-mxfmux-multi-mpeg2-pcm-mp3-ac3.mxf"};
    std::vector<std::unique_ptr<Metadata::PartitionMetadata>> partitions;
    std::vector<WString> expected;
    for (const auto& name : names) {
        partitions.push_back(readSample(name));
        expected.emplace_back();
        XMLBuilder::partition2XML(partitions.back().get(), true, false,
                                  XMLUtils::EncodingType::UTF8, expected.back());
    }
    std::vector<WString> results(names.size() * 4);
    std::vector<std::thread> threads;
    for (std::size_t t = 0; t < results.size(); ++t) {
        threads.emplace_back([&, t] {
            auto partition = readSample(names[t % names.size()]);
            XMLBuilder::partition2XML(partition.get(), true, false, XMLUtils::EncodingType::UTF8,
                                      results[t]);
        });
    }
    for (auto& thread : threads) {
        thread.join();
    }
    for (std::size_t t = 0; t < results.size(); ++t) {
        EXPECT_EQ(results[t], expected[t % names.size()]) << "thread " << t;
    }
}

} // namespace
