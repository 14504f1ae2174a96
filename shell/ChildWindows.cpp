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

// Makes the window of a slot, with the number that tells it from the others of its kind.
template <class Form, class Window>
Window *fillSlot(Global &global, frmMain &parent, QPointer<Window> &slot, int index, const QString &caption,
                 QString &currentTag)
{
    auto *window = new Form(global);
    slot = window;
    window->Tag = QString::number(index + 1);
    currentTag = window->Tag;
    window->setCaption(caption + window->Tag);
    window->setFile(global.DatabaseFileName);
    parent.addChild(window);
    return window;
}

} // namespace

EntryWindow *NewEntryWindow(Global &global, frmMain &parent)
{
    global.EntryWindows.emplace_back();
    global.EntryWindowIndex = static_cast<int>(global.EntryWindows.size()) - 1;
    return entryWindowAt(global, parent, global.EntryWindowIndex);
}

DisplayWindow *NewDisplayWindow(Global &global, frmMain &parent)
{
    global.DisplayWindows.emplace_back();
    global.DisplayWindowIndex = static_cast<int>(global.DisplayWindows.size()) - 1;
    return displayWindowAt(global, parent, global.DisplayWindowIndex);
}

EntryWindow *entryWindowAt(Global &global, frmMain &parent, int index)
{
    QPointer<EntryWindow> &slot = global.EntryWindows.at(static_cast<std::size_t>(index));
    return slot ? slot.get()
                : fillSlot<frmEntryWithFrames>(global, parent, slot, index, u"Data entry form "_s,
                                               global.CurrentEntryTag);
}

DisplayWindow *displayWindowAt(Global &global, frmMain &parent, int index)
{
    QPointer<DisplayWindow> &slot = global.DisplayWindows.at(static_cast<std::size_t>(index));
    return slot ? slot.get()
                : fillSlot<frmDisplay>(global, parent, slot, index, u"Display form "_s,
                                       global.CurrentDisplayTag);
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
