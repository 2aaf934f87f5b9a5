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

/// What the menus offer for the records that are selected in the editor in front: "Next free" and "Keep" of things,
/// states, sounds and sprites, and "Change many" of those that have numbers.
class RecordCommands : public QObject {
    Q_OBJECT
public:
    /// `program`, `edits` and `editors`, which need not be made yet, must outlive this object; `owner` gets the
    /// actions.
    RecordCommands(Program& program, Edits& edits, EditorSet& editors, QWidget& owner);

    /// For menus.
    QList<QAction*> Actions() const { return {changeMany_, nextFree_, keep_}; }
    /// Those for records of that kind.
    QList<QAction*> Actions(RecordKind kind) const;
    /// Other records are selected, or an edit has changed what they are.
    void Update();

private:
    /// Of the editor in front; absent for one whose records cannot be free.
    std::optional<RecordKind> Kind() const;
    bool HasNumbers(RecordKind kind) const;
    void NextFree();
    void Keep(bool kept);
    void ChangeMany();

    Program& program_;
    Edits& edits_;
    EditorSet& editors_;
    QWidget& owner_;
    QAction* changeMany_;
    QAction* nextFree_;
    QAction* keep_;
};

} // namespace plinket3
