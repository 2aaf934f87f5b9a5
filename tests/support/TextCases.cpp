#include "tests/support/TextCases.h"

#include "tests/support/TestSupport.h"

#include <algorithm>
#include <sstream>

namespace plinket3::test {

std::vector<TextCase> CasesIn(const std::filesystem::path& file) {
    std::vector<TextCase> cases;
    std::istringstream lines(ReadFile(file));
    for (std::string line; std::getline(lines, line);) {
        if (line.starts_with("=== ")) {
            const std::size_t name = line.find(" (");
            const std::string kind = name == line.npos ? "" : line.substr(name + 2, line.size() - name - 3);
            cases.push_back({line.substr(4, name - 4), kind, "", ""});
        } else if (TextCase& last = cases.back(); line.starts_with("--- ") || !last.told.empty()) {
            last.told += line + "\n";
        } else {
            last.text += line + "\n";
        }
    }
    return cases;
}

std::string Retold(const std::string& text, const AnswerTo& answer) {
    std::string told, question, lines;
    std::istringstream all(text);
    bool isAnswered = true;
    for (std::string line; std::getline(all, line);) {
        if (line.starts_with("$ ")) {
            question = line.substr(2);
            lines.clear();
            isAnswered = false;
            told += line + "\n";
        } else if (line.starts_with('|') && !isAnswered) {
            lines += line.substr(std::min<std::size_t>(line.size(), 2)) + "\n";
            told += line + "\n";
        }
        if (const int next = all.peek(); !isAnswered && next != '|') {
            told += answer(question, lines);
            isAnswered = true;
        }
    }
    return told;
}

std::string Encoded(std::string_view bytes) {
    constexpr std::string_view digits = "0123456789ABCDEF";
    std::string text;
    for (std::size_t at = 0; at < bytes.size(); ++at) {
        const auto byte = static_cast<unsigned char>(bytes[at]);
        const bool blankAtEnd = byte == ' ' && (at + 1 == bytes.size() || bytes[at + 1] == '\n');
        if (byte == '\n' || (byte >= ' ' && byte < 0x7f && byte != '%' && !blankAtEnd))
            text += bytes[at];
        else
            text.append({'%', digits[byte >> 4U], digits[byte & 15U]});
    }
    return text.empty() || text.ends_with('\n') ? text : text + "%\n";
}

std::string Decoded(std::string_view text) {
    std::string bytes;
    for (std::size_t at = 0; at < text.size(); ++at) {
        if (text[at] != '%') {
            bytes += text[at];
        } else if (text[++at] != '\n') {
            bytes += static_cast<char>(std::stoi(std::string(text.substr(at, 2)), nullptr, 16));
            ++at;
        }
    }
    return bytes;
}

} // namespace plinket3::test
