#include "Command.h"

#include "ArgumentParser.h"

#include <ostream>

namespace Vellum::App {

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
    out << "usage: " << synopsis() << "\n\n"
        << description() << "\noptions:\n"
        << optionHelp() << "  -h, --help    show this help\n";
}

std::string Command::optionHelp() const {
    return {};
}

void Command::declareOptions(ArgumentParser& /*parser*/) const {}

} // namespace Vellum::App
