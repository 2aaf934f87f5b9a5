#include "ui/editors/frmEditMisc.h"

#include "ui/NewButton.h"
#include "ui/fields/FieldControl.h"
#include "ui/fields/Labels.h"
#include "ui/fields/Marking.h"
#include "ui/fields/ValueRow.h"

#include <QCheckBox>
#include <QFormLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QVBoxLayout>

#include <algorithm>
#include <memory>

namespace plinket3 {

namespace {

constexpr int fewestDigits = 6, mostDigits = 14; // that a box has room for
constexpr Cell infight{RecordKind::Misc, 0, RowOf(&MiscRecord::monstersInfight)};

struct MiscBox {
    const char* group;
    const char* name;
    std::int32_t MiscRecord::*member;
};
// In the order of the windows' columns; boxes of a group stand together.
constexpr MiscBox miscBoxes[]{
    {QT_TRANSLATE_NOOP("frmEditMisc", "A new player"), "txtIH", &MiscRecord::initialHealth},
    {"", "txtIB", &MiscRecord::initialBullets},
    {QT_TRANSLATE_NOOP("frmEditMisc", "Limits"), "txtMaxH", &MiscRecord::maxHealth},
    {"", "txtMaxA", &MiscRecord::maxArmor},
    {"", "txtMaxSP", &MiscRecord::maxSoulsphere},
    {QT_TRANSLATE_NOOP("frmEditMisc", "Pickups"), "txtGreenAC", &MiscRecord::greenArmorClass},
    {"", "txtBlueAC", &MiscRecord::blueArmorClass},
    {"", "txtSPHealth", &MiscRecord::soulsphereHealth},
    {"", "txtMegaH", &MiscRecord::megasphereHealth},
    {QT_TRANSLATE_NOOP("frmEditMisc", "Cheats"), "txtGMHealth", &MiscRecord::godModeHealth},
    {"", "txtIDFAArmor", &MiscRecord::idfaArmor},
    {"", "txtIDFAClass", &MiscRecord::idfaArmorClass},
    {"", "txtIDKFAArmor", &MiscRecord::idkfaArmor},
    {"", "txtIDKFAClass", &MiscRecord::idkfaArmorClass},
    {QT_TRANSLATE_NOOP("frmEditMisc", "Fighting"), "txtBFGShot", &MiscRecord::bfgCells},
};
constexpr std::size_t groupsInTheFirstColumn = 3;

/// Gives the labels of all groups one width, so that the boxes stand below each other.
void AlignLabels(const std::vector<QLabel*>& labels) {
    int width = 0;
    for (const QLabel* label : labels)
        width = std::max(width, label->sizeHint().width());
    for (QLabel* label : labels)
        label->setMinimumWidth(width);
}

} // namespace

frmEditMisc::frmEditMisc(const EditorContext& context) : EditorWindow("frmEditMisc", tr("Misc. editor"), context) {}

void frmEditMisc::Build() {
    auto* first = new QVBoxLayout;
    auto* second = new QVBoxLayout;
    QFormLayout* form = nullptr;
    std::vector<QLabel*> labels;
    std::size_t groups = 0;
    for (const MiscBox& row : miscBoxes) {
        if (form == nullptr || *row.group != '\0') {
            auto* group = new QGroupBox(tr(row.group));
            form = new QFormLayout(group);
            (groups++ < groupsInTheFirstColumn ? first : second)->addWidget(group);
        }
        const QString label = FieldLabel(row.member);
        auto* box = new NumberBox(QString::fromLatin1(row.name), label, boxes_.Field(RowOf(row.member)),
                                  NumberForm::Ranged, context_);
        box->setMinimumWidth(WidthForDigits(*box, fewestDigits));
        box->setMaximumWidth(WidthForDigits(*box, mostDigits));
        labels.push_back(new QLabel(label));
        labels.back()->setBuddy(box);
        form->addRow(labels.back(), box);
        boxes_.Add(*box);
    }
    chkMonstersInfight_ = new QCheckBox(tr("Monsters of a kind hurt each &other"));
    chkMonstersInfight_->setObjectName(QStringLiteral("chkMonstersInfight"));
    chkMonstersInfight_->setAccessibleName(FieldLabel(&MiscRecord::monstersInfight));
    ForField(*chkMonstersInfight_, infight.field);
    form->addRow(chkMonstersInfight_);
    AlignLabels(labels);
    second->addWidget(NewHelperGroup());
    first->addStretch();
    second->addStretch();

    auto* cmdRestoreAll = NewButton("cmdRestoreAll", tr("&Restore all"));
    auto* columns = new QHBoxLayout;
    columns->addLayout(first);
    columns->addLayout(second);
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(columns, 1);
    layout->addWidget(cmdRestoreAll, 0, Qt::AlignRight);
    setFocusProxy(labels.front()->buddy());

    connect(chkMonstersInfight_, &QCheckBox::clicked, this, &frmEditMisc::StoreInfight);
    connect(cmdRestoreAll, &QPushButton::clicked, this, &frmEditMisc::RestoreAll);
}

QGroupBox* frmEditMisc::NewHelperGroup() {
    helperGroup_ = new QGroupBox(tr("Helper"));
    auto* form = new QGridLayout(helperGroup_);
    const SelectedField field{std::make_shared<RecordSelection>(RecordSelection{{0}, 0}), RecordKind::Misc, helperField,
                              ""};
    helper_ = new ValueRow(QStringLiteral("Helper"), tr("Thing"),
                           tr("Comes along with the player; while it is unset, the engine's own, a dog"),
                           SelectedValue(field, context_), context_, *form, this);
    return helperGroup_;
}

void frmEditMisc::fillStaticData() { helperGroup_->setVisible(HasHelper(context_.program.engine.dialect)); }

void frmEditMisc::updateForm() {
    boxes_.Show({{0}, 0});
    ShowInfight();
    helper_->ShowSelection();
}

void frmEditMisc::ShowCells(const std::vector<Cell>& cells) {
    const auto any = [&cells](RecordKind kind) { return std::ranges::find(cells, kind, &Cell::kind) != cells.end(); };
    if (any(RecordKind::Misc) || any(RecordKind::Thing)) // one of which may be the helper
        helper_->Update();
    if (!any(RecordKind::Misc))
        return;
    boxes_.Update();
    ShowInfight();
}

void frmEditMisc::ShowInfight() {
    chkMonstersInfight_->setChecked(Current().misc.monstersInfight != monstersDoNotFight);
    MarkDifference(*chkMonstersInfight_, !context_.edits.IsDefault(infight),
                   Defaults().misc.monstersInfight != monstersDoNotFight ? tr("on") : tr("off"));
}

void frmEditMisc::StoreInfight(bool checked) {
    context_.edits.Store(infight, checked ? monstersFight : monstersDoNotFight);
}

void frmEditMisc::RestoreAll() {
    if (context_.program.notifier.Ask("Are you sure you want to restore ALL miscellaneous values?", Buttons::YesNo) ==
        Answer::No)
        return;
    context_.edits.Restore(context_.edits.CellsOf(RecordKind::Misc, 0), "restore all miscellaneous values");
}

} // namespace plinket3
