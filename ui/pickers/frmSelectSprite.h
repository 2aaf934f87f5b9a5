#pragma once

#include "ui/EditorContext.h"
#include "ui/lists/RecordRows.h"
#include "ui/pickers/PickerDialog.h"

#include <QLabel>
#include <QListView>
#include <QSortFilterProxyModel>

#include <optional>

namespace plinket3 {

class FrameSpinBox;
class SpriteView;
class TextListModel;
class Thumbnails;

/// Lets the user pick a frame of a sprite, and shows it.
class frmSelectSprite : public PickerDialog {
    Q_OBJECT
public:
    frmSelectSprite(Program& program, Thumbnails& thumbnails, QWidget* parent);

    /// Starts at `start` and keeps its lit bit; nothing when the user cancels.
    std::optional<EditorLinks::SpriteChoice> Choose(EditorLinks::SpriteChoice start);

protected:
    void Fill() override;
    void Narrow(const QString& text) override;
    void RowSelected(const QModelIndex& row) override;

private:
    std::optional<std::int32_t> ChosenSprite() const;
    void ShowPreview();
    void NameLump(const QString& lump);

    RecordRows sprites_;
    TextListModel* names_;
    QSortFilterProxyModel* narrowed_;
    QListView* lstSprites_;
    FrameSpinBox* udFrame_;
    SpriteView* picPreview_;
    QLabel* lblPreview_;
};

} // namespace plinket3
