#include "Vellum/Metadata/HeaderMetadataComparison.h"

#include "Metadata/HeaderMetadataBytes.h"
#include "Support/TempDir.h"

#include "Vellum/Exceptions/IOError.h"
#include "Vellum/MetaMetadata/Dictionary.h"
#include "Vellum/Metadata/PartitionMetadata.h"
#include "Vellum/Utils/StringConversion.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <optional>
#include <ostream>
#include <string>
#include <vector>

namespace {

using namespace Vellum;
using namespace VellumTest;
using Metadata::HeaderMetadataComparison;
using Metadata::MetadataDifference;
using Metadata::PartitionMetadata;

const Bytes companyNameUL = {0x06, 0x0E, 0x2B, 0x34, 0x01, 0x01, 0x01, 0x02,
                             0x05, 0x20, 0x07, 0x01, 0x02, 0x01, 0x00, 0x00};
const Bytes productNameUL = {0x06, 0x0E, 0x2B, 0x34, 0x01, 0x01, 0x01, 0x02,
                             0x05, 0x20, 0x07, 0x01, 0x03, 0x01, 0x00, 0x00};
// A key that is not a SMPTE label: read as a dark metadata set.
const Bytes darkKey = {0x80, 0x01, 0x02, 0x03, 0x04, 0x05, 0x06, 0x07,
                       0x08, 0x09, 0x0A, 0x0B, 0x0C, 0x0D, 0x0E, 0x0F};

// One Identification set, as a test describes it.
struct Ident {
    std::optional<std::uint32_t> uid; // the InstanceUID, see uidBytes
    std::u16string company;
    std::optional<std::u16string> product;
    Bytes raw; // the value of an item with local tag 9000, which no primer names
    Bytes key = identificationKey;
    bool berItems = false; // item lengths BER-coded (key byte 6 must be 0x13)
};

// The header metadata of a partition, as a test describes it.
struct Layout {
    std::vector<Ident> sets;
    std::vector<Bytes> darkValues;
    bool dynamicCompanyTag = false; // CompanyName under tag 8001 instead of 3C01
    bool reversedItems = false;
    bool fill = false;
};

// An instance UID made from a number: 12 bytes AA, then the number.
Bytes uidBytes(std::uint32_t number) {
    Bytes out(12, 0xAA);
    put(out, number, 4);
    return out;
}

Bytes build(const Layout& layout) {
    const std::uint16_t companyTag = layout.dynamicCompanyTag ? 0x8001 : 0x3C01;
    Bytes out =
        primer({{0x3C0A, instanceUIDLabel}, {companyTag, companyNameUL}, {0x3C02, productNameUL}});
    for (const Ident& set : layout.sets) {
        std::vector<std::pair<std::uint16_t, Bytes>> items;
        if (set.uid) {
            items.emplace_back(0x3C0A, uidBytes(*set.uid));
        }
        items.emplace_back(companyTag, utf16(set.company));
        if (set.product) {
            items.emplace_back(0x3C02, utf16(*set.product));
        }
        if (!set.raw.empty()) {
            items.emplace_back(0x9000, set.raw);
        }
        if (layout.reversedItems) {
            std::reverse(items.begin(), items.end());
        }
        Bytes value;
        for (const auto& [tag, bytes] : items) {
            if (set.berItems) {
                put(value, tag, 2);
                value.push_back(static_cast<std::uint8_t>(bytes.size()));
                append(value, bytes);
            } else {
                append(value, item(tag, bytes));
            }
        }
        append(out, klv(set.key, value));
    }
    for (const Bytes& dark : layout.darkValues) {
        append(out, klv(darkKey, dark));
    }
    if (layout.fill) {
        append(out, klv(fillKey, Bytes(7, 0)));
    }
    return out;
}

std::unique_ptr<PartitionMetadata> partition(const Layout& layout) {
    const Bytes bytes = build(layout);
    return PartitionMetadata::read({bytes.data(), bytes.size()}, 0,
                                   MetaMetadata::Dictionary::builtIn());
}

// A difference in UTF-8, for readable failures: kind, set name, set identifier, element,
// old value, new value.
struct Expected {
    std::string kind, set, id, element, oldValue, newValue;
    bool operator==(const Expected& o) const {
        return std::tie(kind, set, id, element, oldValue, newValue) ==
               std::tie(o.kind, o.set, o.id, o.element, o.oldValue, o.newValue);
    }
};

std::ostream& operator<<(std::ostream& out, const Expected& e) {
    return out << '{' << e.kind << " | " << e.set << " | " << e.id << " | " << e.element << " | "
               << e.oldValue << " | " << e.newValue << '}';
}

std::vector<Expected> differences(const PartitionMetadata& a, const PartitionMetadata& b) {
    std::vector<Expected> out;
    for (const MetadataDifference& d : HeaderMetadataComparison::compare(a, b)) {
        out.push_back({MetadataDifference::kindName(d.kind), Utils::wstringToString(d.setName),
                       Utils::wstringToString(d.setIdentifier),
                       Utils::wstringToString(d.elementName), Utils::wstringToString(d.oldValue),
                       Utils::wstringToString(d.newValue)});
    }
    return out;
}

std::string uidText(std::uint32_t number) {
    return KLV::Key(uidBytes(number).data(), 16).toUtf8();
}
std::string keyText(const Bytes& key) {
    return KLV::Key(key.data(), key.size()).toUtf8();
}
Bytes withByte(Bytes key, std::size_t index, std::uint8_t value) {
    key[index] = value;
    return key;
}

const std::string identification = "Identification";

Layout base() {
    Layout layout;
    layout.sets = {Ident{0x11, u"Acme", u"Tool", {}}, Ident{0x22, u"Beta", std::nullopt, {}}};
    layout.darkValues = {{1}, {1}, {2}};
    return layout;
}

// An edit of the base layout (`after`, and for some cases `before`) and the differences it
// makes.
struct Case {
    const char* name;
    std::function<void(Layout& before, Layout& after)> edit;
    std::vector<Expected> expected;
};

std::vector<Case> cases() {
    const Bytes version2 = withByte(identificationKey, 7, 0x02);
    const Bytes berCoded = withByte(identificationKey, 5, 0x13);
    const std::string id11 = uidText(0x11);
    const std::string id22 = uidText(0x22);
    return {
        {"identical", [](Layout&, Layout&) {}, {}},
        {"set and item order, local tags and fill do not count",
         [](Layout&, Layout& after) {
             std::reverse(after.sets.begin(), after.sets.end());
             std::reverse(after.darkValues.begin(), after.darkValues.end());
             after.dynamicCompanyTag = true;
             after.reversedItems = true;
             after.fill = true;
         },
         {}},
        {"changed value",
         [](Layout&, Layout& after) { after.sets[0].company = u"Acm\"e"; },
         {{"item changed", identification, id11, "CompanyName", "\"Acme\"", "\"Acm\\\"e\""}}},
        {"item removed and item added",
         [](Layout&, Layout& after) {
             after.sets[0].product.reset();
             after.sets[1].product = u"New";
         },
         {{"item removed", identification, id11, "ProductName", "\"Tool\"", ""},
          {"item added", identification, id22, "ProductName", "", "\"New\""}}},
        {"set removed and set added",
         [](Layout&, Layout& after) { after.sets[1].uid = 0x33; },
         {{"set removed", identification, id22, "", "", ""},
          {"set added", identification, uidText(0x33), "", "", ""}}},
        {"registry version of the key",
         [=](Layout&, Layout& after) { after.sets[1].key = version2; },
         {{"set key changed", identification, id22, "", keyText(identificationKey),
           keyText(version2)}}},
        {"item-length coding of the key",
         [=](Layout&, Layout& after) {
             after.sets[1].key = berCoded;
             after.sets[1].berItems = true;
         },
         {{"set key changed", identification, id22, "", keyText(identificationKey),
           keyText(berCoded)}}},
        {"dark sets as a multiset",
         [](Layout&, Layout& after) {
             after.darkValues = {{2}, {3}, {1}};
         },
         {{"dark set removed", keyText(darkKey), "", "", "01", ""},
          {"dark set added", keyText(darkKey), "", "", "", "03"}}},
        {"bytes where the texts are equal",
         [](Layout&, Layout& after) { after.sets[1].company = std::u16string(u"Beta") + u'\0'; },
         {{"item changed", identification, id22, "CompanyName", "0042006500740061",
           "00420065007400610000"}}},
        {"items known by local tag only",
         [](Layout& before, Layout& after) {
             before.sets[0].raw = {1, 2};
             after.sets[0].raw = {1, 3};
         },
         {{"item changed", identification, id11, "tag 90.00", "0102", "0103"}}},
        {"sets without instance UID, by key and place",
         [](Layout& before, Layout& after) {
             before.sets = {Ident{std::nullopt, u"A", {}, {}}, Ident{0x11, u"X", {}, {}},
                            Ident{std::nullopt, u"B", {}, {}}};
             after = before;
             after.sets[2].company = u"C";
             std::swap(after.sets[0], after.sets[1]);
         },
         {{"item changed", identification, keyText(identificationKey) + " #2", "CompanyName",
           "\"B\"", "\"C\""}}},
    };
}

TEST(HeaderMetadataComparison, FindsEachKindOfDifference) {
    for (const Case& c : cases()) {
        SCOPED_TRACE(c.name);
        Layout before = base();
        Layout after = base();
        c.edit(before, after);
        const auto a = partition(before);
        const auto b = partition(after);
        EXPECT_EQ(differences(*a, *b), c.expected);
        // The other way round, additions and removals swap, old and new values too.
        EXPECT_EQ(HeaderMetadataComparison::compare(*b, *a).size(), c.expected.size());
    }
}

TEST(HeaderMetadataComparison, ComparesLargePartitionsWithoutQuadraticWork) {
    // 100,000 sets stored in opposite orders: a quadratic match would take minutes.
    constexpr std::uint32_t count = 100000;
    Layout before;
    for (std::uint32_t i = 0; i < count; ++i) {
        before.sets.push_back(Ident{i, u"C", {}, {}});
    }
    Layout after = before;
    std::reverse(after.sets.begin(), after.sets.end());
    after.sets[10].company = u"D";
    const std::vector<Expected> expected = {
        {"item changed", identification, uidText(count - 11), "CompanyName", "\"C\"", "\"D\""}};
    EXPECT_EQ(differences(*partition(before), *partition(after)), expected);
}

TEST(HeaderMetadataComparison, ReadsHeaderMetadataFiles) {
    const TempDir dir;
    const Bytes bytes = build(base());
    const auto fromFile = PartitionMetadata::readHeaderMetadataFile(
        dir.write("header.klv", bytes), MetaMetadata::Dictionary::builtIn());
    EXPECT_TRUE(HeaderMetadataComparison::compare(*fromFile, *partition(base())).empty());
    EXPECT_THROW(PartitionMetadata::readHeaderMetadataFile(dir.file("missing.klv"),
                                                           MetaMetadata::Dictionary::builtIn()),
                 Exceptions::IOError);
}

} // namespace
