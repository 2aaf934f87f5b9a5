#include "ui/WhereUsedDock.h"

#include "patch/FreeRecords.h"
#include "patch/KeptRecords.h"
#include "patch/NewRecords.h"
#include "patch/StepNames.h"
#include "patch/Uses.h"
#include "ui/LatinText.h"

#include <QAbstractListModel>
#include <QAction>
#include <QLabel>
#include <QListView>
#include <QVBoxLayout>

#include <algorithm>
#include <utility>
#include <vector>

namespace plinket3 {

namespace {

struct UseRow {
    QString text;
    std::optional<Cell> cell; // where it leads to
    bool turns = false;       // it leads from the state to its action, or back
};

} // namespace

class UsesModel : public QAbstractListModel {
public:
    using QAbstractListModel::QAbstractListModel;

    void Show(std::vector<UseRow> rows) {
        beginResetModel();
        rows_ = std::move(rows);
        endResetModel();
    }
    const UseRow& At(int row) const { return rows_[static_cast<std::size_t>(row)]; }

    int rowCount(const QModelIndex& parent = {}) const override {
        return parent.isValid() ? 0 : static_cast<int>(rows_.size());
    }
    QVariant data(const QModelIndex& index, int role) const override {
        const UseRow& row = At(index.row());
        const bool leads = row.cell || row.turns;
        if (role == Qt::DisplayRole)
            return row.text;
        if (role == Qt::ToolTipRole)
            return leads ? QVariant() : QVariant(tr("The game's own code does this; no field says so"));
        if (role != Qt::FontRole)
            return {};
        QFont font;
        font.setItalic(!leads);
        return font;
    }

private:
    std::vector<UseRow> rows_;
};

WhereUsedDock::WhereUsedDock(const Program& program, Edits& edits, EditorSet& editors)
    : LaterDock("dockWhereUsed", tr("Where used")), program_(program), editors_(editors), model_(new UsesModel(this)) {
    filling_.setSingleShot(true);
    connect(&filling_, &QTimer::timeout, this, &WhereUsedDock::Fill);
    connect(&editors_, &EditorSet::PlaceChanged, this, &WhereUsedDock::Follow);
    connect(&editors_, &EditorSet::ShownChanged, this, &WhereUsedDock::Follow);
    edits.Listen([this](const std::vector<Cell>&) { Follow(); });
}

QWidget* WhereUsedDock::MakeContents() {
    list_ = new QListView;
    summary_ = new QLabel;
    list_->setObjectName(QStringLiteral("lvwWhereUsed"));
    list_->setAccessibleName(tr("Where used"));
    list_->setModel(model_);
    list_->setWordWrap(true);
    list_->setResizeMode(QListView::Adjust);
    list_->setLayoutMode(QListView::Batched); // an action may have thousands of rows
    auto* activate = new QAction(list_);
    activate->setShortcuts({QKeySequence(Qt::Key_Return), QKeySequence(Qt::Key_Enter)});
    activate->setShortcutContext(Qt::WidgetShortcut);
    list_->addAction(activate);
    connect(activate, &QAction::triggered, this, &WhereUsedDock::Activate);
    connect(list_, &QListView::doubleClicked, this, &WhereUsedDock::Activate);
    summary_->setObjectName(QStringLiteral("lblWhereUsed"));
    summary_->setTextFormat(Qt::PlainText);
    summary_->setWordWrap(true);
    auto* page = new QWidget;
    page->setFocusProxy(list_);
    auto* layout = new QVBoxLayout(page);
    layout->addWidget(summary_);
    layout->addWidget(list_, 1);
    ShowNone();
    return page;
}

void WhereUsedDock::showEvent(QShowEvent* event) {
    LaterDock::showEvent(event);
    Follow();
}

void WhereUsedDock::Follow() {
    if (isVisible())
        filling_.start(0);
}

void WhereUsedDock::ShowNone() {
    setWindowTitle(tr("Where used"));
    summary_->setText(tr("Select a thing, state, sound, sprite, string, weapon or kind of ammunition in its editor."));
    model_->Show({});
    record_.reset();
}

void WhereUsedDock::Fill() {
    const std::optional<Cell> place = editors_.Here();
    const auto kind = place ? TargetKindOf(place->kind) : std::nullopt;
    const PatchSet& set = program_.patch.current;
    if (!kind || !HasRecord(set, place->kind, place->index))
        return ShowNone();
    const Target record{*kind, place->index};
    const bool same = record_ == record;
    const int row = list_->currentIndex().row();
    record_ = record;
    const std::int32_t action = *kind == TargetKind::State ? set.states[place->index].codePointer : 0;
    ofAction_ = ofAction_ && same && action != 0;

    const QString name = ShownStart(RecordName(set, place->kind, place->index));
    const std::string* mnemonic = program_.engine.MnemonicOf(action);
    const QString actionName = mnemonic != nullptr ? ShownText(*mnemonic) : QString::number(action);
    const std::vector<Use> uses =
        UsesOf(set, program_.engine, program_.fixedUses, ofAction_ ? Target{TargetKind::Action, action} : record);
    std::vector<UseRow> rows;
    if (ofAction_) {
        rows.push_back({tr("back to %1").arg(name), {}, true});
    } else if (action != 0) {
        int frames = 0;
        for (const auto& [number, state] : set.states)
            frames += state.codePointer == action ? 1 : 0;
        rows.push_back({frames == 1 ? tr("action: %1 (1 frame)").arg(actionName)
                                    : tr("action: %1 (%n frames)", nullptr, frames).arg(actionName),
                        {},
                        true});
    }
    for (const Use& use : uses)
        rows.push_back({ShownStart(use.text), use.cell});
    setWindowTitle(tr("Where used: %1").arg(ofAction_ ? actionName : name));
    summary_->setText(Summary(uses.size()));
    model_->Show(std::move(rows));
    if (model_->rowCount() > 0)
        list_->setCurrentIndex(model_->index(same ? std::clamp(row, 0, model_->rowCount() - 1) : 0));
}

QString WhereUsedDock::Summary(std::size_t uses) const {
    const auto kind = *RecordKindOf(record_->kind);
    const PatchSet& set = program_.patch.current;
    QStringList texts{uses == 0   ? tr("Nothing uses it.")
                      : uses == 1 ? tr("Used in one place.")
                                  : tr("Used in %n places.", nullptr, static_cast<int>(uses))};
    if (ofAction_)
        return texts.front();
    if (record_->IsNone())
        texts = {tr("It stands for none.")};
    if (kind == RecordKind::Thing && set.things[record_->number].id > 0)
        texts.append(tr("Levels can place it."));
    if (CanBeMade(kind)) {
        if (KeptRecords(std::get<std::string>(ReadCell(set, patchNotes))).Has(kind, record_->number))
            texts.append(tr("It is kept."));
        else if (FindFree(set, program_.patch.defaults, program_.engine, program_.fixedUses, kind).Has(record_->number))
            texts.append(tr("It is free."));
    }
    if (const std::size_t selected = editors_.Selected().size(); selected > 1)
        texts.append(tr("Of the %n that are selected this is the one that was clicked last.", nullptr,
                        static_cast<int>(selected)));
    return texts.join(QLatin1Char(' '));
}

void WhereUsedDock::Activate() {
    if (!list_->currentIndex().isValid())
        return;
    const UseRow row = model_->At(list_->currentIndex().row());
    if (row.turns) {
        ofAction_ = !ofAction_;
        Fill();
    } else if (row.cell) {
        editors_.ShowCell(*row.cell);
    }
}

} // namespace plinket3
