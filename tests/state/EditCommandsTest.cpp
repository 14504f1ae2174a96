#include "shell/state/EditCommands.h"

#include "platform/ui/Controls.h"
#include "platform/ui/NotesEdit.h"
#include "shell/state/Windows.h"
#include "tests/support/PrintQt.h"

#include <QApplication>
#include <QClipboard>
#include <QLineEdit>
#include <QMainWindow>
#include <QMenuBar>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>
#include <QVBoxLayout>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace vardelin {

namespace {

// A window with a field of each kind, under a bar whose commands hang on the keys of the Edit menu.
class Fields final : public ChildWindow
{
public:
    Fields()
    {
        auto *column = new QVBoxLayout(this);
        for (QWidget *control : std::initializer_list<QWidget *>{line, combo, notes, picker, list})
            column->addWidget(control);
        giveClipboardKeysToMenu(this);
    }
    void Form_Activate() override {}

    QLineEdit *line = new QLineEdit(this);
    SortedCombo *combo = new SortedCombo(this);
    NotesEdit *notes = new NotesEdit(this);
    DateTimePicker *picker = new DateTimePicker(this);
    ListBox *list = new ListBox(this);
};

struct EditCommandsTest : testing::Test
{
    EditCommandsTest()
    {
        frame.setCentralWidget(window);
        frame.menuBar(); // made ahead of show(), else it stays hidden and its keys are dead
        frame.show();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&frame));
        QApplication::clipboard()->setText(u"from elsewhere"_s);
    }
    static QString clipboard() { return QApplication::clipboard()->text(); }
    QWidget *focused(QWidget *control) const
    {
        control->setFocus();
        return activeTextField(*window);
    }

    QMainWindow frame;
    Fields *window = new Fields;
};

} // namespace

TEST_F(EditCommandsTest, ActOnWhicheverFieldHasTheFocus)
{
    window->line->setText(u"one two"_s);
    window->combo->setText(u"one two"_s);
    window->notes->setText(u"one two"_s);
    for (QWidget *control : std::initializer_list<QWidget *>{window->line, window->combo, window->notes}) {
        QWidget *field = focused(control);
        ASSERT_TRUE(field);
        QTest::keyClick(field, Qt::Key_Home);
        QTest::keyClick(field, Qt::Key_Right, Qt::ControlModifier | Qt::ShiftModifier);
        EXPECT_EQ(selText(field), u"one "_s);
        copySelection(field);
        EXPECT_EQ(clipboard(), u"one "_s);
        cutSelection(field);
        pasteText(field);
        pasteText(field);
        deleteSelection(field); // nothing selected: nothing goes
    }
    EXPECT_EQ(window->line->text(), u"one one two"_s);
    EXPECT_EQ(window->combo->Text(), u"one one two"_s);
    EXPECT_EQ(window->notes->Text(), u"one one two"_s);
}

TEST_F(EditCommandsTest, WithoutASelectionOrATextField)
{
    window->line->setText(u"one"_s);
    QWidget *line = focused(window->line);
    QTest::keyClick(line, Qt::Key_End);
    copySelection(line);
    EXPECT_EQ(clipboard(), QString()) << "copying nothing empties the clipboard";
    window->line->selectAll();
    pasteText(line);
    EXPECT_EQ(window->line->text(), QString()) << "pasting nothing takes the selection away";

    QApplication::clipboard()->setText(u"kept"_s);
    EXPECT_EQ(focused(window->list), nullptr);
    cutSelection(nullptr);
    pasteText(nullptr);
    EXPECT_EQ(clipboard(), u"kept"_s) << "a list has no text to copy";
    EXPECT_TRUE(focused(window->picker)) << "a picker's text can be copied";
}

TEST_F(EditCommandsTest, TheSelectionOutlivesTheWayToTheMenu)
{
    window->line->setText(u"one"_s);
    focused(window->line);
    window->line->selectAll();
    frame.menuBar()->setFocus(Qt::MenuBarFocusReason);
    EXPECT_EQ(window->line->selectedText(), u"one"_s);
    cutSelection(activeTextField(*window));
    EXPECT_EQ(clipboard(), u"one"_s);
}

TEST_F(EditCommandsTest, LinesOfTheNotesGoToOtherProgramsAsTheirs)
{
    window->notes->setText(u"first\r\nsecond"_s);
    QWidget *notes = focused(window->notes);
    window->notes->selectAll();
    copySelection(notes);
    EXPECT_EQ(clipboard(), u"first\nsecond"_s);
}

TEST_F(EditCommandsTest, KeysOfTheMenuReachItAndEditingKeysStay)
{
    const auto command = [&](const QKeySequence &key) {
        QAction *action = frame.menuBar()->addAction(key.toString());
        action->setShortcut(key);
        return action;
    };
    QSignalSpy copies(command(Qt::CTRL | Qt::Key_C), &QAction::triggered);
    QSignalSpy cuts(command(Qt::CTRL | Qt::Key_X), &QAction::triggered);
    QSignalSpy all(command(Qt::CTRL | Qt::Key_A), &QAction::triggered);
    QSignalSpy pastes(command(Qt::CTRL | Qt::Key_G), &QAction::triggered);
    QSignalSpy deletes(command(Qt::Key_Delete), &QAction::triggered);

    window->line->setText(u"abc"_s);
    window->combo->setText(u"abc"_s);
    window->notes->setText(u"abc"_s);
    int times = 0;
    for (QWidget *control : std::initializer_list<QWidget *>{window->line, window->combo, window->notes}) {
        control->setFocus();
        QWidget *typing = QApplication::focusWidget();
        ++times;
        for (const Qt::Key key : {Qt::Key_C, Qt::Key_X, Qt::Key_A, Qt::Key_G})
            QTest::keyClick(typing, key, Qt::ControlModifier);
        EXPECT_EQ(copies.count(), times);
        EXPECT_EQ(cuts.count(), times);
        EXPECT_EQ(all.count(), times);
        EXPECT_EQ(pastes.count(), times);

        QTest::keyClick(typing, Qt::Key_Home);
        QTest::keyClick(typing, Qt::Key_Delete);
        EXPECT_EQ(deletes.count(), 0) << "the field's own Del";
        QTest::keyClick(typing, Qt::Key_V, Qt::ControlModifier);
    }
    EXPECT_EQ(window->line->text(), u"from elsewherebc"_s);
    EXPECT_EQ(window->combo->Text(), u"from elsewherebc"_s);
    EXPECT_EQ(window->notes->Text(), u"from elsewherebc"_s);
    QTest::keyClick(window->notes, Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(window->notes->Text(), u"bc"_s) << "undo stays with the field";
}

} // namespace vardelin
