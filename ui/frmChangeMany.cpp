#include "ui/frmChangeMany.h"

#include "patch/CellText.h"
#include "ui/AcceptButtons.h"
#include "ui/LatinText.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFormLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QTreeWidget>
#include <QVBoxLayout>

#include <algorithm>
#include <cmath>
#include <utility>

namespace plinket3 {

namespace {

constexpr int kindRole = Qt::UserRole + 1; // of an entry that replaces: what
constexpr std::size_t mostShown = 200;

struct ReplaceEntry {
    TargetKind kind;
    const char* text;
};
constexpr ReplaceEntry replaceEntries[]{
    {TargetKind::Sprite, QT_TRANSLATE_NOOP("frmChangeMany", "Replace a sprite")},
    {TargetKind::Sound, QT_TRANSLATE_NOOP("frmChangeMany", "Replace a sound")},
    {TargetKind::State, QT_TRANSLATE_NOOP("frmChangeMany", "Replace a frame")},
    {TargetKind::Thing, QT_TRANSLATE_NOOP("frmChangeMany", "Replace a thing")},
};

std::optional<double> RealIn(const QLineEdit& box) {
    bool isNumber = false;
    const double number = box.text().trimmed().toDouble(&isNumber);
    return isNumber && std::isfinite(number) ? std::optional(number) : std::nullopt;
}

/// What stands for a record where it is referred to: patches count things from 1.
std::int64_t TypedNumber(const Target& target) {
    return std::int64_t{target.number} + (target.kind == TargetKind::Thing ? 1 : 0);
}

} // namespace

frmChangeMany::frmChangeMany(const EditorContext& context, ManyRecords records, std::optional<int> field,
                             QWidget* parent)
    : QDialog(parent), context_(context), records_(std::move(records)),
      targets_(TargetsOf(context.program.patch.current, context.program.engine, records_)), form_(new QFormLayout),
      cmbWhat_(new QComboBox), cmbField_(new QComboBox), cmbFrom_(new QComboBox), txtFirst_(NewBox("txtFirst")),
      txtStep_(NewBox("txtStep")), txtChange_(NewBox("txtChange")), txtTo_(NewBox("txtTo")),
      chkRing_(new QCheckBox(tr("The &last one leads back to the first"))), lblTo_(new QLabel), lblCount_(new QLabel),
      lvwPreview_(new QTreeWidget), cmdAccept_(NewButton("cmdAccept", tr("OK"))) {
    setObjectName(QStringLiteral("frmChangeMany"));
    setWindowTitle(
        tr("Change %1").arg(ShownStart(context.edits.RecordsName(records_.kind, records_.numbers, records_.many))));
    BuildForm();
    lvwPreview_->setObjectName(QStringLiteral("lvwPreview"));
    lvwPreview_->setAccessibleName(tr("What changes"));
    lvwPreview_->setHeaderLabels({tr("Record"), tr("Field"), tr("Before"), tr("After")});
    lvwPreview_->setRootIsDecorated(false);
    lvwPreview_->setUniformRowHeights(true);
    lvwPreview_->setAlternatingRowColors(true);
    lvwPreview_->header()->setSectionResizeMode(QHeaderView::ResizeToContents);
    lblCount_->setObjectName(QStringLiteral("lblCount"));
    lblCount_->setTextFormat(Qt::PlainText);
    lblCount_->setWordWrap(true);
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(form_);
    layout->addWidget(lvwPreview_, 1);
    layout->addWidget(lblCount_);
    layout->addWidget(AcceptButtons(*this, *cmdAccept_));
    resize(fontMetrics().averageCharWidth() * 90, fontMetrics().height() * 30);

    FillWhat();
    cmbField_->setCurrentIndex(field ? std::max(0, cmbField_->findData(*field)) : 0);
    connect(cmbWhat_, &QComboBox::currentIndexChanged, this, &frmChangeMany::WhatChosen);
    connect(cmbField_, &QComboBox::currentIndexChanged, this, &frmChangeMany::FieldChosen);
    connect(cmbFrom_, &QComboBox::currentIndexChanged, this, &frmChangeMany::Preview);
    connect(chkRing_, &QCheckBox::toggled, this, &frmChangeMany::Preview);
    for (const QLineEdit* box : {txtFirst_, txtStep_, txtChange_, txtTo_})
        connect(box, &QLineEdit::textChanged, this, &frmChangeMany::Preview);
    FieldChosen();
    WhatChosen();
}

QLineEdit* frmChangeMany::NewBox(const char* name) {
    auto* box = new QLineEdit;
    box->setObjectName(QString::fromLatin1(name));
    return box;
}

QHBoxLayout* frmChangeMany::WithPicker(QLineEdit& box, const char* button, const QString& accessibleName) {
    auto* browse = NewButton(button, QStringLiteral("..."));
    browse->setAccessibleName(accessibleName);
    browse->setToolTip(accessibleName);
    browse->setAutoDefault(false);
    browse->setMaximumWidth(browse->fontMetrics().averageCharWidth() * 6);
    connect(browse, &QPushButton::clicked, this, [this, &box] {
        if (const auto kind = Chosen() == What::Replace ? std::optional(ReplacedKind()) : FieldTarget())
            Pick(box, *kind);
    });
    auto* row = new QHBoxLayout;
    row->addWidget(&box);
    row->addWidget(browse);
    return row;
}

void frmChangeMany::BuildForm() {
    const auto name = [](QWidget& control, const char* objectName, const QString& accessibleName) {
        control.setObjectName(QString::fromLatin1(objectName));
        control.setAccessibleName(accessibleName);
    };
    name(*cmbWhat_, "cmbWhat", tr("What to do"));
    name(*cmbField_, "cmbField", tr("Field"));
    name(*cmbFrom_, "cmbFrom", tr("What is replaced"));
    chkRing_->setObjectName(QStringLiteral("chkRing"));
    txtFirst_->setAccessibleName(tr("First value"));
    txtStep_->setAccessibleName(tr("Step"));
    txtStep_->setToolTip(tr("What each next record in the list has more; below 0 less"));
    txtChange_->setAccessibleName(tr("Change"));
    txtChange_->setPlaceholderText(tr("*0.5, /2, +10 or +-10"));
    txtTo_->setAccessibleName(tr("What it is replaced by"));
    lblTo_->setObjectName(QStringLiteral("lblTo"));
    lblTo_->setTextFormat(Qt::PlainText);
    first_ = WithPicker(*txtFirst_, "cmdFirstBrowse", tr("Choose the first value"));
    cmdFirstBrowse_ = qobject_cast<QPushButton*>(first_->itemAt(1)->widget());
    to_ = WithPicker(*txtTo_, "cmdToBrowse", tr("Choose what it is replaced by"));
    to_->addWidget(lblTo_, 1);
    form_->addRow(tr("&What:"), cmbWhat_);
    form_->addRow(tr("&Field:"), cmbField_);
    form_->addRow(tr("F&irst value:"), first_);
    form_->addRow(tr("&Step:"), txtStep_);
    form_->addRow(tr("&Change:"), txtChange_);
    form_->addRow(QString(), chkRing_);
    form_->addRow(tr("&Replace:"), cmbFrom_);
    form_->addRow(tr("&By:"), to_);
    for (const auto& [row, box] : {std::pair(first_, txtFirst_), std::pair(to_, txtTo_)})
        static_cast<QLabel*>(form_->labelForField(row))->setBuddy(box);
}

void frmChangeMany::FillWhat() {
    const Session& session = context_.program;
    for (const int field : NumberFields(records_.kind, session.engine)) {
        const auto cells = NumberCells(session.patch.current, session.engine, records_, field);
        if (!cells.empty())
            cmbField_->addItem(ShownText(CellTitle(session.patch.current, session.engine, cells.front().cell)), field);
    }
    const auto add = [this](const QString& text, What what, std::optional<TargetKind> kind = {}) {
        cmbWhat_->addItem(text, static_cast<int>(what));
        if (kind)
            cmbWhat_->setItemData(cmbWhat_->count() - 1, static_cast<int>(*kind), kindRole);
    };
    if (cmbField_->count() > 0) {
        add(tr("Number in a series"), What::Series);
        add(tr("Add or multiply"), What::Change);
    }
    if (records_.kind == RecordKind::State)
        add(tr("Next frame = the row below"), What::NextInOrder);
    for (const ReplaceEntry& entry : replaceEntries)
        if (std::ranges::find(targets_, entry.kind, &Target::kind) != targets_.end())
            add(tr(entry.text), What::Replace, entry.kind);
}

frmChangeMany::What frmChangeMany::Chosen() const { return static_cast<What>(cmbWhat_->currentData().toInt()); }

TargetKind frmChangeMany::ReplacedKind() const {
    return static_cast<TargetKind>(cmbWhat_->currentData(kindRole).toInt());
}

std::vector<NumberCell> frmChangeMany::Numbers() const {
    const Session& session = context_.program;
    return NumberCells(session.patch.current, session.engine, records_, cmbField_->currentData().toInt());
}

std::optional<TargetKind> frmChangeMany::FieldTarget() const {
    const std::vector<NumberCell> numbers = Numbers();
    if (numbers.empty())
        return std::nullopt;
    const Cell& cell = numbers.front().cell;
    switch (numbers.front().meaning.kind) {
    case ValueMeaning::Kind::Thing:
        return TargetKind::Thing;
    case ValueMeaning::Kind::State:
        return TargetKind::State;
    case ValueMeaning::Kind::Sound:
        return TargetKind::Sound;
    default:
        return FactsOf(cell.kind, cell.field).unit == FieldUnit::Sprite ? std::optional(TargetKind::Sprite)
                                                                        : std::nullopt;
    }
}

QString frmChangeMany::NameOf(const Target& target) const {
    if (target.kind != TargetKind::Sprite && TypedNumber(target) == 0)
        return tr("none");
    const Session& session = context_.program;
    return ShownStart(RecordTitle(session.patch.current, session.engine, *RecordKindOf(target.kind), target.number));
}

void frmChangeMany::WhatChosen() {
    const What what = Chosen();
    form_->setRowVisible(cmbField_, what == What::Series || what == What::Change);
    form_->setRowVisible(first_, what == What::Series);
    cmdFirstBrowse_->setVisible(what == What::Series && FieldTarget());
    form_->setRowVisible(txtStep_, what == What::Series);
    form_->setRowVisible(txtChange_, what == What::Change);
    form_->setRowVisible(chkRing_, what == What::NextInOrder);
    form_->setRowVisible(cmbFrom_, what == What::Replace);
    form_->setRowVisible(to_, what == What::Replace);
    cmbFrom_->clear();
    if (what == What::Replace) {
        for (const Target& target : targets_)
            if (target.kind == ReplacedKind())
                cmbFrom_->addItem(NameOf(target), target.number);
        txtTo_->clear();
    }
    Preview();
}

/// A series begins where the first record is.
void frmChangeMany::FieldChosen() {
    const std::vector<NumberCell> numbers = Numbers();
    if (numbers.empty())
        return;
    const CellValue value = context_.edits.Value(numbers.front().cell);
    const auto* number = std::get_if<std::int32_t>(&value);
    txtFirst_->setText(number == nullptr ? QStringLiteral("0")
                                         : QString::fromStdString(
                                               ValueText(context_.program.engine, numbers.front().meaning, *number)));
    txtStep_->setText(QStringLiteral("1"));
    cmdFirstBrowse_->setVisible(Chosen() == What::Series && FieldTarget());
    Preview();
}

void frmChangeMany::Pick(QLineEdit& box, TargetKind kind) {
    const bool thing = kind == TargetKind::Thing;
    const std::int32_t start = std::max(0, box.text().toInt() - (thing ? 1 : 0));
    std::optional<std::int32_t> picked;
    if (kind == TargetKind::State)
        picked = context_.links.PickState(start);
    else if (kind != TargetKind::Sprite)
        picked = context_.links.PickRecord(*RecordKindOf(kind), start);
    else if (const auto sprite = context_.links.PickSprite({start, 0}))
        picked = sprite->sprite;
    if (picked)
        box.setText(QString::number(TypedNumber({kind, *picked})));
}

/// Thing 0 stands for none, as it does in a patch.
std::optional<Target> frmChangeMany::NewTarget() const {
    bool isNumber = false;
    const std::int32_t typed = txtTo_->text().trimmed().toInt(&isNumber);
    const bool thing = ReplacedKind() == TargetKind::Thing;
    if (!isNumber || (thing && typed == INT32_MIN))
        return std::nullopt;
    const Target target{ReplacedKind(), thing ? typed - 1 : typed};
    const bool none = thing && typed == 0;
    return none || HasTarget(context_.program.patch.current, context_.program.engine, target) ? std::optional(target)
                                                                                              : std::nullopt;
}

std::optional<std::vector<Assignment>> frmChangeMany::Values(QString& why) const {
    const Session& session = context_.program;
    const PatchSet& set = session.patch.current;
    switch (Chosen()) {
    case What::Series: {
        const auto first = RealIn(*txtFirst_), step = RealIn(*txtStep_);
        if (!first || !step) {
            why = tr("The first value and the step are numbers, such as 12 or -0.5.");
            return std::nullopt;
        }
        return NumberSeries(set, Numbers(), *first, *step);
    }
    case What::Change: {
        const TypedChange typed = ReadChange(StoredText(txtChange_->text()));
        why = ShownText(typed.refusal);
        return typed.change ? std::optional(ChangeNumbers(set, Numbers(), *typed.change)) : std::nullopt;
    }
    case What::NextInOrder:
        return NextInOrder(records_.numbers, chkRing_->isChecked());
    default: {
        const auto to = NewTarget();
        if (!to) {
            why = txtTo_->text().trimmed().isEmpty() ? tr("Type or choose what it is replaced by.")
                                                     : tr("There is no such record.");
            return std::nullopt;
        }
        return ReplaceTarget(set, session.engine, records_, {to->kind, cmbFrom_->currentData().toInt()}, to->number);
    }
    }
}

std::string frmChangeMany::StepName() const {
    std::vector<Cell> cells;
    cells.reserve(values_.size());
    for (const Assignment& each : values_)
        cells.push_back(each.cell);
    if (Chosen() != What::Replace)
        return context_.edits.NameOf(cells, records_.many);
    return "replace " + StoredText(cmbFrom_->currentText()) + " in " +
           context_.edits.RecordsName(records_.kind, records_.numbers, records_.many);
}

void frmChangeMany::Preview() {
    const Session& session = context_.program;
    const PatchSet& set = session.patch.current;
    QString why;
    values_ = Values(why).value_or(std::vector<Assignment>());
    const std::size_t all = values_.size();
    std::erase_if(values_, [&set](const Assignment& each) { return ReadCell(set, each.cell) == each.value; });
    lblCount_->setText(!why.isEmpty() ? why
                                      : tr("%1 of %2 values change.")
                                            .arg(static_cast<qulonglong>(values_.size()))
                                            .arg(static_cast<qulonglong>(all)));
    if (values_.size() > mostShown)
        lblCount_->setText(lblCount_->text() + tr(" The first %1 are listed.").arg(mostShown));
    cmdAccept_->setEnabled(!values_.empty());
    const auto to = Chosen() == What::Replace ? NewTarget() : std::nullopt;
    lblTo_->setText(to ? NameOf(*to) : QString());

    lvwPreview_->clear();
    QList<QTreeWidgetItem*> rows;
    for (std::size_t i = 0; i < std::min(values_.size(), mostShown); ++i) {
        const Cell& cell = values_[i].cell;
        const auto shown = [&](const CellValue& value) {
            return ShownStart(CellText(set, session.engine, cell, value));
        };
        rows.append(new QTreeWidgetItem({ShownStart(RecordTitle(set, session.engine, cell.kind, cell.index)),
                                         ShownStart(CellTitle(set, session.engine, cell)), shown(ReadCell(set, cell)),
                                         shown(values_[i].value)}));
    }
    lvwPreview_->addTopLevelItems(rows);
}

void frmChangeMany::Change() {
    if (exec() == Accepted)
        context_.edits.StoreGroup(values_, StepName());
}

} // namespace plinket3
