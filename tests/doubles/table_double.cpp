#include "platform/table/table.h"

#include "doubles/platform_double.h"

using tarsel_test::PlatformDouble;

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
    : columns_(columns), title_(title), layout_(layout) {}

TableSerializer::~TableSerializer() = default;

TableStream& TableSerializer::sstream() {
    return stream_;
}

void TableSerializer::PrintTable(std::ostream& /*out*/) {
    PlatformDouble::Current().PrintTable(columns_, title_, layout_, stream_.Cells());
}
