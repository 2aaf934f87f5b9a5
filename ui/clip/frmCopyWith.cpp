#include "ui/clip/frmCopyWith.h"

#include "patch/StepNames.h"
#include "ui/AcceptButtons.h"
#include "ui/LatinText.h"

#include <QHeaderView>
#include <QLabel>
#include <QSignalBlocker>
#include <QTreeWidget>
#include <QVBoxLayout>

namespace plinket3 {

namespace {

constexpr int placeRole = Qt::UserRole;

/// Whether it only carries a run of states on, so that the run stands in one list and not ever deeper.
bool GoesOn(const Companion& companion) {
    return companion.why.from.kind == RecordKind::State && companion.why.from.field == RowOf(&StateRecord::nextState);
}

} // namespace

frmCopyWith::frmCopyWith(const Session& session, const std::vector<RecordId>& records, QWidget* parent)
    : QDialog(parent), session_(session), records_(records), choice_(session.patch, session.engine, records),
      tree_(new QTreeWidget), count_(new QLabel) {
    setObjectName(QStringLiteral("frmCopyWith"));
    setWindowTitle(tr("Copy with..."));
    auto* told =
        new QLabel(tr("Ticked is what another patch would not have as it is here. The rest is the engine's own."));
    told->setWordWrap(true);
    tree_->setObjectName(QStringLiteral("trvCompanions"));
    tree_->setAccessibleName(tr("What is copied"));
    tree_->setHeaderLabels({tr("What is copied"), tr("Because it is")});
    tree_->setUniformRowHeights(true);
    tree_->setAllColumnsShowFocus(true);
    count_->setObjectName(QStringLiteral("lblCount"));
    count_->setTextFormat(Qt::PlainText);
    QPushButton* accept = NewButton("cmdAccept", tr("&Copy"));
    QDialogButtonBox* buttons = AcceptButtons(*this, *accept);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(told);
    layout->addWidget(tree_, 1);
    layout->addWidget(count_);
    layout->addWidget(buttons);
    resize(fontMetrics().averageCharWidth() * 84, fontMetrics().height() * 30);
    Fill();
    connect(tree_, &QTreeWidget::itemChanged, this, &frmCopyWith::Ticked);
    ShowTicks();
    tree_->setFocus();
}

void frmCopyWith::Fill() {
    const PatchSet& set = session_.patch.current;
    const std::vector<Companion>& companions = choice_.Companions();
    for (std::size_t i = 0; i < companions.size(); ++i) {
        const Companion& each = companions[i];
        QTreeWidgetItem* under = each.parent ? items_[*each.parent] : nullptr;
        if (each.parent && GoesOn(each) && GoesOn(companions[*each.parent]))
            under = under->parent();
        auto* item = under != nullptr ? new QTreeWidgetItem(under) : new QTreeWidgetItem(tree_);
        item->setText(0, ShownStart(RecordName(set, each.record.first, each.record.second)));
        item->setData(0, placeRole, static_cast<qulonglong>(i));
        if (each.parent) {
            item->setText(1, ShownStart(WhyText(set, each.why)));
            item->setFlags(item->flags() | Qt::ItemIsUserCheckable);
        } else {
            item->setText(1, tr("selected"));
            item->setFlags(item->flags() & ~Qt::ItemIsUserCheckable);
        }
        items_.push_back(item);
        if (each.record.first != RecordKind::State) // which a run of states would hide
            for (auto* above = item->parent(); above != nullptr; above = above->parent())
                above->setExpanded(each.differs || above->isExpanded());
    }
    for (int i = 0; i < tree_->topLevelItemCount(); ++i)
        tree_->topLevelItem(i)->setExpanded(true);
    tree_->header()->resizeSection(0, fontMetrics().averageCharWidth() * 40);
    tree_->setCurrentItem(items_.front());
}

void frmCopyWith::Ticked(QTreeWidgetItem* item) {
    choice_.Tick(static_cast<std::size_t>(item->data(0, placeRole).toULongLong()), item->checkState(0) == Qt::Checked);
    ShowTicks();
}

void frmCopyWith::ShowTicks() {
    const QSignalBlocker blocker(tree_);
    for (std::size_t i = 0; i < items_.size(); ++i)
        items_[i]->setCheckState(0, choice_.IsTicked(i) ? Qt::Checked : Qt::Unchecked);
    count_->setText(ShownStart(ClipName(session_.patch.current, records_, choice_.Chosen())));
}

std::optional<std::set<RecordId>> frmCopyWith::Choose() {
    return exec() == Accepted ? std::optional(choice_.Chosen()) : std::nullopt;
}

} // namespace plinket3
