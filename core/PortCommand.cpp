#include "core/PortCommand.h"

#include <utility>

namespace plinket3 {

namespace {

/// The values of a word that is nothing but a token; null for another one.
const std::vector<std::string>* LoneToken(std::string_view word, const TokenValues& values) {
    if (word.size() != 2 || word[0] != '%')
        return nullptr;
    const auto found = values.find(word[1]);
    return found == values.end() ? nullptr : &found->second;
}

std::string ExpandWithin(std::string_view word, const TokenValues& values) {
    std::string expanded;
    for (std::size_t at = 0; at < word.size(); ++at) {
        const char letter = at + 1 < word.size() ? word[at + 1] : '\0';
        const auto token = values.find(letter);
        if (word[at] != '%' || (letter != '%' && token == values.end())) {
            expanded += word[at];
            continue;
        }
        ++at;
        if (letter == '%') {
            expanded += '%';
            continue;
        }
        for (std::size_t value = 0; value < token->second.size(); ++value)
            expanded += (value == 0 ? "" : " ") + token->second[value];
    }
    return expanded;
}

} // namespace

Status SplitWords(std::string_view text, std::vector<std::string>& words) {
    words.clear();
    std::string word;
    bool inWord = false; // also in an empty one, which quotation marks make
    char quote = '\0';
    for (const char character : text) {
        const bool blank = character == ' ' || character == '\t';
        if (quote != '\0' ? character == quote : character == '"' || character == '\'') {
            quote = quote == '\0' ? character : '\0';
            inWord = true;
        } else if (blank && quote == '\0') {
            if (std::exchange(inWord, false))
                words.push_back(std::exchange(word, {}));
        } else {
            word += character;
            inWord = true;
        }
    }
    if (inWord)
        words.push_back(std::move(word));
    if (quote == '\0')
        return {};
    words.clear();
    return Status::Failure(std::string("nothing closes the quotation mark ") + quote);
}

std::vector<std::string> ExpandTokens(const std::vector<std::string>& words, const TokenValues& values) {
    std::vector<std::string> expanded;
    bool option = false; // the last one of `expanded` is an option as it was written
    for (const std::string& word : words) {
        const std::vector<std::string>* lone = LoneToken(word, values);
        if (lone == nullptr)
            expanded.push_back(ExpandWithin(word, values));
        else if (!lone->empty())
            expanded.insert(expanded.end(), lone->begin(), lone->end());
        else if (option)
            expanded.pop_back();
        option = lone == nullptr && (word.starts_with('-') || word.starts_with('+'));
    }
    return expanded;
}

} // namespace plinket3
