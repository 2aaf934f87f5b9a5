#include "ui/lists/FilterBox.h"

#include <QKeyEvent>

namespace plinket3 {

FilterBox::FilterBox(const QString& accessibleName, const QString& placeholder) {
    setObjectName(QStringLiteral("txtFilter"));
    setAccessibleName(accessibleName);
    setPlaceholderText(placeholder);
    setClearButtonEnabled(true);
}

void FilterBox::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Down)
        GoToList();
    else
        QLineEdit::keyPressEvent(event);
}

/// To the row that is selected, if the list still has it, else to the first one.
void FilterBox::GoToList() {
    if (list_ == nullptr || list_->model()->rowCount() == 0)
        return;
    if (!list_->selectionModel()->isSelected(list_->currentIndex()))
        list_->setCurrentIndex(list_->model()->index(0, 0));
    list_->setFocus();
}

} // namespace plinket3
