#ifndef VELLUM_APP_TOXMLCOMMAND_H
#define VELLUM_APP_TOXMLCOMMAND_H

#include "Command.h"

namespace Vellum::App {

/// "vellum to-xml FILE [-o OUT]": writes the header metadata of one partition as XML.
class ToXmlCommand : public Command {
public:
    std::string name() const override;
    std::string summary() const override;
    std::string synopsis() const override;

protected:
    std::string description() const override;
    std::string optionHelp() const override;
    void declareOptions(ArgumentParser& parser) const override;
    /// Reads the header metadata and writes its XML to `out`, or to the "--output" file
    /// (replaced only once every byte is written). Throws UsageError for a bad command line,
    /// what PartitionInput throws, InvalidFormat when the header metadata has no Preface, and
    /// IOError when the output cannot be written.
    int run(const ArgumentParser& arguments, std::ostream& out) override;
};

} // namespace Vellum::App

#endif
