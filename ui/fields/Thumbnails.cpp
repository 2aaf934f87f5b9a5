#include "ui/fields/Thumbnails.h"

#include "patch/NewRecords.h"
#include "ui/LatinText.h"
#include "ui/fields/SpriteView.h"

#include <algorithm>
#include <string_view>

namespace plinket3 {

namespace {

/// Of the settings: 1 where lists are to show none.
constexpr std::string_view noneKey = "noThumbnails";
/// 1 where those of states are to have no column for them.
constexpr std::string_view noColumnKey = "noPictureColumn";
constexpr qsizetype bytesOfEntry = 200; // beside its pixels

/// Made smaller where it does not fit; a picture that fits has whole device pixels for each of its own.
QImage Fitted(const QImage& image, int most, int wholeRatio) {
    const QSize size = image.size() * wholeRatio;
    if (size.width() <= most && size.height() <= most)
        return image.scaled(size, Qt::IgnoreAspectRatio, Qt::FastTransformation);
    const QSize fitting = image.size().scaled(most, most, Qt::KeepAspectRatio).expandedTo({1, 1});
    return image.convertToFormat(QImage::Format_ARGB32_Premultiplied)
        .scaled(fitting, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
}

} // namespace

SpriteFrame FrameOfState(const PatchSet& set, std::int32_t state) {
    const StateRecord* record = set.states.Find(state);
    if (state == 0 || record == nullptr)
        return {};
    return {std::string(set.SpriteName(record->sprite)), record->subnumber & ~litBit};
}

SpriteFrame FrameOfThing(const PatchSet& set, std::int32_t thing) {
    const ThingRecord* record = set.things.Find(thing);
    return record != nullptr ? FrameOfState(set, record->initialState) : SpriteFrame();
}

bool Thumbnails::Wanted() const { return program_.settings.Number(noneKey) == 0; }

void Thumbnails::Wanted(bool wanted) {
    program_.settings.Number(noneKey, wanted ? 0 : 1);
    emit Changed();
}

bool Thumbnails::InStateLists() const { return Wanted() && program_.settings.Number(noColumnKey) == 0; }

void Thumbnails::InStateLists(bool wanted) {
    program_.settings.Number(noColumnKey, wanted ? 0 : 1);
    emit Changed();
}

QPixmap Thumbnails::Of(const SpriteFrame& frame, qreal ratio) {
    if (frame.sprite.empty())
        return {};
    const QString key = QStringLiteral("%1 %2 %3").arg(ShownText(frame.sprite)).arg(frame.frame).arg(ratio);
    if (const QPixmap* kept = cache_.object(key))
        return *kept;
    const QImage image = SpriteView::FromTheFront(program_, program_.settings, frame.sprite, frame.frame).image;
    QPixmap made;
    if (!image.isNull()) {
        made = QPixmap::fromImage(Fitted(image, static_cast<int>(side * ratio), std::max(1, static_cast<int>(ratio))));
        made.setDevicePixelRatio(ratio);
    }
    constexpr qsizetype bytesOfPixel = 4;
    cache_.insert(key, new QPixmap(made), bytesOfEntry + bytesOfPixel * made.width() * made.height());
    return made;
}

void Thumbnails::Clear() {
    cache_.clear();
    emit Changed();
}

} // namespace plinket3
