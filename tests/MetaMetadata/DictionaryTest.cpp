#include "Vellum/MetaMetadata/Dictionary.h"

#include "Support/ExpectThrow.h"
#include "Support/PrintCase.h"

#include "Vellum/Exceptions/IOError.h"
#include "Vellum/Exceptions/InvalidFormat.h"
#include "Vellum/MetaMetadata/MetaElement.h"
#include "Vellum/MetaMetadata/MetaMetadataSet.h"
#include "Vellum/Utils/StringConversion.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <iterator>
#include <random>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

namespace {

using namespace Vellum;
using namespace Vellum::MetaMetadata;

// Records are written with '|' between fields for readability; the dictionary wants tabs.
std::string tsv(std::string text) {
    std::replace(text.begin(), text.end(), '|', '\t');
    return text;
}

// Lines 1 to 3; the first record of a user text is on line 4.
const std::string header = tsv("format|vellum-dictionary|1\n"
                               "columns|set|key|name|parent|abstract|structural|xml-prefix|"
                               "xml-namespace\n"
                               "columns|element|set|ul|name|local-tag|type|collection|reference|"
                               "target|required|order\n");

const std::string keyA = "06.0E.2B.34.02.53.01.01.0E.7F.01.01.01.01.01.00";
const std::string keyB = "06.0E.2B.34.02.53.01.01.0E.7F.01.01.01.01.02.00";
const std::string ulA = "06.0E.2B.34.01.01.01.01.0E.7F.01.01.01.00.00.00";
const std::string ulB = "06.0E.2B.34.01.01.01.01.0E.7F.01.01.02.00.00.00";
const std::string ulC = "06.0E.2B.34.01.01.01.01.0E.7F.01.01.03.00.00.00";
const std::string ulD = "06.0E.2B.34.01.01.01.01.0E.7F.01.01.04.00.00.00";
const std::string prefaceKey = "06.0E.2B.34.02.53.01.01.0D.01.01.01.01.01.2F.00";
const std::string componentDepth = "06.0E.2B.34.01.01.01.02.04.01.05.03.0A.00.00.00";

Types::UniversalLabel label(const std::string& text) {
    return Types::UniversalLabel(WString(text.begin(), text.end()), Types::DottedHex);
}

KLV::Key key(const std::string& text) {
    return KLV::Key(WString(text.begin(), text.end()), Types::DottedHex);
}

std::string readFile(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    std::ostringstream out;
    out << in.rdbuf();
    return out.str();
}

// Everything a definition says, for comparing one dictionary with another.
std::string describe(const MetaElement& e) {
    std::ostringstream out;
    const auto& d = e.definition();
    out << Utils::wstringToString(e.definingSet().name()) << '.' << Utils::wstringToString(d.name)
        << ' ' << Utils::wstringToString(d.ul.toString()) << " tag "
        << (d.staticLocalTag ? static_cast<int>(*d.staticLocalTag) : -1) << " type "
        << static_cast<int>(e.dataType()) << '/' << static_cast<int>(d.valueType) << " ref "
        << static_cast<int>(d.referenceKind) << ' ' << Utils::wstringToString(d.targetSetName)
        << (e.targetSet() != nullptr ? "" : " (no target)") << " req "
        << static_cast<int>(d.requiredStatus) << " order " << d.order << ' ' << d.schemaIndex << ' '
        << Utils::wstringToString(d.xmlPrefix + u" " + d.xmlNamespace + u" " + d.xmlTagName);
    return out.str();
}

std::string describe(const MetaMetadataSet& s) {
    std::ostringstream out;
    out << Utils::wstringToString(s.name()) << ' ' << s.key().toUtf8() << ' ' << s.hasKey()
        << " parent " << (s.parent() ? Utils::wstringToString(s.parent()->name()) : "-") << ' '
        << static_cast<int>(s.kind()) << s.isAbstract() << s.isStructural() << ' '
        << Utils::wstringToString(*s.property(u"XMLDefaultPrefix") + u" " +
                                  *s.property(u"XMLNamespaceURI") + u" " +
                                  *s.property(u"XMLTagName"));
    for (const MetaElement* e : s.elementsBySchemaIndex()) {
        out << "\n  " << describe(*e);
    }
    return out.str();
}

TEST(Dictionary, BuiltInTablesHoldExactlyTheDefinitionsOfTheText) {
    // builtIn() is made from compiled-in tables, the checked-in text is parsed: both come from
    // one generator run and must define the same sets, elements and look-up preferences.
    const auto tables = Dictionary::builtIn();
    Dictionary text;
    text.loadText(Dictionary::builtInText(), "vellum-dictionary.txt");
    EXPECT_EQ(tables->setDefinitionCount(), text.setDefinitionCount());

    // Sets looked up one by one (made on demand), then listed (all made).
    std::size_t compared = 0;
    for (auto it = text.metaMetadataSetBegin(); it != text.metaMetadataSetEnd(); ++it) {
        const MetaMetadataSet* same = tables->findSet(it->first);
        ASSERT_NE(same, nullptr) << describe(it->second);
        EXPECT_EQ(describe(*same), describe(it->second));
        EXPECT_EQ(tables->findSetByName(same->name()), same);
        const WString& tag = *same->property(u"XMLTagName");
        const MetaMetadataSet* tagged = tables->findSetByTagName(tag);
        ASSERT_NE(tagged, nullptr) << describe(it->second);
        EXPECT_EQ(tagged->name(), text.findSetByTagName(tag)->name()) << "the first in key order";
        ++compared;
    }
    for (auto it = text.packBegin(); it != text.packEnd(); ++it, ++compared) {
        ASSERT_NE(tables->findPack(it->first), nullptr);
        EXPECT_EQ(describe(*tables->findPack(it->first)), describe(it->second));
    }
    const auto* keyless = tables->findSetByName(u"GenerationInterchangeObject");
    ASSERT_NE(keyless, nullptr);
    EXPECT_EQ(describe(*keyless), describe(*text.findSetByName(u"GenerationInterchangeObject")));
    EXPECT_EQ(compared + 1, text.setDefinitionCount());
    EXPECT_EQ(tables->metaMetadataSetCount(), text.metaMetadataSetCount());
    EXPECT_EQ(tables->packCount(), text.packCount());
    EXPECT_EQ(tables->setDefinitionCount(), text.setDefinitionCount());
    EXPECT_EQ(tables->elementDefinitionCount(), text.elementDefinitionCount());
    EXPECT_GT(tables->metaMetadataSetCount(), 400U) << "every local set of the registers";

    // Label and tag look-ups give the same definition before and after every element is made.
    std::size_t labels = 0;
    for (auto it = text.metaElementBegin(); it != text.metaElementEnd(); ++it, ++labels) {
        const MetaElement* lazy = tables->findElement(it->first);
        ASSERT_NE(lazy, nullptr) << describe(*it->second);
        EXPECT_EQ(describe(*lazy), describe(*it->second));
        if (const auto tag = it->second->definition().staticLocalTag) {
            ASSERT_NE(tables->findElementByStaticTag(*tag), nullptr);
            EXPECT_EQ(describe(*tables->findElementByStaticTag(*tag)),
                      describe(*text.findElementByStaticTag(*tag)));
        }
    }
    auto made = tables->metaElementBegin();
    for (auto it = text.metaElementBegin(); it != text.metaElementEnd(); ++it, ++made) {
        ASSERT_NE(made, tables->metaElementEnd());
        EXPECT_EQ(describe(*made->second), describe(*it->second));
        EXPECT_EQ(tables->findElement(it->first), made->second);
    }
    EXPECT_EQ(made, tables->metaElementEnd());
    EXPECT_GT(labels, 2000U);
}

TEST(Dictionary, BuiltInSetsAreMadeOnceWhenThreadsRace) {
    // Threads that look up sets not made yet (with shared ancestors) and ask for their
    // elements at once must all see the same sets with the same, complete tables.
    const auto d = Dictionary::builtIn();
    const char16_t* const names[] = {u"IABSoundfieldLabelSubDescriptor",
                                     u"AudioChannelLabelSubDescriptor", u"ClassDefinition",
                                     u"MPEG2VideoDescriptor"};
    constexpr std::size_t threadCount = 8;
    using Seen = std::vector<MetaMetadataSet::ElementList>;
    std::vector<Seen> seen(threadCount, Seen(std::size(names)));
    std::vector<std::thread> threads;
    for (std::size_t t = 0; t < threadCount; ++t) {
        threads.emplace_back([&d, &names, &seen, t] {
            for (std::size_t i = 0; i < std::size(names); ++i) {
                const std::size_t which = (i + t) % std::size(names);
                seen[t][which] = d->findSetByName(names[which])->elementsBySchemaIndex();
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    for (std::size_t which = 0; which < std::size(names); ++which) {
        const MetaMetadataSet& set = *d->findSetByName(names[which]);
        std::size_t expected = 0;
        for (const MetaMetadataSet* s = &set; s != nullptr; s = s->parent()) {
            expected += s->ownElements().size();
        }
        EXPECT_EQ(set.elements().size(), expected);
        for (const Seen& thread : seen) {
            EXPECT_EQ(thread[which], set.elementsBySchemaIndex());
        }
    }
}

TEST(Dictionary, BuiltInIsTheCheckedInDataFileAndFreshEachTime) {
    EXPECT_EQ(Dictionary::builtInText(),
              readFile(std::string(VELLUM_SOURCE_DIR) + "/data/vellum-dictionary.txt"));
    const auto first = Dictionary::builtIn();
    const auto second = Dictionary::builtIn();
    EXPECT_NE(first.get(), second.get());
    first->loadText(header + tsv("set|" + keyA + "|Acme|InterchangeObject|no|no|acme|urn:acme\n"),
                    "user.txt");
    EXPECT_NE(first->findSetByName(u"Acme"), nullptr);
    EXPECT_EQ(second->findSetByName(u"Acme"), nullptr);
    // A loaded set is found by its tag name (its name), as are the built-in ones beside it.
    EXPECT_EQ(first->findSetByTagName(u"Acme"), first->findSetByName(u"Acme"));
    EXPECT_EQ(first->findSetByTagName(u"Preface"), first->findSetByName(u"Preface"));
    EXPECT_EQ(second->findSetByTagName(u"Acme"), nullptr);
}

// Set keys and element labels are looked up ignoring byte 8, the version, and only it: in the
// dictionary and in a set's own table.
TEST(Dictionary, LookUpsIgnoreTheVersionByteOnly) {
    const auto d = Dictionary::builtIn();
    const MetaMetadataSet* preface = d->findSetByName(u"Preface");
    const MetaElement* uid = d->findElementByStaticTag(0x3C0A);
    ASSERT_NE(preface, nullptr);
    ASSERT_NE(uid, nullptr);
    KLV::Key::Bytes keyBytes = key(prefaceKey).bytes();
    Types::UniversalLabel::Bytes ulBytes = uid->ul().bytes();
    for (const std::uint8_t version : {0x00, 0x01, 0x02, 0x7F, 0xFF}) {
        keyBytes[7] = version;
        ulBytes[7] = version;
        EXPECT_EQ(d->findSet(KLV::Key(keyBytes)), preface);
        EXPECT_EQ(d->findElement(Types::UniversalLabel(ulBytes)), uid);
        EXPECT_EQ(preface->findElement(Types::UniversalLabel(ulBytes)), uid);
    }
    keyBytes[13] = 0x7E;
    ulBytes[14] = 0x99;
    const Types::UniversalLabel other(ulBytes);
    EXPECT_EQ(d->findSet(KLV::Key(keyBytes)), nullptr);
    EXPECT_EQ(d->findElement(other), nullptr);
    EXPECT_EQ(preface->findElement(other), nullptr);
    EXPECT_EQ(preface->attribute(other), nullptr);
    EXPECT_EQ(d->findPack(key(prefaceKey)), nullptr);
    EXPECT_EQ(d->findElementByStaticTag(0x7FFF), nullptr);
    EXPECT_EQ(preface->findElementByTag(0x3301), nullptr) << "a CDCI tag is not in a Preface";
}

const std::string userText =
    header +
    tsv("set|" + keyA + "|AcmePictureDescriptor|CDCIEssenceDescriptor|no|yes|acme|urn:acme:mxf\n" +
        "element|AcmePictureDescriptor|" + ulA + "|AcmeGain|-|Int32|none|none|-|optional|1\n" +
        "element|Preface|" + ulB + "|AcmeNote|-|UTF16String|-|-|-|-|-\n" +
        "element|GenericDescriptor|" + ulC + "|AcmeSerial|7F01|UInt64|-|-|-|required|-\n" +
        "element|AcmePictureDescriptor|" + ulD +
        "|AcmeClips|-|StrongReference|array|strong|SourceClip|optional|2\n");

TEST(Dictionary, UserTextAddsPrivateSetsAndElements) {
    const auto d = Dictionary::builtIn();
    const std::size_t sets = d->setDefinitionCount();
    const std::size_t elements = d->elementDefinitionCount();
    const unsigned prefaceLast = d->findSetByName(u"Preface")->ownElements().back()->order();
    const std::string path = ::testing::TempDir() + "vellum-user-dictionary.txt";
    std::ofstream(path, std::ios::binary) << userText;
    d->loadFile(path);
    EXPECT_THROW_MSG_HAS(d->loadFile(path + ".missing"), IOError, ".missing");
    EXPECT_EQ(d->setDefinitionCount(), sets + 1);
    EXPECT_EQ(d->elementDefinitionCount(), elements + 4);

    const MetaMetadataSet* acme = d->findSet(key(keyA));
    ASSERT_NE(acme, nullptr);
    EXPECT_EQ(acme->parent(), d->findSetByName(u"CDCIEssenceDescriptor"));
    EXPECT_EQ(acme->depth(), 5U);
    EXPECT_EQ(*acme->property(u"XMLNamespaceURI"), u"urn:acme:mxf");
    const MetaElement* gain = acme->findElement(label(ulA));
    ASSERT_NE(gain, nullptr);
    EXPECT_EQ(*gain->property(u"SchemaIndex"), u"501");
    EXPECT_EQ(*gain->property(u"XMLDefaultPrefix"), u"acme") << "taken from the set";
    EXPECT_EQ(acme->elementsBySchemaIndex().front()->name(), u"InstanceUID");
    EXPECT_EQ(acme->elementsBySchemaIndex().back()->name(), u"AcmeClips");
    EXPECT_EQ(acme->findElement(label(ulD))->targetSet(), d->findSetByName(u"SourceClip"));

    // Added to an existing set: defaults come from that set, the order follows its table.
    const MetaElement* note = d->findSetByName(u"Preface")->findElement(label(ulB));
    ASSERT_NE(note, nullptr);
    EXPECT_EQ(note->order(), prefaceLast + 1);
    EXPECT_EQ(*note->property(u"SchemaIndex"),
              Utils::stringToWstring(std::to_string(100 + prefaceLast + 1)));
    EXPECT_EQ(*note->property(u"XMLDefaultPrefix"), u"s377m");
    EXPECT_EQ(note->requiredStatus(), AttributeRequiredStatus::Optional);

    // Added to a parent: every set below it has the element too.
    const MetaElement* serial = d->findElementByStaticTag(0x7F01);
    ASSERT_NE(serial, nullptr);
    for (const char16_t* name : {u"GenericDescriptor", u"CDCIEssenceDescriptor",
                                 u"MPEG2VideoDescriptor", u"AcmePictureDescriptor"}) {
        EXPECT_EQ(d->findSetByName(name)->findElement(label(ulC)), serial);
        EXPECT_EQ(d->findSetByName(name)->findElementByTag(0x7F01), serial);
    }
    EXPECT_EQ(d->findSetByName(u"Preface")->findElement(label(ulC)), nullptr);
    EXPECT_EQ(*serial->property(u"SchemaIndex"), u"103");

    // Loading the same text, or the built-in text, again changes nothing.
    const std::size_t acmeElements = acme->elements().size();
    d->loadText(userText, "again.txt");
    d->loadText(Dictionary::builtInText(), "copy.txt");
    EXPECT_EQ(d->findSet(key(keyA)), acme);
    EXPECT_EQ(acme->elements().size(), acmeElements);
    EXPECT_EQ(d->setDefinitionCount(), sets + 1);
    EXPECT_EQ(d->elementDefinitionCount(), elements + 4);
}

TEST(Dictionary, DamagedTextsLoadOrFailWithTheSourceNamed) {
    // Seeded mutations of a valid user text: each one either loads or throws InvalidFormat
    // naming the source; nothing else may escape (sanitizer builds also catch bad reads).
    const auto d = Dictionary::builtIn();
    std::mt19937 random(20240611U);
    const std::string alphabet = "\t\n-.0123456789ABCDEFaz|#";
    for (int round = 0; round < 200; ++round) {
        std::string text = userText;
        for (int edit = 0; edit < 3; ++edit) {
            const std::size_t at = random() % text.size();
            if (random() % 2 == 0) {
                text[at] = alphabet[random() % alphabet.size()];
            } else {
                text.erase(at, 1 + random() % 30);
            }
        }
        try {
            d->loadText(text, "user.txt");
        } catch (const Exceptions::InvalidFormat& e) {
            EXPECT_EQ(e.utf8Message().rfind("user.txt:", 0), 0U) << e.utf8Message();
        }
    }
}

struct ErrorCase {
    const char* name;
    std::string text;
    unsigned line; // 0: the fault is not on one line
    const char* fragment;
};

VELLUM_PRINT_CASE_NAME(ErrorCase)

class LoadError : public ::testing::TestWithParam<ErrorCase> {};

TEST_P(LoadError, NamesTheSourceLineAndFault) {
    const ErrorCase& c = GetParam();
    const auto d = Dictionary::builtIn();
    const std::string where =
        c.line == 0 ? std::string("user.txt: ") : "user.txt:" + std::to_string(c.line) + ": ";
    EXPECT_TRUE(VellumTest::whenThrown<Exceptions::InvalidFormat>(
        [&] { d->loadText(c.text, "user.txt"); },
        [&](const Exceptions::InvalidFormat& e) {
            EXPECT_EQ(e.utf8Message().rfind(where, 0), 0U) << e.utf8Message();
            EXPECT_NE(e.utf8Message().find(c.fragment), std::string::npos) << e.utf8Message();
        }));
    // Records before the fault are undone too.
    const auto fresh = Dictionary::builtIn();
    EXPECT_EQ(d->setDefinitionCount(), fresh->setDefinitionCount());
    EXPECT_EQ(d->elementDefinitionCount(), fresh->elementDefinitionCount());
    EXPECT_EQ(d->findElementByStaticTag(0x7F01), nullptr);
    EXPECT_EQ(describe(*d->findSetByName(u"Preface")), describe(*fresh->findSetByName(u"Preface")));
}

std::string set(const std::string& fields) {
    return header + tsv(fields);
}

// A user text of one set record with key A: name, parent, then `rest`.
std::string setA(const std::string& name, const std::string& parent,
                 const std::string& rest = "no|no|-|-") {
    return set("set|" + keyA + "|" + name + "|" + parent + "|" + rest + "\n");
}

// A user text of one element Gain of Preface, label A: the fields from local-tag on.
std::string gain(const std::string& fields) {
    return set("element|Preface|" + ulA + "|Gain|" + fields + "\n");
}

const std::string acme = "set|" + keyA + "|Acme|InterchangeObject|no|no|acme|urn:acme\n";

// Sets Level0 (below InterchangeObject) to Level<last>, each the parent of the next.
std::string chain(unsigned last) {
    std::string records;
    for (unsigned level = 0; level <= last; ++level) {
        const std::string parent =
            level == 0 ? std::string("InterchangeObject") : "Level" + std::to_string(level - 1);
        records += "set|06.0E.2B.34.02.53.01.01.0E.7F.02." + std::to_string(10 + level / 10) + "." +
                   std::to_string(10 + level % 10) + ".00.00.00|Level" + std::to_string(level) +
                   "|" + parent + "|no|no|-|-\n";
    }
    return set(records);
}

TEST(Dictionary, AcceptsSixtyFourLevelsBelowTheRoot) {
    const auto d = Dictionary::builtIn();
    d->loadText(chain(63), "user.txt");
    const MetaMetadataSet* deepest = d->findSetByName(u"Level63");
    ASSERT_NE(deepest, nullptr);
    EXPECT_EQ(deepest->depth(), 64U);
    EXPECT_EQ(deepest->elements().size(),
              d->findSetByName(u"InterchangeObject")->elements().size());
}

INSTANTIATE_TEST_SUITE_P(
    UserText, LoadError,
    ::testing::Values(
        ErrorCase{"AfterValidRecords",
                  userText + tsv("element|Preface|" + ulA + "|Broken|-|NoType|-|-|-|-|-\n"), 9,
                  "unknown type 'NoType'"},
        ErrorCase{"NoFormatLine", "# nothing\n\n", 0, "no 'format' line"},
        ErrorCase{"WrongVersion", tsv("format|vellum-dictionary|2\n"), 1,
                  "unsupported format version '2'"},
        ErrorCase{"FormatNotFirst", tsv("set|x\n"), 1, "expected the 'format' line first"},
        ErrorCase{"SecondFormat", header + tsv("format|vellum-dictionary|1\n"), 4,
                  "a second 'format' line"},
        ErrorCase{"UnknownRecord", set("group|Acme\n"), 4, "unknown record kind 'group'"},
        ErrorCase{"RecordBeforeColumns", tsv("format|vellum-dictionary|1\nset|" + keyA + "\n"), 2,
                  "before a 'columns' line"},
        ErrorCase{"FieldCount", setA("Acme", "InterchangeObject", "no"), 4,
                  "has 4 fields after the record kind; its columns line declares 7"},
        ErrorCase{"TooManyFields", set("set" + std::string(40, '|') + "\n"), 4,
                  "more than 32 tab-separated fields"},
        ErrorCase{"UnknownColumn", header + tsv("columns|set|key|name|colour\n"), 4,
                  "unknown column 'colour' for set records"},
        ErrorCase{"ElementColumnOnSet", header + tsv("columns|pack|key|name|ul\n"), 4,
                  "unknown column 'ul' for pack records"},
        ErrorCase{"ColumnTwice", header + tsv("columns|set|key|name|key\n"), 4,
                  "column 'key' is named twice"},
        ErrorCase{"MissingColumn", header + tsv("columns|element|set|name|type\n"), 4,
                  "element records need the column 'ul'"},
        ErrorCase{"BadKey", set("set|06.0E.2B.34.02.53|Acme|InterchangeObject|no|no|-|-\n"), 4,
                  "is not a valid key"},
        ErrorCase{"BadFlag", setA("Acme", "InterchangeObject", "maybe|no|-|-"), 4,
                  "abstract must be yes or no, not 'maybe'"},
        ErrorCase{"BadName", setA("9Lives", "InterchangeObject"), 4,
                  "set name '9Lives' is not a name"},
        ErrorCase{"KeylessConcrete", set("set|-|Acme|InterchangeObject|no|no|-|-\n"), 4,
                  "only an abstract set may have none"},
        ErrorCase{"UnknownParent", setA("Acme", "NoSuchSet"), 4,
                  "unknown parent 'NoSuchSet' of set 'Acme'"},
        ErrorCase{
            "ParentCycle",
            set("set|" + keyA + "|Ping|Pong|no|no|-|-\nset|" + keyB + "|Pong|Ping|no|no|-|-\n"), 4,
            "form a cycle: Ping -> Pong -> Ping"},
        ErrorCase{"OwnParent", setA("Ping", "Ping"), 4, "form a cycle: Ping -> Ping"},
        ErrorCase{"PackParent", setA("Acme", "PrimerPack"), 4,
                  "is a local set and cannot inherit from the pack 'PrimerPack'"},
        ErrorCase{"TooDeep", chain(64), 68, "set 'Level64' would be more than 64 levels"},
        ErrorCase{"KeyOfBuiltIn",
                  set("set|06.0E.2B.34.02.53.01.7F.0D.01.01.01.01.01.2F.00|Acme|InterchangeObject|"
                      "no|no|-|-\n"),
                  4, "is already the key of set 'Preface'"},
        ErrorCase{"KeyTwice", set(acme + "set|" + keyA + "|Acme2|InterchangeObject|no|no|-|-\n"), 5,
                  "is already the key of set 'Acme' on line 4"},
        ErrorCase{"BuiltInNameOtherKey", setA("Preface", "InterchangeObject", "no|yes|-|-"), 4,
                  "set 'Preface' is already defined with a different key"},
        ErrorCase{"NameTwice", set(acme + "set|" + keyA + "|Acme|InterchangeObject|yes|no|-|-\n"),
                  5, "is defined again with different content (first on line 4)"},
        ErrorCase{"HalfXmlName", setA("Acme", "InterchangeObject", "no|no|acme|-"), 4,
                  "gives only one of xml-prefix and xml-namespace"},
        ErrorCase{"UnknownElementSet",
                  set("element|NoSuchSet|" + ulA + "|Gain|-|Int32|-|-|-|-|-\n"), 4,
                  "unknown set 'NoSuchSet' of element 'Gain'"},
        ErrorCase{"BadLabel",
                  set("element|Preface|06.0E.2B.34.01.01.01.01.0E.7F.01.01.01.00.00.GG|Gain|-|"
                      "Int32|-|-|-|-|-\n"),
                  4, "is not a valid UL"},
        ErrorCase{"DynamicTag", gain("8000|Int32|-|-|-|-|-"), 4,
                  "local tag '8000' is not a static tag"},
        ErrorCase{"ShortTag", gain("3C0|Int32|-|-|-|-|-"), 4,
                  "local tag '3C0' is not a static tag"},
        ErrorCase{"TagTaken", gain("3C0A|UUID|-|-|-|-|-"), 4,
                  "local tag 3C0A of element 'Gain' already belongs to element 'InstanceUID'"},
        ErrorCase{"UnknownType", gain("-|Float128|-|-|-|-|-"), 4, "unknown type 'Float128'"},
        ErrorCase{"CollectionAsType", gain("-|Batch|-|-|-|-|-"), 4, "is a collection kind"},
        ErrorCase{"UnknownCollection", gain("-|Int32|list|-|-|-|-"), 4,
                  "unknown collection 'list'"},
        ErrorCase{"UnknownReference", gain("-|UUID|-|soft|Track|-|-"), 4,
                  "unknown reference kind 'soft'"},
        ErrorCase{"ReferenceType", gain("-|UInt32|-|strong|Track|-|-"), 4,
                  "a strong reference has type StrongReference, not UInt32"},
        ErrorCase{"ReferenceTypeWithoutKind", gain("-|WeakReference|-|-|-|-|-"), 4,
                  "type WeakReference needs the reference column"},
        ErrorCase{"NoTarget", gain("-|UUID|-|global|-|-|-"), 4, "a reference needs a target set"},
        ErrorCase{"TargetOfPlainValue", gain("-|UUID|-|-|Track|-|-"), 4,
                  "only a reference has a target"},
        ErrorCase{"UnknownTarget", gain("-|WeakReference|-|weak|Nowhere|-|-"), 4,
                  "unknown target set 'Nowhere' of element 'Gain'"},
        ErrorCase{"PackTarget", gain("-|WeakReference|-|weak|PrimerPack|-|-"), 4,
                  "'PrimerPack' of element 'Gain' is a pack"},
        ErrorCase{"UnknownRequired", gain("-|Int32|-|-|-|mandatory|-"), 4,
                  "unknown required status 'mandatory'"},
        ErrorCase{"OrderTooHigh", gain("-|Int32|-|-|-|-|100"), 4, "order 100 is outside 1 to 99"},
        ErrorCase{"OrderNotNumber", gain("-|Int32|-|-|-|-|1x"), 4, "order '1x' is not a number"},
        ErrorCase{"ElementTwice",
                  set(acme + "element|Acme|" + ulA + "|Gain|-|Int32|-|-|-|-|-\nelement|Acme|" +
                      ulA + "|Loss|-|Int32|-|-|-|-|-\n"),
                  6, "is already defined in set 'Acme' with a different name (on line 5)"},
        ErrorCase{"BuiltInElementChanged",
                  set("element|CDCIEssenceDescriptor|" + componentDepth +
                      "|ComponentDepth|3301|UInt32|-|-|-|required|1\n"),
                  4,
                  "is already defined in set 'CDCIEssenceDescriptor' with a different "
                  "required status"},
        ErrorCase{"LabelTypeDisagrees",
                  set(acme + "element|Acme|" + componentDepth + "|Depth|-|UInt16|-|-|-|-|-\n"), 5,
                  "is already defined for element 'ComponentDepth' in set "
                  "'CDCIEssenceDescriptor' as UInt32, not UInt16"},
        ErrorCase{
            "LabelVersionDiffers",
            set(acme +
                "element|Acme|06.0E.2B.34.01.01.01.05.04.01.05.03.0A.00.00.00|Depth|-|UInt32|-|"
                "-|-|-|-\n"),
            5, "only in byte 8 (the version)"},
        ErrorCase{
            "InheritedLabelAgain",
            set("set|" + keyA + "|Acme|Preface|no|no|-|-\n" +
                "element|Acme|06.0E.2B.34.01.01.01.01.01.01.15.02.00.00.00.00|Uid|3C0A|UUID|-|"
                "-|-|-|-\n"),
            5, "would have the label 06.0E.2B.34.01.01.01.01.01.01.15.02.00.00.00.00 twice"},
        ErrorCase{
            "ParentGainsChildLabel",
            set("element|GenericDescriptor|" + componentDepth + "|Depth|3301|UInt32|-|-|-|-|-\n"),
            4, "set 'CDCIEssenceDescriptor' would have the label"},
        ErrorCase{"XmlNameRepeats",
                  set("element|Preface|" + ulA + "|LastModifiedDate|-|Timestamp|-|-|-|-|-\n"), 4,
                  "two elements with the XML name 's377m:LastModifiedDate'"}),
    [](const auto& p) { return std::string(p.param.name); });

} // namespace
