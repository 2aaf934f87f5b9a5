#include "ui/fields/ActionBox.h"

#include "core/Text.h"
#include "ui/LatinText.h"

#include <QCompleter>
#include <QFocusEvent>
#include <QLineEdit>
#include <QWheelEvent>

#include <algorithm>

namespace plinket3 {

ActionBox::ActionBox(const QString& name, const QString& accessibleName, const EngineConfiguration& engine)
    : engine_(engine) {
    setObjectName(name);
    setAccessibleName(accessibleName);
    setEditable(true);
    setInsertPolicy(QComboBox::NoInsert);
    setMaxVisibleItems(20);
    setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    setMinimumContentsLength(16);
    setFocusPolicy(Qt::StrongFocus);
    completer()->setCompletionMode(QCompleter::PopupCompletion);
    completer()->setFilterMode(Qt::MatchContains);
    // Leaving the box and choosing from it are not the same here; the box's own handlers make no difference.
    disconnect(lineEdit(), &QLineEdit::editingFinished, this, nullptr);
    disconnect(lineEdit(), &QLineEdit::returnPressed, this, nullptr);
    connect(lineEdit(), &QLineEdit::returnPressed, this, &ActionBox::TakeTyped);
    connect(this, &QComboBox::activated, this, &ActionBox::Chosen);
}

void ActionBox::Fill() {
    clear();
    for (const EngineConfiguration::Action& action : engine_.actions)
        addItem(ShownText(Trim(action.mnemonic)));
    setCurrentIndex(-1);
}

void ActionBox::ShowAction(std::optional<std::int32_t> value) {
    const auto found =
        std::find_if(engine_.actions.begin(), engine_.actions.end(),
                     [value](const EngineConfiguration::Action& action) { return action.value == value; });
    const int entry = found == engine_.actions.end() ? -1 : static_cast<int>(found - engine_.actions.begin());
    setCurrentIndex(entry);
    setEditText(itemText(entry)); // also when the user had typed over it
}

bool ActionBox::IsTyping() const { return lineEdit()->isModified() && lineEdit()->text() != itemText(currentIndex()); }

/// The entry of that name, as written or else in another case; -1 when there is none.
int ActionBox::TypedEntry() const {
    const int exact = findText(lineEdit()->text(), Qt::MatchFixedString | Qt::MatchCaseSensitive);
    return exact >= 0 ? exact : findText(lineEdit()->text(), Qt::MatchFixedString);
}

void ActionBox::TakeTyped() {
    if (!IsTyping())
        return;
    if (const int entry = TypedEntry(); entry >= 0)
        emit Chosen(entry);
    else
        emit Unknown();
}

void ActionBox::focusOutEvent(QFocusEvent* event) {
    // Another program's window, or a list that pops up, does not take the focus for good.
    if (window()->isActiveWindow() && event->reason() != Qt::PopupFocusReason && IsTyping()) {
        if (const int entry = TypedEntry(); entry >= 0)
            emit Named(entry);
        else
            emit Unknown();
    }
    QComboBox::focusOutEvent(event);
}

void ActionBox::wheelEvent(QWheelEvent* event) {
    if (hasFocus())
        QComboBox::wheelEvent(event);
    else
        event->ignore(); // scrolling past the box must not change it
}

} // namespace plinket3
