#pragma once
// Keeps the program's face alive while rows are carried: a bar in the window's status line, and the screen
// painted. What the user types or clicks meanwhile waits until the command is done, so no second command
// begins inside it.

#include "shell/state/Windows.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QPointer>

namespace vardelin {

class TransferProgress
{
public:
    TransferProgress(DisplayWindow *window, int rows) : m_window(window), m_rows(rows) { m_since.start(); }
    ~TransferProgress() { show(100); }
    TransferProgress(const TransferProgress &) = delete;
    TransferProgress &operator=(const TransferProgress &) = delete;

    void rowDone()
    {
        ++m_done;
        if (m_since.elapsed() < kEvery)
            return;
        show(m_rows > 0 ? static_cast<int>(99LL * m_done / m_rows) : 0);
        QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
        m_since.restart();
    }

private:
    static constexpr int kEvery = 100; // milliseconds
    void show(int percent)
    {
        if (m_window)
            m_window->showProgress(percent);
    }

    QPointer<DisplayWindow> m_window;
    int m_rows, m_done = 0;
    QElapsedTimer m_since;
};

} // namespace vardelin
