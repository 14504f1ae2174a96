#pragma once
// The tab strip: tabs without pages of their own. What shows on each is the form's business. Where there is
// little room a caption that was set later is cut short; those of the design are not.

#include <QTabBar>
#include <functional>

namespace vardelin {

class TabStrip : public QTabBar
{
    Q_OBJECT
public:
    explicit TabStrip(const QStringList &captions, QWidget *parent = nullptr);
    int SelectedIndex() const { return currentIndex() + 1; } // tabs count from 1
    void select(int index);                                  // doesn't call Click
    void setTabCaption(int index, const QString &caption);   // as it is: no letter of it is an Alt key
    QString tabCaption(int index) const;

    // A tab was chosen by mouse, by the arrow keys, or by Ctrl+Page Up and Page Down from anywhere in the
    // window, which is where forms move the focus. A click on the tab on view counts, too.
    std::function<void(int index)> Click;

protected:
    QSize minimumTabSizeHint(int tab) const override;

private:
    void step(int direction);
    void choose(int tab);
    const QStringList m_designed;
};

} // namespace vardelin
