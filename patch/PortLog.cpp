#include "patch/PortLog.h"

#include "core/Numbers.h"
#include "core/Text.h"
#include "patch/PatchLines.h"
#include "patch/modPatchFiles.h"

#include <algorithm>
#include <array>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <utility>

namespace plinket3 {

using modPatchCheck::Finding;
using modPatchCheck::Severity;

namespace {

constexpr std::size_t mostFindings = 1000, longestText = 200;
constexpr std::size_t reach = 2000; // lines that a complaint is looked for in; hardly a section has more

/// How complaints begin in logs of patches.
constexpr std::string_view complaints[]{"Bad data pair in '",
                                        "Bad ammo number ",
                                        "Bad weapon number ",
                                        "Bad length for ",
                                        "Could not find ",
                                        "Frame number must be positive",
                                        "Pointer number must be positive",
                                        "Sound number must be positive",
                                        "Invalid BEX codepointer line",
                                        "Invalid frame pointer ",
                                        "Invalid frame string index",
                                        "Invalid sound string index",
                                        "Invalid ammo string index",
                                        "Invalid weapon string index",
                                        "Invalid misc item string index",
                                        "Invalid par time setting string",
                                        "Invalid MAPnn value",
                                        "Invalid ExMx value",
                                        "Invalid value for '",
                                        "Ignoring Sprite offset change",
                                        "Unmatched Block: '"};

/// What they say of every patch: ports have no section for its head, and comments are no values. Of "Bits = 0" some
/// look for a flag of that name.
constexpr std::string_view harmless[]{"Unmatched Block: 'Patch File",
                                      "Unmatched Block: 'Doom version",
                                      "Unmatched Block: 'Patch format",
                                      "Unmatched Block: 'Engine config",
                                      "Unmatched Block: 'Data WAD",
                                      "Unmatched Block: 'IWAD",
                                      "Bad data pair in '#",
                                      "Invalid par time setting string: #"};

bool IsComplaint(std::string_view line) {
    const auto begins = [line](std::string_view start) { return line.starts_with(start); };
    return std::ranges::any_of(complaints, begins) && std::ranges::none_of(harmless, begins) &&
           !line.ends_with("bit mnemonic 0");
}

/// Notes the lines of a patch, and which cell each one sets first, or which record it selects.
class Lines : public modPatchFiles::ReadObserver {
public:
    Lines(std::string_view bytes, const EngineConfiguration& engine, const PatchSet& defaults) {
        for (PatchLines lines(bytes); !lines.AtEnd();) {
            offsets_.push_back(lines.Position());
            texts_.push_back(Trim(lines.Next()));
        }
        PatchSet set;
        static_cast<void>(modPatchFiles::ParsePatch(bytes, engine, defaults, set, this)); // as far as it can be read
    }
    void Selected(std::size_t offset, RecordKind kind, std::int32_t index) override {
        cells_.try_emplace(offset, Cell{kind, index, existsField});
    }
    void Stored(std::size_t offset, const Cell& cell, std::string_view) override { cells_.try_emplace(offset, cell); }

    /// Lines are counted from 0 here.
    const std::vector<std::string_view>& Texts() const { return texts_; }
    std::optional<Cell> CellOf(std::size_t line) const {
        const auto found = line < offsets_.size() ? cells_.find(offsets_[line]) : cells_.end();
        return found == cells_.end() ? std::nullopt : std::optional(found->second);
    }

private:
    std::vector<std::size_t> offsets_;
    std::vector<std::string_view> texts_;
    std::map<std::size_t, Cell> cells_; // by offset
};

class LogReader {
public:
    LogReader(const RunPatch& patch, const EngineConfiguration& engine, const PatchSet& defaults)
        : file_(patch.file.string()), lines_(patch.bytes, engine, defaults) {}

    void Read(std::string_view line) {
        constexpr std::string_view loading = "Loading DEH ", echo = "Line='",
                                   textBegin = "*BEX FORMAT:", textEnd = "*END BEX";
        if (line.starts_with(file_ + ":"))
            return ReadPrinted(line.substr(file_.size() + 1));
        if (line.starts_with(loading)) {
            inPatch_ = line == std::string(loading) + "file " + file_;
            section_ = search_ = 0;
        }
        if (line.starts_with(textBegin) || line.starts_with(textEnd))
            inText_ = line.starts_with(textBegin); // the port's own form of a text
        if (!inPatch_ || inText_)
            return;
        const std::size_t place = line.find(echo); // not every complaint ends its line
        if (const std::string_view complaint = line.substr(0, place); IsComplaint(complaint))
            Complain(complaint);
        if (place != std::string_view::npos)
            Follow(line.substr(place + echo.size()));
    }

    std::vector<Finding> Take() { return std::move(findings_); }

private:
    /// "LINE: warning: TEXT"
    void ReadPrinted(std::string_view rest) {
        const std::optional<std::size_t> line = WholeNumber<std::size_t>(TakeUpTo(rest, ':'));
        if (!line || *line == 0)
            return;
        constexpr std::string_view warning = " warning:";
        if (rest.starts_with(warning))
            rest.remove_prefix(warning.size());
        Add(*line - 1, rest);
    }
    /// The log repeats a line of the patch.
    void Follow(std::string_view line) {
        const std::string_view text = Trim(line.substr(0, line.rfind('\'')));
        if (text.empty())
            return;
        if (const auto found = Find(section_ == 0 ? 0 : section_ + 1, [text](auto each) { return each == text; }))
            section_ = search_ = *found;
    }
    void Complain(std::string_view text) {
        if (findings_.size() == mostFindings)
            return;
        std::string_view words = text;
        TakeUpTo(words, '\'');
        words = words.substr(0, words.rfind('\''));
        if (words.empty() && text.starts_with("Could not find"))
            words = text.substr(text.rfind(' ') + 1);
        const auto holds = [words](std::string_view each) { return each.find(words) != std::string_view::npos; };
        std::optional<std::size_t> found;
        if (!words.empty())
            found = Find(search_, holds);
        if (found)
            search_ = *found;
        if (!Add(found.value_or(section_), text) && found) // said before: of a later line
            if (const auto next = Find(*found + 1, holds)) {
                search_ = *next;
                Add(*next, text);
            }
    }
    template <class Fits> std::optional<std::size_t> Find(std::size_t from, Fits fits) const {
        const std::vector<std::string_view>& texts = lines_.Texts();
        const std::size_t end = std::min(texts.size(), from + reach);
        for (std::size_t line = from; line < end; ++line)
            if (fits(texts[line]))
                return line;
        return std::nullopt;
    }
    /// False when it was said before.
    bool Add(std::size_t line, std::string_view text) {
        std::string shown = Printable(Trim(text).substr(0, longestText));
        if (!told_.emplace(line, shown).second)
            return false;
        if (findings_.size() < mostFindings)
            findings_.push_back({line + 1, std::move(shown), Severity::Wrong, lines_.CellOf(line), {}});
        return true;
    }

    std::string file_;
    Lines lines_;
    bool inPatch_ = false, inText_ = false;
    std::size_t section_ = 0, search_ = 0; // lines from 0: the one repeated last, and where the next complaint may be
    std::set<std::pair<std::size_t, std::string>> told_;
    std::vector<Finding> findings_;
};

} // namespace

std::vector<Finding> FindingsInLog(std::string_view log, const RunPatch& patch, const EngineConfiguration& engine,
                                   const PatchSet& defaults) {
    LogReader reader(patch, engine, defaults);
    for (PatchLines lines(log); !lines.AtEnd();)
        reader.Read(lines.Next());
    return reader.Take();
}

} // namespace plinket3
