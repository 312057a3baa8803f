#ifndef VELLUM_APP_GRAPHCOMMAND_H
#define VELLUM_APP_GRAPHCOMMAND_H

#include "Command.h"

namespace Vellum::App {

/// "vellum graph FILE": the header metadata of one partition as a Graphviz graph, in the DOT
/// language or, laid out by Graphviz's `dot`, as SVG.
class GraphCommand : public Command {
public:
    std::string name() const override;
    std::string summary() const override;
    std::string synopsis() const override;

protected:
    std::string description() const override;
    std::string optionHelp() const override;
    void declareOptions(ArgumentParser& parser) const override;
    /// Reads the header metadata, draws it (GraphBuilder) and writes the graph to `out` or to
    /// the "--output" file (replaced only once every byte is written). Throws UsageError for
    /// a bad command line, what PartitionInput throws, and IOError when Graphviz cannot run
    /// or fails, or the output cannot be written.
    int run(const ArgumentParser& arguments, std::ostream& out) override;
};

} // namespace Vellum::App

#endif
