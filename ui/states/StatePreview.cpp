#include "ui/states/StatePreview.h"

#include "patch/StateSounds.h"
#include "patch/StateUse.h"
#include "ui/Icons.h"
#include "ui/LatinText.h"
#include "ui/fields/Labels.h"

#include <QAction>
#include <QActionGroup>
#include <QCheckBox>
#include <QComboBox>
#include <QHBoxLayout>
#include <QHideEvent>
#include <QLabel>
#include <QMenu>
#include <QShortcut>
#include <QSignalBlocker>
#include <QToolButton>
#include <QVBoxLayout>

#include <vector>

namespace plinket3 {

namespace {

/// Of the settings: 1 where playing is to be silent.
constexpr std::string_view silentKey = "playSilently";

struct SpeedChoice {
    const char* text;
    double times;
};
constexpr SpeedChoice speeds[]{{"1/4", 0.25}, {"1/2", 0.5}, {"1", 1}, {"2", 2}, {"4", 4}};
constexpr int usualSpeed = 2;
constexpr QKeyCombination playKey(Qt::AltModifier, Qt::Key_P);

void Tell(QToolButton& tool, const QString& what, const QKeySequence& key) {
    tool.setAccessibleName(what);
    tool.setToolTip(QStringLiteral("%1 (%2)").arg(what, key.toString(QKeySequence::NativeText)));
}

struct OpenJumps {
    std::int32_t from = 0;
    std::optional<StateJump> jump;
    std::vector<EngineJump> engine;
};
/// Those that playing from a state may come to, and of which one can choose whether they are made.
std::vector<OpenJumps> JumpsOnTheWay(const Session& session, std::int32_t state, const std::optional<Target>& owner) {
    std::vector<OpenJumps> all;
    for (const std::int32_t from : ReachOf(session, state, owner)) {
        const StateRecord& record = *session.patch.current.states.Find(from);
        OpenJumps open{from, JumpOf(session.engine, record), EngineJumpsOf(session, record, owner)};
        const bool certain = open.jump && open.jump->chance == certainChance;
        if (!certain && (open.jump || !open.engine.empty()))
            all.push_back(std::move(open));
    }
    return all;
}

/// What a run is like, before it is played.
QString RunText(const StraightRun& run) {
    using End = StateWalk::End;
    const QString tics = run.tics == 1 ? StatePreview::tr("1 tic") : StatePreview::tr("%1 tics").arg(run.tics);
    switch (run.end) {
    case End::Removed:
        return StatePreview::tr("%1, then gone").arg(tics);
    case End::ForEver:
        return run.tics == 0 ? StatePreview::tr("Stays for ever") : StatePreview::tr("%1, then stays").arg(tics);
    case End::NoState:
        return StatePreview::tr("%1, then no state").arg(tics);
    case End::NoTime:
        return StatePreview::tr("%1, then round in no time").arg(tics);
    default:
        return run.back == 0 ? StatePreview::tr("%1, again and again").arg(tics)
                             : StatePreview::tr("%1, last %2 repeat").arg(tics).arg(run.tics - run.back);
    }
}

QString EndText(StateWalk::End end) {
    using End = StateWalk::End;
    return end == End::Removed   ? StatePreview::tr("Gone: state 0")
           : end == End::ForEver ? StatePreview::tr("Stays for ever")
           : end == End::NoState ? StatePreview::tr("Ended: leads to no state")
                                 : StatePreview::tr("Ended: goes round in no time");
}

} // namespace

StatePreview::StatePreview(const EditorContext& context, const QString& picture, Of of)
    : context_(context), picture_(new SpriteView(picture, context.program)), lblPreview_(new QLabel),
      lblTic_(new QLabel), cmbRun_(new QComboBox), cmbSpeed_(new QComboBox),
      cmdPlay_(NewTool("cmdPlay", {}, playKey, &StatePreview::PlayOrPause)),
      cmdStop_(NewTool("cmdStop", tr("Stop, back to the first state"), QKeySequence(Qt::ALT | Qt::SHIFT | Qt::Key_P),
                       &StatePreview::Stop)),
      cmdStep_(NewTool("cmdStep", tr("One tic"), QKeySequence(Qt::ALT | Qt::Key_Period), &StatePreview::Step)),
      cmdJumps_(new QToolButton), chkSound_(new QCheckBox(tr("Sound"))),
      player_(new StatePlayer(context.program, this)) {
    for (QLabel* label : {lblPreview_, lblTic_})
        label->setAlignment(Qt::AlignCenter);
    lblTic_->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred); // its text is another each tic
    lblPreview_->setObjectName(QStringLiteral("lblPreview"));
    lblTic_->setObjectName(QStringLiteral("lblTic"));
    picture_->setMinimumHeight(picture_->sizeHint().height()); // enough for a monster at twice its size
    cmdStep_->setAutoRepeat(true);
    cmbRun_->setObjectName(QStringLiteral("cmbRun"));
    cmbRun_->setAccessibleName(tr("Frames to show and play"));
    cmbRun_->setToolTip(cmbRun_->accessibleName());
    cmbRun_->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    cmbRun_->setPlaceholderText(QStringLiteral("-"));
    if (of == Of::States)
        cmbRun_->hide();
    cmbSpeed_->setObjectName(QStringLiteral("cmbSpeed"));
    cmbSpeed_->setAccessibleName(tr("Speed"));
    cmbSpeed_->setToolTip(tr("How many times as fast as the game"));
    for (const SpeedChoice& speed : speeds)
        cmbSpeed_->addItem(QString::fromLatin1(speed.text) + QChar(0xd7), speed.times);
    cmbSpeed_->setCurrentIndex(usualSpeed);
    cmdJumps_->setObjectName(QStringLiteral("cmdJumps"));
    cmdJumps_->setText(tr("Jumps"));
    cmdJumps_->setAccessibleName(cmdJumps_->text());
    cmdJumps_->setToolTip(tr("What to do where an action may jump to another state"));
    cmdJumps_->setPopupMode(QToolButton::InstantPopup);
    cmdJumps_->setFocusPolicy(Qt::StrongFocus);
    cmdJumps_->setMenu(new QMenu(cmdJumps_));
    chkSound_->setObjectName(QStringLiteral("chkSound"));
    chkSound_->setAccessibleName(chkSound_->text());
    chkSound_->setToolTip(tr("Play the sounds that the actions make"));

    connect(cmbRun_, &QComboBox::activated, this, [this](int row) {
        chosen_ = static_cast<std::size_t>(cmbRun_->itemData(row).toInt());
        ShowChosen();
    });
    connect(cmbSpeed_, &QComboBox::currentIndexChanged, this,
            [this] { player_->Speed(cmbSpeed_->currentData().toDouble()); });
    connect(cmdJumps_->menu(), &QMenu::aboutToShow, this, &StatePreview::FillJumps);
    connect(chkSound_, &QCheckBox::clicked, this,
            [this](bool wanted) { context_.program.settings.Number(silentKey, wanted ? 0 : 1); });
    connect(picture_, &SpriteView::Turned, this, &StatePreview::NameLump);
    connect(player_, &StatePlayer::StateShown, this, &StatePreview::Draw);
    connect(player_, &StatePlayer::SoundMade, this, &StatePreview::MakeSound);
    connect(player_, &StatePlayer::TicShown, this, &StatePreview::ShowTic);
    for (const auto signal : {&StatePlayer::RunningChanged, &StatePlayer::Ended})
        connect(player_, signal, this, &StatePreview::ShowRunning);

    auto* bar = new QHBoxLayout;
    bar->setSpacing(2);
    bar->addStretch();
    for (QWidget* control : std::initializer_list<QWidget*>{cmdPlay_, cmdStop_, cmdStep_, cmbSpeed_, chkSound_})
        bar->addWidget(control);
    bar->addStretch();
    auto* below = new QHBoxLayout;
    lblTic_->setMinimumHeight(cmdJumps_->sizeHint().height()); // what stands below stays in its place without it
    below->addWidget(lblTic_, 1);
    below->addWidget(cmdJumps_);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins({});
    layout->addWidget(cmbRun_);
    layout->addWidget(picture_, 1);
    layout->addWidget(lblPreview_);
    layout->addLayout(bar);
    layout->addLayout(below);
    ShowState(std::nullopt);
}

QToolButton* StatePreview::NewTool(const char* name, const QString& tip, const QKeySequence& key,
                                   void (StatePreview::*click)()) {
    auto* tool = new QToolButton;
    tool->setObjectName(QString::fromLatin1(name));
    tool->setAutoRaise(true);
    tool->setFocusPolicy(Qt::StrongFocus);
    Tell(*tool, tip, key);
    connect(new QShortcut(key, this), &QShortcut::activated, tool, &QToolButton::click); // a button's own one waits
    connect(tool, &QToolButton::clicked, this, click);
    return tool;
}

void StatePreview::SetIcons() {
    const bool running = player_->IsRunning();
    cmdPlay_->setIcon(ProgramIcon(running ? "pause" : "play", palette()));
    cmdStop_->setIcon(ProgramIcon("stop", palette()));
    cmdStep_->setIcon(ProgramIcon("step", palette()));
}

void StatePreview::ShowRuns(std::vector<Run> runs, std::size_t usual, std::optional<Target> owner) {
    for (Run& run : runs) // a state may be made or removed while the record names it
        if (!context_.program.patch.current.states.Has(run.state))
            run.state = 0;
    if (runs == runs_ && usual == usual_ && owner == owner_)
        return Update();
    if (runs_.empty())
        chosen_ = usual;
    runs_ = std::move(runs);
    usual_ = usual;
    owner_ = owner;
    const auto has = [this](std::size_t run) { return run < runs_.size() && runs_[run].state != 0; };
    const QSignalBlocker quiet(cmbRun_);
    cmbRun_->clear();
    for (std::size_t run = 0; run < runs_.size(); ++run)
        if (has(run))
            cmbRun_->addItem(runs_[run].name, static_cast<int>(run));
    cmbRun_->setCurrentIndex(cmbRun_->findData(static_cast<int>(has(chosen_) ? chosen_ : usual_)));
    cmbRun_->setEnabled(cmbRun_->count() > 0);
    ShowChosen();
}

/// The user's choice stays for the next record.
void StatePreview::ShowChosen() {
    const QVariant run = cmbRun_->currentData();
    ShowState(run.isValid() ? std::optional(runs_[static_cast<std::size_t>(run.toInt())].state) : std::nullopt);
}

void StatePreview::ShowState(std::optional<std::int32_t> state) {
    player_->Stop();
    player_->Walk().ForgetChoices();
    picture_->Stage({});
    state_ = state;
    Update();
    ShowRunning();
}

void StatePreview::Update() {
    const Program& program = context_.program;
    const std::int32_t first = state_.value_or(0);
    if (state_ && runs_.empty() && !player_->IsPlaying())
        owner_ = OwnerOfState(program.patch.current, program.engine, *state_);
    player_->Walk().Owner(owner_);
    straight_ = StraightRunFrom(program, first);
    cmdJumps_->setVisible(!JumpsOnTheWay(program, first, owner_).empty());
    if (player_->IsPlaying())
        return; // the next state shows what is stored now
    lblTic_->setText(first != 0 ? RunText(straight_) : QString());
    if (state_) {
        Draw(*state_);
    } else {
        picture_->Clear();
        lblPreview_->setText(QStringLiteral("-"));
    }
}

void StatePreview::Draw(std::int32_t state) {
    shown_ = state;
    NameLump(picture_->ShowState(state, owner_));
}

void StatePreview::NameLump(const QString& lump) {
    lblPreview_->setText(tr("%1: %2").arg(shown_).arg(lump.isEmpty() ? QStringLiteral("-") : lump));
}

/// Shows the first tic; false when there is nothing to play.
bool StatePreview::Begin() {
    if (!state_)
        return false;
    Update();
    QRect stage;
    for (const std::int32_t state : ReachOf(context_.program, *state_, owner_))
        stage |= picture_->PlaceOfState(state);
    picture_->Stage(stage);
    const auto thing = owner_ && owner_->kind == TargetKind::Thing ? std::optional(owner_->number) : std::nullopt;
    const auto* run = runs_.empty() ? nullptr : &runs_[static_cast<std::size_t>(cmbRun_->currentData().toInt())];
    const auto sound = run != nullptr && run->field != nullptr && thing
                           ? SoundOfStart(context_.program, run->field, *thing, player_->Chance())
                           : std::nullopt;
    player_->Start(*state_, thing, sound);
    return player_->IsPlaying();
}

void StatePreview::PlayOrPause() {
    if (player_->IsRunning())
        player_->Pause();
    else if (player_->IsPlaying() || Begin())
        player_->Resume();
}

void StatePreview::Step() {
    player_->Pause();
    if (player_->IsPlaying())
        player_->Advance();
    else
        Begin();
    ShowRunning();
}

void StatePreview::Stop() {
    player_->Stop();
    picture_->Stage({});
    Update();
    ShowRunning();
}

void StatePreview::ShowRunning() {
    Tell(*cmdPlay_, player_->IsRunning() ? tr("Pause") : tr("Play, as fast as the game does"), playKey);
    for (QToolButton* tool : {cmdPlay_, cmdStep_, cmdStop_})
        tool->setEnabled(state_.value_or(0) != 0);
    SetIcons();
}

/// Off the straight run there is no place in the whole.
void StatePreview::ShowTic() {
    const StateWalk& walk = player_->Walk();
    if (walk.Ended() != StateWalk::End::None) {
        lblTic_->setText(EndText(walk.Ended()));
        return;
    }
    const std::int32_t tic = walk.TicOfState();
    if (const auto begin = straight_.BeginOf(*walk.State()))
        lblTic_->setText(tr("Tic %1 of %2").arg(*begin + tic).arg(straight_.tics));
    else
        lblTic_->setText(tr("Jumped, tic %1").arg(tic));
}

/// For each state that may jump one of several is chosen; by chance only where there is one.
void StatePreview::FillJumps() {
    QMenu& menu = *cmdJumps_->menu();
    qDeleteAll(menu.findChildren<QMenu*>(Qt::FindDirectChildrenOnly));
    const Program& program = context_.program;
    const PatchSet& set = program.patch.current;
    for (const auto& [from, jump, engine] : JumpsOnTheWay(program, state_.value_or(0), owner_)) {
        const std::int32_t state = from;
        const StateRecord& record = *set.states.Find(state);
        QMenu* choices = menu.addMenu(
            tr("%1 in state %2").arg(ShownText(program.engine.ActionOf(record.codePointer)->mnemonic)).arg(state));
        choices->setObjectName(QStringLiteral("jump%1").arg(state));
        auto* group = new QActionGroup(choices);
        const JumpChoice usual{jump && jump->chance ? AtJump::ByChance : AtJump::GoOn};
        const JumpChoice walked = player_->Walk().Choice(state);
        const JumpChoice chosen = walked.at == AtJump::ByChance ? usual : walked;
        const auto add = [&](const QString& name, const QString& text, JumpChoice choice) {
            QAction* action = choices->addAction(text);
            action->setObjectName(name);
            action->setCheckable(true);
            action->setChecked(choice == chosen);
            group->addAction(action);
            connect(action, &QAction::triggered, player_,
                    [this, state, choice] { player_->Walk().Choose(state, choice); });
        };
        const auto to = [&set](std::int32_t target) {
            return tr("Jump to %1 (%2)").arg(target).arg(StateLabelText(set, target));
        };
        if (jump && jump->chance)
            add(QStringLiteral("byChance"), tr("By chance (%1 of %2)").arg(*jump->chance).arg(certainChance),
                {AtJump::ByChance});
        add(QStringLiteral("goOn"), tr("Go on"), {AtJump::GoOn});
        if (jump)
            add(QStringLiteral("jump"), to(jump->target), {AtJump::Jump});
        for (const EngineJump& each : engine)
            add(QStringLiteral("engine%1").arg(each.target), tr("%1: %2").arg(to(each.target), ShownText(each.when)),
                {AtJump::Engine, each.target});
    }
}

void StatePreview::MakeSound(std::int32_t sound) {
    if (context_.program.settings.Number(silentKey) == 0)
        context_.links.PlaySoundLump(sound);
}

void StatePreview::hideEvent(QHideEvent* event) {
    Stop();
    QWidget::hideEvent(event);
}

void StatePreview::showEvent(QShowEvent* event) {
    chkSound_->setChecked(context_.program.settings.Number(silentKey) == 0);
    QWidget::showEvent(event);
}

void StatePreview::changeEvent(QEvent* event) {
    if (event->type() == QEvent::PaletteChange)
        SetIcons();
    QWidget::changeEvent(event);
}

} // namespace plinket3
