#include "XMLBuilder/XMLStreamReader.h"

#include "Vellum/Exceptions/ParseError.h"
#include "Vellum/Utils/StringConversion.h"

// The library is built with DTD support; this makes its billion-laughs settings visible.
#ifndef XML_DTD
#define XML_DTD
#endif
#include <algorithm>
#include <atomic>
#include <cerrno>
#include <condition_variable>
#include <cstdio>
#include <cstring>
#include <deque>
#include <exception>
#include <expat.h>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <sys/stat.h>
#include <system_error>
#include <thread>
#include <unordered_map>
#include <utility>
#include <vector>

namespace Vellum::XMLBuilder {
namespace {

/// Separates namespace, local name and prefix in the names the parser reports; XML 1.0 text
/// cannot hold it.
constexpr char separator = '\x01';
/// Bytes handed to the parser at a time; doubled while a token spans the pieces, so that a
/// long token is scanned a bounded number of times.
constexpr std::size_t firstChunk = std::size_t{1} << 18U;
constexpr std::size_t largestChunk = std::size_t{1} << 30U;
/// The amplification the parser allows entity expansion (it refuses entity declarations
/// anyway).
constexpr float maximumAmplification = 100.0F;

constexpr const char* sourceName = "Vellum/XMLBuilder/XMLStreamReader";
/// Units, and nodes, a batch handed to the other thread holds at most (a larger unit is a
/// batch of its own).
constexpr std::size_t batchUnits = 256;
constexpr std::size_t batchNodes = 8192;
/// Batches of one reading: one filled, one read, one whose last unit is still shown.
constexpr std::size_t batchCount = 4;

WString decimal(std::uint64_t value) {
    return Utils::stringToWstring(std::to_string(value));
}

/// Writes the UTF-8 text the parser reports (always well-formed) as UTF-16 to `out`, which
/// has room for `size` units; returns the number of units written.
std::size_t decodeUtf8(const char* text, std::size_t size, char16_t* out) noexcept {
    const auto* bytes = reinterpret_cast<const unsigned char*>(text);
    char16_t* next = out;
    for (std::size_t i = 0; i < size;) {
        const unsigned lead = bytes[i];
        if (lead < 0x80U) {
            *next++ = static_cast<char16_t>(lead);
            ++i;
        } else if (lead < 0xE0U && i + 1 < size) {
            *next++ = static_cast<char16_t>(((lead & 0x1FU) << 6U) | (bytes[i + 1] & 0x3FU));
            i += 2;
        } else if (lead < 0xF0U && i + 2 < size) {
            *next++ = static_cast<char16_t>(
                ((lead & 0x0FU) << 12U) | ((bytes[i + 1] & 0x3FU) << 6U) | (bytes[i + 2] & 0x3FU));
            i += 3;
        } else if (i + 3 < size) {
            const std::uint32_t code = ((lead & 0x07U) << 18U) | ((bytes[i + 1] & 0x3FU) << 12U) |
                                       ((bytes[i + 2] & 0x3FU) << 6U) | (bytes[i + 3] & 0x3FU);
            *next++ = static_cast<char16_t>(0xD800U + ((code - 0x10000U) >> 10U));
            *next++ = static_cast<char16_t>(0xDC00U + ((code - 0x10000U) & 0x3FFU));
            i += 4;
        } else {
            *next++ = u'\xFFFD'; // cut short: cannot come from the parser
            break;
        }
    }
    return static_cast<std::size_t>(next - out);
}

/// Appends the UTF-8 text the parser reports to `out` as UTF-16.
void appendUtf8(const char* text, std::size_t size, WString& out) {
    const std::size_t start = out.size();
    out.resize(start + size);
    out.resize(start + decodeUtf8(text, size, out.data() + start));
}

WString fromUtf8(const char* text) {
    WString out;
    if (text != nullptr) {
        appendUtf8(text, std::strlen(text), out);
    }
    return out;
}

bool isBlank(std::string_view text) {
    return std::all_of(text.begin(), text.end(),
                       [](char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; });
}

/// The bytes of a document, handed over piece by piece.
class Source {
public:
    Source() = default;
    Source(const Source&) = delete;
    Source& operator=(const Source&) = delete;
    virtual ~Source() = default;
    /// Copies up to `size` bytes into `into`; fewer only at the end.
    virtual std::size_t read(char* into, std::size_t size) = 0;
    /// How many bytes there are to read, as far as known beforehand.
    virtual std::size_t size() const noexcept = 0;
};

class MemorySource : public Source {
public:
    MemorySource(const std::uint8_t* bytes, std::size_t size) noexcept
        : m_bytes(bytes)
        , m_left(size) {}

    std::size_t read(char* into, std::size_t size) override {
        const std::size_t count = std::min(size, m_left);
        if (count != 0) {
            std::memcpy(into, m_bytes, count);
        }
        m_bytes += count;
        m_left -= count;
        return count;
    }

    std::size_t size() const noexcept override { return m_left; }

private:
    const std::uint8_t* m_bytes;
    std::size_t m_left;
};

class FileSource : public Source {
public:
    explicit FileSource(const WString& path)
        : m_path(path)
        , m_file(std::fopen(Utils::wstringToString(path).c_str(), "rb"), &std::fclose) {
        if (!m_file) {
            fail(u"cannot open the file");
        }
        struct stat status {};
        if (fstat(fileno(m_file.get()), &status) == 0 && status.st_size > 0) {
            m_size = static_cast<std::size_t>(status.st_size);
        }
    }

    std::size_t size() const noexcept override { return m_size; }

    std::size_t read(char* into, std::size_t size) override {
        const std::size_t count = std::fread(into, 1, size, m_file.get());
        if (count < size && std::ferror(m_file.get()) != 0) {
            fail(u"cannot read the file");
        }
        return count;
    }

private:
    [[noreturn]] void fail(const char16_t* what) const {
        const int error = errno;
        throw Exceptions::ParseError(m_path + u": " + what + u": " +
                                         Utils::stringToWstring(std::strerror(error)),
                                     sourceName, __LINE__);
    }

    WString m_path;
    std::unique_ptr<std::FILE, decltype(&std::fclose)> m_file;
    std::size_t m_size = 0;
};

bool isDeclarationBlank(char16_t c) {
    return c == u' ' || c == u'\t' || c == u'\r' || c == u'\n';
}

/// Where the XML declaration at `start` of `text` names its encoding: the first and the end
/// position of the name between its quotes; nothing when there is no such name.
std::optional<std::pair<std::size_t, std::size_t>> declaredEncoding(const WString& text,
                                                                    std::size_t start) {
    static const WString opening = u"<?xml";
    static const WString pseudoAttribute = u"encoding";
    const std::size_t end = text.find(u"?>", start);
    if (end == WString::npos || text.compare(start, opening.size(), opening) != 0 ||
        start + opening.size() >= end || !isDeclarationBlank(text[start + opening.size()])) {
        return std::nullopt;
    }
    std::size_t i = text.find(pseudoAttribute, start);
    if (i >= end) {
        return std::nullopt;
    }
    for (i += pseudoAttribute.size(); i < end && isDeclarationBlank(text[i]); ++i) {
    }
    if (i >= end || text[i] != u'=') {
        return std::nullopt;
    }
    for (++i; i < end && isDeclarationBlank(text[i]); ++i) {
    }
    if (i >= end || (text[i] != u'"' && text[i] != u'\'')) {
        return std::nullopt;
    }
    const std::size_t close = text.find(text[i], i + 1);
    if (close >= end) {
        return std::nullopt;
    }
    return std::make_pair(i + 1, close);
}

/// UTF-16 text as little-endian bytes. The parser is told the encoding; the XML declaration's
/// encoding name (which the parser would check) is given as "UTF-16", and a leading U+FEFF is
/// dropped.
class TextSource : public Source {
public:
    explicit TextSource(const WString& text)
        : m_text(text) {
        std::size_t start = !text.empty() && text[0] == u'\xFEFF' ? 1 : 0;
        if (const auto encoding = declaredEncoding(text, start)) {
            m_head = text.substr(start, encoding->first - start) + u"UTF-16";
            start = encoding->second;
        }
        m_next = start;
    }

    std::size_t read(char* into, std::size_t size) override {
        std::size_t written = 0;
        while (written + 2 <= size) {
            char16_t unit = 0;
            if (m_headNext < m_head.size()) {
                unit = m_head[m_headNext++];
            } else if (m_next < m_text.size()) {
                unit = m_text[m_next++];
            } else {
                break;
            }
            into[written++] = static_cast<char>(unit & 0xFFU);
            into[written++] = static_cast<char>(unit >> 8U);
        }
        return written;
    }

    std::size_t size() const noexcept override { return 2 * m_text.size(); }

private:
    const WString& m_text;
    WString m_head;
    std::size_t m_headNext = 0;
    std::size_t m_next = 0;
};

} // namespace

XMLStreamReader::Handler::~Handler() = default;

namespace {

/// Runs of items of one kind that keep their places: a block is never moved, and an item
/// that does not fit the free end of a block takes a new one (or one of its own).
template <class T, std::size_t BlockSize>
class BlockStore {
public:
    /// `count` adjacent items not in use, as they were left.
    T* take(std::size_t count) {
        if (count > BlockSize) {
            m_large.push_back(std::make_unique<T[]>(count));
            return m_large.back().get();
        }
        if (m_current >= m_blocks.size() || m_used + count > BlockSize) {
            ++m_current; // from "none" to the first block
            if (m_current == m_blocks.size()) {
                m_blocks.push_back(std::make_unique<T[]>(BlockSize));
            }
            m_used = 0;
        }
        T* items = m_blocks[m_current].get() + m_used;
        m_used += count;
        return items;
    }
    /// Gives back the unused end of the last `count` items taken, of which `kept` are used.
    void giveBack(T* items, std::size_t count, std::size_t kept) noexcept {
        if (count <= BlockSize && items + count == m_blocks[m_current].get() + m_used) {
            m_used -= count - kept;
        }
    }
    /// Makes every item free again; the blocks are kept for reuse.
    void clear() noexcept {
        m_current = static_cast<std::size_t>(-1);
        m_used = 0;
        m_large.clear();
    }

private:
    std::vector<std::unique_ptr<T[]>> m_blocks;
    std::vector<std::unique_ptr<T[]>> m_large;
    std::size_t m_current = static_cast<std::size_t>(-1);
    std::size_t m_used = 0;
};

/// Nodes with their texts, attributes and namespace declarations; emptied and used again.
class NodeStore {
public:
    /// A node not in use, as it was left (see Parse::newNode).
    XMLNode& nextNode() {
        ++m_nodeCount;
        return *m_nodes.take(1);
    }
    /// `text` kept here: copied, or taken over when it is long (the caller's is then empty).
    std::u16string_view keep(WString& text) {
        if (text.empty()) {
            return std::u16string_view();
        }
        if (text.size() >= longText) {
            m_longTexts.push_back(std::move(text));
            text = WString();
            return m_longTexts.back();
        }
        char16_t* units = m_texts.take(text.size());
        std::copy(text.begin(), text.end(), units);
        return std::u16string_view(units, text.size());
    }
    /// The UTF-8 `text` (from the parser) kept here as UTF-16.
    std::u16string_view keepUtf8(const char* text) {
        const std::size_t size = std::strlen(text);
        if (size == 0) {
            return std::u16string_view();
        }
        char16_t* units = m_texts.take(size);
        const std::size_t written = decodeUtf8(text, size, units);
        m_texts.giveBack(units, size, written);
        return std::u16string_view(units, written);
    }
    XMLAttribute* attributes(std::size_t count) { return m_attributes.take(count); }
    const XMLNamespaceDeclarations* keep(std::unique_ptr<XMLNamespaceDeclarations> declarations) {
        m_declarations.push_back(std::move(declarations));
        return m_declarations.back().get();
    }
    std::size_t nodeCount() const noexcept { return m_nodeCount; }
    void clear() noexcept {
        m_nodes.clear();
        m_texts.clear();
        m_attributes.clear();
        m_declarations.clear();
        m_longTexts.clear();
        m_nodeCount = 0;
    }

private:
    /// Texts of this many units or more are taken over rather than copied.
    static constexpr std::size_t longText = 4096;

    BlockStore<XMLNode, 256> m_nodes;
    BlockStore<char16_t, 16384> m_texts;
    BlockStore<XMLAttribute, 1024> m_attributes;
    std::vector<std::unique_ptr<XMLNamespaceDeclarations>> m_declarations;
    std::deque<WString> m_longTexts;
    std::size_t m_nodeCount = 0;
};

/// An element kept without its children while they are read, with what it holds.
struct Container {
    NodeStore store;
    XMLNode* node = nullptr;
};

/// A unit to hand over; a nested one is emptied once handed over (see XMLStreamReader).
struct ReadUnit {
    XMLNode* node;
    bool nested;
};

/// The units read in one stretch with their nodes, and the containers that ended meanwhile
/// (which those units may point at). Its storage is used again once its units have been
/// handed over, unless it was handed over while units that keep their nodes in it were still
/// open ("pinned"): then it is kept until the batch that holds the last of them is used again.
struct Batch {
    NodeStore store;
    std::vector<ReadUnit> units;
    std::vector<std::unique_ptr<Container>> retired;
    /// Pinned batches whose last open unit ended in this one.
    std::vector<Batch*> retiredBatches;
    /// Open units keeping their nodes here (reading thread only).
    std::size_t pins = 0;
    /// Handed over while pinned; kept until retired (under the reader's mutex).
    bool pinned = false;

    bool full() const noexcept {
        return units.size() >= batchUnits || store.nodeCount() >= batchNodes;
    }
    bool empty() const noexcept {
        return units.empty() && retired.empty() && retiredBatches.empty();
    }
    void clear() noexcept {
        store.clear();
        units.clear();
        retired.clear();
        retiredBatches.clear();
        pins = 0;
        pinned = false;
    }
};

/// Thrown on the reading thread when the handler has failed and reading is to stop.
struct Stopped {};

} // namespace

/// One reading of one document: the parser, the open elements and the nodes.
class XMLStreamReader::Parse {
public:
    Parse(Handler& handler, const WString& where, const char* encoding)
        : m_handler(handler)
        , m_where(where)
        , m_parser(XML_ParserCreateNS(encoding, separator)) {
        if (m_parser == nullptr) {
            throw std::bad_alloc();
        }
        XML_SetReturnNSTriplet(m_parser, 1);
        XML_SetUserData(m_parser, this);
        XML_SetElementHandler(m_parser, &Parse::onStart, &Parse::onEnd);
        XML_SetCharacterDataHandler(m_parser, &Parse::onCharacters);
        XML_SetStartNamespaceDeclHandler(m_parser, &Parse::onNamespace);
        XML_SetCdataSectionHandler(m_parser, &Parse::onCdataStart, &Parse::onCdataEnd);
        XML_SetCommentHandler(m_parser, &Parse::onComment);
        XML_SetProcessingInstructionHandler(m_parser, &Parse::onInstruction);
        XML_SetEntityDeclHandler(m_parser, &Parse::onEntityDeclaration);
        XML_SetSkippedEntityHandler(m_parser, &Parse::onSkippedEntity);
        XML_SetUnknownEncodingHandler(m_parser, &Parse::onUnknownEncoding, this);
        // Neither the external DTD subset nor parameter entities are read.
        XML_SetParamEntityParsing(m_parser, XML_PARAM_ENTITY_PARSING_NEVER);
        XML_SetBillionLaughsAttackProtectionMaximumAmplification(m_parser, maximumAmplification);
    }
    Parse(const Parse&) = delete;
    Parse& operator=(const Parse&) = delete;
    ~Parse() { XML_ParserFree(m_parser); }

    /// Reads `source` to its end. A large document is read on a second thread while this one
    /// hands the units over, so that reading and using the units overlap.
    void run(Source& source, bool utf16) {
        m_input = utf16 ? Input::LittleEndian : Input::Bytes;
        for (std::size_t i = 0; i < batchCount; ++i) {
            m_batches.push_back(std::make_unique<Batch>());
        }
        m_filling = m_batches.front().get();
        if (source.size() < pipelineThreshold) {
            parse(source);
            return;
        }
        for (std::size_t i = 1; i < batchCount; ++i) {
            m_free.push_back(m_batches[i].get());
        }
        m_pipelined = true;
        std::thread reading;
        try {
            reading = std::thread([this, &source] { readOnThread(source); });
        } catch (const std::system_error&) {
            m_pipelined = false; // no thread to be had: read on this one
            parse(source);
            return;
        }
        handUnitsOver();
        reading.join();
        if (m_handlerFailure) {
            std::rethrow_exception(m_handlerFailure);
        }
        if (m_readingFailure) {
            std::rethrow_exception(m_readingFailure);
        }
    }

    const XMLNode* lastUnit() const noexcept { return m_lastUnit; }

private:
    void parse(Source& source) {
        std::size_t chunk = firstChunk;
        for (bool first = true;; first = false) {
            void* buffer = XML_GetBuffer(m_parser, static_cast<int>(chunk));
            if (buffer == nullptr) {
                fail();
            }
            const std::size_t got = source.read(static_cast<char*>(buffer), chunk);
            if (first && m_input == Input::Bytes) {
                m_input = inputOf(static_cast<const unsigned char*>(buffer), got);
            }
            const bool last = got < chunk;
            const std::uint64_t before = m_events;
            if (XML_ParseBuffer(m_parser, static_cast<int>(got), last ? XML_TRUE : XML_FALSE) !=
                XML_STATUS_OK) {
                fail();
            }
            if (last) {
                return;
            }
            chunk = m_events == before ? std::min(2 * chunk, largestChunk) : firstChunk;
        }
    }

    /// The reading thread: parses, then hands over what is left and says it has finished.
    void readOnThread(Source& source) {
        std::exception_ptr failure;
        try {
            parse(source);
        } catch (...) {
            failure = std::current_exception();
        }
        const std::lock_guard<std::mutex> lock(m_mutex);
        if (m_filling != nullptr && !m_filling->empty()) {
            m_ready.push_back(m_filling);
        }
        m_filling = nullptr;
        m_readingFailure = failure;
        m_readingDone = true;
        m_changed.notify_all();
    }

    /// On the reading thread: hands the batch being filled to the other thread and takes an
    /// empty one, waiting for it when there is none. A batch that open units keep nodes in is
    /// pinned, and one more batch may be made in its place. Throws Stopped when the handler
    /// failed.
    void handOver() {
        for (const Frame& frame : m_stack) {
            if (frame.mode == Mode::Unit && frame.home == m_filling) {
                ++m_filling->pins;
            }
        }
        std::unique_lock<std::mutex> lock(m_mutex);
        if (m_filling->pins != 0) {
            m_filling->pinned = true;
            ++m_pinnedCount;
        }
        m_ready.push_back(m_filling);
        m_changed.notify_all();
        m_changed.wait(lock, [this] {
            return !m_free.empty() || m_stop || m_batches.size() < batchCount + m_pinnedCount;
        });
        if (m_stop) {
            m_filling = nullptr;
            throw Stopped();
        }
        if (m_free.empty()) {
            m_batches.push_back(std::make_unique<Batch>());
            m_filling = m_batches.back().get();
        } else {
            m_filling = m_free.back();
            m_free.pop_back();
        }
    }

    /// Under m_mutex: makes `batch`, whose units have been handed over, free for reading
    /// again, with the pinned batches it retired; a pinned batch waits to be retired.
    void recycle(Batch* batch, bool retiring = false) {
        if (batch->pinned && !retiring) {
            return;
        }
        if (batch->pinned) {
            --m_pinnedCount;
        }
        for (Batch* kept : batch->retiredBatches) {
            recycle(kept, true);
        }
        batch->clear();
        m_free.push_back(batch);
    }

    /// Hands one unit to the handler; a nested unit is then left without text or children,
    /// which are used again (its holder keeps only its name and attributes).
    void handUnitOver(const ReadUnit& unit) {
        m_lastUnit = unit.node;
        m_handler.unit(*unit.node);
        if (unit.nested) {
            unit.node->m_firstChild = nullptr;
            unit.node->m_childCount = 0;
            unit.node->m_text = std::u16string_view();
        }
    }

    /// On the calling thread: hands each batch's units to the handler, in document order,
    /// until the reading thread has finished or the handler fails.
    void handUnitsOver() {
        Batch* shown = nullptr; // the batch of the last unit handed over
        for (;;) {
            Batch* batch = nullptr;
            {
                std::unique_lock<std::mutex> lock(m_mutex);
                m_changed.wait(lock, [this] { return !m_ready.empty() || m_readingDone; });
                if (m_ready.empty()) {
                    return;
                }
                batch = m_ready.front();
                m_ready.pop_front();
                if (shown != nullptr) {
                    recycle(shown);
                    m_changed.notify_all();
                }
            }
            shown = batch;
            try {
                for (const ReadUnit& unit : batch->units) {
                    handUnitOver(unit);
                }
            } catch (...) {
                m_handlerFailure = std::current_exception();
                const std::lock_guard<std::mutex> lock(m_mutex);
                m_stop = true;
                m_changed.notify_all();
                return;
            }
        }
    }

    /// How the input's characters are coded, as far as messages need to read it back.
    enum class Input : std::uint8_t { Bytes, LittleEndian, BigEndian };

    /// UTF-16 shows in a byte order mark or in a zero byte beside the first '<'.
    static Input inputOf(const unsigned char* bytes, std::size_t size) noexcept {
        if (size < 2) {
            return Input::Bytes;
        }
        if ((bytes[0] == 0xFF && bytes[1] == 0xFE) || (bytes[0] == '<' && bytes[1] == 0)) {
            return Input::LittleEndian;
        }
        if ((bytes[0] == 0xFE && bytes[1] == 0xFF) || (bytes[0] == 0 && bytes[1] == '<')) {
            return Input::BigEndian;
        }
        return Input::Bytes;
    }

    enum class Mode : std::uint8_t { Unit, InUnit, Container, Skip };
    struct Frame {
        XMLNode* node;
        Mode mode;
        /// Whether the handler is asked about the children.
        bool asks;
        /// Where the node's text and its children are kept.
        NodeStore* store;
        XMLNode* lastChild;
        /// For a unit: the batch `store` belongs to.
        Batch* home;
    };
    struct Placement {
        Mode mode;
        bool asks;
    };

    // The parser calls back through these; exceptions must not cross it.
    template <class Step>
    static void guarded(void* data, const Step& step) {
        auto& self = *static_cast<Parse*>(data);
        if (self.m_failure) {
            return;
        }
        ++self.m_events;
        try {
            step(self);
        } catch (...) {
            self.m_failure = std::current_exception();
            XML_StopParser(self.m_parser, XML_FALSE);
        }
    }

    static void XMLCALL onStart(void* data, const XML_Char* name, const XML_Char** attributes) {
        guarded(data, [&](Parse& self) { self.start(name, attributes); });
    }
    static void XMLCALL onEnd(void* data, const XML_Char* /*name*/) {
        guarded(data, [](Parse& self) { self.end(); });
    }
    static void XMLCALL onCharacters(void* data, const XML_Char* text, int size) {
        auto& self = *static_cast<Parse*>(data);
        ++self.m_events;
        if (self.m_text != nullptr) {
            self.appendToRun(text, static_cast<std::size_t>(size));
        }
    }
    static void XMLCALL onNamespace(void* data, const XML_Char* prefix, const XML_Char* uri) {
        guarded(data, [&](Parse& self) {
            self.m_pendingDeclarations.push_back({fromUtf8(prefix), fromUtf8(uri)});
        });
    }
    static void XMLCALL onCdataStart(void* data) {
        guarded(data, [](Parse& self) { self.flushRun(); });
    }
    static void XMLCALL onCdataEnd(void* data) {
        guarded(data, [](Parse& self) { self.flushRun(true); });
    }
    static void XMLCALL onComment(void* data, const XML_Char* /*text*/) {
        guarded(data, [](Parse& self) { self.flushRun(); });
    }
    static void XMLCALL onInstruction(void* data, const XML_Char* /*target*/,
                                      const XML_Char* /*text*/) {
        guarded(data, [](Parse& self) { self.flushRun(); });
    }
    static void XMLCALL onEntityDeclaration(void* data, const XML_Char* /*name*/, int /*parameter*/,
                                            const XML_Char* /*value*/, int /*size*/,
                                            const XML_Char* /*base*/, const XML_Char* /*system*/,
                                            const XML_Char* /*publicId*/,
                                            const XML_Char* /*notation*/) {
        // The toolkit's documents never declare entities, and declared entities are how
        // documents smuggle in other files or expand without bound.
        guarded(data, [](Parse& self) {
            self.refuse(u"the DOCTYPE declares entities, which are refused");
        });
    }
    static void XMLCALL onSkippedEntity(void* data, const XML_Char* name, int parameter) {
        guarded(data, [&](Parse& self) {
            self.refuse(u"the entity '" + WString(parameter != 0 ? u"%" : u"&") + fromUtf8(name) +
                        u";' is not declared");
        });
    }
    static int XMLCALL onUnknownEncoding(void* data, const XML_Char* name, XML_Encoding* /*info*/) {
        static_cast<Parse*>(data)->m_unknownEncoding = fromUtf8(name);
        return XML_STATUS_ERROR;
    }

    /// "<where>, line L, column C" at the parser's current position.
    WString location() const {
        return m_where + u", line " + decimal(XML_GetCurrentLineNumber(m_parser)) + u", column " +
               decimal(XML_GetCurrentColumnNumber(m_parser) + 1);
    }

    [[noreturn]] void refuse(const WString& problem) const {
        throw Exceptions::ParseError(location() + u": " + problem, sourceName, __LINE__);
    }

    /// Throws what stopped the parser: a failure of a call-back, or the parser's own error.
    [[noreturn]] void fail() {
        if (m_failure) {
            std::rethrow_exception(m_failure);
        }
        const XML_Error code = XML_GetErrorCode(m_parser);
        if (code == XML_ERROR_NO_MEMORY) {
            throw std::bad_alloc();
        }
        WString problem = fromUtf8(XML_ErrorString(code));
        switch (code) {
        case XML_ERROR_UNKNOWN_ENCODING:
            problem = u"the encoding '" + m_unknownEncoding +
                      u"' is not supported (UTF-8, UTF-16, ISO-8859-1 and US-ASCII are)";
            break;
        case XML_ERROR_TAG_MISMATCH:
            problem += u": the end tag of '" + m_open.back()->qualifiedName + u"' was expected";
            break;
        case XML_ERROR_NO_ELEMENTS:
            if (!m_open.empty()) {
                problem += u": the document ends before the end tag of '" +
                           m_open.back()->qualifiedName + u"'";
            }
            break;
        case XML_ERROR_UNBOUND_PREFIX:
        case XML_ERROR_DUPLICATE_ATTRIBUTE:
            if (const WString tag = tagAtError(); !tag.empty()) {
                problem += u" in the start tag of '" + tag + u"'";
            }
            break;
        default:
            break;
        }
        refuse(problem);
    }

    /// The qualified name of the tag in which the parser reports an error, read back from the
    /// parser's input; empty when it cannot be read.
    WString tagAtError() const {
        int offset = 0;
        int size = 0;
        const char* context = XML_GetInputContext(m_parser, &offset, &size);
        if (context == nullptr || offset < 0 || offset >= size) {
            return WString();
        }
        const auto* bytes = reinterpret_cast<const unsigned char*>(context);
        const std::size_t unit = m_input == Input::Bytes ? 1 : 2;
        const auto at = [&](std::size_t position) -> char16_t {
            if (unit == 1) {
                return bytes[position];
            }
            const unsigned first = bytes[position];
            const unsigned second = bytes[position + 1];
            return static_cast<char16_t>(m_input == Input::BigEndian ? (first << 8U) | second
                                                                     : (second << 8U) | first);
        };
        // The tag starts at the last '<' up to the place of the error.
        auto start = static_cast<std::size_t>(offset);
        start -= start % unit;
        while (at(start) != u'<') {
            if (start < unit) {
                return WString();
            }
            start -= unit;
        }
        WString name;
        for (std::size_t i = start + unit; i + unit <= static_cast<std::size_t>(size); i += unit) {
            const char16_t c = at(i);
            if (c == u' ' || c == u'\t' || c == u'\r' || c == u'\n' || c == u'>' || c == u'/') {
                break;
            }
            name.push_back(c);
        }
        // Bytes beyond ASCII are read as UTF-8 (an ISO-8859-1 name is shown as far as it can be).
        return unit == 1 ? Utils::stringToWstring(std::string(name.begin(), name.end())) : name;
    }

    /// The name reported as "namespace<sep>local<sep>prefix", "namespace<sep>local" or
    /// "local", as one object per document.
    const XMLName& intern(const char* raw) {
        m_key.assign(raw);
        auto found = m_names.find(m_key);
        if (found != m_names.end()) {
            return *found->second;
        }
        auto name = std::make_unique<XMLName>();
        const std::size_t first = m_key.find(separator);
        if (first == std::string::npos) {
            appendUtf8(m_key.data(), m_key.size(), name->localName);
            name->qualifiedName = name->localName;
        } else {
            const std::size_t second = m_key.find(separator, first + 1);
            const std::size_t localEnd = second == std::string::npos ? m_key.size() : second;
            appendUtf8(m_key.data(), first, name->namespaceURI);
            appendUtf8(m_key.data() + first + 1, localEnd - first - 1, name->localName);
            if (second != std::string::npos) {
                appendUtf8(m_key.data() + second + 1, m_key.size() - second - 1,
                           name->qualifiedName);
                name->qualifiedName += u':';
            }
            name->qualifiedName += name->localName;
        }
        return *m_names.emplace(m_key, std::move(name)).first->second;
    }

    /// Ends the run of character data read since the last markup: drops it from the open
    /// element's text when it holds blanks only (a CDATA section is kept whatever it holds).
    void flushRun(bool cdata = false) {
        if (m_text != nullptr && m_runBlank && !cdata) {
            m_text->resize(m_runStart);
        }
        startRun();
    }

    /// The text of the open element, where a run now starts; none when it keeps no text.
    void startRun() noexcept {
        m_runStart = m_text != nullptr ? m_text->size() : 0;
        m_runBlank = true;
    }

    /// Appends character data to the open element's text; the run is dropped again at its end
    /// if it holds blanks only.
    void appendToRun(const char* text, std::size_t size) {
        if (m_runBlank) {
            m_runBlank = isBlank(std::string_view(text, size));
        }
        appendUtf8(text, size, *m_text);
    }

    /// Makes the element of the top frame (if it keeps text) the one character data goes to:
    /// its text is gathered in a buffer of its depth, and kept with the node at its end.
    void enterTopFrame() {
        const bool keepsText = !m_stack.empty() && (m_stack.back().mode == Mode::Unit ||
                                                    m_stack.back().mode == Mode::InUnit);
        m_text = nullptr;
        if (keepsText) {
            if (m_texts.size() < m_stack.size()) {
                m_texts.resize(m_stack.size());
            }
            m_text = &m_texts[m_stack.size() - 1];
        }
        startRun();
    }

    Placement placementFor(const XMLName& name) {
        if (m_stack.empty()) {
            return placementOf(m_handler.disposition(nullptr, name), false);
        }
        const Frame& parent = m_stack.back();
        switch (parent.mode) {
        case Mode::Unit:
        case Mode::InUnit:
            return parent.asks ? placementOf(m_handler.disposition(parent.node, name), true)
                               : Placement{Mode::InUnit, false};
        case Mode::Container:
            return placementOf(m_handler.disposition(parent.node, name), false);
        case Mode::Skip:
        default:
            return Placement{Mode::Skip, false};
        }
    }

    static Placement placementOf(Disposition disposition, bool inUnit) noexcept {
        switch (disposition) {
        case Disposition::Unit:
            return {Mode::Unit, false};
        case Disposition::AskingUnit:
            return {Mode::Unit, true};
        case Disposition::Container:
            return inUnit ? Placement{Mode::InUnit, true} : Placement{Mode::Container, false};
        case Disposition::Part:
            return {inUnit ? Mode::InUnit : Mode::Unit, false};
        case Disposition::AskingPart:
            return {inUnit ? Mode::InUnit : Mode::Unit, true};
        case Disposition::Skip:
        default:
            return {Mode::Skip, false};
        }
    }

    /// Whether the open element (if any) is in a unit, so that a unit starting now is nested.
    bool inUnit() const noexcept {
        return !m_stack.empty() &&
               (m_stack.back().mode == Mode::Unit || m_stack.back().mode == Mode::InUnit);
    }

    /// Where an element's node is kept, and its text and children.
    struct Stores {
        NodeStore* node;
        NodeStore* children;
        Batch* home;
    };

    /// The stores for an element read as `mode`. A unit's subtree is kept in the batch being
    /// filled; a nested unit's own node (and attributes) with its holder, where it stays.
    Stores storesFor(Mode mode) {
        if (mode == Mode::Container) {
            m_containers.push_back(std::make_unique<Container>());
            NodeStore* store = &m_containers.back()->store;
            return {store, store, nullptr};
        }
        if (mode == Mode::InUnit) {
            NodeStore* store = m_stack.back().store;
            return {store, store, nullptr};
        }
        const bool nested = inUnit();
        if (!m_pipelined) {
            if (!nested) {
                // The previous unit and the containers ended since are no longer needed.
                m_lastUnit = nullptr;
                m_filling->clear();
            }
        } else if (m_stop) {
            throw Stopped();
        } else if (m_filling->full()) {
            handOver();
        }
        NodeStore* children = &m_filling->store;
        return {nested ? m_stack.back().store : children, children, m_filling};
    }

    /// A fresh node kept in `store`.
    static XMLNode& newNode(NodeStore& store) {
        XMLNode& node = store.nextNode();
        node.m_parent = nullptr;
        node.m_scope = nullptr;
        node.m_firstChild = nullptr;
        node.m_nextSibling = nullptr;
        node.m_text = std::u16string_view();
        node.m_attributes = nullptr;
        node.m_declarations = nullptr;
        node.m_attributeCount = 0;
        node.m_childCount = 0;
        return node;
    }

    void start(const XML_Char* rawName, const XML_Char** attributes) {
        if (m_stack.size() >= maximumNestingDepth) {
            refuse(u"elements nest more than " + decimal(maximumNestingDepth) + u" levels deep");
        }
        flushRun();
        const XMLName& name = intern(rawName);
        const auto [mode, asks] = placementFor(name);
        m_open.push_back(&name);
        if (mode == Mode::Skip) {
            m_pendingDeclarations.clear();
            m_stack.push_back({nullptr, Mode::Skip, false, nullptr, nullptr, nullptr});
            enterTopFrame();
            return;
        }
        const Stores stores = storesFor(mode);
        NodeStore* store = stores.node;
        XMLNode& node = newNode(*store);
        if (mode == Mode::Container) {
            m_containers.back()->node = &node;
        }
        node.m_name = &name;
        node.m_line = static_cast<std::uint32_t>(XML_GetCurrentLineNumber(m_parser));
        node.m_column = static_cast<std::uint32_t>(XML_GetCurrentColumnNumber(m_parser) + 1);
        node.m_depth = static_cast<std::uint32_t>(m_stack.size() + 1);
        if (!m_stack.empty()) {
            Frame& parent = m_stack.back();
            node.m_parent = parent.node;
            if (parent.mode == Mode::Unit || parent.mode == Mode::InUnit) {
                if (parent.lastChild == nullptr) {
                    parent.node->m_firstChild = &node;
                } else {
                    parent.lastChild->m_nextSibling = &node;
                }
                parent.lastChild = &node;
                ++parent.node->m_childCount;
            }
        }
        if (!m_pendingDeclarations.empty()) {
            node.m_declarations = store->keep(
                std::make_unique<XMLNamespaceDeclarations>(std::move(m_pendingDeclarations)));
            m_pendingDeclarations.clear();
            node.m_scope = &node;
        } else if (node.m_parent != nullptr) {
            node.m_scope = node.m_parent->m_scope;
        }
        std::size_t count = 0;
        while (attributes[2 * count] != nullptr) {
            ++count;
        }
        if (count != 0) {
            XMLAttribute* kept = store->attributes(count);
            for (std::size_t i = 0; i < count; ++i) {
                kept[i].name = &intern(attributes[2 * i]);
                kept[i].value = store->keepUtf8(attributes[2 * i + 1]);
            }
            node.m_attributes = kept;
            node.m_attributeCount = static_cast<std::uint32_t>(count);
        }
        m_stack.push_back({&node, mode, asks, stores.children, nullptr, stores.home});
        enterTopFrame();
    }

    void end() {
        const Frame frame = m_stack.back();
        flushRun();
        if (m_text != nullptr) {
            frame.node->m_text = frame.store->keep(*m_text);
            m_text->clear();
        }
        m_stack.pop_back();
        m_open.pop_back();
        enterTopFrame();
        if (frame.mode == Mode::Unit) {
            const ReadUnit unit{frame.node, inUnit()};
            if (!m_pipelined) {
                handUnitOver(unit);
                return;
            }
            m_filling->units.push_back(unit);
            // A home handed over meanwhile was pinned; the last unit to end in it retires it.
            if (frame.home != m_filling && --frame.home->pins == 0) {
                m_filling->retiredBatches.push_back(frame.home);
            }
        } else if (frame.mode == Mode::Container && !m_stack.empty()) {
            // Kept as long as the units read before its end: they may point at it.
            for (auto it = m_containers.rbegin(); it != m_containers.rend(); ++it) {
                if ((*it)->node == frame.node) {
                    m_filling->retired.push_back(std::move(*it));
                    m_containers.erase(std::next(it).base());
                    break;
                }
            }
        }
    }

    Handler& m_handler;
    WString m_where;
    XML_Parser m_parser;
    std::exception_ptr m_failure;
    std::uint64_t m_events = 0;
    std::vector<Frame> m_stack;
    /// The names of the open elements, for messages.
    std::vector<const XMLName*> m_open;
    /// The texts being gathered for the open elements, by depth; their storage is reused.
    std::vector<WString> m_texts;
    /// The text of the open element (nullptr when it keeps none), the size it had when the
    /// current run of character data started, and whether that run holds blanks only.
    WString* m_text = nullptr;
    std::size_t m_runStart = 0;
    bool m_runBlank = true;
    std::vector<XMLNamespaceDeclaration> m_pendingDeclarations;
    /// Containers still open (the root until the end).
    std::vector<std::unique_ptr<Container>> m_containers;
    std::vector<std::unique_ptr<Batch>> m_batches;
    /// The batch the parser puts nodes and units into.
    Batch* m_filling = nullptr;
    const XMLNode* m_lastUnit = nullptr;

    // Reading on a second thread: batches go from m_free to the reading thread (m_filling),
    // to m_ready, to the calling thread, and back to m_free, under m_mutex.
    bool m_pipelined = false;
    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::deque<Batch*> m_ready;
    std::vector<Batch*> m_free;
    /// Batches handed over pinned and not yet retired.
    std::size_t m_pinnedCount = 0;
    bool m_readingDone = false;
    std::atomic<bool> m_stop{false};
    std::exception_ptr m_readingFailure;
    std::exception_ptr m_handlerFailure;
    std::unordered_map<std::string, std::unique_ptr<XMLName>> m_names;
    std::string m_key;
    WString m_unknownEncoding;
    Input m_input = Input::Bytes;
};

XMLStreamReader::XMLStreamReader(Handler& handler)
    : m_handler(handler) {}

XMLStreamReader::~XMLStreamReader() = default;

void XMLStreamReader::readFile(const WString& path) {
    m_parse.reset();
    FileSource source(path);
    m_parse = std::make_unique<Parse>(m_handler, path, nullptr);
    m_parse->run(source, false);
}

void XMLStreamReader::readBuffer(const std::uint8_t* bytes, std::size_t size,
                                 const WString& where) {
    m_parse.reset();
    MemorySource source(bytes, bytes == nullptr ? 0 : size);
    m_parse = std::make_unique<Parse>(m_handler, where, nullptr);
    m_parse->run(source, false);
}

void XMLStreamReader::readText(const WString& text, const WString& where) {
    m_parse.reset();
    TextSource source(text);
    m_parse = std::make_unique<Parse>(m_handler, where, "UTF-16LE");
    m_parse->run(source, true);
}

const XMLNode* XMLStreamReader::lastUnit() const noexcept {
    return m_parse ? m_parse->lastUnit() : nullptr;
}

} // namespace Vellum::XMLBuilder
