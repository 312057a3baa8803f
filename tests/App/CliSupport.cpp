#include "CliSupport.h"

#include <algorithm>
#include <cctype>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>
#include <stdexcept>
#include <sys/wait.h>

namespace VellumTest {
namespace {

std::string shellQuote(const std::string& text) {
    std::string quoted = "'";
    for (const char c : text) {
        quoted += c == '\'' ? std::string("'\\''") : std::string(1, c);
    }
    return quoted + "'";
}

std::string readText(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

std::string dottedHex(const std::vector<std::uint8_t>& bytes, std::size_t first) {
    static const char digits[] = "0123456789ABCDEF";
    std::string text;
    for (std::size_t i = first; i < first + 16; ++i) {
        text += i == first ? "" : ".";
        text += digits[bytes[i] >> 4U];
        text += digits[bytes[i] & 0x0FU];
    }
    return text;
}

bool isDigit(char c) {
    return std::isdigit(static_cast<unsigned char>(c)) != 0;
}

std::uint64_t bigEndian(const std::vector<std::uint8_t>& bytes, std::size_t at, std::size_t n) {
    std::uint64_t value = 0;
    for (std::size_t i = 0; i < n; ++i) {
        value = (value << 8U) | bytes.at(at + i);
    }
    return value;
}

// Whether a dotted-hex key starts with `prefix` and has `rest` from byte 9 on; byte 8, the
// registry version, is not compared.
bool keyMatches(const std::string& key, const std::string& prefix, const std::string& rest) {
    return key.compare(0, prefix.size(), prefix) == 0 && key.compare(24, rest.size(), rest) == 0;
}

const std::string packPrefix = "06.0E.2B.34.02.05.01";

// The lines of `out` after the first line that starts with `heading`, up to a blank line.
std::vector<std::string> section(const std::string& out, const std::string& heading) {
    std::istringstream in(out);
    std::vector<std::string> lines;
    bool inside = false;
    for (std::string line; std::getline(in, line);) {
        if (inside && line.empty()) {
            break;
        }
        if (inside) {
            lines.push_back(line);
        }
        inside = inside || line.rfind(heading, 0) == 0;
    }
    return lines;
}

bool allDigits(const std::string& text) {
    return !text.empty() && std::all_of(text.begin(), text.end(), isDigit);
}

} // namespace

ProgramRun runVellum(const std::vector<std::string>& arguments, const TempDir& dir,
                     const RunSetup& setup) {
    static int runs = 0;
    const std::string errPath = dir.file("stderr-" + std::to_string(++runs) + ".txt");
    std::string command = setup.environment.empty() ? "" : "env " + setup.environment + " ";
    command += shellQuote(VELLUM_EXECUTABLE);
    for (const std::string& argument : arguments) {
        command += " " + shellQuote(argument);
    }
    command += " 2>" + shellQuote(errPath);
    if (!setup.input.empty()) {
        command = setup.throughPipe ? "cat " + shellQuote(setup.input) + " | " + command
                                    : command + " <" + shellQuote(setup.input);
    }
    FILE* const pipe = popen(command.c_str(), "r");
    if (pipe == nullptr) {
        throw std::runtime_error("cannot run " + command);
    }
    ProgramRun run;
    char buffer[4096];
    for (std::size_t n; (n = std::fread(buffer, 1, sizeof buffer, pipe)) > 0;) {
        run.out.append(buffer, n);
    }
    const int status = pclose(pipe);
    run.exitCode = status != -1 && WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    run.err = readText(errPath);
    return run;
}

std::vector<TripletLine> parseListing(const std::string& out) {
    std::vector<TripletLine> lines;
    std::istringstream in(out);
    for (std::string text; std::getline(in, text);) {
        std::istringstream fields(text);
        std::string offset;
        fields >> offset;
        if (offset.empty() || !std::all_of(offset.begin(), offset.end(), isDigit)) {
            continue;
        }
        TripletLine line;
        line.offset = std::stoull(offset);
        fields >> line.key >> line.length >> line.octets;
        std::getline(fields >> std::ws, line.name);
        lines.push_back(line);
    }
    return lines;
}

Walk walkKlv(const std::vector<std::uint8_t>& bytes, std::size_t start) {
    Walk walk;
    std::size_t pos = start;
    while (pos < bytes.size()) {
        if (bytes.size() - pos < 17 || bytes[pos] != 0x06 || bytes[pos + 1] != 0x0E ||
            bytes[pos + 2] != 0x2B || bytes[pos + 3] != 0x34) {
            return walk;
        }
        TripletLine triplet;
        triplet.offset = pos;
        triplet.key = dottedHex(bytes, pos);
        std::size_t at = pos + 16;
        const std::uint8_t first = bytes[at++];
        triplet.length = first;
        triplet.octets = 1;
        if (first >= 0x80) {
            const std::size_t count = first & 0x7FU;
            if (count == 0 || count > 8 || count > bytes.size() - at) {
                return walk;
            }
            triplet.length = 0;
            for (std::size_t i = 0; i < count; ++i) {
                triplet.length = (triplet.length << 8U) | bytes[at++];
            }
            triplet.octets = static_cast<unsigned>(count + 1);
        }
        if (triplet.length > bytes.size() - at) {
            return walk;
        }
        walk.triplets.push_back(triplet);
        pos = at + static_cast<std::size_t>(triplet.length);
    }
    walk.complete = true;
    return walk;
}

bool isOneErrorLine(const std::string& err) {
    return err.rfind("vellum: error: ", 0) == 0 && std::count(err.begin(), err.end(), '\n') == 1 &&
           err.back() == '\n';
}

::testing::AssertionResult failedWith(const ProgramRun& run, int status,
                                      const std::string& problem) {
    if (run.exitCode != status || !run.out.empty() || !isOneErrorLine(run.err) ||
        run.err.find(problem) == std::string::npos) {
        return ::testing::AssertionFailure()
               << "expected status " << status << ", no output and one error line naming \""
               << problem << "\"; got status " << run.exitCode << ", stdout \"" << run.out
               << "\", stderr \"" << run.err << "\"";
    }
    return ::testing::AssertionSuccess();
}

ProgramRun expectFailureKeepsOutput(std::vector<std::string> arguments, const std::string& problem,
                                    const TempDir& dir) {
    const std::filesystem::path folder = dir.path() / "kept";
    std::filesystem::remove_all(folder);
    std::filesystem::create_directory(folder);
    const std::vector<std::uint8_t> old = {'o', 'l', 'd'};
    const std::string output = dir.write("kept/old.out", old);
    std::replace(arguments.begin(), arguments.end(), std::string("OUT"), output);
    const ProgramRun run = runVellum(arguments, dir);
    EXPECT_TRUE(failedWith(run, 1, problem));
    EXPECT_EQ(readFile(output), old);
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder),
                            std::filesystem::directory_iterator()),
              1)
        << "no temporary file is left behind";
    return run;
}

bool namesOffset(const std::string& text, std::uint64_t offset) {
    const std::string where = "offset " + std::to_string(offset);
    for (std::size_t at = text.find(where); at != std::string::npos;
         at = text.find(where, at + 1)) {
        const std::size_t after = at + where.size();
        if (after == text.size() || !isDigit(text[after])) {
            return true;
        }
    }
    return false;
}

HeaderRegion findHeaderRegion(const std::vector<std::uint8_t>& bytes,
                              std::uint64_t partitionOffset) {
    const Walk walk = walkKlv(bytes, 0);
    for (std::size_t i = 0; i < walk.triplets.size(); ++i) {
        const TripletLine& pack = walk.triplets[i];
        if (pack.offset != partitionOffset || !keyMatches(pack.key, packPrefix, "0D.01.02.01.01")) {
            continue;
        }
        // HeaderByteCount follows the versions, KAG size and three partition offsets.
        const std::size_t value = static_cast<std::size_t>(pack.offset) + 16 + pack.octets;
        const std::uint64_t headerByteCount = bigEndian(bytes, value + 32, 8);
        for (std::size_t j = i + 1; j < walk.triplets.size(); ++j) {
            if (keyMatches(walk.triplets[j].key, packPrefix, "0D.01.02.01.01.05.01")) {
                return {walk.triplets[j].offset, headerByteCount};
            }
        }
    }
    throw std::runtime_error("no partition pack and primer at offset " +
                             std::to_string(partitionOffset));
}

std::vector<PartitionLine> parseInfoPartitions(const std::string& out) {
    std::vector<PartitionLine> partitions;
    const std::vector<std::string> lines = section(out, "partitions:");
    for (std::size_t i = 1; i < lines.size(); ++i) { // the first line is the heading
        std::istringstream fields(lines[i]);
        std::string index;
        std::string closed;
        std::string complete;
        PartitionLine line;
        fields >> index >> line.kind >> closed >> complete >> line.offset >> line.headerBytes >>
            line.indexBytes;
        line.status = closed + " " + complete;
        partitions.push_back(line);
    }
    return partitions;
}

std::map<std::string, std::uint64_t> parseInfoSetCounts(const std::string& out) {
    std::map<std::string, std::uint64_t> counts;
    const std::vector<std::string> lines = section(out, "sets by name:");
    for (std::size_t i = 1; i < lines.size(); ++i) {
        std::istringstream fields(lines[i]);
        std::uint64_t count = 0;
        std::string name;
        fields >> count;
        std::getline(fields >> std::ws, name);
        counts[name] += count;
    }
    return counts;
}

std::uint64_t countAfter(const std::string& out, const std::string& label) {
    std::istringstream in(out);
    for (std::string line; std::getline(in, line);) {
        const std::size_t start = line.find_first_not_of(' ');
        if (start != std::string::npos && line.compare(start, label.size() + 1, label + ":") == 0) {
            return std::stoull(line.substr(start + label.size() + 1));
        }
    }
    throw std::runtime_error("no line starting with '" + label + ":' in the output");
}

std::vector<std::uint8_t> withUnknownTimecodeKey(const std::string& path) {
    std::vector<std::uint8_t> bytes = readFile(path);
    const std::vector<std::uint8_t> timecode = {0x06, 0x0E, 0x2B, 0x34, 0x02, 0x53, 0x01, 0x01,
                                                0x0D, 0x01, 0x01, 0x01, 0x01, 0x01, 0x14, 0x00};
    std::vector<std::uint8_t> unknown = timecode;
    unknown[14] = 0xF0;
    replaceFirst(bytes, timecode, unknown);
    return bytes;
}

std::vector<std::uint8_t> utf16(const std::u16string& text) {
    std::vector<std::uint8_t> bytes;
    for (const char16_t c : text) {
        bytes.push_back(static_cast<std::uint8_t>(c >> 8U));
        bytes.push_back(static_cast<std::uint8_t>(c & 0xFFU));
    }
    return bytes;
}

std::vector<SetLine> parseSetsListing(const std::string& out) {
    std::vector<SetLine> sets;
    std::istringstream in(out);
    for (std::string line; std::getline(in, line);) {
        std::istringstream fields(line);
        std::string first;
        fields >> first;
        if (allDigits(first)) {
            SetLine set;
            set.index = std::stoull(first);
            fields >> set.name >> set.key >> set.uid >> set.values;
            sets.push_back(set);
        } else if (!sets.empty() && line.find(" -> ") != std::string::npos) {
            ReferenceLine reference;
            std::string arrow;
            reference.element = first;
            fields >> arrow >> reference.uid;
            const std::size_t open = line.find('(', line.find(" -> "));
            const std::size_t close = line.rfind(')');
            if (open != std::string::npos && close != std::string::npos && close > open) {
                reference.target = line.substr(open + 1, close - open - 1);
            }
            sets.back().references.push_back(reference);
        }
    }
    return sets;
}

void replaceFirst(std::vector<std::uint8_t>& bytes, const std::vector<std::uint8_t>& from,
                  const std::vector<std::uint8_t>& to) {
    const auto at = std::search(bytes.begin(), bytes.end(), from.begin(), from.end());
    if (at == bytes.end() || from.size() != to.size()) {
        throw std::runtime_error("the bytes to replace are not there");
    }
    std::copy(to.begin(), to.end(), at);
}

} // namespace VellumTest
