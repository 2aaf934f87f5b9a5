#include "ui/states/StateFilterPanel.h"

#include "patch/FreeRecords.h"
#include "patch/StateUse.h"
#include "ui/LatinText.h"
#include "ui/states/StateTableModel.h"

#include <QGridLayout>
#include <QLabel>
#include <QLocale>
#include <QRadioButton>
#include <QSignalBlocker>

#include <algorithm>

namespace plinket3 {

namespace {

struct ModeButton {
    const char* name;
    const char* text;
    StateFilterMode mode;
    int row, column, width = 1;
};
constexpr ModeButton modeButtons[]{
    {"optFilterDisabled", QT_TRANSLATE_NOOP("StateFilterPanel", "&All states"), StateFilterMode::All, 0, 0, 2},
    {"optFilterThings", QT_TRANSLATE_NOOP("StateFilterPanel", "Of &thing"), StateFilterMode::Thing, 0, 2},
    {"optFilterUnused", QT_TRANSLATE_NOOP("StateFilterPanel", "Unused"), StateFilterMode::Unused, 1, 0},
    {"optFilterFree", QT_TRANSLATE_NOOP("StateFilterPanel", "Free"), StateFilterMode::Free, 1, 1},
    {"optFilterWeapons", QT_TRANSLATE_NOOP("StateFilterPanel", "Of &weapon"), StateFilterMode::Weapon, 1, 2},
};

constexpr int filterColumn = 4;

QComboBox* NewList(const QString& name, const QString& accessibleName) {
    auto* list = new QComboBox;
    list->setObjectName(name);
    list->setAccessibleName(accessibleName);
    list->setMaxVisibleItems(20);
    list->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    list->setMinimumContentsLength(16);
    list->setEnabled(false);
    return list;
}

template <class Record> void FillList(QComboBox& list, const NumberedList<Record>& records) {
    const QSignalBlocker quiet(list);
    list.clear();
    for (const auto& [number, record] : records)
        list.addItem(ShownStart(record.name), number);
}

} // namespace

StateFilterPanel::StateFilterPanel(const Session& session)
    : session_(session), modes_(new QButtonGroup(this)),
      cmbFilterThings_(NewList(QStringLiteral("cmbFilterThings"), tr("Thing"))),
      cmbFilterWeapons_(NewList(QStringLiteral("cmbFilterWeapons"), tr("Weapon"))),
      txtFilter_(new FilterBox(tr("Find states"), tr("Number, sprite or action"))), lblFree_(new QLabel) {
    txtFilter_->EnterLeads();

    auto* layout = new QGridLayout(this);
    layout->setContentsMargins({});
    for (const ModeButton& row : modeButtons) {
        auto* button = new QRadioButton(tr(row.text));
        button->setObjectName(QString::fromLatin1(row.name));
        modes_->addButton(button, static_cast<int>(row.mode));
        layout->addWidget(button, row.row, row.column, 1, row.width);
        if (QComboBox* list = List(row.mode))
            layout->addWidget(list, row.row, row.column + 1);
    }
    modes_->button(static_cast<int>(StateFilterMode::Unused))->setToolTip(tr("Named by no thing, weapon or state"));
    modes_->button(static_cast<int>(StateFilterMode::Free))
        ->setToolTip(tr("No thing or weapon comes to it, nor does the game's own code, and it is not kept"));
    lblFree_->setObjectName(QStringLiteral("lblFree"));
    layout->addWidget(txtFilter_, 0, filterColumn);
    layout->setColumnStretch(filterColumn - 1, 2);
    layout->setColumnStretch(filterColumn, 2);

    connect(modes_, &QButtonGroup::idClicked, this,
            [this](int mode) { setFilterMode(static_cast<StateFilterMode>(mode)); });
    for (QComboBox* list : {cmbFilterThings_, cmbFilterWeapons_})
        connect(list, &QComboBox::activated, this, &StateFilterPanel::Changed);
    connect(txtFilter_, &QLineEdit::textChanged, this, &StateFilterPanel::Changed);
}

QComboBox* StateFilterPanel::List(StateFilterMode mode) const {
    return mode == StateFilterMode::Thing    ? cmbFilterThings_
           : mode == StateFilterMode::Weapon ? cmbFilterWeapons_
                                             : nullptr;
}

void StateFilterPanel::Fill() {
    FillList(*cmbFilterThings_, session_.patch.current.things);
    FillList(*cmbFilterWeapons_, session_.patch.current.weapons);
    ShowAll();
}

void StateFilterPanel::AddBelowText(QLayout& controls) {
    auto* below = new QHBoxLayout;
    below->addWidget(lblFree_);
    below->addLayout(&controls, 1);
    static_cast<QGridLayout*>(layout())->addLayout(below, 1, filterColumn);
}

void StateFilterPanel::ShowAll() {
    ClearText();
    ShowMode(StateFilterMode::All);
}

void StateFilterPanel::ShowMode(StateFilterMode mode) {
    mode_ = mode;
    modes_->button(static_cast<int>(mode))->setChecked(true);
    for (const StateFilterMode listed : {StateFilterMode::Thing, StateFilterMode::Weapon})
        List(listed)->setEnabled(listed == mode);
}

void StateFilterPanel::setFilterMode(StateFilterMode mode) {
    if (mode_ == mode)
        return;
    ShowMode(mode);
    emit Changed();
}

void StateFilterPanel::ShowStatesOf(StateFilterMode mode, int record) {
    ClearText();
    ShowMode(mode);
    List(mode)->setCurrentIndex(List(mode)->findData(record));
    emit Changed();
}

void StateFilterPanel::ClearText() {
    const QSignalBlocker quiet(txtFilter_);
    txtFilter_->clear();
}

QString StateFilterPanel::ReplaceThing(int entry, const QString& text) {
    const int row = cmbFilterThings_->findData(entry - 1) + 1;
    QString before = cmbFilterThings_->itemText(row);
    if (row > 0 && row < cmbFilterThings_->count())
        cmbFilterThings_->setItemText(row, ShownStart(StoredText(text)));
    return before;
}

std::vector<std::int32_t> StateFilterPanel::States() {
    lblFree_->clear();
    return MatchingStates(session_, StatesOfMode(), txtFilter_->text());
}

std::vector<std::int32_t> StateFilterPanel::StatesOfMode() {
    const PatchSet& set = session_.patch.current;
    constexpr std::int32_t none = -1; // which is no record's number
    const auto entryOf = [](const QComboBox& list) {
        return list.currentIndex() < 0 ? none : static_cast<std::int32_t>(list.currentData().toInt());
    };
    switch (mode_) {
    case StateFilterMode::Thing:
        return StatesOfThing(set, session_.engine, entryOf(*cmbFilterThings_));
    case StateFilterMode::Weapon:
        return StatesOfWeapon(set, session_.engine, entryOf(*cmbFilterWeapons_));
    case StateFilterMode::Unused:
        return UnusedStates(set, session_.engine);
    case StateFilterMode::Free: {
        std::vector<std::int32_t> free =
            FindFree(set, session_.patch.defaults, session_.engine, session_.fixedUses, RecordKind::State).Numbers();
        const QLocale english(QLocale::English);
        lblFree_->setText(tr("%1 of %2 free").arg(english.toString(free.size()), english.toString(set.states.size())));
        return free;
    }
    default:
        return AllStates(set);
    }
}

} // namespace plinket3
