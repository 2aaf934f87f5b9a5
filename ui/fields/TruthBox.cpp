#include "ui/fields/TruthBox.h"

#include "ui/fields/Marking.h"

#include <QAction>
#include <QWheelEvent>

#include <algorithm>

namespace plinket3 {

TruthBox::TruthBox(const QString& name, const QString& accessibleName, const SelectedValue& value)
    : value_(value), restore_(new QAction(this)) {
    setObjectName(name);
    setAccessibleName(accessibleName);
    setFocusPolicy(Qt::StrongFocus);
    addItem(tr("0: no"), 0);
    addItem(tr("1: yes"), 1);
    if (value_.MayBeUnset())
        addItem(value_.UnsetWord());
    addAction(restore_);
    setContextMenuPolicy(Qt::ActionsContextMenu);
    connect(restore_, &QAction::triggered, this, [this] { value_.Restore(); });
    connect(this, &QComboBox::activated, this, [this](int entry) {
        const QVariant number = itemData(entry);
        value_.Store([&number](std::int32_t) { return number.isValid() ? CellValue(number.toInt()) : Unset(); }, false);
    });
    Update();
}

void TruthBox::Update() {
    const RecordSelection& selection = value_.Selection();
    setEnabled(!value_.Editable().empty());
    const auto common = value_.Common();
    const auto* number = common ? std::get_if<std::int32_t>(&*common) : nullptr;
    setPlaceholderText(number != nullptr     ? tr("%1: yes").arg(*number)
                       : selection.Several() ? tr("leave as is")
                                             : QString());
    setCurrentIndex(number != nullptr ? findData(*number) : common ? count() - 1 : -1);
    const bool one = selection.records.size() == 1;
    const bool differs = one && value_.Differs(selection.current);
    MarkDifference(*this, differs, differs ? value_.DefaultWord(selection.current) : QString(), hint_);
    restore_->setText(one ? tr("Restore default (%1)").arg(value_.DefaultWord(selection.current))
                          : tr("Restore %n defaults", nullptr, static_cast<int>(selection.records.size())));
    restore_->setEnabled(
        std::ranges::any_of(selection.records, [this](std::int32_t record) { return value_.Differs(record); }));
}

void TruthBox::wheelEvent(QWheelEvent* event) {
    if (hasFocus())
        QComboBox::wheelEvent(event);
    else
        event->ignore(); // scrolling past the box must not change it
}

} // namespace plinket3
