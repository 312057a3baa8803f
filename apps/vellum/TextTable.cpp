#include "TextTable.h"

#include <algorithm>
#include <ostream>
#include <stdexcept>
#include <utility>

namespace Vellum::App {

TextTable::TextTable(std::vector<Column> columns)
    : m_columns(std::move(columns)) {
    if (m_columns.empty()) {
        throw std::invalid_argument("a text table needs at least one column");
    }
}

void TextTable::addRow(std::vector<std::string> cells) {
    if (cells.size() != m_columns.size()) {
        throw std::invalid_argument("a row of " + std::to_string(cells.size()) +
                                    " cells in a table of " + std::to_string(m_columns.size()) +
                                    " columns");
    }
    m_lines.push_back(Line{std::move(cells), {}});
    ++m_rowCount;
}

void TextTable::addNote(std::string line) {
    m_lines.push_back(Line{{}, std::move(line)});
}

void TextTable::print(std::ostream& out, const std::string& indent) const {
    std::vector<std::size_t> widths;
    std::vector<std::string> headings;
    for (const Column& column : m_columns) {
        widths.push_back(column.heading.size());
        headings.push_back(column.heading);
    }
    for (const Line& line : m_lines) {
        for (std::size_t i = 0; i < line.cells.size(); ++i) {
            widths[i] = std::max(widths[i], line.cells[i].size());
        }
    }
    out << indent;
    printCells(out, headings, widths);
    for (const Line& line : m_lines) {
        out << indent;
        if (line.cells.empty()) {
            out << line.note << '\n';
        } else {
            printCells(out, line.cells, widths);
        }
    }
}

void TextTable::printCells(std::ostream& out, const std::vector<std::string>& cells,
                           const std::vector<std::size_t>& widths) const {
    for (std::size_t i = 0; i < cells.size(); ++i) {
        const std::string padding(widths[i] - cells[i].size(), ' ');
        const bool last = i + 1 == cells.size();
        if (i > 0) {
            out << "  ";
        }
        if (m_columns[i].align == Align::Right) {
            out << padding << cells[i];
        } else {
            out << cells[i] << (last ? std::string() : padding);
        }
    }
    out << '\n';
}

} // namespace Vellum::App
