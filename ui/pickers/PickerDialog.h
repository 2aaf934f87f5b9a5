#pragma once

#include "patch/Program.h"
#include "ui/lists/FilterBox.h"

#include <QAbstractItemView>
#include <QDialog>
#include <QPushButton>
#include <QVBoxLayout>

namespace plinket3 {

/// What the dialogs share in which one picks from a list: a box that narrows the list down, the list, and the buttons.
/// A dialog is made once and reused; its list is filled when it is first needed.
class PickerDialog : public QDialog {
    Q_OBJECT
public:
    /// The patch or the engine is another one now.
    void Refresh() { upToDate_ = false; }

protected:
    /// `name` is the object name.
    PickerDialog(const char* name, const QString& caption, Program& program, QWidget* parent);

    /// Puts `list` under the box; what is beside and below it belongs to the dialog. Call once, at the end.
    void SetList(QAbstractItemView& list, QWidget* beside);
    /// Fills the list if it is not up to date, and shows all of it. To be called before a start value is selected.
    void Prepare();
    /// Selects a row of the list's model, if it has it, and shows it in the middle.
    void Select(const QModelIndex& index);
    /// True when the user accepted; a row is selected then.
    bool Run();

    virtual void Fill() = 0;
    /// Lists only what fits `text`; all for an empty one.
    virtual void Narrow(const QString& text) = 0;
    /// Another row is selected; invalid when none is.
    virtual void RowSelected(const QModelIndex& row) = 0;

    Program& program_;

private:
    void SelectMatch(const QString& text);

    QAbstractItemView* list_ = nullptr;
    FilterBox* txtFilter_;
    QPushButton* cmdAccept_ = nullptr;
    QVBoxLayout* layout_;
    bool upToDate_ = false;
};

} // namespace plinket3
