#include "ui/FileDialogs.h"
#include "core/modConfig.h"
#include "tests/support/TestSupport.h"
#include "tests/ui/ModalDriver.h"
#include "ui/LatinText.h"
#include "ui/QtNotifier.h"

#include <gtest/gtest.h>

#include <QFileDialog>
#include <QLineEdit>

#include <optional>
#include <utility>

namespace plinket3 {
namespace {

/// Types a name into the toolkit's dialog and accepts it.
std::function<void(QDialog&)> TypeName(const char* name) {
    return [name](QDialog& dialog) {
        auto* box = dialog.findChild<QLineEdit*>("fileNameEdit");
        ASSERT_NE(box, nullptr);
        box->setText(QString::fromLatin1(name));
        dialog.accept();
    };
}

TEST(FileDialogs, AFileThatExistsIsAskedAboutUnderTheNameThatItWillHave) {
    const test::TemporaryFolder folder;
    test::WriteFile(folder / "there.deh", "");
    test::ExpectingNotifier notifier;
    Settings settings;
    settings.Text("lastDir", folder.Path().string());
    QtFileDialogs dialogs(settings, notifier);
    const struct {
        const char *typed, *askedAbout, *typedAfterNo, *saved;
    } rows[]{{"new", nullptr, nullptr, "new.deh"},
             {"new.txt", nullptr, nullptr, "new.txt"},
             {"My mod v1.2", nullptr, nullptr, "My mod v1.2.deh"},
             {"mod of St. Patrick", nullptr, nullptr, "mod of St. Patrick.deh"},
             {"there", "there.deh", nullptr, "there.deh"},
             {"there.deh", "there.deh", nullptr, "there.deh"},
             {"there", "there.deh", "other", "other.deh"}};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.typed);
        std::optional<test::ModalDriver> again;
        const test::ModalDriver driver("QFileDialog", [&](QDialog& dialog) {
            TypeName(row.typed)(dialog);
            if (row.typedAfterNo != nullptr)
                again.emplace("QFileDialog", TypeName(row.typedAfterNo));
        });
        if (row.askedAbout != nullptr)
            notifier.Expect("The file " + (folder / row.askedAbout).string() +
                                " exists already. Do you want to overwrite it?",
                            row.typedAfterNo == nullptr ? Answer::Yes : Answer::No, Buttons::NoYes);
        EXPECT_EQ(dialogs.SaveFile("Save patch file", "Dehacked files (*.deh)|*.deh", {}).toStdString(),
                  (folder / row.saved).string());
        notifier.AllAsked();
    }
}

TEST(FileDialogs, StartWhereTheLastFileWasOrInTheNearestFolderThatIsLeft) {
    const test::TemporaryFolder folder;
    std::filesystem::create_directory(folder / "there");
    test::ExpectingNotifier notifier;
    Settings settings;
    QtFileDialogs dialogs(settings, notifier);
    for (const auto& [last, start] :
         {std::pair(folder / "there", folder / "there"), {folder / "gone" / "deeper", folder.Path()}}) {
        settings.Text("lastDir", PathText(last));
        const auto look = [&start = start](QDialog& dialog) {
            EXPECT_TRUE(
                std::filesystem::equivalent(StoredPath(dynamic_cast<QFileDialog&>(dialog).directory().path()), start))
                << start;
            dialog.reject();
        };
        {
            const test::ModalDriver driver("QFileDialog", look);
            EXPECT_EQ(dialogs.OpenFile("Open", "All files (*.*)|*.*"), QString());
        }
        const test::ModalDriver driver("QFileDialog", look);
        EXPECT_EQ(dialogs.SaveFile("Save", "All files (*.*)|*.*", {}), QString());
    }
}

TEST(FileDialogs, AMessageBehindADialogThatHasJustGoneBelongsToTheMainWindow) {
    QWidget window;
    window.setObjectName("frmMain");
    window.show();
    ASSERT_EQ(QApplication::activeWindow(), nullptr) << "as between two windows";
    const QWidget* parent = nullptr;
    const test::ModalDriver driver("", [&parent](QDialog& dialog) {
        parent = dialog.parentWidget();
        dialog.reject();
    });
    EXPECT_EQ(QtNotifier().Ask("Yes?", Buttons::NoYes), Answer::No);
    EXPECT_EQ(parent, &window);
}

} // namespace
} // namespace plinket3
