#pragma once

#include "ui/lists/LumpNamesModel.h"

namespace plinket3 {

/// The music, each piece with whether the WADs have its lump.
class MusicModel : public LumpNamesModel {
    Q_OBJECT
public:
    explicit MusicModel(const EditorContext& context);

protected:
    QString HeaderTip(int column) const override;
    QString Lumps(const std::string& name) const override;
    bool IsNumber(int column) const override;
};

} // namespace plinket3
