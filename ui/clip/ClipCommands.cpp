#include "ui/clip/ClipCommands.h"

#include "patch/CopyChoice.h"
#include "patch/StepNames.h"
#include "ui/EditorSet.h"
#include "ui/LatinText.h"
#include "ui/clip/frmCopyWith.h"
#include "ui/clip/frmDuplicate.h"
#include "ui/clip/frmPaste.h"

#include <QAction>
#include <QApplication>
#include <QClipboard>

#include <algorithm>

namespace plinket3 {

namespace {

bool CanBeCopied(RecordKind kind) { return kind <= RecordKind::Ammo; }
/// Whether it brings states along.
bool HasStates(RecordKind kind) { return kind == RecordKind::Thing || kind == RecordKind::Weapon; }

} // namespace

struct ClipCommands::Verb {
    const char* step; // begins the step's name
    const char* done; // what the status bar says
};
const ClipCommands::Verb ClipCommands::pasting{"paste ", QT_TR_NOOP("Pasted %1")};
const ClipCommands::Verb ClipCommands::duplicating{"duplicate ", QT_TR_NOOP("Duplicated %1")};

ClipCommands::ClipCommands(Program& program, Edits& edits, EditorSet& editors, QWidget& area)
    : program_(program), edits_(edits), editors_(editors), area_(area), copy_(new QAction(tr("&Copy"), this)),
      copyWith_(new QAction(tr("Copy &with..."), this)), paste_(new QAction(tr("&Paste..."), this)),
      duplicate_(new QAction(tr("&Duplicate..."), this)) {
    const struct {
        QAction* action;
        const char* name;
        QKeySequence keys;
        void (ClipCommands::*run)();
        QString tip;
    } rows[]{{copy_, "EditCopy", QKeySequence::Copy, &ClipCommands::Copy,
              tr("Copy the selected records as text: things and weapons with their states and whatever else another "
                 "patch would not have")},
             {copyWith_, "EditCopyWith", QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_C), &ClipCommands::CopyWith,
              tr("Choose what goes along with the selected things, weapons or states")},
             {paste_, "EditPaste", QKeySequence::Paste, &ClipCommands::Paste,
              tr("Put the records on the clipboard into this patch, after a look at where they go")},
             {duplicate_, "EditDuplicate", QKeySequence(Qt::CTRL | Qt::Key_D), &ClipCommands::Duplicate,
              tr("Make another one of the selected things or states, or put a weapon in another one's place")}};
    for (const auto& row : rows) {
        row.action->setObjectName(QString::fromLatin1(row.name));
        row.action->setShortcut(row.keys);
        row.action->setShortcutContext(Qt::WidgetWithChildrenShortcut);
        row.action->setToolTip(row.tip);
        connect(row.action, &QAction::triggered, this, row.run);
        area_.addAction(row.action);
    }
    Update();
}

std::vector<RecordId> ClipCommands::Selected() const {
    std::vector<RecordId> selected;
    if (const std::optional<Cell> here = editors_.Here(); here && CanBeCopied(here->kind))
        for (const std::int32_t record : editors_.Selected())
            selected.emplace_back(here->kind, record);
    return selected;
}

void ClipCommands::Update() {
    const std::vector<RecordId> selected = Selected();
    const std::optional<RecordKind> kind = selected.empty() ? std::nullopt : std::optional(selected.front().first);
    const bool hasStates = kind && (HasStates(*kind) || kind == RecordKind::State);
    copy_->setEnabled(kind.has_value());
    copyWith_->setEnabled(hasStates);
    paste_->setEnabled(editors_.Front().has_value());
    duplicate_->setEnabled(hasStates && (kind != RecordKind::Weapon || selected.size() == 1));
}

void ClipCommands::Copy() {
    const std::vector<RecordId> subjects = Selected();
    std::set<RecordId> records(subjects.begin(), subjects.end());
    if (!subjects.empty() && HasStates(subjects.front().first))
        records = CopyChoice(program_.patch, program_.engine, subjects).Chosen();
    ToClipboard(subjects, records);
}

void ClipCommands::CopyWith() {
    const std::vector<RecordId> subjects = Selected();
    if (subjects.empty())
        return;
    if (const auto records = frmCopyWith(program_, subjects, area_.window()).Choose())
        ToClipboard(subjects, *records);
}

void ClipCommands::ToClipboard(const std::vector<RecordId>& subjects, const std::set<RecordId>& records) {
    if (records.size() > mostClipRecords)
        return editors_.ShowStatus(tr("No more than %1 records can be copied at once").arg(mostClipRecords));
    QApplication::clipboard()->setText(
        ShownText(modPatchFiles::FormatRecords(program_.patch, program_.engine, records)));
    editors_.ShowStatus(tr("Copied %1").arg(ShownText(ClipName(program_.patch.current, subjects, records))));
}

void ClipCommands::Paste() {
    const QString text = QApplication::clipboard()->text();
    if (text.isEmpty())
        return editors_.ShowStatus(tr("There is no text on the clipboard"));
    AskAndPaste(StoredText(text), pasting);
}

void ClipCommands::AskAndPaste(const std::string& text, const Verb& verb) {
    Clip clip;
    if (const Status read = ReadClip(program_, program_, text, clip); !read)
        return editors_.ShowStatus(ShownText(read.Reason()));
    if (const std::optional<PastePlan> plan = frmPaste(clip, program_, area_.window()).Ask())
        Store(clip, *plan, verb);
}

void ClipCommands::Duplicate() {
    const std::vector<RecordId> subjects = Selected();
    if (subjects.empty())
        return;
    if (subjects.size() == 1 && HasStates(subjects.front().first)) {
        frmDuplicate dialog({program_, edits_, editors_}, subjects.front(), area_.window());
        if (const std::optional<PastePlan> plan = dialog.Ask())
            Store(dialog.Copied(), *plan, duplicating);
        return;
    }
    std::set<RecordId> records;
    for (const RecordId& subject : subjects)
        records.merge(WithOwnStates(program_.patch, program_.engine, subject));
    if (subjects.front().first == RecordKind::State)
        records = {subjects.begin(), subjects.end()};
    AskAndPaste(modPatchFiles::FormatRecords(program_.patch, program_.engine, records), duplicating);
}

/// One step; then the first of what the clip is called after is selected.
void ClipCommands::Store(const Clip& clip, const PastePlan& plan, const Verb& verb) {
    const PatchSet& from = clip.patch.current;
    const std::vector<RecordId> subjects = SubjectsOf(clip);
    edits_.StoreGroup(plan.assignments,
                      std::string(verb.step) + ClipName(from, subjects, {subjects.begin(), subjects.end()}));
    std::set<RecordId> pasted;
    for (const PastePlan::Place& place : plan.places)
        if (!place.isThere)
            pasted.insert(place.from);
    const auto place = std::ranges::find(plan.places, subjects.front(), &PastePlan::Place::from);
    if (place != plan.places.end())
        editors_.ShowRecord(place->from.first, place->to);
    editors_.ShowStatus(tr(verb.done).arg(ShownText(ClipName(from, subjects, pasted))));
}

} // namespace plinket3
