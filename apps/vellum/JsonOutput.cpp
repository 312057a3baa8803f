#include "JsonOutput.h"

#include "ArgumentParser.h"

#include "Vellum/Types/UUID.h"
#include "Vellum/Utils/StringConversion.h"

#include <ostream>

namespace Vellum::App {

void JsonOutput::declareOption(ArgumentParser& parser) {
    parser.addFlag("json");
}

std::string JsonOutput::optionHelp() {
    return "  --json             write the listing as one JSON document (docs/json-output.md)\n";
}

bool JsonOutput::requested(const ArgumentParser& arguments) {
    return arguments.flag("json");
}

void JsonOutput::write(const Document& document, std::ostream& out) {
    out << document.dump(2, ' ', false, Document::error_handler_t::replace) << '\n';
}

std::string JsonOutput::identifier(const Types::UUID& uuid) {
    return Utils::wstringToString(uuid.toString());
}

} // namespace Vellum::App
