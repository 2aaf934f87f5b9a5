#include "ui/FileDialogs.h"
#include "core/modConfig.h"
#include "tests/support/TestSupport.h"
#include "tests/ui/ModalDriver.h"

#include <gtest/gtest.h>

#include <QFileDialog>
#include <QLineEdit>

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
        const char *typed, *saved;
        bool asks;
    } rows[]{{"new", "new.deh", false},
             {"new.txt", "new.txt", false},
             {"there", "there.deh", true},
             {"there.deh", "there.deh", true}};
    for (const auto& row : rows) {
        const std::filesystem::path file = folder / row.saved;
        const std::string question = "The file " + file.string() + " exists already. Do you want to overwrite it?";
        const test::ModalDriver driver("QFileDialog", TypeName(row.typed));
        if (row.asks)
            notifier.Expect(question, Answer::Yes, Buttons::NoYes);
        EXPECT_EQ(dialogs.SaveFile("Save patch file", "Dehacked files (*.deh)|*.deh", {}).toStdString(), file.string());
        notifier.AllAsked();
    }
}

} // namespace
} // namespace plinket3
