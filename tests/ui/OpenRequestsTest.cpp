#include "ui/OpenRequests.h"
#include "core/Paths.h"
#include "tests/support/TestSupport.h"

#include <QDialog>
#include <QTest>

#include <gtest/gtest.h>

#include <atomic>
#include <thread>

namespace plinket3::test {
namespace {

using namespace std::chrono_literals;

TEST(OpenRequestsTest, AreTakenByTheOneWhoListens) {
    const TemporaryFolder folder;
    const std::filesystem::path file = PathOf(std::string("mods/H\xc3\xb6lle \xe2\x82\xac.deh"));
    OpenRequests first(folder.Path()), second(folder.Path());
    std::vector<std::filesystem::path> wanted;
    QObject::connect(&first, &OpenRequests::Wanted, [&wanted](const auto& path) { wanted.push_back(path); });
    const auto handedOver = [&second, &file](std::chrono::milliseconds patience) {
        bool taken = false;
        std::atomic<bool> ended = false;
        std::thread other([&] {
            taken = second.HandOver(file, patience);
            ended = true;
        });
        EXPECT_TRUE(QTest::qWaitFor([&ended] { return ended.load(); }, 10'000));
        other.join();
        return taken;
    };
    EXPECT_FALSE(handedOver(5s)) << "nobody listens";
    first.Listen();
    second.Listen(); // too late
    EXPECT_TRUE(handedOver(5s));
    EXPECT_EQ(wanted, std::vector{std::filesystem::absolute(file)});

    QDialog dialog;
    dialog.setModal(true);
    dialog.show();
    EXPECT_FALSE(handedOver(500ms)) << "a dialog waits for an answer";
    dialog.close();
    EXPECT_TRUE(std::filesystem::is_empty(folder / "open"));
    EXPECT_TRUE(handedOver(5s));
    QTest::qWait(500);
    EXPECT_EQ(wanted.size(), 2U) << "what was given up is not opened later";
}

} // namespace
} // namespace plinket3::test
