#pragma once

#include "tests/support/TestSupport.h"
#include "tests/ui/FakeDialogs.h"
#include "tests/ui/ModalDriver.h"
#include "tests/ui/UiTest.h"
#include "ui/frmMain.h"

#include <QAction>
#include <QListWidget>
#include <QTest>

namespace plinket3::test {

inline QStringList Rows(const QListWidget& list) {
    QStringList rows;
    for (int row = 0; row < list.count(); ++row)
        rows << list.item(row)->text();
    return rows;
}

inline constexpr const char* head = "Patch File for DeHackEd v3.0\nDoom version = 19\nPatch format = 6\n";

/// Also tells over which dialog the last message came.
class PlacedNotifier : public ExpectingNotifier {
public:
    void Show(MessageKind kind, std::string_view text) override {
        const QWidget* dialog = QApplication::activeModalWidget();
        over = dialog == nullptr ? QString() : dialog->objectName();
        ExpectingNotifier::Show(kind, text);
    }
    QString over;
};

/// The main window as the program has it, over a folder of its own: patches are opened by its dialogs.
class MainWindowTest : public ::testing::Test {
protected:
    void SetUp() override {
        if (!std::filesystem::exists(freedoom))
            GTEST_SKIP() << "the Debian package freedoom is not installed";
        UseFolder(program, folder.Path());
        program.settings.AddIwad("Freedoom", freedoom);
        Restart();
    }

    /// The main window as a new start of the program would make it.
    void Restart() {
        window = nullptr;
        static_cast<Session&>(program) = {};
        edits = std::make_unique<Edits>(program.patch);
        window = std::make_unique<frmMain>(program, *edits, audio, dialogs);
        for (const EditorEntry& entry : editorEntries)
            window->Load(entry.window);
        window->updateCaption();
        window->show();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(window.get()));
    }

    QAction& Action(const char* name) { return Find<QAction>(name); }
    template <class Object> Object& Find(const char* name) {
        auto* object = window->findChild<Object*>(QString::fromLatin1(name));
        if (object == nullptr)
            throw std::runtime_error(std::string("there is no ") + name);
        return *object;
    }

    void NewPatch(const char* engine) {
        const ModalDriver driver("frmNewFile", AcceptSession(engine));
        Action("FileNew").trigger();
    }
    /// Writes a patch and opens it in the session dialog.
    void Open(const char* name, const std::string& bytes, std::function<void(QDialog&)> act) {
        WriteFile(folder / name, bytes);
        const ModalDriver driver("frmNewFile", std::move(act));
        window->Commands().openFile(folder / name);
    }
    void Open(const char* name, const std::string& bytes, const char* engine) {
        Open(name, bytes, AcceptSession(engine));
    }
    std::string Caption() const { return window->windowTitle().toStdString(); }

    TemporaryFolder folder;
    PlacedNotifier notifier;
    Program program{notifier};
    std::unique_ptr<Edits> edits;
    Audio audio;
    FakeDialogs dialogs;
    std::unique_ptr<frmMain> window;
};

} // namespace plinket3::test
