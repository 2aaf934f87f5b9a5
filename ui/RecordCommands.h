#pragma once

#include "patch/Edits.h"
#include "patch/Program.h"

#include <QList>
#include <QObject>

#include <optional>

class QAction;
class QWidget;

namespace plinket3 {

class EditorSet;

/// "Next free" and "Keep" for the records that are selected in the editor in front, things, states, sounds and sprites.
class RecordCommands : public QObject {
    Q_OBJECT
public:
    /// `program`, `edits` and `editors`, which need not be made yet, must outlive this object; `owner` gets the
    /// actions.
    RecordCommands(const Program& program, Edits& edits, EditorSet& editors, QWidget& owner);

    /// For menus.
    QList<QAction*> Actions() const { return {nextFree_, keep_}; }
    /// Other records are selected, or an edit has changed what they are.
    void Update();

private:
    /// Of the editor in front; absent for one whose records cannot be free.
    std::optional<RecordKind> Kind() const;
    void NextFree();
    void Keep(bool kept);

    const Program& program_;
    Edits& edits_;
    EditorSet& editors_;
    QAction* nextFree_;
    QAction* keep_;
};

} // namespace plinket3
