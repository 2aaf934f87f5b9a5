#pragma once

#include "ui/lists/RecordTableModel.h"

#include <map>
#include <string>

namespace plinket3 {

/// The sprites in their order, each with the number of lumps that the WADs have for it.
class SpritesModel : public RecordTableModel {
    Q_OBJECT
public:
    explicit SpritesModel(const EditorContext& context) : RecordTableModel(context, RecordKind::Sprite) {}

    void Reset() override;

protected:
    int Columns() const override;
    QString Header(int column) const override;
    QString HeaderTip(int column) const override;
    QString Text(const PatchSet& set, std::int32_t record, int column) const override;
    bool HasOtherValue(std::int32_t record, int column) const override;
    QString SearchText(std::int32_t record) const override;
    bool IsNumber(int column) const override;

private:
    std::map<std::string, int, std::less<>> lumps_; // how many, by the names of sprites
};

} // namespace plinket3
