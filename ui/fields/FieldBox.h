#pragma once

#include "ui/EditorContext.h"
#include "ui/LatinLineEdit.h"

#include <functional>

class QMenu;

namespace plinket3 {

/// What the boxes for values of the patch share: the whole text is selected when the focus comes, a run of typing ends
/// when it goes, and a context menu offers to restore the default. Digits stand on the right.
class FieldBox : public LatinLineEdit {
    Q_OBJECT
public:
    /// `accessibleName` is what the field's label says. The box is disabled until it has something to show.
    FieldBox(const QString& name, const QString& accessibleName, const EditorContext& context);

protected:
    /// Adds the entry that restores what the box shows, if there is something.
    virtual void AddRestore(QMenu& menu) = 0;
    /// Such an entry, which does `restore`.
    void AddRestoreEntry(QMenu& menu, const QString& text, bool enabled, const std::function<void()>& restore);

    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;

    Edits& edits_;
};

/// The width at which a box shows that many digits.
int WidthForDigits(const QLineEdit& box, int digits);

} // namespace plinket3
