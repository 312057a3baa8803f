#ifndef VELLUM_APP_HEADERCOMMAND_H
#define VELLUM_APP_HEADERCOMMAND_H

#include "Command.h"

namespace Vellum::App {

/// "vellum header FILE -o OUT": writes the header metadata of one partition (primer pack,
/// sets, dark sets and fill) as the library writes it back.
class HeaderCommand : public Command {
public:
    std::string name() const override;
    std::string summary() const override;
    std::string synopsis() const override;

protected:
    std::string description() const override;
    std::string optionHelp() const override;
    void declareOptions(ArgumentParser& parser) const override;
    /// Reads the header metadata, then writes it to the "--output" file (replaced only once
    /// every byte is written, so a failure leaves an existing file as it was) or, for "-", to
    /// `out`. Throws UsageError without "--output", and what PartitionInput throws; IOError
    /// when the output cannot be written.
    int run(const ArgumentParser& arguments, std::ostream& out) override;
};

} // namespace Vellum::App

#endif
