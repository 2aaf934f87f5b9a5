#pragma once

#include "core/modConfig.h"

#include <QComboBox>

#include <cstdint>
#include <optional>

namespace plinket3 {

/// The engine's actions as a list into which one may also type a name. Actions whose name or description holds what is
/// typed are offered; Enter takes the only one.
class ActionBox : public QComboBox {
    Q_OBJECT
public:
    ActionBox(const QString& name, const QString& accessibleName, const EngineConfiguration& engine);

    /// Lists the actions of the engine, which is another one.
    void Fill();
    /// Selects the action with this code pointer value; none, or one that the engine does not name, selects nothing.
    void ShowAction(std::optional<std::int32_t> value);
    /// Whether the user has typed a name that was not yet taken or refused.
    bool IsTyping() const;
    std::int32_t ValueOf(int entry) const { return engine_.actions[static_cast<std::size_t>(entry)].value; }

signals:
    /// The user has chosen an entry.
    void Chosen(int entry);
    /// The user has typed the name of an entry and gone elsewhere.
    void Named(int entry);
    /// The user has typed what is no entry's name.
    void Unknown();

protected:
    void focusOutEvent(QFocusEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;

private:
    int TypedEntry() const;
    int OnlyMatch() const;
    void TakeTyped();

    const EngineConfiguration& engine_;
};

} // namespace plinket3
