#ifndef VELLUM_FUZZ_FUZZTARGETS_H
#define VELLUM_FUZZ_FUZZTARGETS_H

#include <cstddef>
#include <cstdint>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

/// @file
/// The code every fuzz target runs on one input, shared with the test that replays the
/// inputs under tests/data/fuzz-regressions.
///
/// Each entry feeds the bytes to one part of the library. The library's own exceptions
/// (Exceptions::BaseException) are the expected answer to bad input and are caught here.
/// Where the library promises an exact result (bytes written back unchanged, equal header
/// metadata after a round trip, a text form that parses back), a broken promise throws
/// Finding. Anything else that escapes (another exception, a crash, a sanitizer report) is
/// a fault too.

namespace VellumFuzz {

/// A broken promise of the library, found by a fuzz target.
class Finding : public std::logic_error {
public:
    using std::logic_error::logic_error;
};

/// One fuzz target: its name (the folder of its corpus and regression inputs) and entry.
struct Target {
    const char* name;
    void (*run)(const std::uint8_t* data, std::size_t size);
};

/// Reads the bytes as an MXF file (or, when they start with a primer pack, as header
/// metadata alone), then writes every partition read back and compares.
void readMXF(const std::uint8_t* data, std::size_t size);
/// Imports the bytes as an XML document into a fresh partition over the built-in
/// dictionary, then writes it as KLV, reads it back and compares.
void importXML(const std::uint8_t* data, std::size_t size);
/// Loads the bytes as a dictionary text, into an empty or the built-in dictionary.
void loadDictionary(const std::uint8_t* data, std::size_t size);
/// Parses value texts and stored values of the kind the first byte selects.
void parseValueText(const std::uint8_t* data, std::size_t size);
/// MXF bytes (as readMXF) to the model, to XML in both layouts, back to a model; the two
/// models must hold equal header metadata.
void roundTrip(const std::uint8_t* data, std::size_t size);

/// Every target, by name.
const std::vector<Target>& targets();
/// The target called `name`, or nullptr.
const Target* findTarget(std::string_view name);

} // namespace VellumFuzz

#endif
