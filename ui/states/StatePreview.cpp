#include "ui/states/StatePreview.h"

#include <QVBoxLayout>

namespace plinket3 {

StatePreview::StatePreview(const Session& session)
    : QGroupBox(tr("Preview")), session_(session), picSprite_(new SpriteView(QStringLiteral("picSprite"))),
      lblPreview_(new QLabel), cmdPlay_(new QPushButton), player_(new StatePlayer(session, this)) {
    lblPreview_->setObjectName(QStringLiteral("lblPreview"));
    lblPreview_->setAlignment(Qt::AlignCenter);
    cmdPlay_->setObjectName(QStringLiteral("cmdPlay"));
    cmdPlay_->setToolTip(tr("Shows this state and those that follow it, 35 tics a second"));
    connect(cmdPlay_, &QPushButton::clicked, this, &StatePreview::PlayOrStop);
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
        Draw(*state_);
    } else {
        picSprite_->Clear();
        lblPreview_->setText(QStringLiteral("-"));
    }
}

void StatePreview::Draw(std::int32_t state) {
    const QString lump = picSprite_->ShowState(session_, state);
    lblPreview_->setText(tr("%1: %2").arg(state).arg(lump.isEmpty() ? QStringLiteral("-") : lump));
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
            stage |= SpriteView::PlaceOfState(session_, state);
        picSprite_->Stage(stage);
        player_->Start(*state_);
    }
}

void StatePreview::hideEvent(QHideEvent* event) {
    player_->Stop();
    QGroupBox::hideEvent(event);
}

} // namespace plinket3
