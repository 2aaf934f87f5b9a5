#include "ui/RecordCommands.h"

#include "patch/FreeRecords.h"
#include "patch/KeptRecords.h"
#include "patch/NewRecords.h"
#include "ui/EditorSet.h"

#include <QAction>
#include <QWidget>

#include <algorithm>
#include <string>

namespace plinket3 {

namespace {

QAction* NewAction(const char* name, const QString& text, const QKeySequence& keys, QWidget& owner) {
    auto* action = new QAction(text, &owner);
    action->setObjectName(QString::fromLatin1(name));
    action->setShortcut(keys);
    return action;
}

std::string_view Many(RecordKind kind) {
    return kind == RecordKind::Thing   ? "things"
           : kind == RecordKind::State ? "frames"
           : kind == RecordKind::Sound ? "sounds"
                                       : "sprites";
}

} // namespace

RecordCommands::RecordCommands(const Program& program, Edits& edits, EditorSet& editors, QWidget& owner)
    : program_(program), edits_(edits), editors_(editors),
      nextFree_(NewAction("EditNextFree", tr("&Next free"), QKeySequence(Qt::Key_F8), owner)),
      keep_(NewAction("EditKeep", tr("&Keep"), QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_K), owner)) {
    nextFree_->setToolTip(tr("Go to the next one that nothing comes to and that is not kept"));
    keep_->setCheckable(true);
    for (QAction* action : Actions())
        action->setEnabled(false);
    connect(nextFree_, &QAction::triggered, this, &RecordCommands::NextFree);
    connect(keep_, &QAction::triggered, this, &RecordCommands::Keep);
    edits_.Listen([this](const std::vector<Cell>&) { Update(); });
}

std::optional<RecordKind> RecordCommands::Kind() const {
    const std::optional<Cell> here = editors_.Here();
    return here && CanBeMade(here->kind) ? std::optional(here->kind) : std::nullopt;
}

void RecordCommands::Update() {
    const std::optional<RecordKind> kind = Kind();
    const bool notes = program_.engine.dialect.EngineRules();
    const std::vector<std::int32_t> records = editors_.Selected();
    nextFree_->setEnabled(kind.has_value());
    keep_->setEnabled(kind && notes && !records.empty());
    keep_->setToolTip(notes
                          ? tr("Never hand it out as a free one. A line of the patch's notes says what is kept.")
                          : tr("The patch's notes say what is kept, and only a patch that is open by engine rules has "
                               "notes."));
    const KeptRecords kept(std::get<std::string>(edits_.Value(patchNotes)));
    keep_->setChecked(kind && !records.empty() &&
                      std::ranges::all_of(records, [&](std::int32_t record) { return kept.Has(*kind, record); }));
}

void RecordCommands::NextFree() {
    const std::optional<Cell> here = editors_.Here();
    if (!Kind())
        return;
    const PatchData& patch = program_.patch;
    const std::vector<std::int32_t> free =
        FindFree(patch.current, patch.defaults, program_.engine, program_.fixedUses, here->kind).Numbers();
    if (free.empty())
        return editors_.ShowStatus(tr("None is free."));
    const auto next = std::ranges::upper_bound(free, here->index);
    editors_.ShowRecord(here->kind, next == free.end() ? free.front() : *next);
}

void RecordCommands::Keep(bool kept) {
    const std::optional<RecordKind> kind = Kind();
    if (!kind)
        return;
    const std::string notes = std::get<std::string>(edits_.Value(patchNotes));
    const std::vector<std::int32_t> records = editors_.Selected();
    KeptRecords all(notes);
    for (const std::int32_t record : records)
        if (record >= 0) // others are never handed out
            all.Set(*kind, record, kept);
    edits_.StoreGroup({{patchNotes, all.In(notes)}},
                      (kept ? "keep " : "keep no longer ") + edits_.RecordsName(*kind, records, Many(*kind)));
    Update();
}

} // namespace plinket3
