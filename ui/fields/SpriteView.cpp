#include "ui/fields/SpriteView.h"

#include "patch/NewRecords.h"
#include "patch/ThingLook.h"
#include "ui/fields/WeaponScreen.h"
#include "wad/SpriteSides.h"

#include <QKeyEvent>
#include <QPainter>
#include <QSlider>
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
constexpr int lightStep = 16; // of a sector's light: games tell no less apart
constexpr int widestSlider = 160;

} // namespace

SpriteView::SpriteView(const QString& name, const Program& program)
    : program_(program), cmdTurnLeft_(NewTurnButton("cmdTurnLeft", QStringLiteral("<"), tr("Turn to the left (<)"), 1)),
      cmdTurnRight_(NewTurnButton("cmdTurnRight", QStringLiteral(">"), tr("Turn to the right (>)"), -1)),
      sldLight_(new QSlider(Qt::Horizontal, this)) {
    setObjectName(name);
    setAccessibleName(tr("Preview"));
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
    setFocusPolicy(Qt::ClickFocus);
    sldLight_->setObjectName(QStringLiteral("sldLight"));
    sldLight_->setAccessibleName(tr("Light level"));
    sldLight_->setRange(0, fullLight);
    sldLight_->setSingleStep(lightStep);
    sldLight_->setPageStep(4 * lightStep);
    sldLight_->setValue(fullLight);
    sldLight_->hide();
    const auto tell = [this](int light) {
        sldLight_->setToolTip(tr("Light of the sector: %1. What is lit does not darken.").arg(light));
    };
    tell(fullLight);
    connect(sldLight_, &QSlider::valueChanged, this, [this, tell](int light) {
        tell(light);
        Draw();
    });
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

SpriteImage SpriteView::FromTheFront(const Session& session, const Settings& settings, std::string_view sprite,
                                     std::int32_t frame, const GameLook& look) {
    constexpr int front = 1;
    return GamePictures(settings) ? GameSprite(session, sprite, frame, front, look)
                                  : PlainSprite(session, sprite, frame);
}

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
    return Show(set.SpriteName(record->sprite), record->subnumber & ~litBit, LookOf(program_.engine, nullptr, *record));
}

QString SpriteView::ShowState(std::int32_t state, std::optional<Target> owner) {
    const PatchSet& set = program_.patch.current;
    const StateRecord* record = set.states.Find(state);
    if (record == nullptr || !owner)
        return ShowState(set, state);
    const bool ofThing = owner->kind == TargetKind::Thing;
    return Show(set.SpriteName(record->sprite), record->subnumber & ~litBit,
                LookOf(program_.engine, ofThing ? set.things.Find(owner->number) : nullptr, *record),
                ofThing ? std::nullopt : std::optional(WeaponState{owner->number, state}));
}

void SpriteView::Clear() {
    stage_ = {};
    Show({}, 0);
}

QString SpriteView::Show(std::string_view sprite, std::int32_t frame, const GameLook& look,
                         std::optional<WeaponState> weapon) {
    sprite_ = sprite;
    frame_ = frame;
    look_ = look;
    weapon_ = weapon;
    return Draw();
}

SpriteImage SpriteView::Made() const {
    if (sprite_.empty())
        return {};
    if (!GamePictures(program_.settings))
        return PlainSprite(program_, sprite_, frame_);
    return weapon_ ? WeaponScreen(program_, weapon_->weapon, weapon_->state, sldLight_->value())
                   : GameSprite(program_, sprite_, frame_, side_, look_, sldLight_->value());
}

QString SpriteView::Draw() {
    picture_ = Made();
    cmdTurnLeft_->setVisible(picture_.turns);
    cmdTurnRight_->setVisible(picture_.turns);
    sldLight_->setVisible(GamePictures(program_.settings) && !picture_.image.isNull());
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
    const int between = width() - cmdTurnLeft_->width() - cmdTurnRight_->width();
    sldLight_->resize(std::clamp(between, 0, widestSlider), cmdTurnLeft_->height());
    sldLight_->move((width() - sldLight_->width()) / 2, top);
}

/// What has to have room, in the picture's pixels: as in the game the floor, too, unless the picture is meant for
/// another spot, far away.
QRect SpriteView::ShownStage() const {
    const QRect picture(picture_.place, picture_.image.size());
    if (picture_.screen)
        return picture;
    if (!GamePictures(program_.settings))
        return stage_.isEmpty() ? picture : stage_;
    const QRect stage = stage_.isEmpty() ? picture : stage_ | picture;
    const QRect withFloor = stage | QRect(stage.left(), 0, 1, 1);
    return withFloor.height() > 2 * stage.height() ? stage : withFloor;
}

QColor SpriteView::TileColour(bool dark) const {
    const QColor light = palette().color(QPalette::Window), text = palette().color(QPalette::WindowText);
    const auto mixed = [](int one, int other) { return one + (other - one) * tileStrength / 255; };
    return dark ? QColor(mixed(light.red(), text.red()), mixed(light.green(), text.green()),
                         mixed(light.blue(), text.blue()))
                : light;
}

QRegion SpriteView::DarkTiles() const {
    QRegion tiles;
    for (int y = 0; y * tile < height(); ++y)
        for (int x = y % 2; x * tile < width(); x += 2)
            tiles += QRect(x * tile, y * tile, tile, tile);
    return tiles;
}

void SpriteView::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    const bool asInTheGame = GamePictures(program_.settings);
    const QRegion darkTiles = asInTheGame && !sprite_.empty() ? DarkTiles() : QRegion();
    if (!darkTiles.isEmpty()) {
        painter.fillRect(rect(), TileColour(false));
        painter.setClipRegion(darkTiles);
        painter.fillRect(rect(), TileColour(true));
        painter.setClipping(false);
    }
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
    if (picture_.screen && (stage.width() > room.width() || stage.height() > room.height())) {
        const QSize size = stage.size().scaled(room, Qt::KeepAspectRatio);
        painter.scale(1 / ratio, 1 / ratio);
        painter.setRenderHint(QPainter::SmoothPixmapTransform);
        painter.drawImage(QRect(QPoint((room.width() - size.width()) / 2, (room.height() - size.height()) / 2), size),
                          picture_.image);
        return;
    }
    const int scale = std::max(1, std::min(room.width() / stage.width(), room.height() / stage.height()));
    const QPoint middle((room.width() - stage.width() * scale) / 2, (room.height() - stage.height() * scale) / 2);
    const QPoint corner = middle + (picture_.place - stage.topLeft()) * scale;
    const QRect place(corner, picture_.image.size() * scale);
    if (picture_.glass)
        for (const bool dark : {false, true}) {
            painter.save();
            painter.setClipRegion(dark ? darkTiles : QRegion(rect()) - darkTiles);
            painter.scale(1 / ratio, 1 / ratio);
            painter.drawImage(place, GlassOver(program_, *picture_.glass, TileColour(dark).rgb()));
            painter.restore();
        }
    painter.scale(1 / ratio, 1 / ratio);
    if (asInTheGame && !picture_.screen) {
        QColor floor = palette().color(QPalette::WindowText);
        floor.setAlpha(floorStrength);
        painter.fillRect(0, middle.y() - stage.top() * scale, room.width(), std::max(1, static_cast<int>(ratio)),
                         floor);
    }
    if (!picture_.glass)
        painter.drawImage(place, picture_.image);
}

} // namespace plinket3
