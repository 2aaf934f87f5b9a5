#include "ui/clip/frmDuplicate.h"

#include "patch/CopyChoice.h"
#include "patch/LumpNames.h"
#include "patch/StepNames.h"
#include "ui/AcceptButtons.h"
#include "ui/LatinLineEdit.h"
#include "ui/LatinText.h"
#include "ui/clip/frmPaste.h"
#include "ui/fields/LumpNameEdit.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFormLayout>
#include <QLabel>
#include <QPlainTextEdit>
#include <QSignalBlocker>
#include <QSpinBox>

#include <algorithm>

namespace plinket3 {

frmDuplicate::frmDuplicate(const EditorContext& context, const RecordId& record, QWidget* parent)
    : QDialog(parent), context_(context), record_(record), txtName_(new QLineEdit), chkStates_(new QCheckBox),
      lblNote_(new QLabel), txtTold_(new QPlainTextEdit), accept_(NewButton("cmdAccept", tr("&Duplicate"))) {
    setObjectName(QStringLiteral("frmDuplicate"));
    setWindowTitle(tr("Duplicate %1").arg(ShownStart(RecordName(Current(), record.first, record.second))));
    txtName_->setObjectName(QStringLiteral("txtName"));
    txtName_->setText(ShownText(ProposedName()));
    txtName_->setValidator(
        new TextValidator(txtName_, WhyNoName, [this](const QString& why) { lblNote_->setText(why); }));
    txtName_->setMinimumWidth(fontMetrics().averageCharWidth() * 40);
    auto* form = new QFormLayout(this);
    form->addRow(tr("&Name"), txtName_);
    if (IsThing()) {
        txtID_ = new QSpinBox;
        txtID_->setObjectName(QStringLiteral("txtID"));
        txtID_->setRange(INT32_MIN, INT32_MAX);
        txtID_->setToolTip(tr("The number with which maps place the thing; -1 for one that they cannot place"));
        form->addRow(tr("&ID #"), txtID_);
        connect(txtID_, &QSpinBox::valueChanged, this, &frmDuplicate::Plan);
    } else {
        cmbWeapon_ = new QComboBox;
        cmbWeapon_->setObjectName(QStringLiteral("cmbWeapon"));
        for (const std::int32_t number : Current().weapons.Numbers())
            if (number != record.second)
                cmbWeapon_->addItem(ShownStart(RecordName(Current(), RecordKind::Weapon, number)), number);
        form->addRow(tr("In &place of"), cmbWeapon_);
        connect(cmbWeapon_, &QComboBox::currentIndexChanged, this, &frmDuplicate::Plan);
    }
    chkStates_->setObjectName(QStringLiteral("chkStates"));
    chkStates_->setText(tr("With &states of its own"));
    chkStates_->setToolTip(tr("Otherwise both go through the same states, and what you change in them changes both"));
    chkStates_->setChecked(true);
    form->addRow(QString(), chkStates_);
    if (IsThing())
        form->addRow(tr("S&prite"), SpriteRow());
    lblNote_->setObjectName(QStringLiteral("lblNote"));
    lblNote_->setTextFormat(Qt::PlainText);
    lblNote_->setWordWrap(true);
    lblNote_->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    lblNote_->setMinimumSize(fontMetrics().averageCharWidth() * 60, fontMetrics().lineSpacing() * 3);
    form->addRow(lblNote_);
    txtTold_->setObjectName(QStringLiteral("txtTold"));
    txtTold_->setAccessibleName(tr("What is lost, and what is good to know"));
    txtTold_->setReadOnly(true);
    txtTold_->setTabChangesFocus(true);
    txtTold_->setMaximumHeight(fontMetrics().lineSpacing() * 6);
    form->addRow(txtTold_);
    form->addRow(AcceptButtons(*this, *accept_));
    connect(txtName_, &QLineEdit::textChanged, this, &frmDuplicate::Plan);
    connect(chkStates_, &QCheckBox::toggled, this, &frmDuplicate::ReadRecords);
    ReadRecords();
    txtName_->selectAll();
}

QWidget* frmDuplicate::SpriteRow() {
    txtSprite_ = new LumpNameEdit(QStringLiteral("txtSprite"), RecordKind::Sprite);
    txtSprite_->setAccessibleName(tr("Sprite"));
    const std::optional<std::int32_t> own = OwnSprite();
    txtSprite_->setPlaceholderText(own ? ShownText(Current().SpriteName(*own)) : tr("none"));
    txtSprite_->setToolTip(
        tr("Another sprite for all of its states that show this one. Left empty, it looks as before."));
    auto* pick = NewButton("cmdSprite", tr("..."));
    pick->setAccessibleName(tr("Choose a sprite"));
    pick->setAutoDefault(false);
    spriteRow_ = new QWidget;
    auto* layout = new QHBoxLayout(spriteRow_);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(txtSprite_, 1);
    layout->addWidget(pick);
    spriteRow_->setFocusProxy(txtSprite_);
    connect(txtSprite_, &QLineEdit::textChanged, this, &frmDuplicate::Plan);
    connect(pick, &QPushButton::clicked, this, &frmDuplicate::PickSprite);
    return spriteRow_;
}

/// "Imp 2", or the first number that none has.
std::string frmDuplicate::ProposedName() const {
    const std::string name = RecordName(Current(), record_.first, record_.second);
    const std::vector<std::int32_t> all = RecordNumbers(Current(), record_.first);
    std::string proposed;
    for (int i = 2; proposed.empty(); ++i) {
        const std::string next = name + " " + std::to_string(i);
        if (std::ranges::none_of(all,
                                 [&](std::int32_t each) { return RecordName(Current(), record_.first, each) == next; }))
            proposed = next;
    }
    return proposed;
}

std::optional<std::int32_t> frmDuplicate::OwnSprite() const {
    const StateRecord* state = Current().states.Find(Current().things[record_.second].initialState);
    return state == nullptr ? std::nullopt : std::optional(state->sprite);
}

void frmDuplicate::PickSprite() {
    if (const auto chosen = context_.links.PickSprite({OwnSprite().value_or(0), 0}))
        txtSprite_->ShowName(std::string(Current().SpriteName(chosen->sprite)));
}

/// The records go the way that all go that are pasted, as a text.
void frmDuplicate::ReadRecords() {
    const Program& program = context_.program;
    const std::set<RecordId> records =
        chkStates_->isChecked() ? WithOwnStates(program.patch, program.engine, record_) : std::set{record_};
    read_ = ReadClip(program, program, modPatchFiles::FormatRecords(program.patch, program.engine, records), clip_);
    if (IsThing()) {
        spriteRow_->setEnabled(chkStates_->isChecked());
        spriteRow_->setToolTip(chkStates_->isChecked() ? QString() : tr("The sprite is that of the states"));
        PastePlan proposed;
        if (read_ && PlanPaste(clip_, program, PasteTo::Free, {}, proposed)) {
            const QSignalBlocker blocker(txtID_);
            const int idRow = RowOf(&ThingRecord::id);
            txtID_->setValue(Current().things[record_.second].id);
            for (const Assignment& each : proposed.assignments)
                if (each.cell.kind == RecordKind::Thing && each.cell.field == idRow)
                    txtID_->setValue(std::get<std::int32_t>(each.value));
        }
    }
    Plan();
}

void frmDuplicate::Plan() {
    plan_ = PastePlan();
    PasteChanges changes{StoredText(txtName_->text()), {}, {}, {}};
    Status status = read_;
    if (IsThing()) {
        changes.id = txtID_->value();
        if (chkStates_->isChecked())
            changes.sprite = txtSprite_->Name();
        if (status && !changes.sprite.empty())
            status = txtSprite_->Check();
    } else {
        changes.weapon = cmbWeapon_->currentData().toInt();
    }
    if (status)
        status = PlanPaste(clip_, context_.program, PasteTo::Free, changes, plan_);
    lblNote_->setText(status ? PlanText() : ShownText(status.Reason()));
    plan_.told.clear(); // of the numbers that are chosen here, and of what both use
    const QString notes = PlanNotes(plan_, {});
    txtTold_->setPlainText(notes);
    txtTold_->setVisible(!notes.isEmpty());
    accept_->setEnabled(status && !txtName_->text().isEmpty());
}

QString frmDuplicate::PlanText() const {
    const auto place = std::ranges::find(plan_.places, record_, &PastePlan::Place::from);
    if (place == plan_.places.end())
        return {};
    const auto states = std::ranges::count(plan_.places, RecordKind::State,
                                           [](const PastePlan::Place& each) { return each.from.first; });
    const QString what = IsThing()
                             ? tr("This makes %1").arg(ShownText(MadeName(record_.first, place->to)))
                             : tr("This replaces %1").arg(ShownStart(RecordName(Current(), record_.first, place->to)));
    QString text =
        states == 0
            ? what + QLatin1Char('.')
            : tr("%1, with %2.").arg(what, ShownText(CountOf(RecordKind::State, static_cast<std::size_t>(states))));
    if (txtID_ != nullptr && txtID_->value() > 0)
        for (const std::int32_t thing : Current().things.Numbers())
            if (Current().things[thing].id == txtID_->value())
                return text + QLatin1Char(' ') +
                       tr("%1 has this ID #, too: maps place only one of them.")
                           .arg(ShownStart(RecordName(Current(), RecordKind::Thing, thing)));
    return text;
}

std::optional<PastePlan> frmDuplicate::Ask() { return exec() == Accepted ? std::optional(plan_) : std::nullopt; }

} // namespace plinket3
