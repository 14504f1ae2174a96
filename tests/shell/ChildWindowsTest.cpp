// Making, numbering and arranging the child windows, and what the parent's bar shows of them.

#include "shell/Arrange.h"
#include "tests/shell/Running.h"

using namespace Qt::StringLiterals;

namespace vardelin::testing_support {

struct ChildWindows : testing::Test
{
    ChildWindows()
    {
        office.settings.SaveSetting(u"Preferences"_s, u"Show Tips at Startup"_s, u"1"_s);
        office.global.DatabaseFileName = folder.filePath(u"office.mdb"_s);
        CreateDatabase(office.global);
        office.main.resize(1000, 700);
        office.main.show();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&office.main));
    }
    ~ChildWindows() override { open.ExitProgram(); }

    QTemporaryDir folder;
    Running office{folder.path()};
    Global &global = office.global;
    Openers &open = global.openers;
};

TEST(Tiles, coverTheAreaWithoutOverlap)
{
    for (int count = 1; count <= 12; ++count) {
        for (const Tile direction : {Tile::Horizontally, Tile::Vertically}) {
            const QSize area(997, 613);
            const std::vector<QRect> rects = tileRects(count, area, direction);
            ASSERT_EQ(rects.size(), static_cast<std::size_t>(count));
            qint64 covered = 0;
            for (std::size_t i = 0; i < rects.size(); ++i) {
                EXPECT_TRUE(QRect(QPoint(), area).contains(rects[i]));
                covered += static_cast<qint64>(rects[i].width()) * rects[i].height();
                for (std::size_t j = 0; j < i; ++j)
                    EXPECT_FALSE(rects[i].intersects(rects[j])) << count;
            }
            EXPECT_EQ(covered, static_cast<qint64>(area.width()) * area.height()) << count;
        }
    }
    EXPECT_EQ(tileRects(3, {900, 300}, Tile::Horizontally).back(), QRect(0, 200, 900, 100));
    EXPECT_EQ(tileRects(3, {900, 300}, Tile::Vertically).back(), QRect(600, 0, 300, 300));
}

TEST_F(ChildWindows, AreNumberedForEverAndKeepTheirFile)
{
    EXPECT_EQ(office.bar(), (QStringList{u"&Display"_s, u"&Enter data"_s}))
        << "the parent's own, with no child open";
    choose(&office.main, u"mnuMDisplay"_s);
    EXPECT_TRUE(office.bar().contains(u"&Delete Log"_s));
    const auto focused = [&] { return office.activeChild()->focusWidget()->objectName(); };
    EXPECT_EQ(focused(), u"Text1"_s) << "not a tool button";
    EntryWindow *first = open.NewEntryWindow();
    EXPECT_TRUE(office.bar().contains(u"&Log completed"_s)) << office.bar().join(u'|').toStdString();
    EXPECT_EQ(focused(), u"Combo1"_s);
    EntryWindow *second = open.NewEntryWindow();
    EXPECT_EQ(office.children(),
              (QStringList{u"Display form 1"_s, u"Data entry form 1"_s, u"Data entry form 2"_s}));
    EXPECT_EQ(second->Tag, u"2"_s);
    EXPECT_EQ(global.CurrentEntryTag, u"2"_s);
    EXPECT_EQ(global.EntryWindowIndex, 1);
    EXPECT_EQ(office.activeChild(), second);
    EXPECT_EQ(second->file(), global.DatabaseFileName);

    second->parentWidget()->close();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_EQ(global.EntryWindows.size(), 2u) << "a closed window keeps its slot";
    EXPECT_TRUE(global.EntryWindows[1].isNull());
    EXPECT_EQ(open.NewEntryWindow()->Caption(), u"Data entry form 3"_s);
    EXPECT_EQ(open.makeEntryWindow(0), first);
    EntryWindow *again = open.makeEntryWindow(1);
    EXPECT_EQ(again->Caption(), u"Data entry form 2"_s);
    EXPECT_EQ(global.EntryWindows[1], again);
    for (QMdiSubWindow *window : office.main.area().subWindowList())
        window->close();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_EQ(office.bar(), (QStringList{u"&Display"_s, u"&Enter data"_s}));
}

TEST_F(ChildWindows, BarAndTagsFollowTheActiveOne)
{
    DisplayWindow *display = open.NewDisplayWindow();
    EntryWindow *entry = open.NewEntryWindow();
    global.DisplayWindowActive = false;
    display->SetFocus();
    EXPECT_EQ(office.activeChild(), display);
    EXPECT_TRUE(office.bar().contains(u"&Delete Log"_s));
    EXPECT_TRUE(global.DisplayWindowActive);
    entry->SetFocus();
    EXPECT_TRUE(office.bar().contains(u"&Log completed"_s));
    EXPECT_TRUE(global.EntryWindowActive && !global.DisplayWindowActive);
    choose(entry, u"Toolbar1.Back"_s);
    EXPECT_EQ(office.activeChild(), display);
    choose(display, u"Toolbar1.Forward"_s);
    EXPECT_EQ(office.activeChild(), entry);
}

TEST_F(ChildWindows, StandInTheWindowMenuOfEachOther)
{
    open.NewDisplayWindow();
    open.NewEntryWindow();
    DisplayWindow *last = open.NewDisplayWindow();
    for (int opened = 0; opened < 2; ++opened) { // made anew each time, not added to
        QStringList listed;
        Q_EMIT last->windowMenu()->aboutToShow();
        for (const QAction *action : last->windowMenu()->actions())
            if (action->isCheckable())
                listed += action->text() + (action->isChecked() ? u"*"_s : QString());
        EXPECT_EQ(listed, (QStringList{u"Display form 1"_s, u"Data entry form 1"_s, u"Display form 2*"_s}));
    }
    for (QAction *action : last->windowMenu()->actions())
        if (action->text() == u"Data entry form 1"_s)
            action->trigger();
    EXPECT_EQ(static_cast<ChildWindow *>(office.activeChild())->Caption(), u"Data entry form 1"_s);
}

TEST_F(ChildWindows, TileAndCascadeLeaveEveryOneInSight)
{
    for (int i = 0; i < 3; ++i)
        open.NewDisplayWindow();
    EntryWindow *entry = open.NewEntryWindow();
    entry->parentWidget()->showMinimized();
    const QRect area = office.main.area().viewport()->rect();
    for (const auto &arrange : {open.TileHorizontally, open.TileVertically}) {
        arrange();
        int covered = 0;
        for (const QMdiSubWindow *window : office.main.area().subWindowList()) {
            EXPECT_FALSE(window->isMinimized());
            EXPECT_TRUE(area.contains(window->geometry())) << window->windowTitle().toStdString();
            covered += window->width() * window->height();
        }
        EXPECT_EQ(covered, area.width() * area.height());
    }
    choose(entry, u"mnuCascade"_s);
    const auto windows = office.main.area().subWindowList(QMdiArea::CreationOrder);
    for (qsizetype i = 1; i < windows.size(); ++i)
        EXPECT_NE(windows[i]->pos(), windows[i - 1]->pos());
}

TEST_F(ChildWindows, OpenMaximizedBesideAMaximizedOne)
{
    EntryWindow *entry = open.NewEntryWindow();
    entry->parentWidget()->showMaximized();
    QCoreApplication::processEvents();
    control<QLineEdit>(entry, u"Text1"_s)->setFocus();
    choose(entry, u"mnuEnterDisplay"_s);
    QCoreApplication::processEvents();
    QWidget *display = office.activeChild();
    ASSERT_NE(display, entry);
    EXPECT_EQ(display->parentWidget()->geometry(), office.main.area().viewport()->rect());
    EXPECT_EQ(display->focusWidget()->objectName(), u"Text1"_s);
    static_cast<QMdiSubWindow *>(display->parentWidget())->showNormal();
    QCoreApplication::processEvents();
    EXPECT_EQ(display->focusWidget()->objectName(), u"Text1"_s);
    static_cast<QMdiSubWindow *>(display->parentWidget())->showMaximized();
    for (int i = 0; i < 2; ++i) { // there and back
        choose(office.activeChild(), i == 0 ? u"Toolbar1.Back"_s : u"Toolbar1.Forward"_s);
        QCoreApplication::processEvents();
        EXPECT_EQ(office.activeChild(), i == 0 ? entry : display);
        EXPECT_EQ(office.activeChild()->focusWidget()->objectName(), u"Text1"_s);
    }
    static_cast<QMdiSubWindow *>(display->parentWidget())->showNormal();
    for (const QMdiSubWindow *window : office.main.area().subWindowList())
        EXPECT_LT(window->width(), office.main.area().viewport()->width());
}

TEST_F(ChildWindows, KeysReachTheActiveWindowAloneAndLeaveEditingWhole)
{
    open.NewEntryWindow();
    open.NewDisplayWindow();
    DisplayWindow *window = open.NewDisplayWindow();
    auto *field = control<QLineEdit>(window, u"Text1"_s);
    typeOver(field, u"abc"_s);
    field->setSelection(0, 2);
    QTest::keyClick(field, Qt::Key_X, Qt::ControlModifier);
    EXPECT_EQ(field->text(), u"c"_s);
    QTest::keyClick(field, Qt::Key_G, Qt::ControlModifier);
    QTest::keyClick(field, Qt::Key_V, Qt::ControlModifier);
    EXPECT_EQ(field->text(), u"ababc"_s);
    QTest::keyClick(field, Qt::Key_Home);
    QTest::keyClick(field, Qt::Key_Delete);
    EXPECT_EQ(field->text(), u"babc"_s) << "Del takes one character where nothing is selected";
    QTest::keyClick(field, Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(field->text(), u"ababc"_s);
}

} // namespace vardelin::testing_support
