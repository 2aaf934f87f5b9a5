#include "ui/fields/FieldBox.h"

#include <QContextMenuEvent>
#include <QFocusEvent>
#include <QFontDatabase>
#include <QMenu>
#include <QTimer>

#include <memory>

namespace plinket3 {

FieldBox::FieldBox(const QString& name, const QString& accessibleName, const EditorContext& context)
    : LatinLineEdit(name, accessibleName, [&links = context.links](const QString& word) { links.ShowStatus(word); }),
      edits_(context.edits) {
    setAlignment(Qt::AlignRight);
    setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    setEnabled(false);
}

void FieldBox::AddRestoreEntry(QMenu& menu, const QString& text, bool enabled, const std::function<void()>& restore) {
    menu.addSeparator();
    QAction* entry = menu.addAction(text, this, restore);
    entry->setObjectName(QStringLiteral("restoreField"));
    entry->setEnabled(enabled);
}

void FieldBox::focusInEvent(QFocusEvent* event) {
    LatinLineEdit::focusInEvent(event);
    if (event->reason() == Qt::MouseFocusReason) // a click sets the caret after the focus came
        QTimer::singleShot(0, this, &QLineEdit::selectAll);
    else if (event->reason() != Qt::PopupFocusReason)
        selectAll(); // at once: a key may follow
}

void FieldBox::focusOutEvent(QFocusEvent* event) {
    LatinLineEdit::focusOutEvent(event);
    if (event->reason() == Qt::PopupFocusReason)
        return;
    edits_.EndTyping();
    setModified(false);
}

void FieldBox::contextMenuEvent(QContextMenuEvent* event) {
    const std::unique_ptr<QMenu> menu(createStandardContextMenu());
    AddRestore(*menu);
    menu->exec(event->globalPos());
}

int WidthForDigits(const QLineEdit& box, int digits) {
    constexpr int marginDigits = 2; // frame and caret
    return box.fontMetrics().horizontalAdvance(QString(digits + marginDigits, QLatin1Char('0')));
}

} // namespace plinket3
