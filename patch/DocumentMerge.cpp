#include "core/Numbers.h"
#include "core/Text.h"
#include "patch/CellIndex.h"
#include "patch/DocumentChanges.h"
#include "patch/DocumentNotes.h"
#include "patch/DocumentSections.h"
#include "patch/DocumentValues.h"
#include "patch/LocalCheck.h"
#include "patch/LumpNames.h"
#include "patch/NewRecords.h"
#include "patch/PatchDocument.h"
#include "patch/PatchLines.h"
#include "patch/PatchNotes.h"
#include "patch/modPatchDiff.h"

#include <algorithm>
#include <map>
#include <set>
#include <utility>

namespace plinket3 {

namespace {

/// A cell that has another value than the document says, and the lines that have set it, in order.
struct Changed {
    Cell cell;
    std::vector<std::size_t> lines;
};

class Merge {
public:
    Merge(const PatchDocument& document, const PatchSet& current, const PatchSet& defaults,
          const EngineConfiguration& engine, bool keepsPlaces)
        : document_(document), lines_(document.Lines()), current_(current), said_(document.Said()), defaults_(defaults),
          engine_(engine), dialect_(engine.dialect), end_(document.LineEnd()), keepsPlaces_(keepsPlaces),
          sections_(document, dialect_), values_(current, defaults, engine, end_), changed_(document) {}

    Status Run(BytePieces& merged) {
        FindChanges();
        if (changes_.empty() && made_.empty() && gone_.empty() && current_.pars == said_.pars &&
            current_.notes == said_.notes) {
            merged.Borrow(document_.Bytes());
            return {};
        }
        FindLines();
        for (const Changed& change : changes_)
            Apply(change);
        for (const Cell& cell : made_)
            MakeHeader(cell);
        MergePars();
        MergePatchNotes();
        const std::vector<Cell> notes = ChangedNotes(current_, said_);
        for (const Cell& cell : notes)
            if (sections_.Of(cell.kind, cell.index) == nullptr)
                additions_[sections_.PlaceOf(cell)]; // whose header has it above
        for (const bool existing : {true, false})    // a section's own lines stand before what is put behind it
            for (const auto& [place, text] : additions_)
                if (sections_.IsThere(place) == existing)
                    Add(place, text);
        for (const Cell& cell : notes) // behind a new section that comes before the one that they stand above
            MergeNote(cell);
        RemoveGone();
        if (!keepsPlaces_)
            RemoveEmptySections();
        if (values_.Outcome())
            changed_.Apply(merged);
        return values_.Outcome();
    }

    /// Whether what `Run` has made reads back, as far as that can be told without reading everything.
    bool ReadsBack(const BytePieces& merged) const {
        const auto isName = [](const Changed& change) {
            return change.cell.field == nameField || change.cell.field == lumpNameField;
        };
        if (changed_.All().empty())
            return true;
        if (removedHeader_ || !made_.empty() || !gone_.empty() || current_.pars != said_.pars ||
            current_.notes != said_.notes || std::ranges::any_of(changes_, isName))
            return false;
        MergedPart part{changed_.All().front().offset, 0, merged, {}};
        for (const DocumentChanges::Replacement& each : changed_.All())
            part.end = std::max(part.end, each.offset + each.length);
        for (const Changed& change : changes_)
            part.changed.push_back(change.cell);
        return ReadsBackLocally(document_, current_, defaults_, engine_, part);
    }

private:
    // What has changed

    void FindChanges() {
        VisitKinds([this](const auto& kind) {
            const auto &now = kind.In(current_), &then = kind.In(said_);
            for (const auto& [number, record] : now) {
                if (record != *RecordOrNew(then, number))
                    FindCells(kind.kind, number);
                if (!then.Has(number))
                    made_.push_back({kind.kind, number, existsField});
            }
            for (const auto& [number, record] : then)
                if (!now.Has(number))
                    gone_.insert({kind.kind, number});
        });
        if (current_.misc != said_.misc)
            FindCells(RecordKind::Misc, 0);
        for (const Cell& cell : OtherTexts(said_, current_))
            if (HasCell(current_, cell) && TextFieldAt(cell.field)->since <= dialect_.fields)
                changes_.push_back({cell, {}});
    }

    void FindCells(RecordKind kind, std::int32_t index) {
        for (const Cell& cell : CellsOf(kind, index))
            if (TextFieldAt(cell.field) == nullptr && (cell.field < 0 || IsInPatch(cell)) &&
                ReadCell(current_, cell) != ReadCell(said_, cell))
                changes_.push_back({cell, {}});
        const Cell name{kind, index, lumpNameField};
        if (HasLumpName(kind) && ReadCell(current_, name) != ReadCell(said_, name))
            changes_.push_back({name, {}});
    }

    bool IsInPatch(const Cell& cell) const {
        const RowFacts facts = FactsOf(cell.kind, cell.field);
        return facts.inPatch && facts.since <= dialect_.fields;
    }

    /// Looks through the lines once for those that have set what has changed.
    void FindLines() {
        CellIndex changed;
        for (const Changed& change : changes_)
            changed.Add(change.cell);
        changed.VisitLines(lines_,
                           [this](std::size_t line, std::size_t number) { changes_[number].lines.push_back(line); });
    }

    // One change

    void Apply(const Changed& change) {
        const Cell& cell = change.cell;
        const CellValue value = ReadCell(current_, cell);
        if (cell.field == nameField)
            return Rename(cell, std::get<std::string>(value));
        if (value == ReadCell(defaults_, cell)) {
            if (values_.IsMade(cell.kind, cell.index)) // by the line that goes
                MakeHeader(cell);
            for (const std::size_t line : change.lines) {
                if (keepsPlaces_ && lines_[line].what == LineKind::Text) {
                    ReplaceTextEntry(line, cell);
                    continue;
                }
                Remove(line);
                // Behind a text its line ends, and an empty one parts it from the next.
                for (std::size_t next = line + 1; lines_[line].what == LineKind::Text && next < line + 3 &&
                                                  next < lines_.size() && lines_[next].what == LineKind::Blank;
                     ++next)
                    Remove(next);
            }
            return;
        }
        if (change.lines.empty())
            additions_[sections_.PlaceOf(cell)] += values_.NewLines(cell);
        else
            Replace(change.lines.back(), cell);
    }

    void Remove(std::size_t line, std::string instead = {}) {
        removed_.push_back(line);
        changed_.ReplaceLine(line, std::move(instead));
    }

    /// Puts the cell's value in the place of the one that the line has.
    void Replace(std::size_t line, const Cell& cell) {
        const std::string_view text = document_.Text(line);
        if (lines_[line].what == LineKind::Text)
            return ReplaceTextEntry(line, cell);
        if (cell.kind == RecordKind::String)
            return ReplaceString(line, cell);
        std::size_t begin = text.find('=') + 1;
        begin = std::min(text.find_first_not_of(" \t", begin), text.size());
        std::string_view old = text.substr(begin);
        if (cell.kind != RecordKind::Cheat && cell.field != lumpNameField)
            old = old.substr(0, old.find(dialect_.comment));
        const bool names = cell.field >= 0 && FactsOf(cell.kind, cell.field).unit == FieldUnit::Flags &&
                           EngineInt32(old) == 0 && Trim(old) != "0";
        if (cell.kind != RecordKind::Cheat && !names)
            old = old.substr(0, old.find_first_of(" \t"));
        while (old.ends_with(' ') || old.ends_with('\t'))
            old.remove_suffix(1);
        changed_.Replace(lines_[line].offset + begin, old.size(), values_.ValueText(cell, names, old));
    }

    void ReplaceString(std::size_t line, const Cell& cell) {
        const std::string_view text = document_.Text(line);
        std::size_t begin = text.find('=') + 1;
        begin = std::min(text.find_first_not_of(" \t", begin), text.size());
        std::string value = values_.StringText(cell);
        // Comments between the lines that it went on in stay behind it.
        PatchLines parts(text.substr(begin));
        parts.Next();
        while (!parts.AtEnd())
            if (const std::string_view part = parts.Next(); part.starts_with(dialect_.comment))
                value.append(end_).append(part);
        changed_.Replace(lines_[line].offset + begin, text.size() - begin, std::move(value));
    }

    void ReplaceTextEntry(std::size_t line, const Cell& cell) { changed_.ReplaceLine(line, values_.TextEntry(cell)); }

    void Rename(const Cell& cell, const std::string& name) {
        const SectionRange* section = sections_.Of(cell.kind, cell.index);
        if (section == nullptr) {
            additions_[sections_.PlaceOf(cell)];
            return;
        }
        const std::string_view text = document_.Text(section->header);
        const std::size_t begin = text.find('('), last = text.rfind(')');
        const std::size_t offset = lines_[section->header].offset;
        if (begin == std::string_view::npos) {
            const std::size_t length = text.find_last_not_of(" \t") + 1;
            changed_.Replace(offset + length, 0, " (" + name + ")");
        } else {
            const std::size_t stop = last == std::string_view::npos || last < begin ? text.size() : last;
            changed_.Replace(offset + begin + 1, stop - begin - 1, name);
        }
    }

    // What is new

    void Add(const SectionPlace& place, const std::string& text) {
        if (sections_.IsThere(place)) {
            kept_.push_back(sections_.All()[place.existing].header);
            return changed_.Insert(sections_.EndOfLines(sections_.All()[place.existing]), text);
        }
        const std::size_t line = sections_.LineForNew(place.section);
        std::string section = values_.HeaderText(place, sections_.HaveNames()) + text;
        const bool textFollows = line < lines_.size() && (lines_[line].what != LineKind::Blank ||
                                                          std::ranges::find(removed_, line) != removed_.end());
        const bool behindAnother = std::exchange(lastSection_, line) == line && !textFollows;
        const bool behindNotes = line == 0 && changed_.HasInsertedAt(line);
        if (behindAnother || behindNotes || (line > 0 && lines_[line - 1].what != LineKind::Blank))
            section.insert(0, end_);
        if (textFollows)
            section += end_;
        changed_.Insert(line, section);
    }

    // Records that the patch makes

    /// Sees to a header, which makes the record; a sprite has none.
    void MakeHeader(const Cell& cell) {
        if (cell.kind == RecordKind::Sprite)
            values_.LumpName({cell.kind, cell.index, lumpNameField});
        else if (sections_.Of(cell.kind, cell.index) == nullptr)
            additions_[sections_.PlaceOf({cell.kind, cell.index, existsField})];
    }

    /// Takes out the sections of records that are gone, and the lines that speak of them elsewhere.
    void RemoveGone() {
        std::set<std::size_t> lines;
        const auto isGone = [this](std::size_t line) {
            return gone_.contains({lines_[line].kind, lines_[line].index}) && lines_[line].index != noRecord;
        };
        for (const SectionRange& section : sections_.All()) {
            if (gone_.empty() || !isGone(section.header))
                continue;
            goneSections_.insert(section.header);
            std::size_t line = section.header;
            for (const std::size_t end = sections_.EndOfLines(section); line < end; ++line)
                lines.insert(line);
            if (!keepsPlaces_ && line < section.end && lines_[line].what == LineKind::Blank &&
                !changed_.HasInsertedAt(line))
                lines.insert(line);
        }
        for (std::size_t line = 0; !gone_.empty() && line < lines_.size(); ++line)
            if (lines_[line].what == LineKind::Value && isGone(line))
                lines.insert(line);
        for (const std::size_t line : lines) // what stands behind a section is not to be read in the one before
            Remove(line, keepsPlaces_ && goneSections_.contains(line)
                             ? std::string(dialect_.misc) + " 0" + std::string(end_)
                             : std::string());
    }

    // Notes

    void MergePatchNotes() {
        if (ReadCell(current_, patchNotes) == ReadCell(said_, patchNotes))
            return;
        const std::vector<std::size_t> old = PatchNoteLines(document_);
        std::vector<std::string> lines = values_.NoteOf(patchNotes);
        const std::size_t line = !lines_.empty() && IsFirstLine(document_.Text(0)) ? 1 : 0;
        ReplaceNote(old, std::move(lines), line);
        if (old.empty() && line < lines_.size() && lines_[line].what != LineKind::Blank)
            changed_.Insert(line, std::string(end_)); // they are no note of what follows
    }

    void MergeNote(const Cell& cell) {
        const SectionRange* section = sections_.Of(cell.kind, cell.index);
        if (section == nullptr)
            return;
        const std::vector<std::size_t> old = NoteLinesAbove(document_, section->header);
        std::vector<std::string> lines = values_.NoteOf(cell);
        if (lines.empty())
            withoutNote_.insert(static_cast<std::size_t>(section - sections_.All().data()));
        else
            kept_.push_back(section->header);
        ReplaceNote(old, std::move(lines), section->header);
    }

    void ReplaceNote(const std::vector<std::size_t>& old, std::vector<std::string> lines, std::size_t line) {
        const std::vector<std::size_t> gone =
            ReplaceNoteLines(document_, dialect_, old, std::move(lines), line, changed_);
        removedComments_.insert(removedComments_.end(), gone.begin(), gone.end());
    }

    // Par times

    /// Entries that are the same at the beginning and the end of the list keep their lines; of those between, each
    /// takes the line of one that was there.
    void MergePars() {
        const std::vector<ParRecord>&now = current_.pars, &then = said_.pars;
        if (now == then)
            return;
        std::vector<std::size_t> lines;
        for (std::size_t line = 0; line < lines_.size(); ++line)
            if (lines_[line].what == LineKind::Value && lines_[line].kind == RecordKind::Par)
                lines.push_back(line);
        std::size_t first = 0, nowEnd = now.size(), thenEnd = then.size();
        while (first < nowEnd && first < thenEnd && now[first] == then[first])
            ++first;
        while (nowEnd > first && thenEnd > first && now[nowEnd - 1] == then[thenEnd - 1]) {
            --nowEnd;
            --thenEnd;
        }
        std::size_t at = first;
        for (; at < nowEnd && at < thenEnd; ++at) {
            const std::string_view text = document_.Text(lines[at]);
            std::size_t length = text.find_first_not_of("0123456789-+ \t", std::string_view("par").size());
            length = text.substr(0, length).find_last_not_of(" \t") + 1;
            changed_.Replace(lines_[lines[at]].offset, length, values_.ParLine(now[at]));
        }
        for (std::size_t gone = at; gone < thenEnd; ++gone)
            Remove(lines[gone]);
        std::string added;
        for (; at < nowEnd; ++at)
            added += values_.ParLine(now[at]) + std::string(end_);
        if (added.empty())
            return;
        if (thenEnd < lines.size())
            changed_.Insert(lines[thenEnd], added);
        else
            additions_[sections_.PlaceOf({RecordKind::Par, 0, listField})] += added;
    }

    // Sections without lines

    void RemoveEmptySections() {
        std::ranges::sort(removed_);
        std::ranges::sort(removedComments_);
        std::set<std::size_t> touched = withoutNote_;
        for (const std::size_t line : removed_) {
            const auto behind = std::ranges::upper_bound(sections_.All(), line, {}, &SectionRange::header);
            if (behind != sections_.All().begin())
                touched.insert(static_cast<std::size_t>(behind - sections_.All().begin()) - 1);
        }
        for (const std::size_t at : touched)
            RemoveIfEmpty(sections_.All()[at]);
    }

    void RemoveIfEmpty(const SectionRange& section) {
        if (goneSections_.contains(section.header) ||
            (IsOfOneRecord(section.section) && section.section != Section::Pointer &&
             values_.IsMade(lines_[section.header].kind, lines_[section.header].index)))
            return;
        if (section.section == Section::Text || std::ranges::find(kept_, section.header) != kept_.end())
            return;
        // A name of its own is a reason to stay.
        const DocumentLine& header = lines_[section.header];
        if (header.index != noRecord && section.section != Section::Pointer &&
            (header.kind == RecordKind::Thing || header.kind == RecordKind::Weapon ||
             header.kind == RecordKind::Ammo)) {
            const Cell name{header.kind, header.index, nameField};
            if (ReadCell(current_, name) != ReadCell(defaults_, name))
                return;
        }
        std::size_t line = section.header + 1;
        if (section.header > 0 && lines_[section.header - 1].what == LineKind::Comment &&
            !std::ranges::binary_search(removedComments_, section.header - 1))
            return;
        for (; line < section.end && lines_[line].what != LineKind::Blank; ++line)
            if (!std::ranges::binary_search(removed_, line))
                return;
        for (std::size_t rest = line; IsBracketed(section.section) && rest < section.end; ++rest)
            if (lines_[rest].what != LineKind::Blank && lines_[rest].what != LineKind::Comment &&
                !std::ranges::binary_search(removed_, rest))
                return;
        removedHeader_ = true;
        changed_.ReplaceLine(section.header, {});
        if (line < section.end && !changed_.HasInsertedAt(line)) // the blank line that ends it
            changed_.ReplaceLine(line, {});
    }

    const PatchDocument& document_;
    const std::vector<DocumentLine>& lines_;
    const PatchSet& current_;
    const PatchSet& said_;
    const PatchSet& defaults_;
    const EngineConfiguration& engine_;
    const Dialect& dialect_;
    const std::string_view end_;
    const bool keepsPlaces_; // of sections and texts that say nothing any more

    std::vector<Changed> changes_;
    std::vector<Cell> made_;                             // of existence
    std::set<std::pair<RecordKind, std::int32_t>> gone_; // records
    std::set<std::size_t> goneSections_;                 // by their headers
    DocumentSections sections_;
    DocumentValues values_;
    DocumentChanges changed_;
    std::map<SectionPlace, std::string> additions_;
    std::vector<std::size_t> removed_, removedComments_, kept_; // lines
    std::set<std::size_t> withoutNote_;                         // sections whose note is gone
    std::size_t lastSection_ = static_cast<std::size_t>(-1);    // where the last new one went
    bool removedHeader_ = false;
};

} // namespace

Status MergeIntoDocument(const PatchDocument& document, const PatchSet& current, const PatchSet& defaults,
                         const EngineConfiguration& engine, PatchDocument& merged) {
    Status status;
    // A header that is left without lines, or a text that is the engine's own, may keep those behind it from being read
    // in the section before, and comments from standing above another section.
    for (const bool keepsPlaces : {false, true}) {
        BytePieces bytes;
        status = Merge(document, current, defaults, engine, keepsPlaces).Run(bytes);
        if (!status)
            break;
        PatchSet read;
        modPatchFiles::ReadResult result = merged.Read(bytes.Joined(), engine, defaults, read);
        const std::vector<std::string> otherwise = modPatchDiff::Differences(current, read, engine);
        if (result.status && otherwise.empty())
            break;
        status =
            result.status ? Status::Failure("it would not read back: " + otherwise.front()) : std::move(result.status);
    }
    return status;
}

Status MergedBytes(const PatchDocument& document, const PatchSet& current, const PatchSet& defaults,
                   const EngineConfiguration& engine, BytePieces& bytes) {
    {
        BytePieces made;
        Merge merge(document, current, defaults, engine, false);
        Status status = merge.Run(made);
        if (!status || merge.ReadsBack(made)) {
            bytes = std::move(made);
            return status;
        }
    }
    PatchDocument merged;
    Status status = MergeIntoDocument(document, current, defaults, engine, merged);
    bytes = BytePieces(merged.Bytes());
    return status;
}

} // namespace plinket3
