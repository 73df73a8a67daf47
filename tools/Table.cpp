// Columns under headings: widths by characters, not bytes, so that names of any script align.
#include "tools/Table.h"

#include <algorithm>

namespace lodeqdb::cli {
namespace {

// Characters of UTF-8 text: every byte that doesn't continue a sequence.
size_t Characters(const std::string& text) {
    return static_cast<size_t>(std::count_if(text.begin(), text.end(), [](char c) {
        return (static_cast<unsigned char>(c) & 0xC0) != 0x80;
    }));
}

void PrintRow(std::ostream& out, const std::vector<std::string>& cells,
              const std::vector<size_t>& widths) {
    std::string line;
    for (size_t column = 0; column < cells.size(); ++column) {
        line += cells[column];
        if (column + 1 < cells.size())
            line.append(widths[column] - Characters(cells[column]) + 2, ' ');
    }
    line.erase(line.find_last_not_of(' ') + 1);
    out << line << '\n';
}

}  // namespace

Table::Table(std::vector<std::string> headings) : m_headings(std::move(headings)) {}

void Table::add(std::vector<std::string> cells) {
    cells.resize(m_headings.size());
    m_rows.push_back(std::move(cells));
}

void Table::print(std::ostream& out) const {
    std::vector<size_t> widths(m_headings.size());
    for (size_t column = 0; column < m_headings.size(); ++column) {
        widths[column] = Characters(m_headings[column]);
        for (const auto& row : m_rows)
            widths[column] = std::max(widths[column], Characters(row[column]));
    }
    PrintRow(out, m_headings, widths);
    for (const auto& row : m_rows) PrintRow(out, row, widths);
    if (m_rows.empty()) out << "(none)\n";
}

}  // namespace lodeqdb::cli
