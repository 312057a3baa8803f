#ifndef VELLUM_APP_TEXTTABLE_H
#define VELLUM_APP_TEXTTABLE_H

#include <cstddef>
#include <iosfwd>
#include <string>
#include <vector>

namespace Vellum::App {

/// A plain-text table: a heading line and rows whose columns line up, two spaces apart, plus
/// free lines between rows (notes) that do not take part in the alignment. Widths count
/// bytes, so cells are meant to be ASCII.
class TextTable {
public:
    enum class Align { Left, Right };

    /// One column: its heading and how its cells line up.
    struct Column {
        std::string heading;
        Align align = Align::Left;
    };

    /// A table with these columns (at least one).
    explicit TextTable(std::vector<Column> columns);

    /// Appends a row. Throws std::invalid_argument unless it has one cell per column.
    void addRow(std::vector<std::string> cells);
    /// Appends a line printed as it is (after the indent) below the rows added so far.
    void addNote(std::string line);
    /// The number of rows (notes not counted).
    std::size_t rowCount() const noexcept { return m_rowCount; }

    /// Writes the heading, then the rows and notes in the order they were added, each line
    /// starting with `indent`. A left-aligned last column gets no trailing spaces.
    void print(std::ostream& out, const std::string& indent) const;

private:
    struct Line {
        std::vector<std::string> cells; // empty for a note
        std::string note;
    };

    void printCells(std::ostream& out, const std::vector<std::string>& cells,
                    const std::vector<std::size_t>& widths) const;

    std::vector<Column> m_columns;
    std::vector<Line> m_lines;
    std::size_t m_rowCount = 0;
};

} // namespace Vellum::App

#endif
