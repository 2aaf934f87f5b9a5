#include "patch/TextReplace.h"

#include "core/Text.h"
#include "patch/EngineNames.h"
#include "patch/Find.h"
#include "patch/modPatchText.h"

#include <algorithm>
#include <utility>

namespace plinket3 {

namespace {

std::string TextIn(const PatchSet& set, const Cell& cell) { return std::get<std::string>(ReadCell(set, cell)); }

Status MayHoldString(const Session& session, const Cell& text, std::string_view value) {
    const Dialect& dialect = session.engine.dialect;
    const bool refused = dialect.keyedTexts && dialect.EngineRules() && value != TextIn(session.patch.defaults, text) &&
                         !EngineEscape(value, "\n");
    return refused ? Status::Failure("Games cannot read such a text: empty, with blanks at its ends, or with a "
                                     "backslash at its end or before an \"n\"")
                   : Status();
}

/// A cheat is one line of keys.
Status MayHoldCheat(const Session& session, std::string_view value) {
    if (std::ranges::any_of(value, [](char character) { return static_cast<unsigned char>(character) < ' '; }))
        return Status::Failure("A cheat has one line");
    return session.engine.dialect.EngineRules() && value != Trim(value)
               ? Status::Failure("Games would not read the blanks at its ends")
               : Status();
}

} // namespace

std::optional<std::int32_t> RoomFor(const Session& session, const Cell& text) {
    const Dialect& dialect = session.engine.dialect;
    const PatchData& patch = session.patch;
    if (text.kind == RecordKind::Cheat)
        return dialect.limitedCheats ? std::optional(patch.current.cheats[text.index].maximumLength & 0xffff)
                                     : std::nullopt;
    if (dialect.keyedTexts)
        return std::nullopt;
    return modPatchText::TextSpace(static_cast<std::int32_t>(TextIn(patch.defaults, text).size()));
}

Status MayHold(const Session& session, const Cell& text, std::string_view value) {
    const std::optional<std::int32_t> room = RoomFor(session, text);
    if (room && value.size() > std::max(static_cast<std::size_t>(*room), TextIn(session.patch.current, text).size()))
        return Status::Failure("There is room for " + std::to_string(*room) + " characters, not " +
                               std::to_string(value.size()));
    return text.kind == RecordKind::Cheat ? MayHoldCheat(session, value) : MayHoldString(session, text, value);
}

std::vector<Cell> EditedTexts(const Session& session) {
    std::vector<Cell> cells;
    for (const RecordKind kind : {RecordKind::String, RecordKind::Cheat})
        for (const std::int32_t number : RecordNumbers(session.patch.current, kind))
            if (HasRecord(session.patch.defaults, kind, number))
                cells.push_back({kind, number, textField});
    return cells;
}

ReplacedTexts ReplaceInTexts(const Session& session, const std::vector<Cell>& texts, const TextChange& change) {
    const std::string find = modPatchText::UnescapeText(change.find), with = modPatchText::UnescapeText(change.with);
    ReplacedTexts replaced;
    for (const Cell& cell : texts) {
        const std::string text = TextIn(session.patch.current, cell);
        std::string made;
        std::size_t places = 0, from = 0;
        for (std::size_t at = 0; (at = FindText(text, find, change.matchCase, from)) != std::string::npos; ++places) {
            made.append(text, from, at - from).append(with);
            from = at + find.size();
        }
        made.append(text, from);
        if (made == text)
            continue;
        if (const Status status = MayHold(session, cell, made); !status) {
            replaced.refused.push_back({cell, status.Reason()});
            continue;
        }
        replaced.places += places;
        replaced.texts.push_back({cell, std::move(made)});
    }
    return replaced;
}

} // namespace plinket3
