#include "ui/RecordCommands.h"

#include "patch/FreeRecords.h"
#include "patch/KeptRecords.h"
#include "patch/NewRecords.h"
#include "patch/StepNames.h"
#include "ui/EditorSet.h"
#include "ui/fields/FieldControl.h"
#include "ui/fields/SelectionBox.h"
#include "ui/frmChangeMany.h"

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

} // namespace

RecordCommands::RecordCommands(Program& program, Edits& edits, EditorSet& editors, QWidget& owner)
    : program_(program), edits_(edits), editors_(editors), owner_(owner),
      changeMany_(
          NewAction("EditChangeMany", tr("&Change many..."), QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_M), owner)),
      nextFree_(NewAction("EditNextFree", tr("&Next free"), QKeySequence(Qt::Key_F8), owner)),
      keep_(NewAction("EditKeep", tr("&Keep"), QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_K), owner)) {
    nextFree_->setToolTip(tr("Go to the next one that nothing comes to and that is not kept"));
    keep_->setCheckable(true);
    for (QAction* action : Actions())
        action->setEnabled(false);
    connect(changeMany_, &QAction::triggered, this, &RecordCommands::ChangeMany);
    connect(nextFree_, &QAction::triggered, this, &RecordCommands::NextFree);
    connect(keep_, &QAction::triggered, this, &RecordCommands::Keep);
    edits_.Listen([this](const std::vector<Cell>&) { Update(); });
}

bool RecordCommands::HasNumbers(RecordKind kind) const { return !NumberFields(kind, program_.engine).empty(); }

QList<QAction*> RecordCommands::Actions(RecordKind kind) const {
    QList<QAction*> actions;
    if (HasNumbers(kind))
        actions.append(changeMany_);
    if (CanBeMade(kind))
        actions.append({nextFree_, keep_});
    return actions;
}

std::optional<RecordKind> RecordCommands::Kind() const {
    const std::optional<Cell> here = editors_.Here();
    return here && CanBeMade(here->kind) ? std::optional(here->kind) : std::nullopt;
}

void RecordCommands::Update() {
    const std::optional<RecordKind> kind = Kind();
    const bool notes = program_.engine.dialect.EngineRules();
    const std::vector<std::int32_t> records = editors_.Selected();
    const std::optional<Cell> here = editors_.Here();
    changeMany_->setEnabled(here && HasNumbers(here->kind) && !records.empty());
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

void RecordCommands::ChangeMany() {
    QWidget* focus = owner_.window()->focusWidget();
    SelectionBox::TakeWaiting(focus);
    const RecordKind kind = editors_.Here()->kind;
    ManyRecords records{kind, editors_.Selected(), PluralOf(kind)};
    std::ranges::sort(records.numbers, {}, [](std::int32_t number) { return static_cast<std::uint32_t>(number); });
    frmChangeMany({program_, edits_, editors_}, std::move(records), FieldAt(focus), owner_.window()).Change();
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
                      (kept ? "keep " : "keep no longer ") + edits_.RecordsName(*kind, records, PluralOf(*kind)));
    Update();
}

} // namespace plinket3
