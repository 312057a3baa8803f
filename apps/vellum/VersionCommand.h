#ifndef VELLUM_APP_VERSIONCOMMAND_H
#define VELLUM_APP_VERSIONCOMMAND_H

#include "Command.h"

namespace Vellum::App {

/// "vellum version": the program's version and that of the library it was built with.
class VersionCommand : public Command {
public:
    std::string name() const override;
    std::string summary() const override;
    std::string synopsis() const override;

protected:
    std::string description() const override;
    /// Throws UsageError if any argument is given.
    int run(const ArgumentParser& arguments, std::ostream& out) override;
};

} // namespace Vellum::App

#endif
