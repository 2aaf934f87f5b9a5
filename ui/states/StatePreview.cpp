#include "ui/states/StatePreview.h"

#include "patch/StateUse.h"

#include <QVBoxLayout>

namespace plinket3 {

StatePreview::StatePreview(const Program& program)
    : QGroupBox(tr("Preview")), program_(program), picSprite_(new SpriteView(QStringLiteral("picSprite"), program)),
      lblPreview_(new QLabel), cmdPlay_(new QPushButton), player_(new StatePlayer(program, this)) {
    lblPreview_->setObjectName(QStringLiteral("lblPreview"));
    lblPreview_->setAlignment(Qt::AlignCenter);
    cmdPlay_->setObjectName(QStringLiteral("cmdPlay"));
    cmdPlay_->setToolTip(tr("Shows this state and those that follow it, 35 tics a second"));
    connect(cmdPlay_, &QPushButton::clicked, this, &StatePreview::PlayOrStop);
    connect(picSprite_, &SpriteView::Turned, this, &StatePreview::NameLump);
    connect(player_, &StatePlayer::StateShown, this, &StatePreview::Draw);
    connect(player_, &StatePlayer::Stopped, this, [this] { cmdPlay_->setText(tr("&Play")); });
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(picSprite_, 1);
    layout->addWidget(lblPreview_);
    layout->addWidget(cmdPlay_);
    ShowState(std::nullopt);
    cmdPlay_->setText(tr("&Play"));
}

void StatePreview::ShowState(std::optional<std::int32_t> state) {
    player_->Stop();
    picSprite_->Stage({});
    state_ = state;
    cmdPlay_->setEnabled(state_.value_or(0) != 0);
    Update();
}

void StatePreview::Update() {
    if (player_->IsPlaying())
        return; // the next state shows what is stored now
    if (state_) {
        owner_ = OwnerOfState(program_.patch.current, program_.engine, *state_);
        Draw(*state_);
    } else {
        picSprite_->Clear();
        lblPreview_->setText(QStringLiteral("-"));
    }
}

void StatePreview::Draw(std::int32_t state) {
    shown_ = state;
    NameLump(picSprite_->ShowState(state, owner_));
}

void StatePreview::NameLump(const QString& lump) {
    lblPreview_->setText(tr("%1: %2").arg(shown_).arg(lump.isEmpty() ? QStringLiteral("-") : lump));
}

void StatePreview::PlayOrStop() {
    if (player_->IsPlaying()) {
        player_->Stop();
        picSprite_->Stage({});
        Update();
    } else if (state_) {
        cmdPlay_->setText(tr("Sto&p"));
        QRect stage;
        for (const std::int32_t state : player_->Run(*state_))
            stage |= picSprite_->PlaceOfState(state);
        picSprite_->Stage(stage);
        player_->Start(*state_);
    }
}

void StatePreview::hideEvent(QHideEvent* event) {
    player_->Stop();
    QGroupBox::hideEvent(event);
}

} // namespace plinket3
