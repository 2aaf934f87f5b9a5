#pragma once

#include "tests/ui/FakeDialogs.h"
#include "tests/ui/UiTest.h"
#include "ui/frmMain.h"

#include <QStatusBar>

#include <memory>

namespace plinket3::test {

/// The main window, with all editors loaded and the active one of the desktop, over what `program` has open.
class WindowTest : public EditorTest {
protected:
    WindowTest() { UseFolder(program, folder.Path()); }

    /// Opens the patch of an engine as it is, without a file, read as games do if `asEngines`.
    void LoadEngine(const std::string& engine, bool asEngines = false) {
        EditorTest::LoadEngine(engine);
        if (asEngines)
            program.engine.dialect = program.engine.dialect.AsEngines();
        program.fixedUses = LoadFixedUses(program.programFolder, program.engine);
        if (window)
            window->Editors().Refresh();
    }
    void ShowWindow() {
        window = std::make_unique<frmMain>(program, edits, audio, dialogs);
        for (const EditorEntry& entry : editorEntries)
            window->Load(entry.window);
        window->SetEditBar(true);
        window->resize(1200, 900);
        window->show();
        Activate();
    }
    void Activate() {
        window->activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(window.get()));
    }

    template <class Widget> Widget& Find(const char* name) { return test::Find<Widget>(*window, name); }
    EditorSet& Editors() { return window->Editors(); }
    std::string Status() { return window->statusBar()->currentMessage().toStdString(); }

    TemporaryFolder folder;
    Audio audio;
    FakeDialogs dialogs;
    std::unique_ptr<frmMain> window;
};

} // namespace plinket3::test
