#ifndef VELLUM_APP_JSONOUTPUT_H
#define VELLUM_APP_JSONOUTPUT_H

#include <iosfwd>
#include <nlohmann/json.hpp>
#include <string>

namespace Vellum::Types {
class UUID;
} // namespace Vellum::Types

namespace Vellum::App {

class ArgumentParser;

/// The "--json" option of the listing commands: their listing as one JSON document, whose
/// keys keep the order in which the command adds them (docs/json-output.md describes them).
class JsonOutput {
public:
    /// A JSON object or array whose keys keep their insertion order.
    using Document = nlohmann::ordered_json;

    /// Declares "--json" on `parser`.
    static void declareOption(ArgumentParser& parser);
    /// The help line of "--json".
    static std::string optionHelp();
    /// Whether "--json" was given.
    static bool requested(const ArgumentParser& arguments);

    /// Writes `document` to `out`, indented by two spaces, with a final line end. Text that is
    /// not valid UTF-8 is written with U+FFFD in place of the faulty bytes.
    static void write(const Document& document, std::ostream& out);

    /// The dotted-hex text of `uuid`.
    static std::string identifier(const Types::UUID& uuid);
};

} // namespace Vellum::App

#endif
