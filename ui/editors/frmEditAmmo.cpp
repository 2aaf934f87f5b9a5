#include "ui/editors/frmEditAmmo.h"

#include <QFormLayout>
#include <QGroupBox>
#include <QVBoxLayout>

namespace plinket3 {

namespace {

constexpr int mostDigits = 6;

struct AmmoBox {
    const char* name;
    const char* label;
    std::int32_t AmmoRecord::*member;
};
constexpr AmmoBox ammoBoxes[]{
    {"txtMaxAmmo", QT_TRANSLATE_NOOP("frmEditAmmo", "Most that a player carries"), &AmmoRecord::maxAmmo},
    {"txtPickupAmmo", QT_TRANSLATE_NOOP("frmEditAmmo", "In a pickup"), &AmmoRecord::perAmmo},
};

constexpr ExtraField extraFields[]{
    {QT_TRANSLATE_NOOP("frmEditAmmo", "Amounts"), "InitialAmmo", RowOf(&AmmoRecord::initialAmmo),
     QT_TRANSLATE_NOOP("frmEditAmmo", "What players begin with")},
    {nullptr, "MaxUpgradedAmmo", RowOf(&AmmoRecord::maxUpgradedAmmo),
     QT_TRANSLATE_NOOP("frmEditAmmo", "Most that a player carries with a backpack; unset, twice as much as without")},
    {nullptr, "BoxAmmo", RowOf(&AmmoRecord::boxAmmo),
     QT_TRANSLATE_NOOP("frmEditAmmo", "In a box; unset, five times a pickup")},
    {nullptr, "BackpackAmmo", RowOf(&AmmoRecord::backpackAmmo),
     QT_TRANSLATE_NOOP("frmEditAmmo", "In a backpack; unset, a pickup")},
    {nullptr, "WeaponAmmo", RowOf(&AmmoRecord::weaponAmmo),
     QT_TRANSLATE_NOOP("frmEditAmmo", "In a weapon; unset, twice a pickup")},
    {nullptr, "DroppedAmmo", RowOf(&AmmoRecord::droppedAmmo),
     QT_TRANSLATE_NOOP("frmEditAmmo", "In a pickup that a monster leaves; unset, half a pickup")},
    {nullptr, "DroppedBoxAmmo", RowOf(&AmmoRecord::droppedBoxAmmo),
     QT_TRANSLATE_NOOP("frmEditAmmo", "In a box that a monster leaves; unset, half a box")},
    {nullptr, "DroppedBackpackAmmo", RowOf(&AmmoRecord::droppedBackpackAmmo),
     QT_TRANSLATE_NOOP("frmEditAmmo", "In a backpack that a monster leaves; unset, half a backpack")},
    {nullptr, "DroppedWeaponAmmo", RowOf(&AmmoRecord::droppedWeaponAmmo),
     QT_TRANSLATE_NOOP("frmEditAmmo", "In a weapon that a monster leaves; unset, half a weapon's")},
    {nullptr, "DeathmatchWeaponAmmo", RowOf(&AmmoRecord::deathmatchWeaponAmmo),
     QT_TRANSLATE_NOOP("frmEditAmmo", "In a weapon that stays for all players; unset, five times a pickup")},
    {QT_TRANSLATE_NOOP("frmEditAmmo", "Factors"), "Skill1", RowOf(&AmmoRecord::skill1),
     QT_TRANSLATE_NOOP("frmEditAmmo", "Factor on what players pick up on the easiest skill level")},
    {nullptr, "Skill2", RowOf(&AmmoRecord::skill2), QT_TRANSLATE_NOOP("frmEditAmmo", "The same on the second one")},
    {nullptr, "Skill3", RowOf(&AmmoRecord::skill3), QT_TRANSLATE_NOOP("frmEditAmmo", "The same on the third one")},
    {nullptr, "Skill4", RowOf(&AmmoRecord::skill4), QT_TRANSLATE_NOOP("frmEditAmmo", "The same on the fourth one")},
    {nullptr, "Skill5", RowOf(&AmmoRecord::skill5), QT_TRANSLATE_NOOP("frmEditAmmo", "The same on nightmare")},
};

} // namespace

// Kept: ammunition is counted from 0 in the title, weapons from 1. docs/kept-behaviour.md
frmEditAmmo::frmEditAmmo(const EditorContext& context)
    : NamedRecordEditor("frmEditAmmo", tr("Ammo editor"), context, RecordKind::Ammo,
                        {.list = "lstAmmo",
                         .many = "kinds of ammunition",
                         .renameTitle = "Ammo ",
                         .firstNumber = 0,
                         .renamePrompt = "Enter a new name",
                         .restoreOne = "Are you sure you want to restore this ammo entry?",
                         .restoreMany = "Are you sure you want to restore these ammo entries?"}) {}

QWidget* frmEditAmmo::BuildFields() {
    auto* group = new QGroupBox(tr("Rounds"));
    auto* form = new QFormLayout(group);
    for (const AmmoBox& row : ammoBoxes) {
        const QString label = tr(row.label);
        auto* box = new NumberBox(QString::fromLatin1(row.name), label, Boxes().Field(RowOf(row.member)),
                                  NumberForm::Index, context_);
        box->setMinimumWidth(WidthForDigits(*box, mostDigits));
        form->addRow(label, box);
        Boxes().Add(*box);
    }
    auto* fields = new QWidget;
    auto* layout = new QVBoxLayout(fields);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(group);
    extra_ = new ExtraFields(
        extraFields, "frmEditAmmo", [this](int row) { return Boxes().Field(row); }, context_, this);
    for (QGroupBox* extra : extra_->Groups())
        layout->addWidget(extra);
    layout->addStretch();
    return fields;
}

void frmEditAmmo::fillStaticData() {
    extra_->Reload();
    NamedRecordEditor::fillStaticData();
}

void frmEditAmmo::updateForm() {
    NamedRecordEditor::updateForm();
    extra_->ShowSelection();
}

} // namespace plinket3
