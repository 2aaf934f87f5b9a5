#pragma once

#include "core/Notifier.h"

namespace plinket3 {

/// Message boxes with the program's title over the window in front.
class QtNotifier : public Notifier {
public:
    void Show(MessageKind kind, std::string_view text) override;
    Answer Ask(std::string_view question, Buttons buttons) override;
};

} // namespace plinket3
