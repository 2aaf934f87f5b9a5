#include "ui/states/StateFieldsPanel.h"

#include "patch/NewRecords.h"
#include "patch/StateUse.h"
#include "ui/LatinText.h"
#include "ui/NewButton.h"
#include "ui/fields/BitsButton.h"
#include "ui/fields/FieldControl.h"
#include "ui/fields/Labels.h"
#include "ui/fields/LinkLabel.h"
#include "ui/fields/Marking.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QTimer>

#include <algorithm>

namespace plinket3 {

namespace {

constexpr const char* noEmptyAction = "Nullifying states is only possible in extended Dehacked patches.";
constexpr const char* invalidAction = "Invalid action.";
constexpr const char* restoreQuestion = "Are you sure you want to restore these states?";
constexpr std::size_t usersShown = 3;
constexpr int bits21Field = RowOf(&StateRecord::bits21);

QLabel* NewLabel(const char* name) {
    auto* label = new QLabel;
    label->setObjectName(QString::fromLatin1(name));
    label->setTextFormat(Qt::PlainText);
    return label;
}

} // namespace

StateFieldsPanel::StateFieldsPanel(const EditorContext& context)
    : context_(context), txtSprite_(NewBox("txtSprite", tr("Sprite"), StateColumn::Sprite)),
      txtFrame_(NewBox("txtFrame", tr("Frame"), StateColumn::Frame)),
      txtDuration_(NewBox("txtDuration", tr("Duration"), StateColumn::Duration)),
      txtNextState_(NewBox("txtNextState", tr("Next state"), StateColumn::NextState)),
      txtParameter1_(NewBox("txtParameter1", tr("Parameter 1"), StateColumn::Parameter1)),
      txtParameter2_(NewBox("txtParameter2", tr("Parameter 2"), StateColumn::Parameter2)),
      boxes_{txtSprite_, txtFrame_, txtDuration_, txtNextState_, txtParameter1_, txtParameter2_},
      chkLit_(new QCheckBox(tr("&Lit"))),
      cmbActions_(new ActionBox(QStringLiteral("cmbActions"), tr("Action"), context.program.engine)),
      arguments_(new ArgumentsForm(shared_, context)),
      txtBits21_(new ValueBox(QStringLiteral("txtBits21"), tr("MBF21 bits"), Bits21(), context)),
      cmdBits21_(new BitsButton(QStringLiteral("cmdBits21Browse"), tr("Choose the MBF21 bits"), Bits21(), context)),
      txtTranmap_(new ValueBox(QStringLiteral("txtTranmap"), tr("Tranmap"), Tranmap(), context)),
      cmdSpriteBrowse_(NewBrowseButton("cmdSpriteBrowse", tr("Choose a sprite"), &StateFieldsPanel::BrowseSprite)),
      cmdNextStateBrowse_(
          NewBrowseButton("cmdNextStateBrowse", tr("Choose a state"), &StateFieldsPanel::BrowseNextState)),
      cmdActionBrowse_(NewBrowseButton("cmdActionBrowse", tr("Choose an action"), &StateFieldsPanel::BrowseAction)),
      cmdRestore_(NewButton("cmdRestore", tr("&Restore..."))), lblSpriteName_(NewLabel("lblSpriteName")),
      lblNextState_(new LinkLabel(QStringLiteral("lblNextState"))), lblUsedBy_(NewLabel("lblUsedBy")),
      txtNotes_(new NoteBox(RecordKind::State, selection_, context)), lblNotes_(new QLabel(tr("N&otes:"))) {
    setObjectName(QStringLiteral("framState"));
    chkLit_->setObjectName(QStringLiteral("chkLit"));
    chkLit_->setToolTip(tr("Drawn fully lit, also in the dark"));
    lblUsedBy_->setWordWrap(true);
    txtDuration_->Hint(tr("In tics, 35 a second; -1 for ever"));
    txtBits21_->setAlignment(Qt::AlignLeft);
    txtBits21_->Hint(tr("Bits of the state by name, or as a number"));
    txtTranmap_->setAlignment(Qt::AlignLeft);
    txtTranmap_->Hint(tr("Lump that says how its picture is blended with what is behind it"));
    ForField(*cmbActions_, codePointerField);
    BuildLayout();

    connect(chkLit_, &QCheckBox::clicked, this, &StateFieldsPanel::StoreLit);
    connect(lblNextState_, &LinkLabel::Clicked, this, [this] {
        if (const auto next = txtNextState_->Typed())
            context_.links.ShowRecord(RecordKind::State, *next);
    });
    connect(cmdRestore_, &QPushButton::clicked, this, &StateFieldsPanel::Restore);
    connect(cmbActions_, &ActionBox::Chosen, this, [this](int entry) {
        if (!RefusesEmptyAction(cmbActions_->ValueOf(entry)))
            StoreAction(cmbActions_->ValueOf(entry));
    });
    connect(cmbActions_, &ActionBox::Named, this, [this](int entry) {
        // Kept: leaving the box with the empty action's name typed does nothing. docs/kept-behaviour.md
        if (cmbActions_->ValueOf(entry) != 0 || context_.program.engine.dialect.namedCodePointers)
            StoreAction(cmbActions_->ValueOf(entry));
    });
    connect(cmbActions_, &ActionBox::Unknown, this, &StateFieldsPanel::RefuseUnknownAction);
}

StateFieldBox* StateFieldsPanel::NewBox(const char* name, const QString& accessibleName, StateColumn column) {
    return new StateFieldBox(QString::fromLatin1(name), accessibleName, column, selection_, context_);
}

SelectedValue StateFieldsPanel::Bits21() const {
    return {{shared_, RecordKind::State, bits21Field, "frames"}, context_};
}

SelectedValue StateFieldsPanel::Tranmap() const {
    return {{shared_, RecordKind::State, tranmapField, "frames"}, context_};
}

QPushButton* StateFieldsPanel::NewBrowseButton(const char* name, const QString& toolTip,
                                               void (StateFieldsPanel::*browse)()) {
    auto* button = new QPushButton(QStringLiteral("..."));
    button->setObjectName(QString::fromLatin1(name));
    button->setAccessibleName(toolTip);
    button->setToolTip(toolTip);
    button->setMaximumWidth(button->fontMetrics().averageCharWidth() * 6);
    connect(button, &QPushButton::clicked, this, browse);
    return button;
}

void StateFieldsPanel::BuildLayout() {
    struct Row {
        QString label;
        QWidget* field;
        QWidget* button;
        QWidget* beside;
        QLabel** caption;
    };
    const std::array<Row, 6> left{{{tr("&Sprite:"), txtSprite_, cmdSpriteBrowse_, lblSpriteName_, nullptr},
                                   {tr("Fra&me:"), txtFrame_, nullptr, chkLit_, nullptr},
                                   {tr("&Duration:"), txtDuration_, nullptr, nullptr, nullptr},
                                   {tr("&Next state:"), txtNextState_, cmdNextStateBrowse_, lblNextState_, nullptr},
                                   {tr("MBF21 &bits:"), txtBits21_, cmdBits21_, nullptr, &lblBits21_},
                                   {tr("Tranmap:"), txtTranmap_, nullptr, nullptr, &lblTranmap_}}};
    const std::array<Row, 3> right{{{tr("A&ction:"), cmbActions_, cmdActionBrowse_, nullptr, nullptr},
                                    {tr("Parameter &1:"), txtParameter1_, nullptr, nullptr, &lblParameter1_},
                                    {tr("Parameter &2:"), txtParameter2_, nullptr, nullptr, &lblParameter2_}}};
    auto* grid = new QGridLayout;
    const auto addRows = [grid](const auto& rows, int column) {
        int line = 0;
        for (const Row& row : rows) {
            auto* label = new QLabel(row.label);
            label->setBuddy(row.field);
            if (row.caption != nullptr)
                *row.caption = label;
            grid->addWidget(label, line, column);
            grid->addWidget(row.field, line, column + 1);
            if (row.button != nullptr)
                grid->addWidget(row.button, line, column + 2);
            if (row.beside != nullptr)
                grid->addWidget(row.beside, line, column + 3);
            ++line;
        }
    };
    addRows(left, 0);
    addRows(right, 4);
    lblNotes_->setBuddy(txtNotes_);
    grid->addWidget(lblNotes_, 6, 0, Qt::AlignTop);
    grid->addWidget(txtNotes_, 6, 1, 1, 3);
    grid->addWidget(arguments_, 3, 4, 4, 3);
    grid->setRowStretch(6, 1);
    txtNotes_->setMinimumHeight(txtNotes_->HeightOf(2));
    txtNotes_->setMaximumHeight(txtNotes_->HeightOf(6));
    const int digits = fontMetrics().averageCharWidth() * 10;
    for (StateFieldBox* box : boxes_)
        box->setMinimumWidth(digits);
    lblSpriteName_->setMinimumWidth(digits / 2);
    lblNextState_->setMinimumWidth(digits / 2);
    grid->setColumnStretch(1, 1);
    grid->setColumnStretch(5, 2);

    auto* bottom = new QHBoxLayout;
    bottom->addWidget(lblUsedBy_, 1);
    bottom->addWidget(cmdRestore_, 0, Qt::AlignBottom);
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(grid);
    layout->addStretch();
    layout->addLayout(bottom);
}

void StateFieldsPanel::Fill() {
    txtFrame_->Form(FrameFormOf(context_.program.settings));
    cmbActions_->Fill();
    txtNotes_->setVisible(txtNotes_->HasNotes());
    lblNotes_->setVisible(txtNotes_->HasNotes());
    const EngineConfiguration& engine = context_.program.engine;
    const bool bits = FactsOf(RecordKind::State, bits21Field).since <= engine.dialect.fields;
    for (QWidget* control :
         {static_cast<QWidget*>(lblBits21_), static_cast<QWidget*>(txtBits21_), static_cast<QWidget*>(cmdBits21_)})
        control->setVisible(bits);
    const bool tranmap = TextFieldAt(tranmapField)->since <= engine.dialect.fields;
    lblTranmap_->setVisible(tranmap);
    txtTranmap_->setVisible(tranmap);
    cmdBits21_->Reload();
    arguments_->Fill();
    arguments_->setVisible(!ArgumentTable(engine).Empty());
}

void StateFieldsPanel::ShowSelection(RecordSelection selection) {
    selection_ = std::move(selection);
    for (StateFieldBox* box : boxes_)
        box->ShowSelection();
    txtBits21_->ShowSelection();
    txtTranmap_->ShowSelection();
    cmdBits21_->setEnabled(AnyEditable(selection_));
    arguments_->ShowSelection();
    chkLit_->setCheckState(Qt::PartiallyChecked);
    for (QWidget* control : {static_cast<QWidget*>(chkLit_), static_cast<QWidget*>(cmdSpriteBrowse_),
                             static_cast<QWidget*>(cmdNextStateBrowse_)})
        control->setEnabled(AnyEditable(selection_));
    cmdRestore_->setEnabled(!selection_.records.empty());
    ShowTitle();
    ShowAction();
    Update();
}

void StateFieldsPanel::Update() {
    for (StateFieldBox* box : boxes_)
        box->Update();
    txtBits21_->Update();
    txtTranmap_->Update();
    cmdBits21_->Update();
    arguments_->Update();
    ShowParameters();
    ShowLit();
    ShowSpriteAndNextState();
    txtNotes_->Update();
    if (!cmbActions_->IsTyping())
        ShowAction();
    ShowUsers();
}

void StateFieldsPanel::ShowTitle() {
    setTitle(selection_.records.empty() ? tr("No state selected")
             : selection_.Several()     ? tr("%n states", nullptr, static_cast<int>(selection_.records.size()))
                                        : tr("State %1").arg(selection_.current));
}

/// Of several states the box goes on showing what the user has set for all of them.
void StateFieldsPanel::ShowLit() {
    const PatchData& patch = context_.program.patch;
    const auto lit = [](const PatchSet& set, std::int32_t state) {
        return StateColumnValue(set, state, StateColumn::Lit) != 0 ? Qt::Checked : Qt::Unchecked;
    };
    const bool one = selection_.records.size() == 1;
    if (one)
        chkLit_->setCheckState(lit(patch.current, selection_.current));
    else if (!std::all_of(selection_.records.begin(), selection_.records.end(), [&](std::int32_t state) {
                 return state == 0 || lit(patch.current, state) == chkLit_->checkState();
             }))
        chkLit_->setCheckState(Qt::PartiallyChecked);
    if (selection_.records.empty())
        chkLit_->setCheckState(Qt::Unchecked);
    chkLit_->setTristate(chkLit_->checkState() == Qt::PartiallyChecked);
    const Qt::CheckState standard = one ? lit(patch.defaults, selection_.current) : chkLit_->checkState();
    MarkDifference(*chkLit_, standard != chkLit_->checkState(), standard == Qt::Checked ? tr("lit") : tr("not lit"),
                   tr("Drawn fully lit, also in the dark"));
}

void StateFieldsPanel::ShowSpriteAndNextState() {
    const PatchSet& current = context_.program.patch.current;
    const auto sprite = txtSprite_->Typed();
    lblSpriteName_->setText(sprite ? ShownText(current.SpriteName(*sprite)) : QString());
    const auto next = txtNextState_->Typed();
    lblNextState_->setText(next ? StateLabelText(current, *next) : QString());
}

/// In a patch that is not extended only states to which the engine itself gives an action may have one.
bool StateFieldsPanel::ActionsMayBeSet() const {
    const Session& session = context_.program;
    return std::any_of(selection_.records.begin(), selection_.records.end(), [&session](std::int32_t state) {
        return state != 0 && (session.engine.dialect.namedCodePointers ||
                              RecordOrNew(session.patch.current.states, state)->action != 0);
    });
}

/// What all selected states have, state 0 aside where there are several; absent when they differ.
std::optional<std::int32_t> StateFieldsPanel::CommonAction() const {
    std::optional<std::int32_t> common;
    for (const std::int32_t state : selection_.records) {
        const std::int32_t value = StateColumnValue(context_.program.patch.current, state, StateColumn::Action);
        if (selection_.Several() && state == 0)
            continue;
        if (common.value_or(value) != value)
            return std::nullopt;
        common = value;
    }
    return common;
}

void StateFieldsPanel::ShowAction() {
    const PatchData& patch = context_.program.patch;
    const bool one = selection_.records.size() == 1;
    const std::optional<std::int32_t> value = CommonAction();
    cmbActions_->ShowAction(value);
    cmbActions_->setEnabled(ActionsMayBeSet());
    cmdActionBrowse_->setEnabled(ActionsMayBeSet());
    const bool differs = one && value != StateColumnValue(patch.defaults, selection_.current, StateColumn::Action);
    MarkDifference(
        *cmbActions_, differs,
        differs ? StateColumnText(patch.defaults, context_.program.engine, selection_.current, StateColumn::Action)
                : QString());
}

/// Where the action takes them as something, the form of arguments has them.
void StateFieldsPanel::ShowParameters() {
    const bool one = !arguments_->Shows(RowOf(&StateRecord::unknown1));
    const bool two = !arguments_->Shows(RowOf(&StateRecord::unknown2));
    lblParameter1_->setVisible(one);
    txtParameter1_->setVisible(one);
    lblParameter2_->setVisible(two);
    txtParameter2_->setVisible(two);
}

void StateFieldsPanel::ShowUsers() {
    lblUsedBy_->setToolTip({});
    if (selection_.records.size() != 1)
        return lblUsedBy_->clear();
    if (selection_.current == 0)
        return lblUsedBy_->setText(tr("State 0 stands for \"no state\" and cannot be edited."));
    QStringList users;
    for (const std::string& user :
         UsersOfState(context_.program.patch.current, context_.program.engine, selection_.current))
        users.append(ShownStart(user));
    const auto count = static_cast<std::size_t>(users.size());
    QString text = users.isEmpty() ? tr("no thing or weapon directly") : users.join(QStringLiteral(", "));
    if (count > usersShown) {
        lblUsedBy_->setToolTip(users.join(QLatin1Char('\n')));
        text = tr("%1 and %n more", nullptr, static_cast<int>(count - usersShown))
                   .arg(users.first(usersShown).join(QStringLiteral(", ")));
    }
    lblUsedBy_->setText(tr("Used by: %1").arg(text));
}

void StateFieldsPanel::StoreLit() {
    if (chkLit_->checkState() == Qt::PartiallyChecked) // a click leads away from "leave as is", never back to it
        chkLit_->setCheckState(Qt::Checked);
    const StateColumnAssignment lit{StateColumn::Lit, chkLit_->checkState() == Qt::Checked ? litBit : 0};
    StoreInStates(context_.edits, context_.program, selection_.records, {&lit, 1});
    Update();
}

bool StateFieldsPanel::RefusesEmptyAction(std::int32_t value) {
    if (value != 0 || context_.program.engine.dialect.namedCodePointers)
        return false;
    ShowAction();
    context_.program.notifier.Show(MessageKind::Exclamation, noEmptyAction);
    return true;
}

void StateFieldsPanel::RefuseUnknownAction() {
    ShowAction();
    // The focus is on its way elsewhere; let it arrive before it is called back.
    QTimer::singleShot(0, this, [this] {
        context_.program.notifier.Show(MessageKind::Exclamation, invalidAction);
        cmbActions_->setFocus();
    });
}

void StateFieldsPanel::StoreAction(std::int32_t value) {
    const StateColumnAssignment action{StateColumn::Action, value};
    const auto cleared = StoreInStates(context_.edits, context_.program, selection_.records, {&action, 1});
    if (!cleared.empty())
        context_.links.ShowStatus(ClearedText(cleared));
    ShowAction();
}

void StateFieldsPanel::BrowseSprite() {
    if (!AnyEditable(selection_))
        return;
    const StateRecord record = *RecordOrNew(context_.program.patch.current.states, selection_.current);
    const auto chosen = context_.links.PickSprite({record.sprite, record.subnumber});
    if (!chosen)
        return;
    const std::array<StateColumnAssignment, 2> picture{
        {{StateColumn::Sprite, chosen->sprite}, {StateColumn::Frame, chosen->frame & ~litBit}}};
    StoreInStates(context_.edits, context_.program, selection_.records, picture);
}

void StateFieldsPanel::BrowseNextState() {
    if (!AnyEditable(selection_))
        return;
    const PatchSet& current = context_.program.patch.current;
    const auto chosen = context_.links.PickState(StateColumnValue(current, selection_.current, StateColumn::NextState));
    if (!chosen)
        return;
    const StateColumnAssignment next{StateColumn::NextState, *chosen};
    StoreInStates(context_.edits, context_.program, selection_.records, {&next, 1});
}

void StateFieldsPanel::BrowseAction() {
    if (!ActionsMayBeSet())
        return;
    const PatchData& patch = context_.program.patch;
    const auto chosen =
        context_.links.PickAction(StateColumnValue(patch.current, selection_.current, StateColumn::Action));
    if (chosen && !RefusesEmptyAction(*chosen))
        StoreAction(*chosen);
}

void StateFieldsPanel::Restore() {
    if (!selection_.records.empty() && context_.program.notifier.Ask(restoreQuestion, Buttons::YesNo) != Answer::No)
        context_.edits.RestoreRecords(RecordKind::State, selection_.records, "frames");
}

} // namespace plinket3
