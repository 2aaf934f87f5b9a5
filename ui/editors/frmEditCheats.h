#pragma once

#include "patch/modTableDef.h"
#include "ui/editors/EditorWindow.h"

#include <array>

class QLineEdit;

namespace plinket3 {

/// Edits the texts of the cheat codes.
class frmEditCheats : public EditorWindow {
    Q_OBJECT
public:
    explicit frmEditCheats(const EditorContext& context);

    /// The cheat in whose box the focus was last.
    std::optional<std::int32_t> CurrentRecord() const override;

protected:
    bool SelectRecord(std::int32_t cheat) override;
    void Build() override;
    void fillStaticData() override;
    void updateForm() override;
    void ShowCells(const std::vector<Cell>& cells) override;

private:
    void Store(std::size_t cheat);
    void Update(std::size_t cheat);
    void RestoreAll();

    std::array<QLineEdit*, cheatLabels.size()> boxes_{};
};

} // namespace plinket3
