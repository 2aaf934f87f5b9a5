#include "ui/WindowState.h"
#include "tests/support/TestSupport.h"

#include <gtest/gtest.h>

namespace plinket3 {
namespace {

TEST(WindowState, WhatWasNotWrittenWholeIsAsIfItWereNotThere) {
    const test::TemporaryFolder folder;
    const QMap<QString, QByteArray> states{
        {"a/geometry", QByteArray("\0\1\xff\n= x", 7)}, {"a/list", QByteArray(40, '\0')}, {"b", "none"}};
    {
        WindowState first(folder.Path()), second(folder.Path());
        first.Bytes("a/geometry", states["a/geometry"]);
        first.Bytes("b", "some");
        first.Write();
        second.Bytes("a/list", states["a/list"]);
        second.Bytes("b", states["b"]);
        second.Write();
    }
    const std::string whole = test::ReadFile(folder / "windows.ini");
    const auto found = [&](std::string_view bytes) {
        test::WriteFile(folder / "windows.ini", bytes);
        const WindowState state(folder.Path());
        int read = 0;
        for (const QString& key : states.keys()) {
            read += state.Bytes(key).isEmpty() ? 0 : 1;
            EXPECT_TRUE(state.Bytes(key).isEmpty() || state.Bytes(key) == states[key]) << bytes;
        }
        return read;
    };
    EXPECT_EQ(found(whole), 3) << "also those of two programs that ran at the same time";
    for (std::size_t at = whole.find('\n'); at + 1 < whole.size(); ++at) {
        std::string damaged = whole;
        damaged[at] ^= at % 2 == 0 ? '\x01' : '\x20';
        EXPECT_LT(found(damaged), 3) << at;
    }
    EXPECT_EQ(found(whole.substr(0, whole.size() - 2)), 2);
    EXPECT_EQ(found(std::string(2'000'000, 'a') + '\n' + whole), 0) << "too large a file is not even read";
}

} // namespace
} // namespace plinket3
