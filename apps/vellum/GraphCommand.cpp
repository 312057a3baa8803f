#include "GraphCommand.h"

#include "ArgumentParser.h"
#include "GraphBuilder.h"
#include "GraphvizRenderer.h"
#include "OutputFile.h"
#include "PartitionInput.h"
#include "UsageError.h"

#include "Vellum/MXF/PartitionPack.h"
#include "Vellum/Metadata/PartitionMetadata.h"

#include <ostream>
#include <string>

namespace Vellum::App {

std::string GraphCommand::name() const {
    return "graph";
}

std::string GraphCommand::summary() const {
    return "draw the header metadata as a Graphviz graph (DOT or SVG)";
}

std::string GraphCommand::synopsis() const {
    return "vellum graph [--partition P] [--dictionary FILE]... [--all-sets] [--format dot|svg] "
           "[-o OUT] FILE";
}

std::string GraphCommand::description() const {
    return "Draws the header metadata of one partition of FILE as a graph: one node per set,\n"
           "named by its XML tag name, with the values that identify it (package name and\n"
           "UMID, track ID, number and kind, edit rate, duration, start timecode, essence\n"
           "coding and picture or sound parameters). Solid edges are strong references,\n"
           "dashed ones weak references, dotted ones lead from a source clip to the track\n"
           "(or package) it names. Sets the dictionary does not know are grey and dashed,\n"
           "dark metadata sets grey notes. By default the graph holds the sets the Preface\n"
           "reaches through strong references; --all-sets adds every other set and the dark\n"
           "metadata sets. The DOT text needs nothing else; --format svg lays it out with\n"
           "Graphviz's 'dot' program (package graphviz). FILE '-' reads standard input.\n";
}

std::string GraphCommand::optionHelp() const {
    return "  -o, --output OUT   write the graph to OUT instead ('-': standard output)\n"
           "  --format F         dot (the default: the graph in the DOT language) or svg\n"
           "  --all-sets         draw every set and dark metadata set, not only those the\n"
           "                     Preface reaches\n" +
           PartitionInput::optionHelp();
}

void GraphCommand::declareOptions(ArgumentParser& parser) const {
    parser.addValueOption("output", 'o');
    parser.addValueOption("format");
    parser.addFlag("all-sets");
    PartitionInput::declareOptions(parser);
}

int GraphCommand::run(const ArgumentParser& arguments, std::ostream& out) {
    arguments.requirePositionals(1, 1, "FILE");
    const std::string output = arguments.value("output").value_or("-");
    if (output.empty()) {
        throw UsageError("option '--output' needs a file name, not ''", synopsis());
    }
    const std::string format = arguments.value("format").value_or("dot");
    if (format != "dot" && format != "svg") {
        throw UsageError("option '--format' takes dot or svg, not '" + format + "'", synopsis());
    }
    const PartitionInput input(arguments);
    const PartitionInput::HeaderMetadata metadata = input.readMetadata();
    GraphBuilder::Options options;
    options.allSets = arguments.flag("all-sets");
    options.title = input.path() + " \xE2\x80\x94 header metadata of partition " +
                    std::to_string(input.partitionIndex()) + " (" + input.partition().kindName() +
                    ")";
    std::string text = GraphBuilder(*metadata.partition, options).build();
    if (format == "svg") {
        text = GraphvizRenderer().render(text, "svg");
    }
    OutputFile::write(text.data(), text.size(), output, out,
                      format == "svg" ? "the SVG" : "the graph");
    return 0;
}

} // namespace Vellum::App
