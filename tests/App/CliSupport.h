#ifndef VELLUM_TESTS_APP_CLISUPPORT_H
#define VELLUM_TESTS_APP_CLISUPPORT_H

#include "Support/TempDir.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

/// @file
/// Helpers for the tests of the vellum program: running it, reading its KLV listing, and
/// walking KLV bytes independently of the library to know what the listing must show.

namespace VellumTest {

/// What one run of the program produced.
struct ProgramRun {
    int exitCode = -1; ///< the exit status, or -1 if the program did not exit normally
    std::string out;   ///< everything written to stdout
    std::string err;   ///< everything written to stderr
};

/// Runs the vellum program with `arguments`; stderr goes through a file in `dir`.
ProgramRun runVellum(const std::vector<std::string>& arguments, const TempDir& dir);

/// One triplet line of the `klv` listing, or one triplet found by `walkKlv`.
struct TripletLine {
    std::uint64_t offset = 0;
    std::string key;
    std::uint64_t length = 0;
    unsigned octets = 0;
    std::string name; ///< empty from `walkKlv`
};

/// The triplet lines of a `klv` listing (lines that start with an offset).
std::vector<TripletLine> parseListing(const std::string& out);

/// The result of walking KLV bytes.
struct Walk {
    std::vector<TripletLine> triplets;
    bool complete = false; ///< whether the walk reached the end without a fault
};

/// Walks consecutive KLV triplets in `bytes` from `start`, with plain byte reading.
Walk walkKlv(const std::vector<std::uint8_t>& bytes, std::size_t start);

/// Whether `err` is exactly one line that starts with "vellum: error: ".
bool isOneErrorLine(const std::string& err);

/// Whether `text` names "offset <offset>" (and not a longer number that starts alike).
bool namesOffset(const std::string& text, std::uint64_t offset);

} // namespace VellumTest

#endif
