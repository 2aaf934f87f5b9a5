#include "patch/Find.h"

#include "core/Numbers.h"
#include "core/Text.h"
#include "patch/Arguments.h"
#include "patch/StepNames.h"
#include "patch/ValueText.h"
#include "patch/modPatchText.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <unordered_map>
#include <utility>

namespace plinket3 {

namespace {

enum class Rank : std::uint8_t { Itself, OtherNumber, Beginning, Part, None };

constexpr std::size_t snippetBefore = 16, snippetLength = 100; // characters

/// What a text typed stands for.
class Matcher {
public:
    Matcher(std::string_view text, bool matchCase)
        : word_(Trim(text)), inTexts_(modPatchText::UnescapeText(text)), matchCase_(matchCase) {
        if (word_.empty())
            inTexts_.clear();
        SplitCall();
        number_ = WholeNumber<std::int64_t>(word_);
        if (number_)
            return;
        const std::size_t blank = word_.find_last_of(' ');
        if (blank == std::string::npos)
            return;
        ofKind_ = WholeNumber<std::int64_t>(std::string_view(word_).substr(blank + 1));
        if (ofKind_)
            kindWord_ = ToLower(Trim(std::string_view(word_).substr(0, blank)));
    }

    const std::string& InTexts() const { return inTexts_; }
    bool MatchCase() const { return matchCase_; }
    bool IsNumber() const { return number_.has_value(); }

    Rank Name(std::string_view name) const { return RankAt(name, word_); }
    /// With or without the "A_" that engines put in front.
    Rank Action(std::string_view mnemonic) const { return RankAt(mnemonic, action_); }
    /// In what lists show of a state's arguments: a call as "SpawnObject(Imp)" means those of its action alone.
    bool IsCall() const { return !arguments_.empty(); }
    Rank Argument(std::string_view shown) const {
        return RankAt(shown, IsCall() ? arguments_ : word_) == Rank::None ? Rank::None : Rank::Part;
    }
    Rank ArgumentNumber(std::string_view typed) const { return typed == word_ ? Rank::OtherNumber : Rank::None; }
    Rank Text(std::string_view text) const { return RankAt(text, inTexts_); }
    /// `kindWord` is what the records of its kind are called in front of a number, in lower case.
    Rank Number(std::int64_t number, std::string_view kindWord) const {
        if (ofKind_ == number && kindWord_ == kindWord)
            return Rank::Itself;
        if (!number_)
            return Rank::None;
        if (*number_ == number)
            return Rank::Itself;
        std::array<char, 24> digits{};
        const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), number).ptr;
        return std::string_view(digits.data(), end).starts_with(word_) ? Rank::Beginning : Rank::None;
    }
    Rank OtherNumber(std::int64_t number) const { return number_ == number ? Rank::OtherNumber : Rank::None; }

private:
    /// "A_SpawnObject(Imp...)" names an action and what stands in its arguments.
    void SplitCall() {
        std::string_view action = word_;
        if (const std::size_t open = action.find('('); open != std::string_view::npos && open != 0) {
            std::string_view inside = action.substr(open + 1);
            inside = inside.substr(0, inside.find_last_not_of(" .)") + 1);
            arguments_ = Trim(inside);
            action = action.substr(0, open);
        }
        const bool prefixed = action.size() > 2 && EqualIgnoringCase(action.substr(0, 2), "A_");
        action_ = Trim(action.substr(prefixed ? 2 : 0));
    }
    Rank RankAt(std::string_view text, std::string_view what) const {
        if (what.empty())
            return Rank::None;
        const std::size_t at = FindText(text, what, matchCase_);
        return at == std::string_view::npos ? Rank::None
               : at != 0                    ? Rank::Part
               : text.size() == what.size() ? Rank::Itself
                                            : Rank::Beginning;
    }

    std::string word_, inTexts_, action_, arguments_;
    bool matchCase_;
    std::optional<std::int64_t> number_, ofKind_;
    std::string kindWord_;
};

/// The cells found in one group: as many of the best as are wanted, and how many there are.
class Hits {
public:
    explicit Hits(std::size_t most) : most_(most) {}

    void Add(Rank rank, const Cell& cell) {
        if (rank == Rank::None)
            return;
        ++count_;
        best_ = std::min(best_, rank);
        std::vector<Cell>& alike = byRank_[static_cast<std::size_t>(rank)];
        if (alike.size() < most_)
            alike.push_back(cell);
    }
    std::size_t Count() const { return count_; }
    Rank Best() const { return best_; }
    std::vector<Cell> Cells() const {
        std::vector<Cell> cells;
        for (const std::vector<Cell>& alike : byRank_)
            cells.insert(cells.end(), alike.begin(),
                         alike.begin() + static_cast<std::ptrdiff_t>(std::min(alike.size(), most_ - cells.size())));
        return cells;
    }

private:
    std::size_t most_, count_ = 0;
    Rank best_ = Rank::None;
    std::array<std::vector<Cell>, static_cast<std::size_t>(Rank::None)> byRank_;
};

std::string_view KeyOf(const Session& session, std::int32_t string) {
    const std::vector<EngineConfiguration::String>& strings = session.engine.strings;
    return session.engine.dialect.keyedTexts && string >= 0 && static_cast<std::size_t>(string) < strings.size()
               ? std::string_view(strings[static_cast<std::size_t>(string)].mnemonic)
               : std::string_view();
}

std::string_view CheatLabel(std::int32_t cheat) {
    return static_cast<std::size_t>(cheat) < cheatLabels.size() ? cheatLabels[static_cast<std::size_t>(cheat)]
                                                                : std::string_view();
}

/// Goes over what one group looks into.
class Search {
public:
    Search(const Session& session, const Matcher& matcher) : session_(session), matcher_(matcher) {}

    void Run(FindGroup group, Hits& hits) const {
        static constexpr std::array<void (Search::*)(Hits&) const, findGroupCount> searches{
            &Search::Things,  &Search::States, &Search::Sounds, &Search::Sprites, &Search::Music, &Search::Strings,
            &Search::Weapons, &Search::Ammo,   &Search::Cheats, &Search::Misc,    &Search::Pars,  &Search::Notes};
        (this->*searches[static_cast<std::size_t>(group)])(hits);
    }

private:
    const PatchSet& Set() const { return session_.patch.current; }

    /// Where in a record it was found best: at first the record itself.
    struct Best {
        Rank rank = Rank::None;
        int field = existsField;
        void Or(Rank other, int otherField) {
            if (other < rank) {
                rank = other;
                field = otherField;
            }
        }
    };
    void OrTextFields(Best& best, RecordKind kind, std::int32_t number) const {
        for (auto text = Set().texts.lower_bound({kind, number, 0}); text != Set().texts.end(); ++text) {
            const auto& [ofKind, ofNumber, field] = text->first;
            if (ofKind != kind || ofNumber != number)
                return;
            if (textFields[static_cast<std::size_t>(field)].since <= session_.engine.dialect.fields)
                best.Or(matcher_.Name(text->second), TextCell(static_cast<std::size_t>(field)));
        }
    }

    void Things(Hits& hits) const {
        const std::int64_t first = PatchNumber(RecordKind::Thing, 0);
        for (const auto& [number, thing] : Set().things) {
            Best best{std::min(matcher_.Number(first + number, "thing"), matcher_.Name(thing.name))};
            best.Or(matcher_.OtherNumber(thing.id), RowOf(&ThingRecord::id));
            OrTextFields(best, RecordKind::Thing, number);
            hits.Add(best.rank, {RecordKind::Thing, number, best.field});
        }
    }
    void States(Hits& hits) const {
        const std::unordered_map<std::int32_t, Rank> actions = Actions();
        const ArgumentTable arguments(session_.engine);
        for (const auto& [number, state] : Set().states) {
            Best best{std::min(matcher_.Number(number, "frame"), matcher_.Number(number, "state"))};
            if (!matcher_.IsNumber() && number != 0)
                best.Or(matcher_.Name(PictureName(Set(), state)), existsField);
            const auto action = actions.find(state.codePointer);
            if (action != actions.end() && !matcher_.IsCall())
                best.Or(action->second, codePointerField);
            const bool mayHave = action != actions.end() || !matcher_.IsCall();
            if (mayHave && best.rank > (matcher_.IsNumber() ? Rank::OtherNumber : Rank::Part)) // to be better by them
                OrArguments(best, arguments.Of(state.codePointer), state);
            OrTextFields(best, RecordKind::State, number);
            hits.Add(best.rank, {RecordKind::State, number, best.field});
        }
    }
    void OrArguments(Best& best, std::span<const StateArgument> arguments, const StateRecord& state) const {
        if (arguments.empty())
            return;
        if (matcher_.IsNumber()) {
            for (const StateArgument& argument : arguments)
                if (IsGiven(state, argument))
                    best.Or(matcher_.ArgumentNumber(
                                ValueText(session_.engine, MeaningOf(Set(), *argument.facts),
                                          ArgumentOf(state, argument).value_or(argument.facts->standard))),
                            argument.field);
            return;
        }
        std::string all;
        for (const ShownArgument& argument : ShownArguments(Set(), session_.engine, arguments, state)) {
            best.Or(matcher_.Argument(argument.text), argument.field);
            all += (all.empty() ? "" : ", ") + argument.text;
        }
        best.Or(matcher_.Argument(all), arguments.front().field);
    }
    std::unordered_map<std::int32_t, Rank> Actions() const {
        std::unordered_map<std::int32_t, Rank> actions;
        for (const auto& [value, mnemonic] : session_.engine.mnemonicByValue)
            if (const Rank rank = matcher_.Action(mnemonic); rank != Rank::None)
                actions[value] = rank;
        return actions;
    }
    void Sounds(Hits& hits) const {
        for (const auto& entry : Set().sounds)
            hits.Add(std::min(matcher_.Number(entry.number, "sound"), matcher_.Name(Set().SoundName(entry.number))),
                     {RecordKind::Sound, entry.number, existsField});
    }
    /// By the kept rules nothing of them is edited.
    void Sprites(Hits& hits) const { Lumps(hits, RecordKind::Sprite, "sprite"); }
    void Music(Hits& hits) const { Lumps(hits, RecordKind::Music, "music"); }
    void Lumps(Hits& hits, RecordKind kind, std::string_view word) const {
        if (!session_.engine.dialect.EngineRules())
            return;
        for (const std::int32_t number : RecordNumbers(Set(), kind)) {
            const auto name = std::get<std::string>(ReadCell(Set(), {kind, number, lumpNameField}));
            hits.Add(std::min(matcher_.Number(number, word), matcher_.Name(name)), {kind, number, existsField});
        }
    }
    void Strings(Hits& hits) const {
        for (const auto& [number, string] : Set().strings) {
            const Rank byRecord = std::min(matcher_.Number(number, "string"), matcher_.Name(KeyOf(session_, number)));
            const Rank byText = matcher_.Text(string.text);
            hits.Add(std::min(byRecord, byText),
                     {RecordKind::String, number, byText < byRecord ? textField : existsField});
        }
    }
    void Weapons(Hits& hits) const {
        for (const auto& [number, weapon] : Set().weapons) {
            Best best{std::min(matcher_.Number(number, "weapon"), matcher_.Name(weapon.name))};
            OrTextFields(best, RecordKind::Weapon, number);
            hits.Add(best.rank, {RecordKind::Weapon, number, best.field});
        }
    }
    void Ammo(Hits& hits) const {
        for (const auto& [number, ammo] : Set().ammo)
            hits.Add(std::min(matcher_.Number(number, "ammo"), matcher_.Name(ammo.name)),
                     {RecordKind::Ammo, number, existsField});
    }
    void Cheats(Hits& hits) const {
        for (const auto& [number, cheat] : Set().cheats)
            hits.Add(std::min(matcher_.Name(CheatLabel(number)), matcher_.Text(cheat.text)),
                     {RecordKind::Cheat, number, textField});
    }
    void Misc(Hits& hits) const {
        for (const Cell& cell : CellsOf(RecordKind::Misc, 0))
            if (cell.field == helperField ? HasHelper(session_.engine.dialect) : FactsOf(cell.kind, cell.field).inPatch)
                hits.Add(matcher_.Name(FieldName(cell)), cell);
    }
    void Pars(Hits& hits) const {
        std::int32_t row = 0;
        for (const ParRecord& par : Set().pars)
            hits.Add(matcher_.Name(modPatchText::LevelName(par.episode, par.map)),
                     {RecordKind::Par, row++, existsField});
    }
    void Notes(Hits& hits) const {
        for (const auto& [record, note] : Set().notes)
            hits.Add(matcher_.Text(note), {record.first, record.second, noteField});
    }

    const Session& session_;
    const Matcher& matcher_;
};

/// Where a text fits, in one line.
std::string Snippet(std::string_view text, const Matcher& matcher) {
    const std::size_t at =
        matcher.InTexts().empty() ? std::string_view::npos : FindText(text, matcher.InTexts(), matcher.MatchCase());
    const std::size_t from = at == std::string_view::npos || at <= snippetBefore ? 0 : at - snippetBefore;
    std::string snippet(text.substr(from, snippetLength));
    for (char& character : snippet)
        if (static_cast<unsigned char>(character) < ' ')
            character = ' ';
    return (from > 0 ? "..." : "") + snippet + (from + snippetLength < text.size() ? "..." : "");
}

std::string Title(const std::string& number, std::string_view name) {
    return name.empty() ? number : number + " " + std::string(name);
}

/// "SpawnObject(type: Imp)": a state's action with its arguments.
std::string CallText(const Session& session, const StateRecord& state) {
    const auto mnemonic = session.engine.mnemonicByValue.find(state.codePointer);
    if (state.codePointer == 0 || mnemonic == session.engine.mnemonicByValue.end())
        return {};
    const EngineConfiguration::Action* action = session.engine.ActionOf(state.codePointer);
    const std::string arguments =
        action == nullptr
            ? std::string()
            : ArgumentsText(session.patch.current, session.engine, ArgumentsOf(session.engine.dialect, *action), state);
    return arguments.empty() ? mnemonic->second : mnemonic->second + "(" + arguments + ")";
}

/// What the window shows of a result.
Found Describe(const Session& session, const Matcher& matcher, const Cell& cell) {
    const PatchSet& set = session.patch.current;
    if (cell.field == noteField)
        return {cell, cell == patchNotes ? "patch notes" : RecordName(set, cell.kind, cell.index),
                Snippet(set.notes.at({cell.kind, cell.index}), matcher)};
    const std::string number = std::to_string(PatchNumber(cell.kind, cell.index));
    const bool inTextField = TextFieldAt(cell.field) != nullptr;
    const std::string text =
        inTextField ? FieldName(cell) + " " + std::get<std::string>(ReadCell(set, cell)) : std::string();
    switch (cell.kind) {
    case RecordKind::Thing: {
        const ThingRecord& thing = set.things[cell.index];
        return {cell, Title(number, thing.name),
                inTextField    ? text
                : thing.id > 0 ? "ID " + std::to_string(thing.id)
                               : std::string()};
    }
    case RecordKind::State: {
        const StateRecord& state = set.states[cell.index];
        return {cell, Title(number, cell.index == 0 ? "-" : PictureName(set, state)),
                inTextField ? text : CallText(session, state)};
    }
    case RecordKind::Sound:
        return {cell, Title(number, set.SoundName(cell.index)), {}};
    case RecordKind::Sprite:
    case RecordKind::Music:
        return {cell, Title(number, std::get<std::string>(ReadCell(set, {cell.kind, cell.index, lumpNameField}))), {}};
    case RecordKind::String:
        return {cell, Title(number, KeyOf(session, cell.index)), Snippet(set.strings[cell.index].text, matcher)};
    case RecordKind::Cheat:
        return {cell, std::string(CheatLabel(cell.index)), Snippet(set.cheats[cell.index].text, matcher)};
    case RecordKind::Misc: {
        const CellValue value = ReadCell(set, cell);
        const auto* amount = std::get_if<std::int32_t>(&value);
        return {cell, FieldName(cell), amount != nullptr ? std::to_string(*amount) : "unset"};
    }
    case RecordKind::Par: {
        const ParRecord& par = set.pars[static_cast<std::size_t>(cell.index)];
        return {cell, modPatchText::LevelName(par.episode, par.map), std::to_string(par.seconds) + " seconds"};
    }
    default:
        return {cell, Title(number, std::get<std::string>(ReadCell(set, {cell.kind, cell.index, nameField}))), text};
    }
}

constexpr std::array<RecordKind, findGroupCount - 1> kindOfGroup{
    RecordKind::Thing,  RecordKind::State, RecordKind::Sound, RecordKind::Sprite, RecordKind::Music, RecordKind::String,
    RecordKind::Weapon, RecordKind::Ammo,  RecordKind::Cheat, RecordKind::Misc,   RecordKind::Par};

} // namespace

std::size_t FindText(std::string_view text, std::string_view what, bool matchCase, std::size_t from) {
    if (matchCase)
        return text.find(what, from);
    const char first = ToLower(what.front());
    for (std::size_t at = from; at + what.size() <= text.size(); ++at)
        if (ToLower(text[at]) == first && EqualIgnoringCase(text.substr(at, what.size()), what))
            return at;
    return std::string_view::npos;
}

std::vector<FoundGroup> FindAnything(const Session& session, const FindQuery& query) {
    const Matcher matcher(query.text, query.matchCase);
    const Search search(session, matcher);
    std::vector<std::pair<Rank, FoundGroup>> ranked;
    for (std::size_t place = 0; place < findGroupCount; ++place) {
        const auto group = static_cast<FindGroup>(place);
        Hits hits(query.whole == group ? SIZE_MAX : query.most);
        search.Run(group, hits);
        if (hits.Count() == 0)
            continue;
        FoundGroup& found = ranked.emplace_back(hits.Best(), FoundGroup{group, {}, hits.Count()}).second;
        for (const Cell& cell : hits.Cells())
            found.found.push_back(Describe(session, matcher, cell));
    }
    std::ranges::stable_sort(ranked, {}, &std::pair<Rank, FoundGroup>::first);
    std::vector<FoundGroup> groups;
    groups.reserve(ranked.size());
    for (auto& each : ranked)
        groups.push_back(std::move(each.second));
    return groups;
}

std::optional<Found> FindRecord(const Session& session, RecordKind kind, std::string_view text) {
    const Matcher matcher(text, false);
    Hits hits(1);
    const auto group = std::ranges::find(kindOfGroup, kind) - kindOfGroup.begin();
    Search(session, matcher).Run(static_cast<FindGroup>(group), hits);
    if (hits.Count() == 0 || (matcher.IsNumber() && hits.Best() != Rank::Itself))
        return std::nullopt;
    return Describe(session, matcher, hits.Cells().front());
}

} // namespace plinket3
