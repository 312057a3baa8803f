#include "MetaMetadata/DictionaryParser.h"

#include "Vellum/Exceptions/InvalidFormat.h"
#include "Vellum/Exceptions/Throw.h"
#include "Vellum/Types/StringRepresentation.h"
#include "Vellum/Utils/StringConversion.h"

#include <algorithm>
#include <charconv>
#include <iterator>

namespace Vellum::MetaMetadata {
namespace {

constexpr std::string_view formatName = "vellum-dictionary";
constexpr std::string_view formatVersion = "1";

struct ColumnInfo {
    std::string_view name;
    bool forSets;
    bool forElements;
};

// Indexed by DictionaryParser::Column.
constexpr ColumnInfo columnTable[] = {
    {"key", true, false},          {"name", true, true},        {"parent", true, false},
    {"abstract", true, false},     {"structural", true, false}, {"xml-prefix", true, true},
    {"xml-namespace", true, true}, {"xml-tag", true, true},     {"set", false, true},
    {"ul", false, true},           {"local-tag", false, true},  {"type", false, true},
    {"collection", false, true},   {"reference", false, true},  {"target", false, true},
    {"required", false, true},     {"order", false, true},      {"schema-index", false, true},
};

constexpr std::string_view recordNames[] = {"set", "pack", "element"};

bool isNameStart(char c) noexcept {
    return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || c == '_';
}

bool isNameChar(char c) noexcept {
    return isNameStart(c) || (c >= '0' && c <= '9') || c == '-' || c == '.';
}

std::string quoted(std::string_view text) {
    return "'" + std::string(text) + "'";
}

} // namespace

WString widen(std::string_view text) {
    for (const char c : text) {
        if (static_cast<unsigned char>(c) >= 0x80) {
            return Utils::stringToWstring(text);
        }
    }
    return WString(text.begin(), text.end());
}

void throwAtLine(const std::string& sourceName, unsigned line, const std::string& message) {
    VELLUM_THROW(InvalidFormat, sourceName + ":" + std::to_string(line) + ": " + message);
}

DictionaryParser::DictionaryParser(std::string_view text, std::string sourceName)
    : m_text(text)
    , m_sourceName(std::move(sourceName)) {}

void DictionaryParser::fail(const std::string& message) const {
    throwAtLine(m_sourceName, m_line, message);
}

void DictionaryParser::parse() {
    // Most lines are element records, and each holds a 47-character label, which bounds
    // their number by the text's size whatever the text holds.
    m_elements.reserve(
        std::min(static_cast<std::size_t>(std::count(m_text.begin(), m_text.end(), '\n')) + 1,
                 m_text.size() / 48));
    bool sawFormat = false;
    std::size_t pos = 0;
    while (pos < m_text.size()) {
        std::size_t end = m_text.find('\n', pos);
        if (end == std::string_view::npos) {
            end = m_text.size();
        }
        std::string_view line = m_text.substr(pos, end - pos);
        pos = end + 1;
        ++m_line;
        if (!line.empty() && line.back() == '\r') {
            line.remove_suffix(1);
        }
        if (line.empty() || line.front() == '#') {
            continue;
        }
        const Fields fields = split(line);
        const std::string_view kind = fields.cells[0];
        if (!sawFormat || kind == "format") {
            if (sawFormat) {
                fail("a second 'format' line");
            }
            parseFormat(fields);
            sawFormat = true;
        } else if (kind == "columns") {
            parseColumns(fields);
        } else if (kind == "set") {
            parseSet(fields, SetRecordKind);
        } else if (kind == "pack") {
            parseSet(fields, PackRecordKind);
        } else if (kind == "element") {
            parseElement(fields);
        } else {
            fail("unknown record kind " + quoted(kind) +
                 " (expected columns, set, pack or element)");
        }
    }
    if (!sawFormat) {
        VELLUM_THROW(InvalidFormat, m_sourceName + ": no 'format' line; a dictionary text "
                                                   "starts with 'format<TAB>vellum-dictionary"
                                                   "<TAB>1'");
    }
}

DictionaryParser::Fields DictionaryParser::split(std::string_view line) const {
    Fields fields;
    std::size_t pos = 0;
    while (true) {
        if (fields.count == maxFields) {
            fail("more than " + std::to_string(maxFields) + " tab-separated fields");
        }
        const std::size_t tab = line.find('\t', pos);
        fields.cells[fields.count++] =
            line.substr(pos, tab == std::string_view::npos ? tab : tab - pos);
        if (tab == std::string_view::npos) {
            return fields;
        }
        pos = tab + 1;
    }
}

void DictionaryParser::parseFormat(const Fields& fields) const {
    if (fields.cells[0] != "format") {
        fail("expected the 'format' line first, found " + quoted(fields.cells[0]));
    }
    if (fields.count != 3 || fields.cells[1] != formatName) {
        fail("the format line must read 'format<TAB>vellum-dictionary<TAB>1'");
    }
    if (fields.cells[2] != formatVersion) {
        fail("unsupported format version " + quoted(fields.cells[2]) + " (this reader knows 1)");
    }
}

void DictionaryParser::parseColumns(const Fields& fields) {
    if (fields.count < 2) {
        fail("a 'columns' line names a record kind and its columns");
    }
    std::size_t kind = 0;
    while (kind < KindCount && recordNames[kind] != fields.cells[1]) {
        ++kind;
    }
    if (kind == KindCount) {
        fail("'columns' for unknown record kind " + quoted(fields.cells[1]));
    }
    Layout layout;
    layout.declared = true;
    layout.fieldCount = fields.count - 1;
    layout.position.fill(-1);
    const bool forElements = kind == ElementRecordKind;
    for (std::size_t i = 2; i < fields.count; ++i) {
        std::size_t column = 0;
        while (column < ColumnCount && columnTable[column].name != fields.cells[i]) {
            ++column;
        }
        if (column == ColumnCount ||
            !(forElements ? columnTable[column].forElements : columnTable[column].forSets)) {
            fail("unknown column " + quoted(fields.cells[i]) + " for " +
                 std::string(recordNames[kind]) + " records");
        }
        if (layout.position[column] >= 0) {
            fail("column " + quoted(fields.cells[i]) + " is named twice");
        }
        layout.position[column] = static_cast<int>(i - 1);
    }
    static constexpr Column elementColumns[] = {SetColumn, ULColumn, NameColumn, TypeColumn};
    static constexpr Column setColumns[] = {KeyColumn, NameColumn};
    const Column* const required = forElements ? elementColumns : setColumns;
    const std::size_t requiredCount =
        forElements ? std::size(elementColumns) : std::size(setColumns);
    for (std::size_t i = 0; i < requiredCount; ++i) {
        const Column needed = required[i];
        if (layout.position[needed] < 0) {
            fail(std::string(recordNames[kind]) + " records need the column " +
                 quoted(columnTable[needed].name));
        }
    }
    m_layouts[kind] = layout;
}

const DictionaryParser::Layout& DictionaryParser::layoutFor(RecordKind kind,
                                                            const Fields& fields) const {
    const Layout& layout = m_layouts[kind];
    if (!layout.declared) {
        fail(std::string(recordNames[kind]) + " record before a 'columns' line for " +
             std::string(recordNames[kind]) + " records");
    }
    if (fields.count != layout.fieldCount) {
        fail(std::string(recordNames[kind]) + " record has " + std::to_string(fields.count - 1) +
             " fields after the record kind; its columns line declares " +
             std::to_string(layout.fieldCount - 1));
    }
    return layout;
}

std::string_view DictionaryParser::cell(const Fields& fields, const Layout& layout, Column column,
                                        bool required) const {
    const int position = layout.position[column];
    const std::string_view text = position < 0 ? std::string_view() : fields.cells[position];
    if (text.empty() || text == "-") {
        if (required) {
            fail("column " + quoted(columnTable[column].name) + " must have a value");
        }
        return {};
    }
    return text;
}

void DictionaryParser::parseSet(const Fields& fields, RecordKind kind) {
    const Layout& layout = layoutFor(kind, fields);
    SetRecord record;
    record.line = m_line;
    record.kind =
        kind == PackRecordKind ? MetaMetadataSet::Kind::Pack : MetaMetadataSet::Kind::LocalSet;
    record.name = name(cell(fields, layout, NameColumn, true), "set name");
    const std::string_view keyText = cell(fields, layout, KeyColumn, false);
    if (!keyText.empty()) {
        record.key = KLV::Key(label(keyText, "key"));
    }
    const std::string_view parent = cell(fields, layout, ParentColumn, false);
    record.parent = parent.empty() ? parent : name(parent, "parent name");
    const std::string_view abstract = cell(fields, layout, AbstractColumn, false);
    record.abstract = !abstract.empty() && yesNo(abstract, "abstract");
    const std::string_view structural = cell(fields, layout, StructuralColumn, false);
    record.structural = !structural.empty() && yesNo(structural, "structural");
    if (!record.key && !record.abstract) {
        fail("set " + quoted(record.name) + " has no key; only an abstract set may have none");
    }
    const std::string_view prefix = cell(fields, layout, XmlPrefixColumn, false);
    record.xmlPrefix = prefix.empty() ? prefix : name(prefix, "XML prefix");
    record.xmlNamespace = xmlNamespace(cell(fields, layout, XmlNamespaceColumn, false));
    const std::string_view tag = cell(fields, layout, XmlTagColumn, false);
    record.xmlTag = tag.empty() ? tag : name(tag, "XML tag name");
    m_sets.push_back(record);
}

void DictionaryParser::parseElement(const Fields& fields) {
    const Layout& layout = layoutFor(ElementRecordKind, fields);
    ElementRecord record;
    record.line = m_line;
    record.set = name(cell(fields, layout, SetColumn, true), "set name");
    record.ul = label(cell(fields, layout, ULColumn, true), "UL");
    record.name = name(cell(fields, layout, NameColumn, true), "element name");
    const std::string_view tag = cell(fields, layout, LocalTagColumn, false);
    if (!tag.empty()) {
        record.localTag = localTag(tag);
    }
    record.type = type(cell(fields, layout, TypeColumn, true));
    parseElementKind(fields, layout, record);
    const std::string_view required = cell(fields, layout, RequiredColumn, false);
    if (!required.empty()) {
        unsigned status = 0;
        while (AttributeRequiredStatus::name(AttributeRequiredStatus::Status(status)) != nullptr &&
               required != AttributeRequiredStatus::name(AttributeRequiredStatus::Status(status))) {
            ++status;
        }
        if (AttributeRequiredStatus::name(AttributeRequiredStatus::Status(status)) == nullptr) {
            fail("unknown required status " + quoted(required) +
                 " (expected required, optional, best-effort, decoder-required or "
                 "encoder-required)");
        }
        record.required = AttributeRequiredStatus::Status(status);
    }
    const std::string_view order = cell(fields, layout, OrderColumn, false);
    if (!order.empty()) {
        record.order = number(order, "order");
        if (*record.order < 1 || *record.order > 99) {
            fail("order " + std::string(order) + " is outside 1 to 99");
        }
    }
    const std::string_view schemaIndex = cell(fields, layout, SchemaIndexColumn, false);
    if (!schemaIndex.empty()) {
        record.schemaIndex = number(schemaIndex, "schema index");
    }
    parseElementXml(fields, layout, record);
    m_elements.push_back(record);
}

void DictionaryParser::parseElementKind(const Fields& fields, const Layout& layout,
                                        ElementRecord& record) const {
    using namespace Types::Identifiers;
    const std::string_view collection = cell(fields, layout, CollectionColumn, false);
    if (collection == "array") {
        record.collection = Array;
    } else if (collection == "batch") {
        record.collection = Batch;
    } else if (!collection.empty() && collection != "none") {
        fail("unknown collection " + quoted(collection) + " (expected none, array or batch)");
    }
    const std::string_view reference = cell(fields, layout, ReferenceColumn, false);
    using Kind = MetaElement::ReferenceKind;
    static constexpr std::pair<std::string_view, Kind> references[] = {
        {"strong", Kind::Strong}, {"weak", Kind::Weak}, {"global", Kind::Global}};
    for (const auto& [text, kind] : references) {
        if (reference == text) {
            record.reference = kind;
        }
    }
    if (record.reference == Kind::None && !reference.empty() && reference != "none") {
        fail("unknown reference kind " + quoted(reference) +
             " (expected none, strong, weak or global)");
    }
    static constexpr Identifier referenceTypes[] = {Unknown, StrongReference, WeakReference, UUID};
    const Identifier expected = referenceTypes[static_cast<unsigned>(record.reference)];
    if (record.reference != Kind::None && record.type != expected) {
        fail("a " + std::string(reference) + " reference has type " + typeName(expected) +
             ", not " + typeName(record.type));
    }
    if (record.reference == Kind::None &&
        (record.type == StrongReference || record.type == WeakReference)) {
        fail(std::string("type ") + typeName(record.type) + " needs the reference column");
    }
    const std::string_view target = cell(fields, layout, TargetColumn, false);
    if ((record.reference == Kind::None) != target.empty()) {
        fail(target.empty() ? "a reference needs a target set" : "only a reference has a target");
    }
    record.target = target.empty() ? target : name(target, "target set name");
}

void DictionaryParser::parseElementXml(const Fields& fields, const Layout& layout,
                                       ElementRecord& record) const {
    const std::string_view prefix = cell(fields, layout, XmlPrefixColumn, false);
    record.xmlPrefix = prefix.empty() ? prefix : name(prefix, "XML prefix");
    record.xmlNamespace = xmlNamespace(cell(fields, layout, XmlNamespaceColumn, false));
    const std::string_view tag = cell(fields, layout, XmlTagColumn, false);
    record.xmlTag = tag.empty() ? tag : name(tag, "XML tag name");
}

std::string_view DictionaryParser::name(std::string_view text, const char* what) const {
    bool valid = !text.empty() && isNameStart(text.front());
    for (const char c : text) {
        valid = valid && isNameChar(c);
    }
    if (!valid) {
        fail(std::string(what) + " " + quoted(text) +
             " is not a name (a letter or '_', then letters, digits, '_', '-' or '.')");
    }
    return text;
}

std::string_view DictionaryParser::xmlNamespace(std::string_view text) const {
    for (const char c : text) {
        if (static_cast<unsigned char>(c) <= ' ') {
            fail("XML namespace " + quoted(text) + " holds a space or control character");
        }
    }
    return text;
}

KLV::Key::Bytes DictionaryParser::label(std::string_view text, const char* what) const {
    KLV::Key::Bytes bytes{};
    try {
        Types::StringRepresentation::parse(widen(text), bytes.data(), bytes.size(), what);
    } catch (const Exceptions::BaseException& e) {
        fail(e.utf8Message());
    }
    return bytes;
}

bool DictionaryParser::yesNo(std::string_view text, const char* what) const {
    if (text != "yes" && text != "no") {
        fail(std::string(what) + " must be yes or no, not " + quoted(text));
    }
    return text == "yes";
}

std::uint16_t DictionaryParser::localTag(std::string_view text) const {
    std::uint16_t tag = 0;
    bool valid = text.size() == 4;
    for (const char c : text) {
        valid =
            valid && ((c >= '0' && c <= '9') || (c >= 'A' && c <= 'F') || (c >= 'a' && c <= 'f'));
    }
    if (valid) {
        std::from_chars(text.data(), text.data() + text.size(), tag, 16);
    }
    if (!valid || tag == 0 || tag >= 0x8000) {
        fail("local tag " + quoted(text) +
             " is not a static tag (four hexadecimal digits, 0001 to 7FFF)");
    }
    return tag;
}

Types::Identifiers::Identifier DictionaryParser::type(std::string_view text) const {
    using namespace Types::Identifiers;
    // The names, measured once, so that a look-up compares lengths before characters.
    static const std::vector<std::string_view> names = [] {
        std::vector<std::string_view> all;
        for (unsigned value = 0; isValid(value); ++value) {
            all.emplace_back(typeName(Identifier(value)));
        }
        return all;
    }();
    unsigned value = 0;
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, value);
    if (error != std::errc() || stop != end) {
        value = 0;
        while (value < names.size() && text != names[value]) {
            ++value;
        }
    }
    if (!isValid(value)) {
        fail("unknown type " + quoted(text) + " (a type identifier name or number)");
    }
    if (value == Batch || value == Array) {
        fail("type " + quoted(text) +
             " is a collection kind; name the item type and the "
             "collection column");
    }
    return Identifier(value);
}

unsigned DictionaryParser::number(std::string_view text, const char* what) const {
    unsigned value = 0;
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, value);
    if (error != std::errc() || stop != end || value > 1000000) {
        fail(std::string(what) + " " + quoted(text) + " is not a number from 0 to 1000000");
    }
    return value;
}

} // namespace Vellum::MetaMetadata
