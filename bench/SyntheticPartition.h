#ifndef VELLUM_BENCH_SYNTHETICPARTITION_H
#define VELLUM_BENCH_SYNTHETICPARTITION_H

#include "Vellum/MetaMetadata/Dictionary.h"
#include "Vellum/Metadata/PartitionMetadata.h"
#include "Vellum/Metadata/ReferenceArrayElement.h"
#include "Vellum/Metadata/SimpleElement.h"
#include "Vellum/Types/ProductVersion.h"
#include "Vellum/Types/Timestamp.h"
#include "Vellum/Types/UTF16String.h"
#include "Vellum/Types/UUID.h"

#include <memory>
#include <string>

namespace VellumBench {

inline Vellum::KLV::Key key(const char16_t* text) {
    return Vellum::KLV::Key(text, Vellum::Types::DottedHex);
}

inline Vellum::Types::UniversalLabel label(const char16_t* text) {
    return Vellum::Types::UniversalLabel(text, Vellum::Types::DottedHex);
}

/// A partition of `setCount` sets: a Preface whose Identifications array refers to
/// `setCount - 1` Identification sets, each with four values besides its identifier.
inline std::unique_ptr<Vellum::Metadata::PartitionMetadata> syntheticPartition(unsigned setCount) {
    using namespace Vellum;
    auto partition =
        std::make_unique<Metadata::PartitionMetadata>(MetaMetadata::Dictionary::builtIn());
    auto* preface =
        partition->createMetadataSet(key(u"06.0E.2B.34.02.53.01.01.0D.01.01.01.01.01.2F.00"));
    auto& identifications = dynamic_cast<Metadata::ReferenceArrayElement&>(
        *preface->findElement(label(u"06.0E.2B.34.01.01.01.02.06.01.01.04.06.04.00.00")));
    const auto identificationKey = key(u"06.0E.2B.34.02.53.01.01.0D.01.01.01.01.01.30.00");
    const auto companyName = label(u"06.0E.2B.34.01.01.01.02.05.20.07.01.02.01.00.00");
    const auto productName = label(u"06.0E.2B.34.01.01.01.02.05.20.07.01.03.01.00.00");
    const auto productVersion = label(u"06.0E.2B.34.01.01.01.02.05.20.07.01.04.00.00.00");
    const auto modificationDate = label(u"06.0E.2B.34.01.01.01.02.07.02.01.10.02.03.00.00");
    for (unsigned i = 1; i < setCount; ++i) {
        auto* set = partition->createMetadataSet(identificationKey);
        auto simple = [set](const Types::UniversalLabel& ul) -> Metadata::SimpleElement& {
            return dynamic_cast<Metadata::SimpleElement&>(*set->findElement(ul));
        };
        simple(companyName).set(std::make_unique<Types::UTF16String>(u"Vellum Benchmarks"));
        const std::string number = std::to_string(i);
        simple(productName)
            .set(std::make_unique<Types::UTF16String>(
                u"Product " + Vellum::WString(number.begin(), number.end())));
        simple(productVersion)
            .set(std::make_unique<Types::ProductVersion>(
                1, 2, 3, 4, Types::ProductVersion::ReleaseVersion::Released));
        simple(modificationDate)
            .set(std::make_unique<Types::Timestamp>(2026, 11, 21, 23, 30, 0, 500));
        identifications.append(set);
    }
    return partition;
}

} // namespace VellumBench

#endif
