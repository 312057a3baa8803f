#ifndef VELLUM_APP_GRAPHVIZRENDERER_H
#define VELLUM_APP_GRAPHVIZRENDERER_H

#include <string>

namespace Vellum::App {

/// Lays out a DOT graph with Graphviz's `dot` program, run as a child process (found through
/// PATH, no shell) that reads the graph from a pipe and writes the drawing to another.
class GraphvizRenderer {
public:
    /// @param program the Graphviz program to run, "dot" unless given.
    explicit GraphvizRenderer(std::string program = "dot");

    /// The drawing of `dot` in `format` ("svg", "png" ... as `dot -T` takes it). Throws
    /// IOError when the program cannot be started (naming the graphviz package when it is
    /// not installed), or fails (with what it wrote on stderr).
    std::string render(const std::string& dot, const std::string& format) const;

private:
    std::string m_program;
};

} // namespace Vellum::App

#endif
