#pragma once

#include "core/Notifier.h"

#include <deque>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace plinket3::test {

/// A folder of its own for each test, gone at its end.
class TemporaryFolder {
public:
    TemporaryFolder();
    ~TemporaryFolder();
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;
    const std::filesystem::path& Path() const { return path_; }
    std::filesystem::path operator/(std::string_view name) const { return (path_ / name).make_preferred(); }

private:
    std::filesystem::path path_;
};

/// Expects each message and question in its order; one that was not expected, or that did not come, fails the test.
class ExpectingNotifier : public Notifier {
public:
    ~ExpectingNotifier() override;
    void Show(MessageKind kind, std::string_view text) override;
    Answer Ask(std::string_view question, Buttons buttons) override;

    void Expect(MessageKind kind, std::string text);
    void Expect(std::string question, Answer answer);
    /// The same, and the question must offer these buttons.
    void Expect(std::string question, Answer answer, Buttons buttons);
    /// Fails the test when an expected message has not come; the destructor does the same.
    void AllAsked();

private:
    struct Expected {
        std::string text;
        std::optional<MessageKind> kind;
        std::optional<Answer> answer;
        std::optional<Buttons> buttons;
    };
    std::deque<Expected> expected_;
};

std::string ReadFile(const std::filesystem::path& file);
void WriteFile(const std::filesystem::path& file, std::string_view bytes);
/// What the system says of a file that cannot be read, as each has its own words.
std::string WhyNotRead(const std::filesystem::path& file);
std::size_t EntriesIn(const std::filesystem::path& folder);
/// A pipe with a name; nothing where the system has none.
void MakePipe(const std::filesystem::path& file);

} // namespace plinket3::test
