#include "ui/fields/NoteBox.h"

#include "ui/fields/FieldControl.h"

namespace plinket3 {

NoteBox::NoteBox(RecordKind kind, const RecordSelection& selection, const EditorContext& context)
    : NoteEdit(QStringLiteral("txtNotes"), tr("Notes"),
               [&links = context.links](const QString& why) { links.ShowStatus(why); }),
      kind_(kind), selection_(selection), context_(context) {
    ForField(*this, noteField);
    setToolTip(tr("What the comments above it in the patch say; games do not read them"));
    connect(this, &NoteEdit::Edited, this, [this] {
        if (selection_.records.size() == 1)
            context_.edits.Store({kind_, selection_.current, noteField}, Note(), true);
    });
}

void NoteBox::Update() {
    const bool one = selection_.records.size() == 1;
    setEnabled(one);
    setPlaceholderText(selection_.Several() ? tr("One at a time") : QString());
    ShowNote(one ? std::get<std::string>(context_.edits.Value({kind_, selection_.current, noteField})) : std::string());
}

void NoteBox::focusOutEvent(QFocusEvent* event) {
    NoteEdit::focusOutEvent(event);
    context_.edits.EndTyping();
}

} // namespace plinket3
