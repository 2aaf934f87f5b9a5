#pragma once

#include "ui/lists/LumpNamesModel.h"

#include <map>
#include <string>

namespace plinket3 {

/// The sprites, each with the number of lumps that the WADs have for it.
class SpritesModel : public LumpNamesModel {
    Q_OBJECT
public:
    explicit SpritesModel(const EditorContext& context);

    void Reset() override;

protected:
    QString HeaderTip(int column) const override;
    QString Lumps(const std::string& name) const override;
    bool IsNumber(int column) const override;

private:
    std::map<std::string, int, std::less<>> lumps_; // how many, by the names of sprites
};

} // namespace plinket3
