#pragma once

#include "patch/Program.h"

#include <QCache>
#include <QObject>
#include <QPixmap>

#include <cstdint>
#include <string>

namespace plinket3 {

/// A picture of a sprite; `frame` counts from 0 and has no lit bit.
struct SpriteFrame {
    std::string sprite; // empty: none
    std::int32_t frame = 0;
    bool operator==(const SpriteFrame&) const = default;
};
/// That of a state; none for state 0 and for one that there is not.
SpriteFrame FrameOfState(const PatchSet& set, std::int32_t state);
/// That of the state in which a thing appears.
SpriteFrame FrameOfThing(const PatchSet& set, std::int32_t thing);

/// Small pictures of sprites for lists, each made when it is first drawn and kept while there is room.
class Thumbnails : public QObject {
    Q_OBJECT
public:
    static constexpr int side = 24; // of the square that each fits into, at 100 %
    static constexpr qsizetype mostBytes = 16'000'000;

    /// `program` must outlive them.
    explicit Thumbnails(Program& program) : program_(program) {}

    /// Whether lists are to show them, by the settings.
    bool Wanted() const;
    void Wanted(bool wanted);

    /// Whether lists of states have a column for them.
    bool InStateLists() const;
    void InStateLists(bool wanted);

    /// No wider and no higher than the square on a screen of that pixel ratio; as the settings want pictures. Null
    /// where there is none.
    QPixmap Of(const SpriteFrame& frame, qreal ratio);
    /// The session, its WADs or the way of pictures are others now.
    void Clear();

    /// What is kept.
    qsizetype Bytes() const { return cache_.totalCost(); }

signals:
    /// Lists are to be laid out and drawn anew.
    void Changed();

private:
    Program& program_;
    QCache<QString, QPixmap> cache_{mostBytes};
};

} // namespace plinket3
