#include "VersionCommand.h"

#include "ArgumentParser.h"
#include "BuildInfo.h"

#include <ostream>

namespace Vellum::App {

std::string VersionCommand::name() const {
    return "version";
}

std::string VersionCommand::summary() const {
    return "print the program and library versions";
}

std::string VersionCommand::synopsis() const {
    return "vellum version";
}

std::string VersionCommand::description() const {
    return "Prints the version of this program and of the Vellum::Core library it was built "
           "with.\n";
}

int VersionCommand::run(const ArgumentParser& arguments, std::ostream& out) {
    arguments.requirePositionals(0, 0, "");
    out << "vellum " << BuildInfo::programVersion << '\n'
        << "Vellum::Core library " << BuildInfo::libraryVersion << " (ABI version "
        << BuildInfo::librarySoVersion << ")\n";
    return 0;
}

} // namespace Vellum::App
