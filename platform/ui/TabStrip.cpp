#include "platform/ui/TabStrip.h"

#include <QShortcut>
#include <QSignalBlocker>

namespace vardelin {

TabStrip::TabStrip(const QStringList &captions, QWidget *parent) : QTabBar(parent), m_designed(captions)
{
    setExpanding(false);
    setDrawBase(false);
    setElideMode(Qt::ElideRight);
    setUsesScrollButtons(true);
    for (const QString &caption : captions)
        setTabCaption(addTab(QString()) + 1, caption);
    connect(this, &QTabBar::currentChanged, this, [this](int tab) { choose(tab); });
    connect(this, &QTabBar::tabBarClicked, this, [this](int tab) {
        if (tab == currentIndex()) // another one comes as a change
            choose(tab);
    });
    for (const int direction : {-1, 1}) {
        auto *keys = new QShortcut(Qt::CTRL | (direction < 0 ? Qt::Key_PageUp : Qt::Key_PageDown), this);
        connect(keys, &QShortcut::activated, this, [this, direction] { step(direction); });
    }
}

void TabStrip::select(int index)
{
    const QSignalBlocker programmatic(this);
    setCurrentIndex(index - 1);
}

void TabStrip::setTabCaption(int index, const QString &caption)
{
    setTabText(index - 1, QString(caption).replace(u'&', QLatin1String("&&")));
    setTabToolTip(index - 1, caption); // a long one is cut short
}

QString TabStrip::tabCaption(int index) const
{
    return tabToolTip(index - 1);
}

QSize TabStrip::minimumTabSizeHint(int tab) const
{
    const bool designed = tabCaption(tab + 1) == m_designed.value(tab);
    return designed ? tabSizeHint(tab) : QTabBar::minimumTabSizeHint(tab);
}

void TabStrip::step(int direction)
{
    setCurrentIndex((currentIndex() + direction + count()) % count());
}

void TabStrip::choose(int tab)
{
    if (tab >= 0 && Click)
        Click(tab + 1);
}

} // namespace vardelin
