#include "ui/editors/frmEditWeapons.h"

#include "ui/NewButton.h"
#include "ui/fields/FieldControl.h"
#include "ui/fields/Marking.h"
#include "ui/fields/ReferenceRow.h"
#include "ui/states/StatePreview.h"

#include <QAction>
#include <QComboBox>
#include <QFormLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QVBoxLayout>

#include <algorithm>

namespace plinket3 {

namespace {

struct StateBox {
    const char* stem;
    const char* label;
    std::int32_t WeaponRecord::*member;
    const char* hint;
};
/// What engines call the deselect frame is the one in which the weapon comes up, and the other way round.
constexpr StateBox stateBoxes[]{
    {"SelectState", QT_TRANSLATE_NOOP("frmEditWeapons", "Select"), &WeaponRecord::selectState,
     QT_TRANSLATE_NOOP("frmEditWeapons", "State while the weapon goes down, in spite of the name")},
    {"DeselectState", QT_TRANSLATE_NOOP("frmEditWeapons", "Deselect"), &WeaponRecord::deselectState,
     QT_TRANSLATE_NOOP("frmEditWeapons", "State while the weapon comes up, in spite of the name")},
    {"BobbingState", QT_TRANSLATE_NOOP("frmEditWeapons", "Bobbing"), &WeaponRecord::bobbingState,
     QT_TRANSLATE_NOOP("frmEditWeapons", "State while the weapon is held ready")},
    {"ShootState", QT_TRANSLATE_NOOP("frmEditWeapons", "Shooting"), &WeaponRecord::shootingState,
     QT_TRANSLATE_NOOP("frmEditWeapons", "First state of an attack")},
    {"MuzzleState", QT_TRANSLATE_NOOP("frmEditWeapons", "Firing (muzzle flash)"), &WeaponRecord::firingState,
     QT_TRANSLATE_NOOP("frmEditWeapons", "State of the flash that is drawn over the weapon")},
};

constexpr ExtraField extraFields[]{
    {"", "AmmoPerShot", RowOf(&WeaponRecord::ammoPerShot),
     QT_TRANSLATE_NOOP("frmEditWeapons", "Ammunition that a shot takes; unset, it is what the weapon always took")},
    {nullptr, "Bits21", RowOf(&WeaponRecord::bits21),
     QT_TRANSLATE_NOOP("frmEditWeapons", "Bits of the weapon by name, or as a number")},
    {"", "Slot", RowOf(&WeaponRecord::slot),
     QT_TRANSLATE_NOOP("frmEditWeapons", "Key that chooses it; -1 for the usual one")},
    {nullptr, "SlotPriority", RowOf(&WeaponRecord::slotPriority),
     QT_TRANSLATE_NOOP("frmEditWeapons", "Its order among the weapons of one key")},
    {nullptr, "SwitchPriority", RowOf(&WeaponRecord::switchPriority),
     QT_TRANSLATE_NOOP("frmEditWeapons", "Its order when the game chooses a weapon")},
    {nullptr, "InitialOwned", RowOf(&WeaponRecord::initialOwned),
     QT_TRANSLATE_NOOP("frmEditWeapons", "Whether players begin with it")},
    {nullptr, "InitialRaised", RowOf(&WeaponRecord::initialRaised),
     QT_TRANSLATE_NOOP("frmEditWeapons", "Whether players begin with it in their hands")},
    {nullptr, "AllowWithWeapon", RowOf(&WeaponRecord::allowWithWeapon),
     QT_TRANSLATE_NOOP("frmEditWeapons", "Its key chooses it only with this weapon, if any")},
    {nullptr, "NoneWithWeapon", RowOf(&WeaponRecord::noneWithWeapon),
     QT_TRANSLATE_NOOP("frmEditWeapons", "Its key does not choose it with this weapon")},
    {nullptr, "AllowWithItem", RowOf(&WeaponRecord::allowWithItem),
     QT_TRANSLATE_NOOP("frmEditWeapons", "Its key chooses it only with this item, if any")},
    {nullptr, "NoneWithItem", RowOf(&WeaponRecord::noneWithItem),
     QT_TRANSLATE_NOOP("frmEditWeapons", "Its key does not choose it with this item")},
    {nullptr, "CarouselIcon", carouselIconField,
     QT_TRANSLATE_NOOP("frmEditWeapons", "Lump with its picture in the row of weapons")},
};

} // namespace

frmEditWeapons::frmEditWeapons(const EditorContext& context)
    : NamedRecordEditor("frmEditWeapons", tr("Weapon editor"), context, RecordKind::Weapon,
                        {.list = "lstWeapons",
                         .many = "weapons",
                         .renameTitle = "Weapon ",
                         .firstNumber = 1,
                         .renamePrompt = "Enter new name",
                         .restoreOne = "Are you sure you want to restore this weapon?",
                         .restoreMany = "Are you sure you want to restore these weapons?"}),
      ammoTypes_(context) {}

QWidget* frmEditWeapons::BuildFields() {
    ammoType_ = new QComboBox;
    ammoType_->setObjectName(QStringLiteral("cmbAmmoType"));
    ammoType_->setAccessibleName(tr("Ammo type"));
    ammoType_->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon); // for any name
    ammoType_->setModel(&ammoTypes_);
    ForField(*ammoType_, RowOf(&WeaponRecord::ammoType));
    connect(ammoType_, &QComboBox::activated, this, [this](int row) { StoreAmmoType(ammoTypes_.TypeAt(row)); });
    restoreAmmoType_ = new QAction(ammoType_);
    ammoType_->addAction(restoreAmmoType_);
    ammoType_->setContextMenuPolicy(Qt::ActionsContextMenu);
    connect(restoreAmmoType_, &QAction::triggered, this, [this] {
        const std::vector<Cell> cells = AmmoTypeCells();
        context_.edits.Restore(cells, "restore " + context_.edits.NameOf(cells, Many()));
    });
    auto* ammo = new QGroupBox(tr("Ammunition"));
    auto* ammoForm = new QFormLayout(ammo);
    ammoForm->addRow(tr("Ammo type"), ammoType_);

    auto* states = new QGroupBox(tr("States"));
    auto* statesForm = new QGridLayout(states);
    statesForm->setColumnStretch(2, 1);
    const auto bringUp = [this](std::int32_t state) {
        context_.links.SelectSingleState(state, -1, Selection().current);
    };
    for (const StateBox& row : stateBoxes) {
        auto* fields = new ReferenceRow(Reference::State, QString::fromLatin1(row.stem), tr(row.label),
                                        Boxes().Field(RowOf(row.member)), context_, *statesForm, bringUp);
        fields->Hint(tr(row.hint));
        Boxes().Add(fields->Box());
    }

    auto* preview = new QGroupBox(tr("Preview"));
    preview_ = new StatePreview(context_, QStringLiteral("picSprite"), StatePreview::Of::Runs);
    (new QVBoxLayout(preview))->addWidget(preview_);

    auto* numbers = new QVBoxLayout;
    numbers->addWidget(ammo);
    numbers->addWidget(states);
    auto* top = new QHBoxLayout; // one below the other would be too high for small screens with the fields of ID24
    top->addLayout(numbers, 3);
    top->addWidget(preview, 2);
    auto* fields = new QWidget;
    auto* layout = new QVBoxLayout(fields);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addLayout(top);
    extra_ = new ExtraFields(
        extraFields, "frmEditWeapons", [this](int row) { return Boxes().Field(row); }, context_, this);
    for (QGroupBox* group : extra_->Groups())
        layout->addWidget(group);
    layout->addStretch();
    return fields;
}

void frmEditWeapons::AddButtons(QBoxLayout& buttons) {
    auto* duplicate = NewButton("cmdDuplicate", tr("&Duplicate..."));
    duplicate->setToolTip(tr("Put another one of it in the place of another weapon (Ctrl+D)"));
    connect(duplicate, &QPushButton::clicked, this, [this] { context_.links.Duplicate(); });
    buttons.addWidget(duplicate);
}

void frmEditWeapons::fillStaticData() {
    ammoTypes_.Reset();
    extra_->Reload();
    NamedRecordEditor::fillStaticData();
}

void frmEditWeapons::ShowRecords() {
    ShowAmmoType();
    extra_->Update();
    ShowPreview();
}

void frmEditWeapons::updateForm() {
    NamedRecordEditor::updateForm();
    extra_->ShowSelection();
}

void frmEditWeapons::ShowCells(const std::vector<Cell>& cells) {
    ammoTypes_.ShowCells(cells);
    NamedRecordEditor::ShowCells(cells);
}

std::vector<Cell> frmEditWeapons::AmmoTypeCells() const {
    std::vector<Cell> cells;
    for (const std::int32_t weapon : Selection().records)
        cells.push_back({RecordKind::Weapon, weapon, RowOf(&WeaponRecord::ammoType)});
    return cells;
}

void frmEditWeapons::StoreAmmoType(std::int32_t type) {
    std::vector<Assignment> values;
    for (const Cell& cell : AmmoTypeCells())
        values.push_back({cell, type});
    context_.edits.StoreEach(std::move(values), Many());
}

QString frmEditWeapons::AmmoName(std::int32_t type) const {
    const QString name = ammoTypes_.index(ammoTypes_.RowOfType(type)).data().toString();
    return name.isEmpty() ? QString::number(type) : name;
}

/// A type beyond the names shows as its number, and stays until another one is chosen.
void frmEditWeapons::ShowAmmoType() {
    const std::vector<Cell> cells = AmmoTypeCells();
    ammoType_->setEnabled(!cells.empty());
    ammoType_->setPlaceholderText(QString());
    ammoType_->setCurrentIndex(-1);
    restoreAmmoType_->setEnabled(false);
    MarkDifference(*ammoType_, false, {});
    if (cells.empty())
        return;
    const Edits& edits = context_.edits;
    const CellValue type = edits.Value(cells.front());
    const bool common =
        std::all_of(cells.begin(), cells.end(), [&](const Cell& cell) { return edits.Value(cell) == type; });
    if (common) {
        const auto number = std::get<std::int32_t>(type);
        ammoType_->setPlaceholderText(QString::number(number));
        ammoType_->setCurrentIndex(ammoTypes_.RowOfType(number));
    } else {
        ammoType_->setPlaceholderText(tr("leave as is"));
    }
    restoreAmmoType_->setEnabled(
        std::any_of(cells.begin(), cells.end(), [&edits](const Cell& cell) { return !edits.IsDefault(cell); }));
    if (cells.size() > 1) {
        restoreAmmoType_->setText(tr("Restore %n defaults", nullptr, static_cast<int>(cells.size())));
        return;
    }
    const QString standard = AmmoName(std::get<std::int32_t>(edits.DefaultValue(cells.front())));
    restoreAmmoType_->setText(tr("Restore default (%1)").arg(standard));
    MarkDifference(*ammoType_, restoreAmmoType_->isEnabled(), standard);
}

/// Of the weapon clicked last.
void frmEditWeapons::ShowPreview() {
    std::vector<StatePreview::Run> runs;
    for (const StateBox& row : stateBoxes)
        runs.push_back(
            {tr(row.label), Selection().records.empty() ? 0 : Current().weapons[Selection().current].*row.member});
    const auto ready = std::ranges::find(stateBoxes, &WeaponRecord::bobbingState, &StateBox::member);
    preview_->ShowRuns(std::move(runs), static_cast<std::size_t>(ready - stateBoxes),
                       Selection().records.empty() ? std::nullopt
                                                   : std::optional(Target{TargetKind::Weapon, Selection().current}));
}

} // namespace plinket3
