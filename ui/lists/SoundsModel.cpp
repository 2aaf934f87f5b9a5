#include "ui/lists/SoundsModel.h"

#include "patch/Links.h"
#include "patch/NewRecords.h"
#include "ui/LatinText.h"

#include <array>

namespace plinket3 {

namespace {

struct Column {
    const char* header;
    const char* tip;
    std::int32_t SoundRecord::*member = nullptr;
    bool isFlag = false; // shows whether it is 1
};
constexpr int indexColumn = 0, nameColumn = 1;
constexpr std::array columns{
    Column{"#", QT_TRANSLATE_NOOP("SoundsModel", "Index in the engine's table")},
    Column{"Name", QT_TRANSLATE_NOOP("SoundsModel", "Name of the lump without its prefix")},
    Column{"Offset", QT_TRANSLATE_NOOP("SoundsModel", "Where the engine keeps the name"), &SoundRecord::offset},
    Column{"Sng", QT_TRANSLATE_NOOP("SoundsModel", "Singularity: only one of these is heard at a time"),
           &SoundRecord::zeroOne, true},
    Column{"Pri", QT_TRANSLATE_NOOP("SoundsModel", "Priority"), &SoundRecord::value},
    Column{"Refer", QT_TRANSLATE_NOOP("SoundsModel", "Address of the sound that is played in its place"),
           &SoundRecord::zero1},
    Column{"Pitch", QT_TRANSLATE_NOOP("SoundsModel", "Pitch of the sound that is played in its place"),
           &SoundRecord::negOne1},
    Column{"Vol", QT_TRANSLATE_NOOP("SoundsModel", "Volume of the sound that is played in its place"),
           &SoundRecord::negOne2},
};

const Column& ColumnAt(int column) { return columns[static_cast<std::size_t>(column)]; }

} // namespace

QString ReferenceText(const Session& session, const SoundRecord& sound) {
    const std::optional<std::int32_t> referenced = ReferencedSound(session.engine, sound);
    if (!referenced)
        return QStringLiteral("-");
    const QString name = ShownText(session.patch.current.SoundName(*referenced));
    return name.isEmpty() ? QObject::tr("no sound (address %1)").arg(sound.zero1) : name;
}

int SoundsModel::Columns() const { return static_cast<int>(columns.size()); }

QString SoundsModel::Header(int column) const { return tr(ColumnAt(column).header); }

QString SoundsModel::HeaderTip(int column) const { return tr(ColumnAt(column).tip); }

QString SoundsModel::Text(const PatchSet& set, std::int32_t record, int column) const {
    if (column == indexColumn)
        return QString::number(record);
    if (column == nameColumn)
        return ShownText(set.SoundName(record));
    const std::int32_t value = (*RecordOrNew(set.sounds, record)).*ColumnAt(column).member;
    if (ColumnAt(column).isFlag)
        return value == 1 ? tr("Yes") : tr("No");
    return QString::number(value);
}

QString SoundsModel::SearchText(std::int32_t record) const {
    return Text(Current(), record, indexColumn) + ' ' + Text(Current(), record, nameColumn);
}

bool SoundsModel::IsNumber(int column) const { return column != nameColumn && !ColumnAt(column).isFlag; }

QString SoundsModel::PlainTip(std::int32_t record, int column) const {
    const SoundRecord sound = *RecordOrNew(Current().sounds, record);
    return ColumnAt(column).member == &SoundRecord::zero1 && sound.zero1 != 0 ? ReferenceText(context_.program, sound)
                                                                              : QString();
}

} // namespace plinket3
