#pragma once

#include "ui/lists/RecordTableModel.h"

namespace plinket3 {

/// The sound that is played in a sound's place as labels show it: its name, "-" for none, the address when it is no
/// sound's.
QString ReferenceText(const Session& session, const SoundRecord& sound);

/// The sounds in their order.
class SoundsModel : public RecordTableModel {
    Q_OBJECT
public:
    explicit SoundsModel(const EditorContext& context) : RecordTableModel(context, RecordKind::Sound) {}

protected:
    int Columns() const override;
    QString Header(int column) const override;
    QString HeaderTip(int column) const override;
    QString Text(const PatchSet& set, std::int32_t record, int column) const override;
    QString SearchText(std::int32_t record) const override;
    bool IsNumber(int column) const override;
    QString PlainTip(std::int32_t record, int column) const override;
};

} // namespace plinket3
