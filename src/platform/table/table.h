// Text tables: cells in, aligned columns out.
#pragma once

#include <cstddef>
#include <cstdint>
#include <ostream>
#include <string>
#include <vector>

/// Takes the cells of a table left to right, top to bottom; the first row is the header. A cell is
/// never split or merged, whatever it contains; empty cells are cells.
class TableStream {
  public:
    TableStream& operator<<(const char* cell);
    TableStream& operator<<(const std::string& cell);
    TableStream& operator<<(int cell);

    const std::vector<std::string>& Cells() const { return cells_; }

  private:
    std::vector<std::string> cells_;
};

/// One table. Columns are as wide as their widest cell (counted in terminal columns of its UTF-8
/// text) plus `layout` blanks. Nothing is cut or wrapped.
class TableSerializer {
  public:
    TableSerializer(std::uint64_t columns, const std::string& title, std::uint64_t layout);
    ~TableSerializer();

    TableStream& sstream();

    /// Writes title, header, a rule and the rows with one write; a missing last cell is empty.
    void PrintTable(std::ostream& out);

  private:
    std::uint64_t columns_;
    std::string title_;
    std::uint64_t layout_;
    TableStream stream_;
};
