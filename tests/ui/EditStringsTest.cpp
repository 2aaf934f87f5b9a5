#include "tests/ui/UiTest.h"
#include "ui/editors/frmEditStrings.h"
#include "ui/editors/frmPropString.h"
#include "ui/fields/EscapedTextEdit.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QLabel>
#include <QPushButton>
#include <QTextBlock>
#include <QTimer>
#include <QTreeView>

namespace plinket3::test {

namespace {

class frmEditStringsTest : public EditorTest {
protected:
    void Start(const char* engine) {
        LoadEngine(engine);
        dialog = std::make_unique<frmPropString>(Context(), nullptr);
        window = &Open<frmEditStrings>();
        window->PropertyDialog(*dialog);
        window->resize(700, 500);
    }
    QTreeView& List() { return Find<QTreeView>(*window, "lvwStrings"); }
    QPlainTextEdit& New() { return Find<QPlainTextEdit>(*dialog, "txtNewString"); }
    QString Label(const char* name) { return Find<QLabel>(*dialog, name).text(); }
    void Click(QWidget& in, const char* button) { QTest::mouseClick(&Find<QPushButton>(in, button), Qt::LeftButton); }
    /// Opens the dialog for a string with Enter, works in it, and closes it with `button`.
    void Edit(int string, const std::function<void()>& work, const char* button = "cmdAccept") {
        ClickRow(List(), string);
        QTimer::singleShot(0, dialog.get(), [&] {
            work();
            Click(*dialog, button);
        });
        QTest::keyClick(&List(), Qt::Key_Return);
    }
    void Empty() {
        New().selectAll();
        QTest::keyClick(&New(), Qt::Key_Delete);
    }
    /// Gives a string both as the engine's and as the patch's text.
    void SetDefault(std::size_t string, const std::string& text) {
        for (PatchSet* set : {&program.patch.current, &program.patch.defaults})
            set->strings[string] = {0, static_cast<std::int32_t>(text.size()), text};
        window->Refresh();
    }
    const std::string& Text(std::size_t string) const { return Current().strings[string].text; }
    std::unique_ptr<frmPropString> dialog;
    frmEditStrings* window = nullptr;
};

TEST_F(frmEditStringsTest, ByEngineRulesATextThatGamesCannotReadIsNotAccepted) {
    Start("mbf19");
    program.engine.dialect = program.engine.dialect.AsEngines();
    Edit(
        3,
        [this] {
            Empty();
            EXPECT_FALSE(Find<QPushButton>(*dialog, "cmdAccept").isEnabled());
            QTest::keyClicks(&New(), "fine");
            EXPECT_TRUE(Find<QPushButton>(*dialog, "cmdAccept").isEnabled());
            QTest::keyClicks(&New(), " ");
            EXPECT_FALSE(Find<QPushButton>(*dialog, "cmdAccept").isEnabled());
            EXPECT_TRUE(Label("lblNote").startsWith("Games cannot read such a text"));
            QTest::keyClick(&New(), Qt::Key_Return, Qt::ControlModifier);
            EXPECT_TRUE(dialog->isVisible());
            Click(*dialog, "cmdRestore");
        },
        "cmdAccept");
    EXPECT_EQ(Text(3), Defaults().strings[3].text);
}

TEST_F(frmEditStringsTest, ListsNumberEscapedTextAndLengthOrKey) {
    for (const char* engine : {"doom19", "mbf19"}) {
        Start(engine);
        SetDefault(3, "one\ntwo \"three\"");
        const bool extended = program.engine.dialect.IsExtended();
        EXPECT_EQ(List().model()->headerData(2, Qt::Horizontal).toString(), extended ? "String" : "Length");
        const QString expected[]{"3", "one\\ntwo \\\"three\\\"",
                                 extended ? QString::fromStdString(program.engine.strings[3].mnemonic) : "15"};
        for (int column = 0; column < 3; ++column)
            EXPECT_EQ(List().model()->index(3, column).data().toString(), expected[column]);
    }
}

TEST_F(frmEditStringsTest, ANewTextFitsTheSpaceOfTheEnginesText) {
    Start("doom19");
    for (const int length : {0, 3, 4, 5, 7, 8, 11}) {
        SetDefault(1, std::string(static_cast<std::size_t>(length), 'x'));
        const int limit = length / 4 * 4 + 3;
        Edit(1, [&] {
            EXPECT_EQ(Label("lblLength"), QString("Length: %1").arg(length));
            EXPECT_EQ(Label("lblCharsLeft"), QString("Characters left: %1").arg(limit - length));
            Empty();
            QTest::keyClicks(&New(), QString(limit - 1, 'a'));
            QTest::keyClick(&New(), Qt::Key_Return); // one character
            EXPECT_EQ(Label("lblCharsLeft"), "Characters left: 0");
            New().moveCursor(QTextCursor::Start);
            QTest::keyClick(&New(), 'b');
            EXPECT_EQ(New().toPlainText(), QString(limit - 1, 'a') + "\\n");
            EXPECT_EQ(New().textCursor().position(), 0);
            EXPECT_NE(Label("lblNote"), "");
        });
        EXPECT_EQ(Text(1), std::string(static_cast<std::size_t>(limit - 1), 'a') + "\n") << length;
        EXPECT_EQ(Current().strings[1].length, limit);
        EXPECT_TRUE(program.patch.changed);
        edits.Undo();
        EXPECT_EQ(Current(), Defaults());
    }
}

TEST_F(frmEditStringsTest, ATextThatIsTooLongAlreadyMayOnlyBecomeShorter) {
    Start("doom19");
    SetDefault(1, "abc");
    edits.Store({RecordKind::String, 1, textField}, std::string("abcdefgh"));
    Edit(1, [&] {
        EXPECT_EQ(Label("lblCharsLeft"), "Characters left: -5");
        QTest::keyClick(&New(), 'i');
        EXPECT_EQ(New().toPlainText(), "abcdefgh");
        QTest::keyClick(&New(), Qt::Key_End);
        QTest::keyClick(&New(), Qt::Key_Backspace);
        New().undo();
        QTest::keyClick(&New(), 'x');
        QTest::keyClick(&New(), Qt::Key_Backspace);
    });
    EXPECT_EQ(Text(1), "abcdef");
}

TEST_F(frmEditStringsTest, TheDialogTellsWhileTypingWhatWillBeLost) {
    Start("mbf19");
    Edit(2, [&] {
        Empty();
        for (const char key : {' ', 'a', '\\'}) {
            QTest::keyClick(&New(), key);
            EXPECT_TRUE(Label("lblNote").startsWith("Blanks")) << key;
        }
        New().moveCursor(QTextCursor::Start);
        QTest::keyClick(&New(), Qt::Key_Delete);
        EXPECT_TRUE(Label("lblNote").contains("backslash"));
        New().moveCursor(QTextCursor::End);
        QTest::keyClick(&New(), 'b');
        EXPECT_EQ(Label("lblNote"), "");
    });
    Start("doom19");
    SetDefault(1, "abcdefgh");
    Edit(1, [&] {
        QTest::keyClick(&New(), ' ');
        EXPECT_EQ(Label("lblNote"), "") << "a normal patch keeps them";
    });
}

TEST_F(frmEditStringsTest, TheDialogLeavesATextAsItIsUnlessItIsEditedAndAccepted) {
    Start("doom19");
    const std::string lossy = "C:\\new \xa0 no-break";
    edits.Store({RecordKind::String, 4, textField}, lossy);
    Edit(4, [] {});
    EXPECT_EQ(Text(4), lossy) << "its escaped form would read back otherwise";
    Edit(
        4, [&] { Empty(); }, "cmdCancel");
    EXPECT_EQ(Text(4), lossy);
    Edit(4, [&] {
        EXPECT_EQ(dialog->windowTitle(), "String 4");
        Click(*dialog, "cmdRestore");
    });
    EXPECT_EQ(Text(4), Defaults().strings[4].text);
}

TEST_F(frmEditStringsTest, TextsOfAnyLengthAndByteComeThroughTheDialog) {
    Start("mbf19");
    std::string bytes(500, 'a');
    for (int byte = 1; byte < 256; ++byte)
        if (byte != '\\')
            bytes += static_cast<char>(byte);
    edits.Store({RecordKind::String, 4, textField}, bytes);
    Edit(4, [&] {
        EXPECT_EQ(dialog->windowTitle(), QString("String 4: %1").arg(program.engine.strings[4].mnemonic.c_str()));
        EXPECT_TRUE(New().toPlainText().contains("\\n\n")) << "with a line break for the eye";
        EXPECT_TRUE(Label("lblCharsLeft").startsWith("Length: "));
        New().moveCursor(QTextCursor::End);
        QTest::keyClick(&New(), '!');
        EXPECT_EQ(Find<QPlainTextEdit>(*dialog, "txtPreview").toPlainText().count('\\'), 0);
    });
    EXPECT_EQ(Text(4), bytes + "!");
}

TEST_F(frmEditStringsTest, PastedLinesBecomeEscapesAndStrangeCharactersAreRefused) {
    Start("mbf19");
    Edit(5, [&] {
        Empty();
        QGuiApplication::clipboard()->setText("a\r\nb\tc\\n\nd");
        New().paste();
        EXPECT_EQ(New().toPlainText(), "a\\nb\\tc\\nd");
        QGuiApplication::clipboard()->setText(QString::fromUtf8("\u20ac"));
        New().paste();
        EXPECT_EQ(New().toPlainText(), "a\\nb\\tc\\nd");
        EXPECT_TRUE(Label("lblNote").contains(QString::fromUtf8("\u20ac")));
        New().undo();
        EXPECT_EQ(New().toPlainText(), "") << "what was refused is no step of its own";
        New().redo();
    });
    EXPECT_EQ(Text(5), "a\nb\tc\nd");
}

TEST_F(frmEditStringsTest, TheDialogIsAcceptedByTheKeyboardAndItsPreviewFollowsTheCaret) {
    Start("mbf19");
    std::string lines;
    for (int line = 0; line < 200; ++line)
        lines += "line " + std::to_string(line) + "\n";
    edits.Store({RecordKind::String, 4, textField}, lines);
    ClickRow(List(), 4);
    QTimer::singleShot(0, dialog.get(), [&] {
        ASSERT_TRUE(QTest::qWaitForWindowActive(dialog.get()));
        const auto& preview = Find<QPlainTextEdit>(*dialog, "txtPreview");
        const auto caretLine = [&preview] { return preview.textCursor().block().text(); };
        New().moveCursor(QTextCursor::Start);
        QTest::keyClick(&New(), Qt::Key_Down);
        EXPECT_EQ(caretLine(), "line 1");
        EXPECT_TRUE(preview.viewport()->rect().contains(preview.cursorRect()));
        QTest::keyClick(&New(), Qt::Key_End, Qt::ControlModifier);
        QTest::keyClicks(&New(), "end");
        EXPECT_EQ(caretLine(), "end");
        EXPECT_TRUE(preview.viewport()->rect().contains(preview.cursorRect()));
        QTest::keyClick(&New(), Qt::Key_Return, Qt::ControlModifier);
    });
    QTest::keyClick(&List(), Qt::Key_Return);
    EXPECT_EQ(Text(4), lines + "end");
}

TEST_F(frmEditStringsTest, LongTextsAreShownFromTheirStartAndKeptWhole) {
    Start("mbf19");
    const std::string endless = std::string(40000, 'x') + "end";
    edits.Store({RecordKind::String, 4, textField}, endless);
    EXPECT_EQ(List().model()->index(4, 1).data().toString().toStdString(), std::string(200, 'x') + "...");
    Edit(4, [&] {
        EXPECT_TRUE(New().isReadOnly());
        EXPECT_EQ(Label("lblCharsLeft"), "Length: 40003");
        QTest::keyClick(&New(), 'y');
    });
    EXPECT_EQ(Text(4), endless);
    edits.Store({RecordKind::String, 4, textField}, endless + "!");
    Edit(4, [&] {
        Click(*dialog, "cmdRestore");
        New().moveCursor(QTextCursor::End);
        QTest::keyClick(&New(), '!');
    });
    EXPECT_EQ(Text(4), Defaults().strings[4].text + "!");
}

TEST_F(frmEditStringsTest, TheFilterLooksIntoTextAndKey) {
    Start("mbf19");
    SetDefault(7, "quite unmistakable");
    auto& filter = Find<QLineEdit>(*window, "txtFilter");
    for (const char* text : {program.engine.strings[7].mnemonic.c_str(), "UNMISTAK"}) {
        filter.setText(text);
        ASSERT_EQ(List().model()->rowCount(), 1) << text;
    }
    ASSERT_TRUE(QTest::qWaitForWindowActive(window));
    filter.setFocus();
    QTest::keyClick(&filter, Qt::Key_Down);
    EXPECT_TRUE(List().hasFocus());
    edits.Store({RecordKind::String, 7, textField}, std::string("something else"));
    EXPECT_EQ(List().model()->rowCount(), 1) << "what is edited stays until another text is looked for";
    QTimer::singleShot(0, dialog.get(), [&] { Click(*dialog, "cmdCancel"); });
    DoubleClickRow(List(), 0);
    EXPECT_TRUE(dialog->windowTitle().startsWith("String 7"));
}

} // namespace

} // namespace plinket3::test
