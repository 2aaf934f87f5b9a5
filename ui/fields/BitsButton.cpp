#include "ui/fields/BitsButton.h"

#include <QListView>
#include <QMenu>
#include <QScrollBar>
#include <QWidgetAction>

namespace plinket3 {

namespace {

constexpr int mostRows = 19; // that are seen at once

} // namespace

BitsButton::BitsButton(const QString& name, const QString& accessibleName, const SelectedValue& value,
                       const EditorContext& context)
    : bits_(context, {value}), list_(new QListView) {
    setObjectName(name);
    setAccessibleName(accessibleName);
    setToolTip(accessibleName);
    setText(QStringLiteral("..."));
    setFocusPolicy(Qt::TabFocus);
    setPopupMode(InstantPopup);

    list_->setObjectName(name + QStringLiteral("List"));
    list_->setAccessibleName(accessibleName);
    list_->setFrameShape(QFrame::NoFrame);
    list_->setModel(&bits_);
    auto* entry = new QWidgetAction(this);
    entry->setDefaultWidget(list_);
    auto* menu = new QMenu(this);
    menu->addAction(entry);
    connect(menu, &QMenu::aboutToShow, this, [this] {
        list_->setCurrentIndex(list_->model()->index(0, 0));
        list_->setFocus();
    });
    setMenu(menu);
    Reload();
}

void BitsButton::Reload() {
    bits_.Reload();
    list_->setMinimumWidth(list_->sizeHintForColumn(0) + 2 * list_->verticalScrollBar()->sizeHint().width());
    list_->setFixedHeight((std::min(bits_.rowCount(), mostRows) + 1) * std::max(list_->sizeHintForRow(0), 1));
}

} // namespace plinket3
