#include "patch/modPatchCheck.h"

#include "core/Numbers.h"
#include "core/Text.h"
#include "patch/CheckFindings.h"
#include "patch/EngineChecker.h"
#include "patch/PatchLines.h"
#include "patch/PatchNotes.h"
#include "patch/PointerTargets.h"
#include "patch/modPatchText.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <map>

namespace plinket3::modPatchCheck {

namespace {

constexpr std::size_t mostFlagWords = 100; // no line has more, but a hostile one could
constexpr std::string_view flagSeparators = " +|,\t";

/// How many characters at the start of `text` are the number that is read: a sign, digits, a fraction; 0 for none.
std::size_t NumberLength(std::string_view text) {
    const auto skipDigits = [text](std::size_t at) {
        return std::min(text.find_first_not_of("0123456789", at), text.size());
    };
    const std::size_t begin = text.starts_with('-') || text.starts_with('+') ? 1 : 0;
    const std::size_t point = skipDigits(begin);
    const bool hasPoint = point < text.size() && text[point] == '.';
    const std::size_t end = hasPoint ? skipDigits(point + 1) : point;
    return end > begin + (hasPoint ? 1 : 0) ? end : 0;
}

/// What there is to say of a patch by the kept rules.
class Checker : public CheckFindings {
public:
    using CheckFindings::CheckFindings;

    void Line(std::size_t offset, std::string_view text) override {
        text = Trim(text);
        behindEmptyLine_ |= text.empty();
        if (!text.starts_with(engine_.dialect.comment))
            return;
        const auto holds = [text](std::string_view sign) { return text.find(sign) != std::string_view::npos; };
        if (std::ranges::any_of(engineComments, holds))
            Add(offset, "is a comment that means something to Chocolate Doom and is lost when the patch is saved",
                Severity::Odd);
        if (text.starts_with(editorComment))
            Add(offset, "is a comment that means something to map editors and is lost when the patch is saved",
                Severity::Odd);
    }

    void Section(std::size_t offset, std::string_view word) override {
        behindEmptyLine_ = false;
        section_ = word;
        CheckName(offset, word);
        CheckPointer(offset, word);
        if (word == engine_.dialect.sounds.word)
            Add(offset, "counts sounds from 0, as game engines do, but a saved patch counts them from 1 and names this "
                        "sound by the next number");
        else if (word.starts_with('[') && !engine_.dialect.IsExtended())
            Add(offset, "begins a section of extended patches, which an engine of normal patches does not read");
    }

    void Field(std::size_t offset) override {
        // Engines go on with [STRINGS], and with [PARS], whose lines have no "=".
        if (behindEmptyLine_ && !section_.empty() && section_ != engine_.dialect.strings)
            Add(offset, "stands behind an empty line, where game engines no longer count it to its section");
    }

    void Number(std::size_t offset, FieldUnit unit, FieldWidth width, std::string_view text) override {
        const double exact = LeadingReal(text);
        const std::size_t length = NumberLength(text);
        const std::string_view rest = Trim(text.substr(length));
        const bool wraps = unit == FieldUnit::Flags && exact > INT32_MAX && exact <= UINT32_MAX;
        const std::int32_t value =
            wraps ? static_cast<std::int32_t>(static_cast<std::uint32_t>(exact)) : RoundToInt32(exact);

        if (length == 0)
            Add(offset, "holds no number and is read as 0");
        else if (!rest.empty() && !rest.starts_with(engine_.dialect.comment))
            Add(offset, "is read only up to " + Quoted(rest));
        else if (exact != std::floor(exact))
            Add(offset, "holds a fraction and is read as " + std::to_string(value));
        if (!wraps && (exact > INT32_MAX || exact < INT32_MIN))
            Add(offset, "holds a number beyond 32 bits and is read as " + std::to_string(value));
        else if (width == FieldWidth::Byte && (value < 0 || value > 255))
            Add(offset, "holds a number beyond one byte and is limited to 0 to 255");
        else if (unit == FieldUnit::Flags && engine_.dialect.namedBits)
            UnnamedFlags(offset, value);
        else
            Reference(offset, unit, value);
    }

    void FlagNames(std::size_t offset, BitSet, std::string_view text) override {
        if (LeadingReal(text) < 0)
            return Add(offset, "is negative and so taken for names of flags; the same bits are read from " +
                                   std::to_string(static_cast<std::uint32_t>(LeadingInt32(text))));
        if (!engine_.dialect.namedBits)
            Add(offset, "names flags, which an engine of normal patches does not know; a saved patch has their number");
        const std::string names = ToUpper(text);
        std::vector<std::string_view> words;
        for (std::size_t at = 0; at < names.size() && words.size() < mostFlagWords;) {
            at = names.find_first_not_of(flagSeparators, at);
            if (at == std::string::npos)
                break;
            const std::size_t end = std::min(names.find_first_of(flagSeparators, at), names.size());
            words.push_back(std::string_view(names).substr(at, end - at));
            at = end;
        }
        const auto isFlag = [this](std::string_view word) {
            return std::find(engine_.flagNames.begin(), engine_.flagNames.end(), word) != engine_.flagNames.end();
        };
        for (const std::string_view word : words)
            if (!isFlag(word))
                Add(offset, "names a flag that the engine does not know, " + Quoted(word));
        for (const std::string& flag : engine_.flagNames) {
            const auto holds = [&flag](std::string_view word) { return word.find(flag) != std::string_view::npos; };
            const auto longer = std::find_if(words.begin(), words.end(), holds);
            if (!flag.empty() && longer != words.end() && std::find(words.begin(), words.end(), flag) == words.end())
                Add(offset, "sets the flag " + flag + " too, because its name is a part of " + Quoted(*longer));
        }
    }

    void CodePointer(std::size_t offset, std::int32_t state) override { codePointers_[state] = offset; }

    void Text(std::size_t offset, std::size_t length, std::int32_t space) override {
        if (length > static_cast<std::size_t>(space))
            Add(offset, "puts " + std::to_string(length) + " characters where the engine has room for " +
                            std::to_string(space));
    }

    void Continued(std::size_t offset, std::size_t end) override {
        continuedTo_ = end;
        PatchLines lines(bytes_.substr(offset, end - offset));
        const std::string_view first = Trim(lines.Next());
        if (lines.AtEnd())
            return;
        std::string_view next = TrimLeft(lines.Next());
        const std::string_view nextKey = Trim(next.substr(0, next.find('=')));
        const auto isNextKey = [nextKey](const EngineConfiguration::String& string) {
            return EqualIgnoringCase(string.mnemonic, nextKey);
        };
        if (first.starts_with(engine_.dialect.comment))
            return Add(offset, "is a comment, but ends in a backslash and so takes in the next line");
        if (std::ranges::any_of(engine_.strings, isNextKey))
            Add(offset, "ends in a backslash and so takes in the next line, which looks like another string");
        if (!lines.AtEnd())
            Add(offset, "goes on over more than two lines: the backslashes that end the later ones stay in the text, "
                        "where game engines drop them");
        while (!lines.AtEnd())
            next = TrimLeft(lines.Next());
        if (next.empty())
            Add(offset, "ends in a backslash with nothing behind it: game engines leave out such a text");
    }

    void String(std::size_t offset, std::string_view escaped) override {
        const std::string_view line = LineFrom(offset);
        if (line.substr(line.find('=') + 1).starts_with("  ") || line.ends_with(' '))
            Add(offset, "has blanks before or behind its text, which are not read");
        if (escaped.ends_with(' '))
            Add(offset, "has a text that ends in blanks, which are lost when the patch is saved", Severity::Odd);
        Escapes(offset, std::max(continuedTo_, offset + line.size()));
    }

    /// What shows only when the whole patch is known: code pointers that a save could not write.
    void Finish(const PatchSet& set) {
        const PointerTargets targets(set.states, engine_.codePointerStates);
        for (const auto& [state, offset] : codePointers_) {
            const auto index = static_cast<std::size_t>(state);
            const std::int32_t codePointer = set.states[index].codePointer;
            if (codePointer == defaults_.states[index].codePointer)
                continue;
            if (engine_.dialect.namedCodePointers ? engine_.MnemonicOf(codePointer) == nullptr
                                                  : !targets.CanExpress(state, codePointer))
                Add(offset, "gives frame " + std::to_string(state) +
                                " a code pointer that a saved patch of this engine cannot express");
        }
    }

private:
    void CheckName(std::size_t offset, std::string_view word) {
        const Dialect& dialect = engine_.dialect;
        if (word != dialect.things.word && word != dialect.weapons.word && word != dialect.ammo.word)
            return;
        const std::string_view line = LineFrom(offset);
        const HeaderWords words(line, dialect.comment);
        const std::string_view rest = TrimLeft(line.substr(std::min(line.find(')'), line.size() - 1) + 1));
        if (!rest.starts_with(dialect.comment) && rest.find(')') != std::string_view::npos)
            Add(offset, "has a name that is read only up to its first \")\", " + Quoted(words[2]));
    }

    void CheckPointer(std::size_t offset, std::string_view word) {
        if (word != engine_.dialect.pointers.word)
            return;
        const HeaderWords words(LineFrom(offset), engine_.dialect.comment);
        const std::int32_t pointer = LeadingInt32(words[1]);
        const std::size_t digits = words[2].find_last_not_of("0123456789") + 1;
        if (pointer < 0 || static_cast<std::size_t>(pointer) >= engine_.codePointerStates.size() ||
            digits == words[2].size())
            return;
        const std::int32_t read = engine_.codePointerStates[static_cast<std::size_t>(pointer)];
        const std::int32_t written = LeadingInt32(words[2].substr(digits));
        if (read != written)
            Add(offset, "changes frame " + std::to_string(read) +
                            ", to which its pointer number belongs; game engines "
                            "change the one in its brackets, " +
                            std::to_string(written));
    }

    void UnnamedFlags(std::size_t offset, std::int32_t bits) {
        std::string unnamed;
        for (int bit = 0; bit < 32; ++bit) {
            const auto index = static_cast<std::size_t>(bit);
            if (modPatchText::GetFlag(bits, bit) &&
                (index >= engine_.flagNames.size() || engine_.flagNames[index].empty()))
                unnamed += " " + std::to_string(bit);
        }
        if (!unnamed.empty())
            Add(offset, "sets bits that have no name and are lost when the patch is saved:" + unnamed);
    }

    std::string_view section_;
    std::size_t continuedTo_ = 0;                      // where the last string over several lines ends
    bool behindEmptyLine_ = false;                     // since the section's header
    std::map<std::int32_t, std::size_t> codePointers_; // where each state got its last one
};

} // namespace

CheckResult CheckPatch(std::string_view bytes, const EngineConfiguration& engine, const PatchSet& defaults,
                       const modPatchFiles::IncludeReader& includes, const HasPicture& hasPicture) {
    Checker kept(bytes, engine, defaults);
    EngineChecker asEngines(bytes, engine, defaults, hasPicture);
    CheckFindings& checker = engine.dialect.EngineRules() ? static_cast<CheckFindings&>(asEngines) : kept;
    PatchSet set;
    modPatchFiles::ReadResult read = modPatchFiles::ParsePatch(bytes, engine, defaults, set, &checker, includes);
    CheckResult result;
    result.status = std::move(read.status);
    result.failedLine = LineAt(bytes, read.offset);
    if (result.status) {
        if (engine.dialect.EngineRules())
            asEngines.Finish(set);
        else
            kept.Finish(set);
        result.findings = checker.TakeFindings();
    }
    return result;
}

} // namespace plinket3::modPatchCheck
