#include "ui/editors/frmEditWeapons.h"

#include "ui/fields/Marking.h"

#include <QAction>
#include <QComboBox>
#include <QFormLayout>
#include <QGroupBox>
#include <QVBoxLayout>

namespace plinket3 {

namespace {

struct StateBox {
    const char* stem;
    const char* label;
    std::int32_t WeaponRecord::*member;
};
constexpr StateBox stateBoxes[]{
    {"SelectState", QT_TRANSLATE_NOOP("frmEditWeapons", "Select"), &WeaponRecord::selectState},
    {"DeselectState", QT_TRANSLATE_NOOP("frmEditWeapons", "Deselect"), &WeaponRecord::deselectState},
    {"BobbingState", QT_TRANSLATE_NOOP("frmEditWeapons", "Bobbing"), &WeaponRecord::bobbingState},
    {"ShootState", QT_TRANSLATE_NOOP("frmEditWeapons", "Shooting"), &WeaponRecord::shootingState},
    {"MuzzleState", QT_TRANSLATE_NOOP("frmEditWeapons", "Firing (muzzle flash)"), &WeaponRecord::firingState},
};

} // namespace

frmEditWeapons::frmEditWeapons(const EditorContext& context)
    : NamedRecordEditor("frmEditWeapons", tr("Weapon editor"), context, RecordKind::Weapon,
                        {.list = "lstWeapons",
                         .renameTitle = "Weapon ",
                         .firstNumber = 1,
                         .renamePrompt = "Enter new name",
                         .restoreQuestion = "Are you sure you want to restore this weapon?"}),
      ammoNames_(context, RecordKind::Ammo) {}

QWidget* frmEditWeapons::BuildFields() {
    ammoType_ = new QComboBox;
    ammoType_->setObjectName(QStringLiteral("cmbAmmoType"));
    ammoType_->setAccessibleName(tr("Ammo type"));
    ammoType_->setModel(&ammoNames_);
    connect(ammoType_, &QComboBox::activated, this, [this](int type) {
        if (const std::optional<Cell> cell = AmmoTypeCell())
            context_.edits.Store(*cell, type);
    });
    restoreAmmoType_ = new QAction(ammoType_);
    ammoType_->addAction(restoreAmmoType_);
    ammoType_->setContextMenuPolicy(Qt::ActionsContextMenu);
    connect(restoreAmmoType_, &QAction::triggered, this, [this] { context_.edits.RestoreCell(*AmmoTypeCell()); });
    auto* ammo = new QGroupBox(tr("Ammunition"));
    auto* ammoForm = new QFormLayout(ammo);
    ammoForm->addRow(tr("Ammo type"), ammoType_);

    auto* states = new QGroupBox(tr("States"));
    auto* statesForm = new QGridLayout(states);
    statesForm->setColumnStretch(2, 1);
    const auto bringUp = [this](std::int32_t state) {
        if (const std::optional<std::int32_t> weapon = CurrentRecord())
            context_.links.SelectSingleState(state, -1, *weapon);
    };
    for (const StateBox& row : stateBoxes)
        states_.Add((new ReferenceRow(Reference::State, QString::fromLatin1(row.stem), tr(row.label), context_,
                                      *statesForm, bringUp))
                        ->Box(),
                    RowOf(row.member));

    auto* preview = new QGroupBox(tr("Held ready"));
    sprite_ = new SpriteView(QStringLiteral("picSprite"));
    sprite_->setMinimumSize(160, 160);
    (new QVBoxLayout(preview))->addWidget(sprite_);

    auto* fields = new QWidget;
    auto* layout = new QVBoxLayout(fields);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(ammo);
    layout->addWidget(states);
    layout->addWidget(preview, 1);
    return fields;
}

void frmEditWeapons::fillStaticData() {
    ammoNames_.Reset();
    NamedRecordEditor::fillStaticData();
}

void frmEditWeapons::ShowRecord(std::optional<std::int32_t> record) {
    states_.Show(record);
    ShowAmmoType();
    ShowSprite();
}

void frmEditWeapons::UpdateRecord() {
    states_.Update();
    ShowAmmoType();
    ShowSprite();
}

void frmEditWeapons::ShowCells(const std::vector<Cell>& cells) {
    ammoNames_.ShowCells(cells);
    NamedRecordEditor::ShowCells(cells);
}

std::optional<Cell> frmEditWeapons::AmmoTypeCell() const {
    const std::optional<std::int32_t> record = CurrentRecord();
    return record ? std::optional<Cell>({RecordKind::Weapon, *record, RowOf(&WeaponRecord::ammoType)}) : std::nullopt;
}

QString frmEditWeapons::AmmoName(std::int32_t type) const {
    const QString name = type < 0 ? QString() : ammoNames_.index(type).data().toString();
    return name.isEmpty() ? QString::number(type) : name;
}

/// A type beyond the names (an engine's "no ammunition") shows as its number, and stays until another one is chosen.
void frmEditWeapons::ShowAmmoType() {
    const std::optional<Cell> cell = AmmoTypeCell();
    ammoType_->setEnabled(cell.has_value());
    if (!cell) {
        ammoType_->setCurrentIndex(-1);
        return;
    }
    const std::int32_t type = std::get<std::int32_t>(context_.edits.Value(*cell));
    const QString standard = AmmoName(std::get<std::int32_t>(context_.edits.DefaultValue(*cell)));
    ammoType_->setPlaceholderText(QString::number(type));
    ammoType_->setCurrentIndex(type >= 0 && type < ammoNames_.rowCount() ? type : -1);
    restoreAmmoType_->setText(tr("Restore default (%1)").arg(standard));
    restoreAmmoType_->setEnabled(!context_.edits.IsDefault(*cell));
    MarkDifference(*ammoType_, restoreAmmoType_->isEnabled(), standard);
}

void frmEditWeapons::ShowSprite() {
    const std::optional<std::int32_t> record = CurrentRecord();
    if (record)
        sprite_->ShowState(context_.program, Current().weapons[static_cast<std::size_t>(*record)].bobbingState);
    else
        sprite_->Clear();
}

} // namespace plinket3
