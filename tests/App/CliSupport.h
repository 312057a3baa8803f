#ifndef VELLUM_TESTS_APP_CLISUPPORT_H
#define VELLUM_TESTS_APP_CLISUPPORT_H

#include "Support/TempDir.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <vector>

/// @file
/// Helpers for the tests of the vellum program: running it, reading its listings, and
/// walking KLV bytes independently of the library to know what the listings must show.

namespace VellumTest {

/// A test of the program, with a temporary directory of its own.
class ProgramTest : public ::testing::Test {
protected:
    TempDir m_dir;
};

/// The same, run for each sample (a file name or a path).
class ProgramOnSample : public ::testing::TestWithParam<std::string> {
protected:
    TempDir m_dir;
};

/// What one run of the program produced.
struct ProgramRun {
    int exitCode = -1; ///< the exit status, or -1 if the program did not exit normally
    std::string out;   ///< everything written to stdout
    std::string err;   ///< everything written to stderr
};

/// How a run gets its standard input and environment.
struct RunSetup {
    std::string environment;  ///< "NAME=value ..." set for the program; empty for none
    std::string input;        ///< a file given as standard input; empty for none
    bool throughPipe = false; ///< feed `input` through a pipe, which cannot seek
};

/// Runs the vellum program with `arguments`; stderr goes through a file in `dir`.
ProgramRun runVellum(const std::vector<std::string>& arguments, const TempDir& dir,
                     const RunSetup& setup = {});

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

/// Whether `run` failed as the program fails: exit status `status`, nothing on stdout, and one
/// error line that holds `problem`.
::testing::AssertionResult failedWith(const ProgramRun& run, int status,
                                      const std::string& problem);

/// One command line the program must refuse, and what its error line names.
struct UsageCase {
    std::vector<std::string> arguments;
    std::string problem;
};

/// Runs `arguments`, in which "OUT" stands for an output file that already exists alone in a
/// folder; expects the run to fail with status 1 and one error line naming `problem`, the
/// output unchanged and no temporary file left beside it. Returns the run.
ProgramRun expectFailureKeepsOutput(std::vector<std::string> arguments, const std::string& problem,
                                    const TempDir& dir);

/// Whether `text` names "offset <offset>" (and not a longer number that starts alike).
bool namesOffset(const std::string& text, std::uint64_t offset);

/// Where a partition's header metadata lies, found by walking the bytes: from the primer pack
/// after the partition pack at `partitionOffset`, HeaderByteCount bytes.
struct HeaderRegion {
    std::uint64_t offset = 0;
    std::uint64_t size = 0;
};

/// The header metadata region of the partition whose pack starts at `partitionOffset`.
/// Throws std::runtime_error if the bytes there are not a partition pack followed by a primer.
HeaderRegion findHeaderRegion(const std::vector<std::uint8_t>& bytes,
                              std::uint64_t partitionOffset);

/// One row of the partition table of `info`.
struct PartitionLine {
    std::string kind;
    std::string status; ///< "closed complete" ...
    std::uint64_t offset = 0;
    std::uint64_t headerBytes = 0;
    std::uint64_t indexBytes = 0;
};

/// The partition table of `info`, in order.
std::vector<PartitionLine> parseInfoPartitions(const std::string& out);
/// The "sets by name" table of `info`: set name to count.
std::map<std::string, std::uint64_t> parseInfoSetCounts(const std::string& out);
/// The number after "<label>:" on the first line of `out` that holds it (after spaces).
/// Throws std::runtime_error if there is none.
std::uint64_t countAfter(const std::string& out, const std::string& label);

/// One reference line of `sets`, below its set.
struct ReferenceLine {
    std::string element;
    std::string uid;
    std::string target; ///< the text in parentheses: a set name, "dangling", ", weak" added
};

/// One set of `sets`, with the references listed below it.
struct SetLine {
    std::uint64_t index = 0;
    std::string name;
    std::string key;
    std::string uid;
    std::uint64_t values = 0;
    std::vector<ReferenceLine> references;
};

/// Replaces the first occurrence of `from` in `bytes` by `to` (of the same size). Throws
/// std::runtime_error if `from` does not occur.
void replaceFirst(std::vector<std::uint8_t>& bytes, const std::vector<std::uint8_t>& from,
                  const std::vector<std::uint8_t>& to);

/// The bytes of the file at `path` with the key of its first TimecodeComponent changed to one
/// no dictionary knows, 06.0E.2B.34.02.53.01.01.0D.01.01.01.01.01.F0.00.
std::vector<std::uint8_t> withUnknownTimecodeKey(const std::string& path);

/// A text as the big-endian UTF-16 bytes MXF stores.
std::vector<std::uint8_t> utf16(const std::u16string& text);

/// The sets of a `sets` listing, in order.
std::vector<SetLine> parseSetsListing(const std::string& out);

} // namespace VellumTest

#endif
