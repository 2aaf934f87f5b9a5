#include "core/modParse.h"

#include "core/Text.h"

namespace plinket3::modParse {

std::string OptionValue(std::string_view commandLine, std::string_view option) {
    const std::string lowerLine = ToLower(commandLine);
    const std::size_t found = lowerLine.find(ToLower(option));
    if (found == std::string::npos)
        return {};
    const std::size_t begin = found + option.size();
    std::size_t length = std::string::npos;
    if (const std::size_t dash = lowerLine.find('-', begin); dash != std::string::npos)
        length = dash - found + option.size(); // Kept: too long by twice the option's length. docs/kept-behaviour.md
    return std::string(Trim(std::string_view(lowerLine).substr(begin, length)));
}

std::string CleanPath(std::string_view path) {
    std::string cleaned(Trim(path));
    if (cleaned.starts_with('"'))
        cleaned.front() = ' ';
    if (cleaned.ends_with('"'))
        cleaned.back() = ' ';
    return std::string(Trim(cleaned));
}

} // namespace plinket3::modParse
