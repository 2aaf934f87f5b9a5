#include "patch/Clip.h"

#include "core/Text.h"
#include "patch/SessionChoice.h"
#include "patch/StepNames.h"
#include "patch/modTables.h"

#include <algorithm>
#include <map>
#include <utility>

namespace plinket3 {

namespace {

constexpr std::int32_t flashEnd = 1; // the state that turns the extra light off

/// Whether the patch has made a record, or changed anything of it.
bool IsChanged(const PatchData& patch, const RecordId& record) {
    bool changed = false;
    VisitKind(record.first, [&](const auto& list) {
        const auto *now = list.In(patch.current).Find(record.second),
                   *standard = list.In(patch.defaults).Find(record.second);
        changed = standard == nullptr || (now != nullptr && *now != *standard);
    });
    return changed;
}

bool MayGoAlong(const Target& target) {
    switch (target.kind) {
    case TargetKind::Thing:
    case TargetKind::Sprite:
    case TargetKind::String:
        return true;
    case TargetKind::State:
        return !target.IsNone() && target.number != flashEnd;
    case TargetKind::Sound:
        return !target.IsNone();
    default:
        return false;
    }
}

/// Collects what a text says.
class Listener : public modPatchFiles::ReadObserver {
public:
    Listener(std::string_view text, Clip& clip) : text_(text), clip_(clip) {}

    void Selected(std::size_t /*offset*/, RecordKind kind, std::int32_t index) override {
        clip_.records.insert({kind, index});
    }
    void Stored(std::size_t /*offset*/, const Cell& cell, std::string_view /*value*/) override {
        clip_.records.insert({cell.kind, cell.index});
        clip_.said.push_back(cell);
    }
    void Ignored(std::size_t offset, std::string_view reason) override {
        if (++ignored_ > mostIgnored)
            return;
        const std::string_view line = text_.substr(offset, text_.find_first_of("\r\n", offset) - offset);
        clip_.ignored.push_back("line " + std::to_string(LineAt(text_, offset)) + ": \"" + std::string(Trim(line)) +
                                "\" " + std::string(reason));
    }

    void End() {
        if (ignored_ > mostIgnored)
            clip_.ignored.push_back(std::to_string(ignored_ - mostIgnored) + " more lines say nothing");
    }

private:
    static constexpr std::size_t mostIgnored = 20;

    std::string_view text_;
    Clip& clip_;
    std::size_t ignored_ = 0;
};

/// The place of the engine that a text was made for; absent for one that says nothing of it.
std::optional<std::size_t> EngineOf(const Environment& environment, std::string_view text) {
    modPatchFiles::Header header;
    if (!modPatchFiles::ScanHeader(text, header) ||
        (!header.contains("engineconfig") && !header.contains("engineversion")))
        return std::nullopt;
    return RecommendEngine(environment, header, text, {}, std::nullopt, RulesSetting::Engine).index;
}

} // namespace

std::vector<Companion> CompanionsOf(const PatchData& patch, const EngineConfiguration& engine,
                                    const std::vector<RecordId>& records) {
    const LinkWalk walk(patch.current, engine);
    std::vector<Companion> companions;
    std::set<RecordId> known;
    for (const RecordId& record : records)
        if (HasRecord(patch.current, record.first, record.second) && known.insert(record).second)
            companions.push_back({record, std::nullopt, {}, true, true});
    // First to the end from what is proposed: what else leads to one of those takes nothing from it.
    for (const bool proposed : {true, false})
        for (std::size_t i = 0; i < companions.size(); ++i) {
            if (companions[i].proposed != proposed)
                continue;
            const RecordId from = companions[i].record;
            walk.ForEachOf(from.first, from.second, [&](const Link& link) {
                if (!MayGoAlong(link.to))
                    return;
                const RecordId record{*RecordKindOf(link.to.kind), link.to.number};
                if (!HasRecord(patch.current, record.first, record.second) || !known.insert(record).second)
                    return;
                const bool differs = record.first == RecordKind::State || IsChanged(patch, record);
                companions.push_back({record, i, link, differs, proposed && differs});
            });
        }
    return companions;
}

std::string WhyText(const PatchSet& set, const Link& link) {
    std::string what = link.argument != nullptr ? link.argument->name : FieldName(link.from);
    if (!what.empty())
        what[0] = ToUpper(what[0]);
    return what + " of " + RecordName(set, link.from.kind, link.from.index);
}

std::string ClipName(const PatchSet& set, const std::vector<RecordId>& subjects, const std::set<RecordId>& records) {
    std::vector<std::int32_t> numbers;
    std::map<RecordKind, std::size_t> others;
    for (const RecordId& record : records)
        if (std::ranges::find(subjects, record) == subjects.end())
            ++others[record.first];
        else
            numbers.push_back(record.second);
    if (numbers.empty())
        return {};
    const RecordKind kind = subjects.front().first;
    std::string name = RecordsName(set, kind, numbers, PluralOf(kind));
    for (std::size_t listed = 0; const auto& [each, count] : others) {
        name += listed == 0 ? " with " : listed + 1 == others.size() ? " and " : ", ";
        name += CountOf(each, count);
        ++listed;
    }
    return name;
}

std::vector<RecordId> SubjectsOf(const Clip& clip) {
    std::set<RecordId> reached;
    const LinkWalk walk(clip.patch.current, clip.engine);
    for (const RecordId& record : clip.records)
        walk.ForEachOf(record.first, record.second, [&](const Link& link) {
            if (const auto kind = RecordKindOf(link.to.kind); kind && RecordId(*kind, link.to.number) != record)
                reached.emplace(*kind, link.to.number);
        });
    std::vector<RecordId> subjects;
    const auto take = [&](RecordKind kind, bool all) {
        for (const RecordId& record : clip.records)
            if (record.first == kind && (all || !reached.contains(record)))
                subjects.push_back(record);
    };
    for (const RecordKind kind : {RecordKind::Thing, RecordKind::Weapon})
        if (subjects.empty())
            take(kind, false);
    if (subjects.empty())
        take(clip.records.begin()->first, true);
    return subjects;
}

Status ReadClip(const Environment& environment, const Session& open, std::string_view text, Clip& clip) {
    Clip read;
    const auto place = EngineOf(environment, text);
    if (!place || !modTables::ReadEngine(environment.programFolder, environment.engines[*place], read.engine,
                                         read.patch.defaults)) {
        read.engine = open.engine;
        read.patch.defaults = open.patch.defaults;
    }
    read.engine.dialect = read.engine.dialect.AsEngines();
    Listener listener(text, read);
    const auto result =
        modPatchFiles::ParsePatch(text, read.engine, read.patch.defaults, read.patch.current, &listener);
    listener.End();
    if (!result.status || read.records.empty())
        return Status::Failure("The text holds nothing of a patch that " + read.engine.name + " knows.");
    if (read.records.size() > mostClipRecords)
        return Status::Failure("The text holds " + std::to_string(read.records.size()) + " records; no more than " +
                               std::to_string(mostClipRecords) + " are pasted at once.");
    clip = std::move(read);
    return {};
}

} // namespace plinket3
