#include "CliSupport.h"

#include <algorithm>
#include <cctype>
#include <cstdio>
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

} // namespace

ProgramRun runVellum(const std::vector<std::string>& arguments, const TempDir& dir) {
    static int runs = 0;
    const std::string errPath = dir.file("stderr-" + std::to_string(++runs) + ".txt");
    std::string command = shellQuote(VELLUM_EXECUTABLE);
    for (const std::string& argument : arguments) {
        command += " " + shellQuote(argument);
    }
    command += " 2>" + shellQuote(errPath);
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

} // namespace VellumTest
