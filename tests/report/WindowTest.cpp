#include "Reports.h"

#include "platform/report/ReportView.h"
#include "platform/report/ReportWindow.h"
#include "tests/support/FakeErrorFrame.h"
#include "tests/support/OfficeProgram.h"

#include <QAccessible>
#include <QClipboard>
#include <QLabel>
#include <QLineEdit>
#include <QPrinter>
#include <QPrinterInfo>
#include <QScrollBar>
#include <QSpinBox>

using namespace Qt::StringLiterals;

namespace vardelin::testing_support {
namespace {

class ReportWindowTest : public testing::Test
{
protected:
    ReportWindowTest()
    {
        ado::Connection setup;
        const auto database = office.engine.OpenDatabase(office.global.DatabaseFileName);
        const auto table = database->OpenRecordset(u"Vardelins"_s);
        for (int i = 1; i <= 100; ++i) {
            table->AddNew();
            table->SetField(u"Client"_s, Value(u"client %1"_s.arg(i)));
            table->SetField(u"Vardelin"_s, Value(u"first line\rneedle in a hay stack of %1"_s.arg(i)));
            table->SetField(u"Duration"_s, Value(0.5f));
            table->Update();
        }
        connection.Open(ado::connectionText(office.global.DatabaseFileName));
        rows.Open(u"SELECT Client AS Name, Vardelin AS [Note], Duration AS Hours FROM Vardelins"_s,
                  connection);
        report.setDataSource(&rows);
        window = std::make_unique<ReportWindow>(report, dialogs, errors);
        window->resize(900, 700);
        window->show();
        EXPECT_TRUE(QTest::qWaitForWindowActive(window.get()));
        view = control<ReportView>(window.get(), u"Pages"_s);
    }
    ~ReportWindowTest() override { window.reset(); }
    template <class Condition>
    static void waitFor(Condition &&condition)
    {
        EXPECT_TRUE(QTest::qWaitFor(condition, 5000));
    }
    QString labelText(const QString &name) { return control<QLabel>(window.get(), name)->text(); }

    OfficeProgram office;
    ado::Connection connection;
    ado::Recordset rows;
    DataReport report{noteDesign()};
    ScriptedDialogs dialogs;
    FakeErrorFrame errors{dialogs};
    std::unique_ptr<ReportWindow> window;
    ReportView *view = nullptr;
};

TEST_F(ReportWindowTest, GoesThroughThePagesByKeysAndNumber)
{
    EXPECT_EQ(window->windowTitle(), u"All notes"_s);
    EXPECT_EQ(view->currentPage(), 1);
    waitFor([&] {
        return labelText(u"Count"_s).startsWith(u"of "_s) && !labelText(u"Count"_s).contains(u"more"_s);
    });
    const int last = labelText(u"Count"_s).mid(3).toInt();
    EXPECT_GT(last, 5);
    EXPECT_FALSE(control<QWidget>(window.get(), u"Work"_s)->isVisible());
    QTest::keyClick(view, Qt::Key_PageDown, Qt::ControlModifier);
    EXPECT_EQ(view->currentPage(), 2);
    QTest::keyClick(view, Qt::Key_End, Qt::ControlModifier);
    EXPECT_EQ(view->currentPage(), last);
    QTest::keyClick(view, Qt::Key_PageUp, Qt::ControlModifier);
    EXPECT_EQ(view->currentPage(), last - 1);
    QTest::keyClick(view, Qt::Key_Home, Qt::ControlModifier);
    EXPECT_EQ(view->currentPage(), 1);
    QTest::keyClick(view, Qt::Key_L, Qt::ControlModifier);
    auto *number = control<QSpinBox>(window.get(), u"Page"_s);
    EXPECT_TRUE(number->hasFocus());
    QTest::keyClicks(number, u"4"_s);
    QTest::keyClick(number, Qt::Key_Return);
    EXPECT_EQ(view->currentPage(), 4);
    EXPECT_TRUE(window->isVisible());
    EXPECT_TRUE(view->hasFocus());
    view->grab();
    EXPECT_TRUE(view->accessibleDescription().contains(u"Page 4 of %1"_s.arg(last)));
    choose(window.get(), u"mnuReturn"_s);
    EXPECT_FALSE(window->isVisible());
}

TEST_F(ReportWindowTest, ZoomsAndFits)
{
    const auto pageFits = [&] {
        return qMakePair(view->horizontalScrollBar()->maximum() == 0,
                         15840 / 15 * view->zoom() <= view->viewport()->height());
    };
    EXPECT_EQ(pageFits(), qMakePair(true, false));
    choose(window.get(), u"mnuFitPage"_s);
    EXPECT_EQ(pageFits(), qMakePair(true, true));
    window->resize(500, 400);
    EXPECT_EQ(pageFits(), qMakePair(true, true));
    choose(window.get(), u"mnuActualSize"_s);
    EXPECT_EQ(view->zoom(), 1);
    EXPECT_EQ(pageFits(), qMakePair(false, false));
    QTest::keyClick(view, Qt::Key_Plus, Qt::ControlModifier);
    EXPECT_EQ(view->zoom(), 1.25);
    choose(window.get(), u"mnuZoomOut"_s);
    choose(window.get(), u"mnuZoomOut"_s);
    EXPECT_EQ(view->zoom(), 0.75);
}

TEST_F(ReportWindowTest, FindsOverLinesAndPages)
{
    QTest::keyClick(view, Qt::Key_F, Qt::ControlModifier);
    auto *text = control<QLineEdit>(window.get(), u"FindText"_s);
    EXPECT_TRUE(text->hasFocus());
    QTest::keyClicks(text, u"NEEDLE"_s);
    waitFor([&] { return labelText(u"FindCount"_s) == u"1 of 100"_s; });
    QTest::keyClick(text, Qt::Key_Return);
    EXPECT_EQ(labelText(u"FindCount"_s), u"2 of 100"_s);
    QTest::keyClick(text, Qt::Key_F3, Qt::ShiftModifier);
    QTest::keyClick(text, Qt::Key_F3, Qt::ShiftModifier);
    EXPECT_EQ(labelText(u"FindCount"_s), u"100 of 100"_s);
    EXPECT_GT(view->currentPage(), 5);
    text->setText(u"hay stack of 100"_s); // the note is broken in it
    waitFor([&] { return labelText(u"FindCount"_s) == u"1 of 1"_s; });
    const QImage marked = view->viewport()->grab().toImage();
    int orange = 0;
    for (int y = 0; y < marked.height(); ++y)
        for (int x = 0; x < marked.width(); ++x)
            orange += marked.pixelColor(x, y) == QColor(255, 150, 40);
    EXPECT_GT(orange, 200);
    text->setText(u"haystack"_s);
    waitFor([&] { return labelText(u"FindCount"_s) == u"Not found"_s; });
    QTest::keyClick(text, Qt::Key_Escape);
    EXPECT_FALSE(text->isVisible());
    EXPECT_TRUE(window->isVisible());
}

TEST_F(ReportWindowTest, SelectsAndCopies)
{
    QClipboard *clipboard = QGuiApplication::clipboard();
    auto *copy = control<QAction>(window.get(), u"mnuCopy"_s);
    EXPECT_FALSE(copy->isEnabled());
    QTest::keyClick(view, Qt::Key_A, Qt::ControlModifier);
    QTest::keyClick(view, Qt::Key_C, Qt::ControlModifier);
    const QString all = clipboard->text();
    EXPECT_TRUE(all.startsWith(u"Notes\nName\nclient 1\tfirst line\nneedle in a hay stack of 1\n0.5\n"_s))
        << all.left(200).toStdString();
    EXPECT_TRUE(all.contains(u"needle in a hay stack of 100\n0.5\n50.0 hours\n"_s));
    EXPECT_EQ(all.count(u"needle"_s), 100);

    choose(window.get(), u"mnuActualSize"_s);
    QTest::keyClick(view, Qt::Key_Home, Qt::ControlModifier);
    const auto at = [&](int left, int top) { // of the paper, in twips
        return QPoint(12 + left / 15 - view->horizontalScrollBar()->value(), 12 + top / 15);
    };
    const int detail = 1440 + 600 + 400;
    QTest::mousePress(view->viewport(), Qt::LeftButton, {}, at(1440 + 2430, detail + 100));
    QTest::mouseMove(view->viewport(), at(9000, detail + 100));
    QMouseEvent drag(QEvent::MouseMove, at(9000, detail + 100),
                     view->viewport()->mapToGlobal(at(9000, detail + 100)), Qt::NoButton, Qt::LeftButton, {});
    QApplication::sendEvent(view->viewport(), &drag);
    QTest::mouseRelease(view->viewport(), Qt::LeftButton, {}, at(9000, detail + 100));
    copy->trigger();
    EXPECT_EQ(clipboard->text(), u"first line"_s);
    QTest::keyClick(view, Qt::Key_Down, Qt::ShiftModifier);
    for (int i = 0; i < 6; ++i)
        QTest::keyClick(view, Qt::Key_Right, Qt::ShiftModifier);
    copy->trigger();
    EXPECT_EQ(clipboard->text(), u"first line\nneedle"_s);
    QTest::mouseDClick(view->viewport(), Qt::LeftButton, {}, at(1440 + 100, detail + 100));
    copy->trigger();
    EXPECT_EQ(clipboard->text(), u"client"_s);
}

TEST_F(ReportWindowTest, ExportsAndPrintsOrSaysWhyNot)
{
    const QString path = office.folder.filePath(u"notes.csv"_s);
    dialogs.expectChoice({.FileName = path});
    choose(window.get(), u"mnuExportCsv"_s);
    EXPECT_EQ(dialogs.lastChoice.FileName, u"All notes.csv"_s);
    EXPECT_TRUE(dialogs.lastChoice.overwritePrompt);
    EXPECT_GT(QFileInfo(path).size(), 1000);
    dialogs.expectCancel();
    choose(window.get(), u"mnuExportPdf"_s);
    dialogs.expectChoice({.FileName = office.folder.filePath(u"none/notes.txt"_s)});
    dialogs.expect({.prompt = u"Path/File access error"_s, .icon = Icon::Exclamation});
    choose(window.get(), u"mnuExportText"_s);
    window->askToPrint = [](QPrinter &) { return false; };
    if (QPrinterInfo::availablePrinterNames().isEmpty())
        dialogs.expect(
            {.prompt = u"Problem getting printer information from the system. Make sure the printer is set "
                       "up correctly"_s,
             .icon = Icon::Exclamation});
    QTest::keyClick(view, Qt::Key_P, Qt::ControlModifier);
    EXPECT_TRUE(dialogs.done());
}

TEST_F(ReportWindowTest, EveryControlHasAName)
{
    int named = 0;
    for (QWidget *widget : window->findChildren<QWidget *>()) {
        if (!(widget->focusPolicy() & Qt::TabFocus) || widget->focusProxy() || widget->inherits("QMenuBar") ||
            widget->inherits("QScrollBar"))
            continue;
        EXPECT_FALSE(QAccessible::queryAccessibleInterface(widget)->text(QAccessible::Name).isEmpty())
            << widget->metaObject()->className() << ' ' << widget->objectName().toStdString();
        ++named;
    }
    EXPECT_GT(named, 12);
}

} // namespace
} // namespace vardelin::testing_support
