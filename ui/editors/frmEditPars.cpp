#include "ui/editors/frmEditPars.h"

#include "core/Numbers.h"
#include "patch/modPatchText.h"
#include "ui/LatinText.h"
#include "ui/NewButton.h"
#include "ui/fields/FieldBox.h"

#include <QFormLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QTreeView>
#include <QVBoxLayout>

#include <algorithm>
#include <cstdlib>

namespace plinket3 {

namespace {

constexpr Cell parList{RecordKind::Par, 0, listField};
constexpr ParRecord newPar{0, 1, 30};
constexpr std::int32_t secondsAMinute = 60;
constexpr std::size_t timeBox = 2;
constexpr int digitsOfABox = 8, charactersOfAColumn = 9;

struct ParBox {
    const char* name;
    const char* label;
    const char* tip;
};
constexpr ParBox parBoxes[]{
    {"txtEpisode", QT_TRANSLATE_NOOP("frmEditPars", "E&pisode"),
     QT_TRANSLATE_NOOP("frmEditPars", "0 for a game whose levels are named MAP01 and so on")},
    {"txtMap", QT_TRANSLATE_NOOP("frmEditPars", "&Map"), ""},
    {"txtTime", QT_TRANSLATE_NOOP("frmEditPars", "&Time"),
     QT_TRANSLATE_NOOP("frmEditPars", "Seconds, or minutes and seconds as in 1:30")},
};

class ParEdit : public FieldBox {
public:
    using FieldBox::FieldBox;

protected:
    void AddRestore(QMenu&) override {} // par times have no defaults
};

QString TitleOf(const ParRecord& par) {
    const std::int64_t seconds = par.seconds;
    return ShownText(modPatchText::LevelName(par.episode, par.map)) +
           QStringLiteral(" (%1%2:%3)")
               .arg(seconds < 0 ? QStringLiteral("-") : QString())
               .arg(std::abs(seconds / secondsAMinute))
               .arg(std::abs(seconds % secondsAMinute), 2, 10, QLatin1Char('0'));
}

} // namespace

std::int32_t ReadParTime(const QString& text) {
    const qsizetype colon = text.indexOf(QLatin1Char(':'));
    if (colon < 0)
        return LeadingInt32(StoredText(text));
    const double minutes = LeadingReal(StoredText(text.left(colon)));
    const double seconds = LeadingReal(StoredText(text.mid(colon + 1)));
    const bool negative = text.trimmed().startsWith(QLatin1Char('-')); // all of it: -1:30 is -90
    return RoundToInt32(minutes * secondsAMinute + (negative ? -seconds : seconds));
}

frmEditPars::frmEditPars(const EditorContext& context) : EditorWindow("frmEditPars", tr("Par. editor"), context) {}

void frmEditPars::Build() {
    model_ = new ParsModel(context_.program.patch.current.pars);
    model_->setParent(this);
    lvwPars_ = new QTreeView;
    lvwPars_->setObjectName(QStringLiteral("lvwPars"));
    lvwPars_->setAccessibleName(tr("Par times"));
    lvwPars_->setModel(model_);
    lvwPars_->setRootIsDecorated(false);
    lvwPars_->setUniformRowHeights(true);
    lvwPars_->setAllColumnsShowFocus(true);
    for (int column = 0; column < model_->columnCount(); ++column)
        lvwPars_->setColumnWidth(column, fontMetrics().horizontalAdvance(QString(charactersOfAColumn, '0')));

    auto* group = new QGroupBox(tr("Level"));
    auto* form = new QFormLayout(group);
    for (std::size_t i = 0; i < boxCount; ++i) {
        const ParBox& row = parBoxes[i];
        boxes_[i] = new ParEdit(QString::fromLatin1(row.name), tr(row.label).remove(QLatin1Char('&')), context_);
        boxes_[i]->setToolTip(tr(row.tip));
        boxes_[i]->setMinimumWidth(WidthForDigits(*boxes_[i], digitsOfABox));
        form->addRow(tr(row.label), boxes_[i]);
        connect(boxes_[i], &QLineEdit::textEdited, this, [this, i] { StoreBox(i); });
    }
    lblMapTitle_ = new QLabel;
    lblMapTitle_->setObjectName(QStringLiteral("lblMapTitle"));
    form->addRow(tr("Shown as"), lblMapTitle_);
    auto* cmdAdd = NewButton("cmdAdd", tr("&Add"));
    cmdRemove_ = NewButton("cmdRemove", tr("&Remove"));

    auto* buttons = new QHBoxLayout;
    buttons->addWidget(cmdAdd);
    buttons->addWidget(cmdRemove_);
    auto* right = new QVBoxLayout;
    right->addWidget(group);
    right->addLayout(buttons);
    right->addStretch();
    auto* layout = new QHBoxLayout(this);
    layout->addWidget(lvwPars_, 1);
    layout->addLayout(right);
    setFocusProxy(lvwPars_);

    connect(lvwPars_->selectionModel(), &QItemSelectionModel::selectionChanged, this, &frmEditPars::updateForm);
    connect(cmdAdd, &QPushButton::clicked, this, &frmEditPars::Add);
    connect(cmdRemove_, &QPushButton::clicked, this, &frmEditPars::Remove);
}

void frmEditPars::fillStaticData() { model_->Show(); }

std::optional<std::size_t> frmEditPars::SelectedRow() const {
    const QModelIndex current = lvwPars_->currentIndex();
    if (!lvwPars_->selectionModel()->isSelected(current) ||
        static_cast<std::size_t>(current.row()) >= Current().pars.size())
        return std::nullopt;
    return static_cast<std::size_t>(current.row());
}

std::optional<std::int32_t> frmEditPars::CurrentRecord() const {
    const std::optional<std::size_t> row = lvwPars_ != nullptr ? SelectedRow() : std::nullopt;
    return row ? std::optional(static_cast<std::int32_t>(*row)) : std::nullopt;
}

bool frmEditPars::SelectRecord(std::int32_t row) {
    if (row < 0 || row >= model_->rowCount())
        return false;
    Select(row);
    return true;
}

void frmEditPars::Select(int row) {
    lvwPars_->setCurrentIndex(model_->index(row, 0));
    updateForm();
}

void frmEditPars::updateForm() {
    const std::optional<std::size_t> row = SelectedRow();
    for (std::size_t i = 0; i < boxCount; ++i) {
        boxes_[i]->setEnabled(row.has_value());
        boxes_[i]->setText(row ? QString::number(Current().pars[*row].*parFields[i]) : QString());
    }
    cmdRemove_->setEnabled(row.has_value());
    ShowTitle();
    emit CurrentChanged();
}

void frmEditPars::ShowTitle() {
    const std::optional<std::size_t> row = SelectedRow();
    lblMapTitle_->setText(row ? TitleOf(Current().pars[*row]) : QStringLiteral("-"));
}

void frmEditPars::ShowCells(const std::vector<Cell>& cells) {
    for (const Cell& cell : cells) {
        if (cell.kind != RecordKind::Par)
            continue;
        model_->Show();
        const std::optional<std::size_t> row = SelectedRow();
        for (std::size_t i = 0; row && i < boxCount; ++i)
            if (boxes_[i]->isModified() && ReadBox(i) == Current().pars[*row].*parFields[i]) {
                ShowTitle(); // what the user is typing stays as it is
                return;
            }
        updateForm();
        return;
    }
}

std::int32_t frmEditPars::ReadBox(std::size_t box) const {
    const QString text = boxes_[box]->text();
    return box == timeBox ? ReadParTime(text) : LeadingInt32(StoredText(text));
}

void frmEditPars::StoreBox(std::size_t box) {
    const std::optional<std::size_t> row = SelectedRow();
    if (!row)
        return;
    std::vector<ParRecord> pars = Current().pars;
    pars[*row].*parFields[box] = ReadBox(box);
    boxes_[box]->setModified(true);
    const std::string level = modPatchText::LevelName(pars[*row].episode, pars[*row].map);
    context_.edits.StoreGroup({{parList, std::move(pars)}}, "par time of " + level, true);
}

void frmEditPars::Add() {
    std::vector<ParRecord> pars = Current().pars;
    pars.push_back(newPar);
    context_.edits.StoreGroup({{parList, std::move(pars)}}, "new par time");
    Select(model_->rowCount() - 1);
    boxes_.front()->setFocus();
}

void frmEditPars::Remove() {
    const std::optional<std::size_t> row = SelectedRow();
    if (!row)
        return;
    std::vector<ParRecord> pars = Current().pars;
    const std::string level = modPatchText::LevelName(pars[*row].episode, pars[*row].map);
    pars.erase(pars.begin() + static_cast<std::ptrdiff_t>(*row));
    context_.edits.StoreGroup({{parList, std::move(pars)}}, "removed par time of " + level);
    Select(std::min(static_cast<int>(*row), model_->rowCount() - 1));
}

} // namespace plinket3
