#pragma once

#include <string_view>

namespace plinket3 {

/// The icon of a message box. Critical is always followed by the end of the program.
enum class MessageKind { Critical, Exclamation, Information };

/// The first is what the Return key chooses: `NoYes` is for what cannot be taken back.
enum class Buttons { YesNo, NoYes, YesNoCancel, OkCancel };
enum class Answer { Yes, No, Ok, Cancel };

/// How everything below the windows speaks to the user. The windows show message boxes, the command line prints,
/// tests expect each message.
class Notifier {
public:
    virtual ~Notifier() = default;

    /// Shows a message; returns when the user has read it. `text` is Latin-1 or ASCII.
    virtual void Show(MessageKind kind, std::string_view text) = 0;

    /// Asks a question and returns one of the answers that `buttons` offers.
    virtual Answer Ask(std::string_view question, Buttons buttons) = 0;
};

} // namespace plinket3
