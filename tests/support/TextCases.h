#pragma once

#include <filesystem>
#include <functional>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

namespace plinket3::test {

/// A case of a text file of cases: "=== NAME", or "=== NAME (KIND)", begins one, its text follows, and behind the first
/// "--- SECTION" what is told of that.
struct TextCase {
    std::string name, kind, text, told; // `told` with its lines that begin sections
    friend void PrintTo(const TextCase& each, std::ostream* out) { *out << each.name; }
};
std::vector<TextCase> CasesIn(const std::filesystem::path& file);

/// A text of questions behind "$ ", each with lines of its own behind "| " and then the answer, with the answers that
/// `answer` gives to a question and its lines.
using AnswerTo = std::function<std::string(const std::string& question, const std::string& lines)>;
std::string Retold(const std::string& text, const AnswerTo& answer);

/// Bytes as such files have them: "%0D" is the byte of that code; "%" at the end of a line takes the line feed away.
std::string Encoded(std::string_view bytes);
std::string Decoded(std::string_view text);

} // namespace plinket3::test
