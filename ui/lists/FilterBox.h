#pragma once

#include <QAbstractItemView>
#include <QLineEdit>

namespace plinket3 {

/// A box whose text narrows a list down. Down leads into the list, and so does Enter where `EnterLeads` says so.
class FilterBox : public QLineEdit {
    Q_OBJECT
public:
    FilterBox(const QString& accessibleName, const QString& placeholder);

    /// The list that the box belongs to; it outlives the box.
    void LeadTo(QAbstractItemView& list) { list_ = &list; }
    /// In a window without a button that Enter presses.
    void EnterLeads() { connect(this, &QLineEdit::returnPressed, this, &FilterBox::GoToList); }

protected:
    void keyPressEvent(QKeyEvent* event) override;

private:
    void GoToList();

    QAbstractItemView* list_ = nullptr;
};

} // namespace plinket3
