#include "platform/table/table.h"

#include <algorithm>
#include <utility>

#include "platform/table/display_width.h"

namespace {

struct Cell {
    std::string text;
    std::size_t width;
};

using Row = std::vector<Cell>;

std::vector<Row> Rows(const std::vector<std::string>& cells, std::size_t columns) {
    std::vector<Row> rows;
    rows.reserve((cells.size() + columns - 1) / columns);
    for (std::size_t i = 0; i < cells.size(); ++i) {
        if (i % columns == 0) rows.emplace_back();
        std::string text = WithoutControls(cells[i]);
        const std::size_t width = DisplayWidth(text);
        rows.back().push_back(Cell{std::move(text), width});
    }
    return rows;
}

std::vector<std::size_t> ColumnWidths(const std::vector<Row>& rows, std::size_t columns) {
    std::vector<std::size_t> widths(columns, 0);
    for (const Row& row : rows) {
        for (std::size_t i = 0; i < row.size(); ++i) widths[i] = std::max(widths[i], row[i].width);
    }
    return widths;
}

void AppendLine(std::string& text, std::string line) {
    line.erase(line.find_last_not_of(' ') + 1);
    text += line;
    text += '\n';
}

std::string LineOf(const Row& row, const std::vector<std::size_t>& widths, std::size_t padding) {
    std::string line;
    for (std::size_t i = 0; i < row.size(); ++i) {
        line += row[i].text;
        line.append(widths[i] - row[i].width + padding, ' ');
    }
    return line;
}

std::string RuleOf(const std::vector<std::size_t>& widths, std::size_t padding) {
    std::size_t length = padding * (widths.size() - 1);
    for (const std::size_t width : widths) length += width;
    return std::string(length, '-');
}

}  // namespace

TableStream& TableStream::operator<<(const char* cell) {
    cells_.emplace_back(cell);
    return *this;
}

TableStream& TableStream::operator<<(const std::string& cell) {
    cells_.push_back(cell);
    return *this;
}

TableStream& TableStream::operator<<(int cell) {
    cells_.push_back(std::to_string(cell));
    return *this;
}

TableSerializer::TableSerializer(std::uint64_t columns, const std::string& title,
                                 std::uint64_t layout)
    : columns_(std::max<std::uint64_t>(columns, 1)), title_(title), layout_(layout) {}

TableSerializer::~TableSerializer() = default;

TableStream& TableSerializer::sstream() {
    return stream_;
}

void TableSerializer::PrintTable(std::ostream& out) {
    const auto columns = static_cast<std::size_t>(columns_);
    const auto padding = static_cast<std::size_t>(layout_);
    const std::vector<Row> rows = Rows(stream_.Cells(), columns);
    const std::vector<std::size_t> widths = ColumnWidths(rows, columns);

    std::string text;
    AppendLine(text, WithoutControls(title_));
    for (std::size_t i = 0; i < rows.size(); ++i) {
        AppendLine(text, LineOf(rows[i], widths, padding));
        if (i == 0) AppendLine(text, RuleOf(widths, padding));
    }
    text += '\n';  // keeps the next table apart
    out.write(text.data(), static_cast<std::streamsize>(text.size()));
}
