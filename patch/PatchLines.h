#pragma once

#include "patch/modPatchText.h"

#include <array>
#include <cstddef>
#include <string>
#include <string_view>

namespace plinket3 {

/// Walks a patch's bytes line by line without copying them. Lines end with LF or CR LF; the last one needs no end.
class PatchLines {
public:
    explicit PatchLines(std::string_view bytes) : bytes_(bytes) {}

    bool AtEnd() const { return position_ >= bytes_.size(); }
    std::size_t Position() const { return position_; }

    /// The next line without its end; empty at the end of the bytes.
    std::string_view Next() {
        const std::size_t end = bytes_.find('\n', position_);
        std::string_view line = bytes_.substr(position_, end - position_);
        position_ = end == std::string_view::npos ? bytes_.size() : end + 1;
        if (line.ends_with('\r'))
            line.remove_suffix(1);
        return line;
    }

    /// Goes to the end of the bytes.
    void Skip() { position_ = bytes_.size(); }

    /// The next `count` logical characters, across lines; see `ReadCountedCharacters`.
    std::string Characters(std::int32_t count) { return modPatchText::ReadCountedCharacters(bytes_, position_, count); }

    /// The next `count` characters as engines count them: a carriage return is none. Fewer at the end of the bytes.
    std::string EngineCharacters(std::int32_t count) {
        std::string characters;
        for (; count > 0 && !AtEnd(); ++position_)
            if (bytes_[position_] != '\r') {
                characters += bytes_[position_];
                --count;
            }
        return characters;
    }

private:
    std::string_view bytes_;
    std::size_t position_ = 0;
};

/// The words of a header line: parted by blanks, text in brackets being one word without its brackets. A
/// `comment` outside brackets ends the line.
class HeaderWords {
public:
    HeaderWords(std::string_view line, char comment) {
        const std::array<char, 3> ends{' ', '(', comment};
        std::size_t at = 0;
        while (count_ < words_.size()) {
            at = line.find_first_not_of(' ', at);
            if (at == std::string_view::npos || line[at] == comment)
                return;
            std::size_t end = 0;
            if (line[at] == '(') {
                end = line.find(')', ++at);
                words_[count_++] = line.substr(at, end - at);
                if (end == std::string_view::npos)
                    return;
                at = end + 1;
            } else {
                end = line.find_first_of({ends.data(), ends.size()}, at);
                words_[count_++] = line.substr(at, end - at);
                if (end == std::string_view::npos)
                    return;
                at = end;
            }
        }
    }

    /// At most 5: more words than any header line has a use for.
    std::size_t Count() const { return count_; }
    /// Empty beyond the last word.
    std::string_view operator[](std::size_t index) const { return words_[index]; }

private:
    std::array<std::string_view, 5> words_{};
    std::size_t count_ = 0;
};

} // namespace plinket3
