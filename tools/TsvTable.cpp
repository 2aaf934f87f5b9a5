#include "tools/TsvTable.h"

#include "core/Files.h"

#include <algorithm>
#include <charconv>

namespace plinket3::tools {

namespace {

/// What a backslash and `character` stand for; 0 when they are no escape.
char EscapedCharacter(char character) {
    switch (character) {
    case '\\':
    case '"':
        return character;
    case 'n':
        return '\n';
    case 'r':
        return '\r';
    case 't':
        return '\t';
    default:
        return 0;
    }
}

/// Beside what can be printed, the engines' texts hold two control characters that have no escape.
bool IsAllowed(char character) {
    return (character >= ' ' && character <= '~') || character == '\x08' || character == '\x1a';
}

std::string Quoted(std::string_view text) { return '"' + std::string(text) + '"'; }

} // namespace

TsvTable::TsvTable(const std::filesystem::path& file, Fault& fault) : file_(file.string()), fault_(fault) {
    std::string bytes;
    if (const Status read = ReadWholeFile(file, bytes); !read)
        fault_.Report(file_ + ": cannot be read: " + read.Reason());
    else
        Parse(bytes);
}

void TsvTable::Parse(std::string_view bytes) {
    if (!bytes.ends_with('\n'))
        ReportLine(1 + static_cast<std::size_t>(std::ranges::count(bytes, '\n')), "has no line feed at its end");
    while (!bytes.empty() && !fault_.Found()) {
        const std::size_t end = bytes.find('\n');
        ParseRow(bytes.substr(0, end));
        bytes.remove_prefix(end + 1);
    }
    if (rows_.empty())
        fault_.Report(file_ + ": has no rows");
    if (fault_.Found())
        rows_.clear();
}

void TsvTable::ParseRow(std::string_view line) {
    Row cells;
    while (true) {
        const std::size_t end = line.find('\t');
        cells.push_back(Unescape(line.substr(0, end), cells.size()));
        if (end == std::string_view::npos)
            break;
        line.remove_prefix(end + 1);
    }
    if (!columns_.empty()) {
        rows_.push_back(std::move(cells));
        if (rows_.back().size() != columns_.size())
            ReportLine(rows_.size() + 1, "has " + std::to_string(rows_.back().size()) + " cells instead of " +
                                             std::to_string(columns_.size()));
        return;
    }
    columns_ = std::move(cells);
    for (auto column = columns_.begin(); column != columns_.end(); ++column)
        if (column->empty() || std::find(columns_.begin(), column, *column) != column)
            ReportLine(1, "column " + Quoted(*column) + ": needs a name of its own");
}

std::string TsvTable::Unescape(std::string_view cell, std::size_t column) {
    std::string text;
    const auto refuse = [&](std::string_view reason) {
        const std::string name = column < columns_.size() ? "column " + Quoted(columns_[column]) + ": " : std::string();
        ReportLine(columns_.empty() ? 1 : rows_.size() + 2, name + std::string(reason));
        return text;
    };
    for (std::size_t at = 0; at < cell.size(); ++at) {
        if (!IsAllowed(cell[at]))
            return refuse("holds a character that must not stand in a table");
        if (cell[at] == '"')
            return refuse("holds a double quote without a backslash");
        if (cell[at] != '\\') {
            text += cell[at];
            continue;
        }
        const char character = ++at < cell.size() ? EscapedCharacter(cell[at]) : '\0';
        if (character == 0)
            return refuse("holds an unknown escape");
        text += character;
    }
    return text;
}

std::string_view TsvTable::Text(std::size_t row, std::string_view column) const {
    const auto found = std::ranges::find(columns_, column);
    if (found != columns_.end() && row < rows_.size())
        return rows_[row][static_cast<std::size_t>(found - columns_.begin())];
    ReportLine(1, "column " + Quoted(column) + ": is missing");
    return {};
}

std::int32_t TsvTable::Number(std::size_t row, std::string_view column, std::int32_t lowest,
                              std::int32_t highest) const {
    const std::string_view text = Text(row, column);
    std::int32_t number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    const bool whole = end == text.data() + text.size() && error != std::errc::invalid_argument;
    if (!whole)
        Report(row, column, Quoted(text) + " is not a number");
    else if (error != std::errc() || number < lowest || number > highest)
        Report(row, column,
               std::string(text) + " is not within " + std::to_string(lowest) + " to " + std::to_string(highest));
    else
        return number;
    return 0;
}

void TsvTable::ExpectIndex(std::string_view column) const {
    for (std::size_t row = 0; row < rows_.size(); ++row)
        if (Text(row, column) != std::to_string(row))
            Report(row, column, Quoted(Text(row, column)) + " stands in the place of " + std::to_string(row));
}

void TsvTable::ExpectRowCount(std::size_t count) const {
    if (rows_.size() != count)
        fault_.Report(file_ + ": has " + std::to_string(rows_.size()) + " rows instead of " + std::to_string(count));
}

void TsvTable::Report(std::size_t row, std::string_view column, std::string_view reason) const {
    ReportLine(row + 2, "column " + Quoted(column) + ": " + std::string(reason));
}

void TsvTable::ReportLine(std::size_t line, std::string_view reason) const {
    fault_.Report(file_ + ':' + std::to_string(line) + ": " + std::string(reason));
}

} // namespace plinket3::tools
