#include "KlvCommand.h"

#include "ArgumentParser.h"
#include "InputFile.h"
#include "KeyDescription.h"
#include "RunIn.h"

#include "Vellum/DataIO/File/FileDataSource.h"
#include "Vellum/Exceptions/IOError.h"
#include "Vellum/Exceptions/InvalidFormat.h"
#include "Vellum/Exceptions/InvalidLength.h"
#include "Vellum/Exceptions/Throw.h"
#include "Vellum/KLV/TripletReader.h"

#include <algorithm>
#include <cctype>
#include <cstddef>
#include <cstdint>
#include <ostream>
#include <string>

namespace Vellum::App {
namespace {

constexpr std::size_t keyWidth = 47;      // 16 bytes in dotted hex
constexpr std::size_t octetsWidth = 6;    // the "octets" heading
constexpr std::size_t minNumberWidth = 6; // the "offset" and "length" headings

std::string padLeft(const std::string& text, std::size_t width) {
    return text.size() >= width ? text : std::string(width - text.size(), ' ') + text;
}

std::string padRight(const std::string& text, std::size_t width) {
    return text.size() >= width ? text : text + std::string(width - text.size(), ' ');
}

// Whether `message` names "offset <offset>" exactly (not as the start of a longer number).
bool mentionsOffset(const std::string& message, std::uint64_t offset) {
    const std::string where = "offset " + std::to_string(offset);
    for (std::size_t at = message.find(where); at != std::string::npos;
         at = message.find(where, at + 1)) {
        const std::size_t after = at + where.size();
        if (after == message.size() ||
            std::isdigit(static_cast<unsigned char>(message[after])) == 0) {
            return true;
        }
    }
    return false;
}

// Rethrows the exception being handled, adding the offset of the triplet that failed when
// its message does not name it already.
[[noreturn]] void rethrowAt(const Exceptions::BaseException& error, std::uint64_t offset) {
    const std::string message = error.utf8Message();
    if (mentionsOffset(message, offset)) {
        throw;
    }
    const std::string text = "KLV triplet at offset " + std::to_string(offset) + ": " + message;
    switch (error.kind()) {
    case Exceptions::ExceptionKind::InvalidLength:
        VELLUM_THROW(InvalidLength, text);
    case Exceptions::ExceptionKind::IOError:
        VELLUM_THROW(IOError, text);
    default:
        VELLUM_THROW(InvalidFormat, text);
    }
}

void printLine(const KLV::Triplet& triplet, std::size_t numberWidth, std::ostream& out) {
    out << padLeft(std::to_string(triplet.offset), numberWidth) << "  " << triplet.key.toUtf8()
        << "  " << padLeft(std::to_string(triplet.length.value()), numberWidth) << "  "
        << padLeft(std::to_string(triplet.length.octets()), octetsWidth);
    const std::string name = describeKey(triplet.key);
    if (!name.empty()) {
        out << "  " << name;
    }
    out << '\n';
}

} // namespace

std::string KlvCommand::name() const {
    return "klv";
}

std::string KlvCommand::summary() const {
    return "list the KLV triplets of a file";
}

std::string KlvCommand::synopsis() const {
    return "vellum klv [--limit N] FILE";
}

std::string KlvCommand::description() const {
    return "Lists the KLV triplets of FILE, one a line: the offset of the key (decimal), the key,\n"
           "the length of the value and the number of octets of its BER length field, and a\n"
           "name for the keys it knows (partition packs with kind and status, primer pack,\n"
           "index table segments, other local sets, system items, essence elements, fill,\n"
           "random index pack).\n"
           "A file that does not start with a SMPTE key may have a run-in of up to 65535 bytes\n"
           "before its first partition pack; the listing starts at that pack.\n"
           "A malformed or truncated file is listed up to the fault, which is then reported.\n"
           "FILE '-' reads standard input.\n";
}

std::string KlvCommand::optionHelp() const {
    return "  --limit N     stop after N triplets\n";
}

void KlvCommand::declareOptions(ArgumentParser& parser) const {
    parser.addValueOption("limit");
}

int KlvCommand::run(const ArgumentParser& arguments, std::ostream& out) {
    arguments.requirePositionals(1, 1, "FILE");
    const std::optional<std::uint64_t> limit = arguments.positiveNumber("limit");
    const InputFile input(arguments.positionals().front());
    DataIO::File::FileDataSource source(input.path());
    if (source.size() == 0) {
        VELLUM_THROW(InvalidFormat, input.quotedName() + " is empty: it holds no KLV triplets");
    }
    const std::uint64_t start = findKlvStart(source, input.name());
    out << "file: " << input.name() << " (" << source.size() << " bytes)\n";
    if (start > 0) {
        out << "run-in: " << start << " bytes before the first partition pack\n";
    }
    listTriplets(source, source.size(), limit, out);
    return 0;
}

void KlvCommand::listTriplets(DataIO::DataSource& source, std::uint64_t fileSize,
                              std::optional<std::uint64_t> limit, std::ostream& out) {
    const std::size_t numberWidth = std::max(minNumberWidth, std::to_string(fileSize).size());
    out << padLeft("offset", numberWidth) << "  " << padRight("key", keyWidth) << "  "
        << padLeft("length", numberWidth) << "  " << padLeft("octets", octetsWidth) << "  name\n";
    KLV::TripletReader reader(source);
    std::uint64_t count = 0;
    while (!limit || count < *limit) {
        reader.skipValue();
        const std::uint64_t offset = source.position();
        std::optional<KLV::Triplet> triplet;
        try {
            triplet = reader.next();
        } catch (const Exceptions::BaseException& error) {
            rethrowAt(error, offset);
        }
        if (!triplet) {
            break;
        }
        printLine(*triplet, numberWidth, out);
        ++count;
    }
    reader.skipValue();
    out << "total: " << count << (count == 1 ? " triplet" : " triplets");
    if (source.remaining() > 0) {
        out << " (stopped by --limit at offset " << source.position() << ')';
    }
    out << '\n';
}

} // namespace Vellum::App
