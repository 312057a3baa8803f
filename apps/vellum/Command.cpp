#include "Command.h"

#include "ArgumentParser.h"

#include <algorithm>
#include <ostream>

namespace Vellum::App {
namespace {

// The column where the descriptions of an option list start (after the first run of two or
// more spaces on its first line), so that the "--help" line lines up with them.
std::size_t descriptionColumn(const std::string& options) {
    const std::string helpOption = "  -h, --help";
    const std::size_t fallback = helpOption.size() + 4; // "  -h, --help    "
    const std::size_t lineEnd = options.find('\n');
    const std::size_t gap = options.find("  ", 2);
    if (lineEnd == std::string::npos || gap == std::string::npos || gap > lineEnd) {
        return fallback;
    }
    const std::size_t column = options.find_first_not_of(' ', gap);
    return column > lineEnd ? fallback : std::max(column, helpOption.size() + 2);
}

} // namespace

Command::~Command() = default;

int Command::execute(const std::vector<std::string>& arguments, std::ostream& out) {
    ArgumentParser parser(synopsis());
    parser.addFlag("help", 'h');
    declareOptions(parser);
    parser.parse(arguments);
    if (parser.flag("help")) {
        printHelp(out);
        return 0;
    }
    return run(parser, out);
}

void Command::printHelp(std::ostream& out) const {
    const std::string options = optionHelp();
    const std::string helpOption = "  -h, --help";
    out << "usage: " << synopsis() << "\n\n"
        << description() << "\noptions:\n"
        << options << helpOption << std::string(descriptionColumn(options) - helpOption.size(), ' ')
        << "show this help\n";
}

std::string Command::optionHelp() const {
    return {};
}

void Command::declareOptions(ArgumentParser& /*parser*/) const {}

} // namespace Vellum::App
