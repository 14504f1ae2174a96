#include "platform/ui/WindowList.h"

#include "platform/ui/ChildWindow.h"

#include <QMdiSubWindow>

namespace vardelin {

void WindowList::add(QWidget *window)
{
    remove(window);
    m_windows.emplace_back(window);
}

void WindowList::remove(QWidget *window)
{
    std::erase_if(m_windows, [window](const auto &each) { return !each || each == window; });
}

int WindowList::Count() const
{
    return static_cast<int>(loaded().size());
}

QWidget *WindowList::at(int index) const
{
    const auto windows = loaded();
    return index >= 0 && index < windows.size() ? windows[index] : nullptr;
}

int WindowList::indexOfCaption(const QString &caption) const
{
    const auto windows = loaded();
    const auto found = std::find_if(windows.begin(), windows.end(),
                                    [&](const QWidget *window) { return window->windowTitle() == caption; });
    return static_cast<int>(found - windows.begin());
}

bool WindowList::isMdiChild(const QWidget *window)
{
    return window && (qobject_cast<const ChildWindow *>(window) ||
                      qobject_cast<const QMdiSubWindow *>(window->parentWidget()));
}

QList<QWidget *> WindowList::loaded() const
{
    QList<QWidget *> windows;
    for (const auto &window : m_windows) {
        if (window)
            windows += window;
    }
    return windows;
}

} // namespace vardelin
