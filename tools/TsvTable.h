#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <limits>
#include <string>
#include <string_view>
#include <vector>

namespace plinket3::tools {

/// The first thing found wrong in the tables. Reading goes on behind it with zeros and empty texts, so that only the
/// end has to ask.
class Fault {
public:
    /// Kept when it is the first one.
    void Report(std::string text) {
        if (text_.empty())
            text_ = std::move(text);
    }
    bool Found() const { return !text_.empty(); }
    /// One line: file, line, column and reason.
    const std::string& Text() const { return text_; }

private:
    std::string text_;
};

/// A fact table in the strict form that data/engines/README.md tells: ASCII, a line feed behind every row, one tab
/// between cells, the column names first, five escapes. Rows count from 0.
class TsvTable {
public:
    /// A file that cannot be read or is not of this form is reported to `fault`, which has to outlive the table; the
    /// table then has no rows.
    TsvTable(const std::filesystem::path& file, Fault& fault);

    std::size_t RowCount() const { return rows_.size(); }
    const std::vector<std::string>& Columns() const { return columns_; }

    /// A cell with its escapes undone; valid as long as the table. A missing column is reported and gives "".
    std::string_view Text(std::size_t row, std::string_view column) const;
    /// A decimal number; one that is none or that is out of range is reported and gives 0.
    std::int32_t Number(std::size_t row, std::string_view column,
                        std::int32_t lowest = std::numeric_limits<std::int32_t>::min(),
                        std::int32_t highest = std::numeric_limits<std::int32_t>::max()) const;

    /// Reports the first row whose number in `column` is not its own.
    void ExpectIndex(std::string_view column) const;
    void ExpectRowCount(std::size_t count) const;

    void Report(std::size_t row, std::string_view column, std::string_view reason) const;

private:
    using Row = std::vector<std::string>;

    void Parse(std::string_view bytes);
    void ParseRow(std::string_view line);
    std::string Unescape(std::string_view cell, std::size_t column);
    void ReportLine(std::size_t line, std::string_view reason) const;

    std::string file_;
    Fault& fault_;
    Row columns_;
    std::vector<Row> rows_;
};

} // namespace plinket3::tools
