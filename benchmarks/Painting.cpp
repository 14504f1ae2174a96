#include "benchmarks/Painting.h"

#include "benchmarks/Figures.h"

#include <QCoreApplication>
#include <QEvent>
#include <stdexcept>

namespace vardelin::bench {

PaintWatch::PaintWatch(std::vector<Kind> kinds) : m_waiting(std::move(kinds))
{
    QCoreApplication::instance()->installEventFilter(this);
}

// A paint event comes within the round of the loop that also hands the window's picture to the screen, so at
// the end of the round it is done.
void PaintWatch::wait()
{
    const std::int64_t start = nanosecondsNow();
    while (!done()) {
        if (secondsSince(start) > 30)
            throw std::runtime_error("nothing was painted");
        QCoreApplication::processEvents();
    }
}

bool PaintWatch::eventFilter(QObject *object, QEvent *event)
{
    if (event->type() == QEvent::Paint && object->isWidgetType())
        std::erase_if(m_waiting, [&](const Kind &kind) { return kind(static_cast<QWidget *>(object)); });
    return false;
}

void waitForPaint(QWidget *widget)
{
    PaintWatch({[widget](QWidget *painted) { return painted == widget; }}).wait();
}

} // namespace vardelin::bench
