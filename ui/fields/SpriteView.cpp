#include "ui/fields/SpriteView.h"

#include "patch/NewRecords.h"
#include "wad/SpriteSides.h"

#include <QKeyEvent>
#include <QPainter>
#include <QToolButton>

#include <algorithm>

namespace plinket3 {

namespace {

/// Of the settings: 1 where pictures are wanted on black.
constexpr std::string_view plainKey = "plainPictures";
constexpr int margin = 2;
constexpr int tile = 8;          // of the checkerboard
constexpr int tileStrength = 16; // how much its dark tiles differ from the background, of 255
constexpr int floorStrength = 110;

} // namespace

SpriteView::SpriteView(const QString& name, const Program& program)
    : program_(program), cmdTurnLeft_(NewTurnButton("cmdTurnLeft", QStringLiteral("<"), tr("Turn to the left (<)"), 1)),
      cmdTurnRight_(NewTurnButton("cmdTurnRight", QStringLiteral(">"), tr("Turn to the right (>)"), -1)) {
    setObjectName(name);
    setAccessibleName(tr("Preview"));
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
    setFocusPolicy(Qt::ClickFocus);
}

QToolButton* SpriteView::NewTurnButton(const char* name, const QString& text, const QString& tip, int sides) {
    auto* button = new QToolButton(this);
    button->setObjectName(QString::fromLatin1(name));
    button->setText(text);
    button->setToolTip(tip);
    button->setAccessibleName(tip);
    button->setAutoRaise(true);
    button->setFocusPolicy(Qt::StrongFocus);
    button->hide();
    connect(button, &QToolButton::clicked, this, [this, sides] { Turn(sides); });
    return button;
}

bool SpriteView::GamePictures(const Settings& settings) { return settings.Number(plainKey) == 0; }

void SpriteView::GamePictures(Settings& settings, bool wanted) { settings.Number(plainKey, wanted ? 0 : 1); }

void SpriteView::Redraw() { Draw(); }

QString SpriteView::ShowSpriteFrame(std::int32_t sprite, std::int32_t frame) {
    return Show(program_.patch.current.SpriteName(sprite), frame);
}

QString SpriteView::ShowState(const PatchSet& set, std::int32_t state) {
    const StateRecord* record = set.states.Find(state);
    if (record == nullptr) {
        Clear();
        return {};
    }
    return Show(set.SpriteName(record->sprite), record->subnumber & ~litBit);
}

void SpriteView::Clear() {
    stage_ = {};
    Show({}, 0);
}

QString SpriteView::Show(std::string_view sprite, std::int32_t frame) {
    sprite_ = sprite;
    frame_ = frame;
    return Draw();
}

QString SpriteView::Draw() {
    picture_ = sprite_.empty()                   ? SpriteImage()
               : GamePictures(program_.settings) ? GameSprite(program_, sprite_, frame_, side_)
                                                 : PlainSprite(program_, sprite_, frame_);
    cmdTurnLeft_->setVisible(picture_.turns);
    cmdTurnRight_->setVisible(picture_.turns);
    setAccessibleDescription(picture_.missing);
    update();
    return picture_.lump;
}

QRect SpriteView::PlaceOfState(std::int32_t state) const {
    const StateRecord record = *RecordOrNew(program_.patch.current.states, state);
    return PlaceOfSprite(program_, program_.patch.current.SpriteName(record.sprite), record.subnumber & ~litBit);
}

void SpriteView::Stage(const QRect& stage) {
    stage_ = stage;
    update();
}

void SpriteView::Turn(int sides) {
    side_ = (side_ - 1 + sides + spriteSides) % spriteSides + 1;
    emit Turned(Draw());
}

void SpriteView::keyPressEvent(QKeyEvent* event) {
    const bool turns = !cmdTurnLeft_->isHidden();
    if (turns && event->text() == cmdTurnLeft_->text())
        cmdTurnLeft_->click();
    else if (turns && event->text() == cmdTurnRight_->text())
        cmdTurnRight_->click();
    else
        QWidget::keyPressEvent(event);
}

void SpriteView::resizeEvent(QResizeEvent*) {
    for (QToolButton* button : {cmdTurnLeft_, cmdTurnRight_})
        button->resize(button->sizeHint());
    const int top = height() - cmdTurnLeft_->height();
    cmdTurnLeft_->move(0, top);
    cmdTurnRight_->move(width() - cmdTurnRight_->width(), top);
}

/// What has to have room, in the picture's pixels: as in the game the floor, too, unless the picture is meant for
/// another spot, far away.
QRect SpriteView::ShownStage() const {
    const QRect picture(picture_.place, picture_.image.size());
    if (!GamePictures(program_.settings))
        return stage_.isEmpty() ? picture : stage_;
    const QRect stage = stage_.isEmpty() ? picture : stage_ | picture;
    const QRect withFloor = stage | QRect(stage.left(), 0, 1, 1);
    return withFloor.height() > 2 * stage.height() ? stage : withFloor;
}

void SpriteView::PaintBackground(QPainter& painter, const QRect& room) const {
    QColor dark = palette().color(QPalette::WindowText);
    painter.fillRect(room, palette().color(QPalette::Window));
    dark.setAlpha(tileStrength);
    for (int y = 0; y * tile < room.height(); ++y)
        for (int x = y % 2; x * tile < room.width(); x += 2)
            painter.fillRect(QRect(x * tile, y * tile, tile, tile) & room, dark);
}

void SpriteView::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    const bool asInTheGame = GamePictures(program_.settings);
    if (asInTheGame && !sprite_.empty())
        PaintBackground(painter, rect());
    if (!picture_.missing.isEmpty())
        painter.drawText(rect().adjusted(margin, margin, -margin, -margin), Qt::AlignCenter | Qt::TextWordWrap,
                         picture_.missing);
    if (picture_.image.isNull())
        return;
    // Whole device pixels per picture pixel, so that the picture is crisp at every scaling of the desktop.
    const qreal ratio = devicePixelRatioF();
    const int shownHeight = height() - (asInTheGame ? cmdTurnLeft_->height() : 0); // the buttons cover no picture
    const QSize room(static_cast<int>(width() * ratio), static_cast<int>(shownHeight * ratio));
    const QRect stage = ShownStage();
    const int scale = std::max(1, std::min(room.width() / stage.width(), room.height() / stage.height()));
    const QPoint middle((room.width() - stage.width() * scale) / 2, (room.height() - stage.height() * scale) / 2);
    const QPoint corner = middle + (picture_.place - stage.topLeft()) * scale;
    painter.scale(1 / ratio, 1 / ratio);
    if (asInTheGame) {
        QColor floor = palette().color(QPalette::WindowText);
        floor.setAlpha(floorStrength);
        painter.fillRect(0, middle.y() - stage.top() * scale, room.width(), std::max(1, static_cast<int>(ratio)),
                         floor);
    }
    painter.drawImage(QRect(corner, picture_.image.size() * scale), picture_.image);
}

} // namespace plinket3
