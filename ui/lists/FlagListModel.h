#pragma once

#include "ui/EditorContext.h"

#include <QAbstractListModel>

namespace plinket3 {

/// The flags of one thing, as the engine configuration names them by bit, each one checkable. Flags that differ from
/// the engine's own are bold, and their tooltips say so.
class FlagListModel : public QAbstractListModel {
    Q_OBJECT
public:
    explicit FlagListModel(const EditorContext& context) : context_(context) {}

    /// The engine may have other flags now.
    void Reload();
    /// The thing whose flags are shown and stored; -1 for none.
    void ShowThing(int thing);
    /// The shown thing has other flags now.
    void FlagsChanged();
    /// Gives the shown thing the engine's own flags.
    void Restore();

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    bool setData(const QModelIndex& index, const QVariant& value, int role) override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;

private:
    bool HasThing() const;
    void StoreBits(std::int32_t bits, const std::string& stepName);

    EditorContext context_;
    int thing_ = -1;
    int count_ = 0;
};

} // namespace plinket3
