#include "platform/ui/RecordScrollBar.h"

#include "platform/base/Value.h"
#include "platform/data/RecordPlace.h"

#include <QKeyEvent>
#include <QSignalBlocker>

namespace vardelin {

RecordScrollBar::RecordScrollBar(int max, QWidget *parent) : QScrollBar(Qt::Horizontal, parent)
{
    setRange(0, max);
    setFocusPolicy(Qt::TabFocus);
    setTracking(false);
    connect(this, &QScrollBar::actionTriggered, this, [this](int action) { step(action); });
    connect(this, &QScrollBar::valueChanged, this, [this] {
        if (Change)
            Change();
    });
}

int RecordScrollBar::valueOf(int position) const
{
    return toLong(Value(static_cast<double>(position) / m_count * maximum()));
}

void RecordScrollBar::showPlace(int position, int count)
{
    m_count = count;
    setValue(position >= 1 && count >= 2 ? valueOf(position) : 0);
}

void RecordScrollBar::setValue(int value)
{
    const QSignalBlocker programmatic(this);
    QScrollBar::setValue(value);
}

// Qt turns the keys of scroll bars round, which is right for Page Down and wrong for the arrow to the right.
void RecordScrollBar::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Right)
        triggerAction(SliderSingleStepAdd);
    else if (event->key() == Qt::Key_Left)
        triggerAction(SliderSingleStepSub);
    else
        QScrollBar::keyPressEvent(event);
}

// A record further than the one that the bar stands for, whatever that is in steps of the bar. On a bar with
// fewer steps than records it may be more.
void RecordScrollBar::step(int action)
{
    const int records = action == SliderSingleStepAdd   ? 1
                        : action == SliderSingleStepSub ? -1
                        : action == SliderPageStepAdd   ? 10
                        : action == SliderPageStepSub   ? -10
                                                        : 0;
    if (records == 0 || m_count == 0)
        return;
    const int now = vardelin::sliderPosition(value(), maximum(), m_count).value_or(1);
    const int next = valueOf(std::clamp(now + records, 1, m_count));
    const int least = value() + (records > 0 ? 1 : -1);
    setSliderPosition(records > 0 ? std::max(next, least) : std::min(next, least));
}

} // namespace vardelin
