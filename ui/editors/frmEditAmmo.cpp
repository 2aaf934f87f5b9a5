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
    layout->addStretch();
    return fields;
}

} // namespace plinket3
