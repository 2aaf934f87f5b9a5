#pragma once

#include "core/Notifier.h"

#include <iostream>

namespace plinket3 {

/// For programs that run the windows without a user: prints each message and answers at once, so that things go on.
class SilentNotifier : public Notifier {
public:
    void Show(MessageKind, std::string_view text) override { std::cerr << text << '\n'; }
    Answer Ask(std::string_view, Buttons buttons) override {
        return buttons == Buttons::OkCancel ? Answer::Ok : Answer::Yes;
    }
};

} // namespace plinket3
