#pragma once

#include "ui/EditorContext.h"
#include "ui/fields/RecordSelection.h"

#include <QAbstractListModel>

namespace plinket3 {

/// The flags of the selected things, as the engine configuration names them by bit, each one checkable; partly checked
/// where the things differ. Flags of a single thing that differ from the engine's own are bold, and their tooltips say
/// so.
class FlagListModel : public QAbstractListModel {
    Q_OBJECT
public:
    /// `things` are those whose flags are shown and stored; it must outlive the model.
    FlagListModel(const EditorContext& context, const RecordSelection& things) : context_(context), things_(things) {}

    /// The engine may have other flags now.
    void Reload();
    /// Others are selected, or they have other flags now.
    void FlagsChanged();
    /// Gives the things the engine's own flags.
    void Restore();

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    bool setData(const QModelIndex& index, const QVariant& value, int role) override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;

private:
    const std::vector<std::int32_t>& Things() const { return things_.records; }
    template <class BitsOf> void StoreBits(const std::string& stepName, BitsOf bitsOf);

    EditorContext context_;
    const RecordSelection& things_;
    int count_ = 0;
};

} // namespace plinket3
