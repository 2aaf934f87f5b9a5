#include "ui/fields/ActionBox.h"

#include "ui/fields/ActionText.h"

#include <QCompleter>
#include <QFocusEvent>
#include <QLineEdit>
#include <QWheelEvent>

#include <algorithm>

namespace plinket3 {

namespace {

constexpr int searchRole = Qt::UserRole;

/// Offers actions by what a search for them looks into, and puts their names into the box.
class ActionCompleter : public QCompleter {
public:
    explicit ActionCompleter(QAbstractItemModel* actions, QObject* parent) : QCompleter(actions, parent) {
        setCompletionRole(searchRole);
        setCompletionMode(PopupCompletion);
        setFilterMode(Qt::MatchContains);
        setCaseSensitivity(Qt::CaseInsensitive);
    }
    QString pathFromIndex(const QModelIndex& index) const override { return index.data().toString(); }
};

} // namespace

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
    setCompleter(new ActionCompleter(model(), this));
    // Leaving the box and choosing from it are not the same here; the box's own handlers make no difference.
    disconnect(lineEdit(), &QLineEdit::editingFinished, this, nullptr);
    disconnect(lineEdit(), &QLineEdit::returnPressed, this, nullptr);
    connect(lineEdit(), &QLineEdit::returnPressed, this, &ActionBox::TakeTyped);
    connect(this, &QComboBox::activated, this, &ActionBox::Chosen);
}

void ActionBox::Fill() {
    clear();
    for (const EngineConfiguration::Action& action : engine_.actions)
        addItem(ActionName(action), ActionSearchText(action));
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

/// The only entry whose name holds what is typed, else the only one that a search for it finds; -1 when there is none.
int ActionBox::OnlyMatch() const {
    for (const int role : {static_cast<int>(Qt::DisplayRole), searchRole}) {
        const QModelIndexList found =
            model()->match(model()->index(0, modelColumn()), role, lineEdit()->text(), 2, Qt::MatchContains);
        if (!found.isEmpty())
            return found.size() == 1 ? found.front().row() : -1;
    }
    return -1;
}

void ActionBox::TakeTyped() {
    if (!IsTyping())
        return;
    const int typed = TypedEntry();
    if (const int entry = typed >= 0 ? typed : OnlyMatch(); entry >= 0)
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
