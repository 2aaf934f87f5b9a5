#include "tests/support/TestSupport.h"
#include "tests/ui/WindowTest.h"
#include "ui/clip/frmCopyWith.h"
#include "ui/clip/frmDuplicate.h"
#include "ui/clip/frmPaste.h"
#include "ui/compare/frmCompareWith.h"
#include "ui/editors/frmNewRecord.h"
#include "ui/editors/frmPropSound.h"
#include "ui/editors/frmPropString.h"
#include "ui/fields/LinkLabel.h"
#include "ui/fields/SpriteView.h"
#include "ui/frmChangeEngine.h"
#include "ui/frmChangeMany.h"
#include "ui/frmFindIwads.h"
#include "ui/frmGoTo.h"
#include "ui/frmPatchNotes.h"
#include "ui/frmRecovered.h"
#include "ui/pickers/frmSelectAction.h"
#include "ui/pickers/frmSelectRecord.h"
#include "ui/pickers/frmSelectSprite.h"
#include "ui/pickers/frmSelectState.h"
#include "ui/run/frmRun.h"
#include "ui/states/frmNewStates.h"

#include <QAbstractSlider>
#include <QAbstractSpinBox>
#include <QAccessible>
#include <QComboBox>
#include <QLabel>
#include <QMdiSubWindow>
#include <QMenuBar>
#include <QPlainTextEdit>
#include <QRadioButton>
#include <QScrollBar>
#include <QTextEdit>
#include <QToolBar>

#include <regex>
#include <set>

namespace plinket3::test {
namespace {

constexpr int imp = 11, firstState = 442;

template <class... Types> bool IsOneOf(const QObject* object) {
    return ((qobject_cast<const Types*>(object) != nullptr) || ...);
}

/// What one types, chooses or clicks in.
bool IsInput(const QWidget& widget) {
    return IsOneOf<QLineEdit, QAbstractSpinBox, QComboBox, QAbstractButton, QPlainTextEdit, QTextEdit,
                   QAbstractItemView, QAbstractSlider, LinkLabel>(&widget);
}

/// What the toolkit puts into a control or a frame of a window, which has its own keys.
bool IsOfToolkit(const QWidget& widget) {
    const QWidget* parent = widget.parentWidget();
    if (widget.objectName().startsWith(QLatin1String("qt_")) || IsOneOf<QScrollBar, QMenu, QMenuBar>(&widget))
        return true;
    for (; parent != nullptr; parent = parent->parentWidget())
        if (IsOneOf<QAbstractSpinBox, QComboBox, QLineEdit, QMenuBar, QAbstractItemView>(parent))
            return true;
    return IsOneOf<QDockWidget, QMdiSubWindow, QTabBar>(widget.parentWidget());
}

bool IsPicture(const QWidget& widget) {
    const auto* label = qobject_cast<const QLabel*>(&widget);
    return IsOneOf<SpriteView>(&widget) || (label != nullptr && !label->pixmap(Qt::ReturnByValue).isNull());
}

std::string NameOf(const QObject& object) {
    return object.metaObject()->className() + (" " + object.objectName().toStdString());
}

void CollectActions(const QList<QAction*>& actions, std::set<const QAction*>& all) {
    for (const QAction* action : actions) {
        all.insert(action);
        if (action->menu() != nullptr)
            CollectActions(action->menu()->actions(), all);
    }
}

/// All windows, dialogs and docks that the sources have, without those that only others are made of.
std::set<std::string> WindowClasses() {
    static const std::regex derives(R"(class (\w+) : public (\w+))");
    static const std::set<std::string> toolkit{"QDialog", "QMainWindow", "QDockWidget"};
    std::multimap<std::string, std::string> derived; // by what they are derived from
    for (const auto& entry : std::filesystem::recursive_directory_iterator(UI_FOLDER))
        if (entry.path().extension() == ".h") {
            const std::string source = ReadFile(entry.path());
            for (std::sregex_iterator match(source.begin(), source.end(), derives), end; match != end; ++match)
                derived.emplace((*match)[2], (*match)[1]);
        }
    std::set<std::string> classes;
    std::vector<std::string> bases(toolkit.begin(), toolkit.end());
    bases.emplace_back("EditorWindow");
    while (!bases.empty()) {
        const std::string base = bases.back();
        bases.pop_back();
        const auto [from, to] = derived.equal_range(base);
        if (from == to)
            classes.insert(base);
        for (auto each = from; each != to; ++each)
            bases.push_back(each->second);
    }
    for (const std::string& base : toolkit)
        classes.erase(base);
    return classes;
}

class AccessibilityTest : public WindowTest {
protected:
    void SetUp() override {
        LoadEngine("id24", true); // whose editors have all fields that there are
        ShowWindow();
        edits.Store({RecordKind::Thing, imp, noteField}, std::string("mine"));
        for (std::size_t editor = 0; editor < editorEntries.size(); ++editor)
            Editors().Show(editor, true);
        for (LaterDock* dock : window->findChildren<LaterDock*>())
            dock->show();
    }

    /// Fails the test for each control that only the mouse or the eye can find.
    void Look(QWidget& top) {
        top.show();
        QList<QWidget*> widgets = top.findChildren<QWidget*>();
        widgets.append(&top);
        for (QWidget* widget : widgets) {
            seen_.insert(QString::fromLatin1(widget->metaObject()->className()).section(':', -1).toStdString());
            const bool isInput = IsInput(*widget);
            if (IsOfToolkit(*widget) || (!isInput && !IsPicture(*widget)))
                continue;
            const QAccessibleInterface* spoken = QAccessible::queryAccessibleInterface(widget);
            EXPECT_FALSE(spoken == nullptr || spoken->text(QAccessible::Name).trimmed().isEmpty())
                << NameOf(top) << ": " << NameOf(*widget) << " has no name";
            const bool inBar = IsOneOf<QToolBar>(widget->parentWidget()) && // of which menus have everything
                               IsOneOf<QMainWindow>(widget->parentWidget()->parentWidget());
            const bool byArrows = IsOneOf<QRadioButton>(widget); // from the checked one of its group
            const bool isReached = widget->focusPolicy() & (byArrows ? Qt::ClickFocus : Qt::TabFocus);
            EXPECT_TRUE(!isInput || !widget->isEnabled() || inBar || isReached)
                << NameOf(top) << ": " << NameOf(*widget) << " cannot be reached by keys";
        }
    }

    std::set<std::string> seen_;
};

TEST_F(AccessibilityTest, EveryControlHasANameAndIsReachedByTheKeyboardInEveryWindow) {
    const EditorContext context{program, edits, Editors()};
    const Recovery recovery(folder.Path());
    WindowState state(folder.Path());
    Clip clip;
    ASSERT_TRUE(ReadClip(program, program,
                         modPatchFiles::FormatRecords(program.patch, program.engine, {{RecordKind::Thing, imp}}),
                         clip));
    QWidget* parent = window.get();
    const std::function<std::unique_ptr<QWidget>()> windows[]{
        [&] { return std::make_unique<frmAbout>(parent); },
        [&] { return std::make_unique<frmManual>(program, state); },
        [&] { return std::make_unique<frmNewFile>(program, dialogs, parent); },
        [&] { return std::make_unique<frmOptions>(program, dialogs, parent); },
        [&] { return std::make_unique<frmStartup>(program, parent); },
        [&] { return std::make_unique<frmFindIwads>(std::vector<frmFindIwads::Found>{}, parent); },
        [&] { return std::make_unique<frmChangeEngine>(program, parent); },
        [&] {
            return std::make_unique<frmChangeMany>(context, ManyRecords{RecordKind::Thing, {imp, 12}, "things"},
                                                   std::nullopt, parent);
        },
        [&] { return std::make_unique<frmGoTo>(program, RecordKind::Thing, parent); },
        [&] {
            return std::make_unique<frmPatchNotes>(
                "", [](const QString&) {}, parent);
        },
        [&] { return std::make_unique<frmRecovered>(recovery, notifier, parent); },
        [&] { return std::make_unique<frmCompareWith>(program, dialogs, parent); },
        [&] {
            return std::make_unique<frmCopyWith>(program, std::vector<RecordId>{{RecordKind::Thing, imp}}, parent);
        },
        [&] { return std::make_unique<frmPaste>(clip, program, parent); },
        [&] {
            return std::make_unique<frmDuplicate>(context, RecordId{RecordKind::Thing, imp}, parent);
        },
        [&] { return std::make_unique<frmNewRecord>(RecordKind::Sound, edits, parent); },
        [&] { return std::make_unique<frmNewStates>(context, firstState, parent); },
        [&] { return std::make_unique<frmPropSound>(context, parent); },
        [&] { return std::make_unique<frmPropString>(context, parent); },
        [&] { return std::make_unique<frmSelectAction>(program, parent); },
        [&] { return std::make_unique<frmSelectRecord>(program, RecordKind::Thing, Editors().Pictures(), parent); },
        [&] { return std::make_unique<frmSelectSprite>(program, Editors().Pictures(), parent); },
        [&] { return std::make_unique<frmSelectState>(program, edits, Editors().Pictures(), parent); },
        [&] {
            return std::make_unique<frmRun>(frmRun::Offer{{{"Port", "/port", "%p"}}, {"MAP01"}, "Imp"}, RunChoice(),
                                            parent);
        },
    };
    Look(*window);
    for (const auto& make : windows)
        Look(*make());
    for (const std::string& name : WindowClasses())
        EXPECT_TRUE(seen_.contains(name)) << "nobody looks at " << name;

    std::set<const QAction*> inMenus;
    CollectActions(window->menuBar()->actions(), inMenus);
    for (const QToolBar* bar : window->findChildren<QToolBar*>(QString(), Qt::FindDirectChildrenOnly))
        for (const QAction* action : bar->actions())
            EXPECT_TRUE(action->isSeparator() || inMenus.contains(action)) << NameOf(*action) << " is in no menu";
}

} // namespace
} // namespace plinket3::test
