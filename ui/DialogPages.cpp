#include "ui/DialogPages.h"

#include <QWidget>

namespace plinket3 {

namespace {

/// The manual's pages of the dialogs, by their names; those of the editors stand in editorEntries.
struct DialogPage {
    const char* dialog;
    const char* page;
};
constexpr DialogPage dialogPages[]{
    {"frmStartup", "opening.md"},
    {"frmNewFile", "opening.md#engine-iwad-and-data-wad"},
    {"framPorts", "options.md#ports"},
    {"frmOptions", "options.md"},
    {"frmRun", "running.md"},
    {"frmFindIWADs", "options.md#iwads"},
    {"frmRecovered", "saving.md#unsaved-work"},
    {"frmPatchNotes", "rules.md#notes"},
    {"frmCompare", "comparing.md"},
    {"frmCompareWith", "comparing.md"},
    {"frmChangeEngine", "opening.md#another-engine"},
    {"frmCopyWith", "copying.md#copy-with"},
    {"frmPaste", "copying.md#paste"},
    {"frmDuplicate", "copying.md#duplicate"},
    {"frmChangeMany", "editing.md#changing-many-at-once"},
    {"frmGoTo", "finding.md#going-to-a-number"},
    {"dockProblems", "problems.md"},
    {"dockStateGraph", "graph.md"},
    {"frmPropSound", "sounds.md#the-dialog-of-a-sound"},
    {"frmPropString", "strings.md#the-dialog-of-a-string"},
    {"frmNewStates", "states.md#new-states"},
    {"frmSelectSprite", "states.md#choosing-a-sprite"},
    {"frmSelectState", "states.md#choosing-a-state"},
    {"frmSelectAction", "states.md#choosing-an-action"},
};

} // namespace

QString DialogPageOf(const QWidget* control) {
    for (; control != nullptr; control = control->parentWidget())
        for (const DialogPage& row : dialogPages)
            if (control->objectName() == QLatin1String(row.dialog))
                return QString::fromLatin1(row.page);
    return {};
}

} // namespace plinket3
