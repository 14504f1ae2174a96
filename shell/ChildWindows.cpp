#include "shell/ChildWindows.h"

#include "display/frmDisplay.h"
#include "entry/frmEntryWithFrames.h"
#include "shell/frmMain.h"
#include "shell/state/Global.h"

#include <QMdiArea>
#include <QMdiSubWindow>

using namespace Qt::StringLiterals;

namespace vardelin {

namespace {

EntryWindow *makeEntryWindow(Global &global, frmMain &parent, int index)
{
    auto *window = new frmEntryWithFrames(global);
    global.EntryWindows[static_cast<std::size_t>(index)] = window;
    window->Tag = QString::number(index + 1);
    global.CurrentEntryTag = window->Tag;
    window->setCaption(u"Data entry form "_s + window->Tag);
    window->setFile(global.DatabaseFileName);
    parent.addChild(window);
    return window;
}

DisplayWindow *makeDisplayWindow(Global &global, frmMain &parent, int index)
{
    auto *window = new frmDisplay(global);
    global.DisplayWindows[static_cast<std::size_t>(index)] = window;
    window->Tag = QString::number(index + 1);
    global.CurrentDisplayTag = window->Tag;
    window->setCaption(u"Display form "_s + window->Tag);
    window->setFile(global.DatabaseFileName);
    parent.addChild(window);
    return window;
}

} // namespace

EntryWindow *NewEntryWindow(Global &global, frmMain &parent)
{
    global.EntryWindows.emplace_back();
    global.EntryWindowIndex = static_cast<int>(global.EntryWindows.size()) - 1;
    return makeEntryWindow(global, parent, global.EntryWindowIndex);
}

DisplayWindow *NewDisplayWindow(Global &global, frmMain &parent)
{
    global.DisplayWindows.emplace_back();
    global.DisplayWindowIndex = static_cast<int>(global.DisplayWindows.size()) - 1;
    return makeDisplayWindow(global, parent, global.DisplayWindowIndex);
}

EntryWindow *entryWindowAt(Global &global, frmMain &parent, int index)
{
    if (EntryWindow *open = global.EntryWindows.at(static_cast<std::size_t>(index)))
        return open;
    return makeEntryWindow(global, parent, index);
}

DisplayWindow *displayWindowAt(Global &global, frmMain &parent, int index)
{
    if (DisplayWindow *open = global.DisplayWindows.at(static_cast<std::size_t>(index)))
        return open;
    return makeDisplayWindow(global, parent, index);
}

void arrangeTiled(frmMain &parent, Tile direction)
{
    const QList<QMdiSubWindow *> windows = parent.area().subWindowList(QMdiArea::CreationOrder);
    const std::vector<QRect> rects =
        tileRects(static_cast<int>(windows.size()), parent.area().viewport()->size(), direction);
    for (qsizetype i = 0; i < windows.size(); ++i) {
        windows[i]->showNormal();
        windows[i]->setGeometry(rects[static_cast<std::size_t>(i)]);
    }
}

void arrangeCascaded(frmMain &parent)
{
    parent.area().cascadeSubWindows();
}

} // namespace vardelin
