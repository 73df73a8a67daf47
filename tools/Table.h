// Human output in columns under headings, for the client's lists.
//
//   Table table({"LAYER", "FLAGS", "DESCRIPTION"});
//   table.add({"Walls", "in use", ""});
//   table.print(std::cout);
//
//   LAYER  FLAGS   DESCRIPTION
//   Walls  in use
#pragma once

#include <ostream>
#include <string>
#include <vector>

namespace lodeqdb::cli {

class Table {
  public:
    explicit Table(std::vector<std::string> headings);

    /// One row of UTF-8 cells, as many as there are headings.
    void add(std::vector<std::string> cells);
    /// The headings and every row, each column as wide as its widest cell (counted in
    /// characters), two spaces between columns, no trailing blanks. A table without rows
    /// prints its headings and "(none)".
    void print(std::ostream& out) const;

  private:
    std::vector<std::string> m_headings;
    std::vector<std::vector<std::string>> m_rows;
};

}  // namespace lodeqdb::cli
