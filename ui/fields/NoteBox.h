#pragma once

#include "ui/EditorContext.h"
#include "ui/fields/NoteEdit.h"
#include "ui/fields/RecordSelection.h"

namespace plinket3 {

/// The box for the note of the selected record. A run of typing is one step. The kept rules have no notes: then it can
/// be hidden.
class NoteBox : public NoteEdit {
    Q_OBJECT
public:
    /// `selection` must outlive the box.
    NoteBox(RecordKind kind, const RecordSelection& selection, const EditorContext& context);

    /// Shows the note of the selected record, none of several. Stores nothing.
    void Update();
    /// Whether the open patch can hold notes.
    bool HasNotes() const { return context_.program.engine.dialect.EngineRules(); }

protected:
    void focusOutEvent(QFocusEvent* event) override;

private:
    RecordKind kind_;
    const RecordSelection& selection_;
    EditorContext context_;
};

} // namespace plinket3
