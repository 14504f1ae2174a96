#include "platform/ui/Look.h"

#include <QApplication>
#include <QProxyStyle>
#include <QStyleOption>

using namespace Qt::StringLiterals;

namespace vardelin {

namespace {

// Fusion shows an entry of a menu bar as chosen only while its menu is open. Here many entries are commands
// without a menu: whoever reaches them by Alt and the arrow keys would not see where he is.
class Look : public QProxyStyle
{
public:
    Look() : QProxyStyle(u"fusion"_s) {}

    void drawControl(ControlElement element, const QStyleOption *option, QPainter *painter,
                     const QWidget *widget) const override
    {
        const auto *item = qstyleoption_cast<const QStyleOptionMenuItem *>(option);
        if (element != CE_MenuBarItem || !item || !(item->state & State_Selected))
            return QProxyStyle::drawControl(element, option, painter, widget);
        QStyleOptionMenuItem chosen(*item);
        chosen.state |= State_Sunken;
        QProxyStyle::drawControl(element, &chosen, painter, widget);
    }
};

} // namespace

void setLook()
{
    // Without a desktop's theme Qt falls back to a style of the nineties.
    const QString style = QApplication::style()->name();
    if (style == "windows"_L1 || style == "fusion"_L1)
        QApplication::setStyle(new Look);
}

} // namespace vardelin
