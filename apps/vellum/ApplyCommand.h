#ifndef VELLUM_APP_APPLYCOMMAND_H
#define VELLUM_APP_APPLYCOMMAND_H

#include "Command.h"

#include <string>

namespace Vellum::App {

/// "vellum apply FILE.mxf DOC.xml (-o OUT.mxf | --in-place)": writes the edit that DOC makes
/// of FILE's header metadata into every partition of FILE that carries header metadata,
/// without re-wrapping the essence: in place when the new header metadata fits the space of
/// each partition, else into a rewritten copy. The result is read back and checked.
class ApplyCommand : public Command {
public:
    std::string name() const override;
    std::string summary() const override;
    std::string synopsis() const override;

protected:
    std::string description() const override;
    std::string optionHelp() const override;
    void declareOptions(ArgumentParser& parser) const override;
    int run(const ArgumentParser& arguments, std::ostream& out) override;
};

} // namespace Vellum::App

#endif
