#include "ui/fields/SpriteView.h"

#include "patch/NewRecords.h"
#include "ui/LatinText.h"
#include "wad/clsBitmap.h"

#include <QPainter>

#include <algorithm>
#include <cstring>

namespace plinket3 {

namespace {

QImage ImageOf(const clsBitmap& bitmap) {
    QImage image(bitmap.Width(), bitmap.Height(), QImage::Format_Indexed8);
    QList<QRgb> colours;
    colours.reserve(static_cast<qsizetype>(bitmap.Palette().size()));
    for (const Colour& colour : bitmap.Palette())
        colours.append(qRgb(colour.red, colour.green, colour.blue));
    image.setColorTable(colours);
    for (int y = 0; y < bitmap.Height(); ++y) // the bitmap's rows run from the bottom to the top
        std::memcpy(image.scanLine(y),
                    bitmap.Pixels().data() +
                        static_cast<std::size_t>(bitmap.Height() - 1 - y) * static_cast<std::size_t>(bitmap.Stride()),
                    static_cast<std::size_t>(bitmap.Width()));
    return image;
}

/// Where a picture lump lies about the spot at which a thing stands.
QRect PlaceOf(std::string_view lump) {
    const PictureSize size = ReadPictureSize(lump);
    const PictureOffset offset = ReadPictureOffset(lump);
    return {-offset.left, -offset.top, size.width, size.height};
}

} // namespace

SpriteView::SpriteView(const QString& name) {
    setObjectName(name);
    setAccessibleName(tr("Preview"));
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
}

QString SpriteView::ShowSpriteFrame(const Session& session, std::int32_t sprite, std::int32_t frame) {
    return Draw(session, session.patch.current.SpriteName(sprite), frame);
}

QString SpriteView::Draw(const Session& session, std::string_view sprite, std::int32_t frame) {
    const auto lump = ChooseSpriteFrame(session.wads, sprite, frame);
    const std::string bytes = lump ? lump->wad->ReadLumpString(lump->num, longestPictureLump) : std::string();
    clsBitmap bitmap;
    if (!lump || !DecodePicture(bytes, session.palette, bitmap)) {
        picture_ = {};
        update();
        return {};
    }
    picture_ = ImageOf(bitmap);
    place_ = PlaceOf(bytes).topLeft();
    update();
    return ShownText(lump->name);
}

QString SpriteView::ShowState(const Session& session, const PatchSet& set, std::int32_t state) {
    const StateRecord* record = set.states.Find(state);
    if (record == nullptr) {
        Clear();
        return {};
    }
    return Draw(session, set.SpriteName(record->sprite), record->subnumber & ~litBit);
}

void SpriteView::Clear() {
    picture_ = {};
    stage_ = {};
    update();
}

QRect SpriteView::PlaceOfState(const Session& session, std::int32_t state) {
    const StateRecord record = *RecordOrNew(session.patch.current.states, state);
    const auto lump =
        ChooseSpriteFrame(session.wads, session.patch.current.SpriteName(record.sprite), record.subnumber & ~litBit);
    return lump ? PlaceOf(lump->wad->ReadLumpString(lump->num, longestPictureLump)) : QRect();
}

void SpriteView::Stage(const QRect& stage) {
    stage_ = stage;
    update();
}

void SpriteView::paintEvent(QPaintEvent*) {
    if (picture_.isNull())
        return;
    QPainter painter(this);
    // Whole device pixels per picture pixel, so that the picture is crisp at every scaling of the desktop.
    const qreal ratio = devicePixelRatioF();
    const QSize room(static_cast<int>(width() * ratio), static_cast<int>(height() * ratio));
    const QRect stage = stage_.isEmpty() ? QRect(place_, picture_.size()) : stage_;
    const int scale = std::max(1, std::min(room.width() / stage.width(), room.height() / stage.height()));
    const QPoint middle((room.width() - stage.width() * scale) / 2, (room.height() - stage.height() * scale) / 2);
    const QPoint corner = middle + (place_ - stage.topLeft()) * scale;
    painter.scale(1 / ratio, 1 / ratio);
    painter.drawImage(QRect(corner, picture_.size() * scale), picture_);
}

} // namespace plinket3
