#include "tests/support/TestSupport.h"

#include "core/Files.h"

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <random>
#include <sys/stat.h>

namespace plinket3::test {

TemporaryFolder::TemporaryFolder() {
    std::random_device random;
    do
        path_ = std::filesystem::temp_directory_path() / ("plinket3_test_" + std::to_string(random()));
    while (!std::filesystem::create_directory(path_)); // throws when it cannot
}

TemporaryFolder::~TemporaryFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
}

ExpectingNotifier::~ExpectingNotifier() { AllAsked(); }

void ExpectingNotifier::Show(MessageKind kind, std::string_view text) {
    if (expected_.empty() || expected_.front().text != text || expected_.front().kind != kind) {
        ADD_FAILURE() << "message that was not expected: " << text
                      << (expected_.empty() ? "" : "\nexpected: " + expected_.front().text);
        return;
    }
    expected_.pop_front();
}

Answer ExpectingNotifier::Ask(std::string_view question, Buttons buttons) {
    if (expected_.empty() || expected_.front().text != question || !expected_.front().answer) {
        ADD_FAILURE() << "question that was not expected: " << question
                      << (expected_.empty() ? "" : "\nexpected: " + expected_.front().text);
        return Answer::Cancel;
    }
    EXPECT_EQ(expected_.front().buttons.value_or(buttons), buttons) << question;
    const Answer answer = *expected_.front().answer;
    expected_.pop_front();
    return answer;
}

void ExpectingNotifier::Expect(MessageKind kind, std::string text) {
    expected_.push_back({std::move(text), kind, std::nullopt, std::nullopt});
}

void ExpectingNotifier::Expect(std::string question, Answer answer) {
    expected_.push_back({std::move(question), std::nullopt, answer, std::nullopt});
}

void ExpectingNotifier::Expect(std::string question, Answer answer, Buttons buttons) {
    expected_.push_back({std::move(question), std::nullopt, answer, buttons});
}

void ExpectingNotifier::AllAsked() {
    for (const Expected& missing : expected_)
        ADD_FAILURE() << "expected, but not shown: " << missing.text;
    expected_.clear();
}

std::string ReadFile(const std::filesystem::path& file) {
    std::ifstream stream(file, std::ios::binary);
    EXPECT_TRUE(stream.is_open()) << file;
    return {std::istreambuf_iterator<char>(stream), {}};
}

void WriteFile(const std::filesystem::path& file, std::string_view bytes) {
    std::ofstream stream(file, std::ios::binary);
    stream.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    ASSERT_TRUE(stream.good()) << file;
}

std::string WhyNotRead(const std::filesystem::path& file) {
    std::string bytes;
    return ReadWholeFile(file, bytes).Reason();
}

std::size_t EntriesIn(const std::filesystem::path& folder) {
    using std::filesystem::directory_iterator;
    return static_cast<std::size_t>(std::distance(directory_iterator(folder), directory_iterator()));
}

#ifdef _WIN32
void MakePipe(const std::filesystem::path&) {}
#else
void MakePipe(const std::filesystem::path& file) { ASSERT_EQ(mkfifo(file.c_str(), 0600), 0); }
#endif

} // namespace plinket3::test
