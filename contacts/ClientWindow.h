#pragma once
// What the windows on active and on inactive clients have in common: the data control with its navigator and
// scroll bar, the tabs with the present client's name on the first, the fields.

#include "contacts/FramePane.h"
#include "platform/ui/MenuTable.h"
#include "platform/ui/RecordNavigator.h"
#include "platform/ui/RecordScrollBar.h"
#include "platform/ui/TabStrip.h"

#include <QDialog>

class QMenuBar;
class QScrollArea;
class QVBoxLayout;

namespace vardelin {

struct Global;

class ClientWindow : public QDialog
{
    Q_OBJECT
public:
    ClientWindow(Global &global, const QString &name, const QString &caption, QWidget *parent);
    ~ClientWindow() override;

    static QString noRecords(); // what a window without rows says

protected:
    struct Design
    {
        QStringList tabs;
        std::vector<FieldDesign> fields;
        QString navigator; // its caption
        QString select;    // the statement of the data control
        QString lastName, firstName;
        std::vector<MenuEntry> menu;
    };
    void layOut(const Design &design);
    virtual void Adodc1_MoveComplete(MoveReason reason) = 0;
    virtual void TabStrip1_Click(int index);
    void openRecords(); // ConnectionString, RecordSource, Refresh; throws
    void refresh();     // the same; onError is told what failed, and nothing is open then
    void showMove();    // the ends, the name, the scroll bar
    // Moves away from the record and back, which commits it. False: the engine refused it.
    bool moveAwayAndBack();
    QAction *command(const QString &name) const;
    void setScrollVisible(bool visible);
    void focusFirst(const QString &field); // of the tab on view, and it is in sight
    void keyPressEvent(QKeyEvent *event) override;
    QSize sizeHint() const override;

    Global &m_global;
    Adodc Adodc1;
    TabStrip *TabStrip1 = nullptr;
    RecordScrollBar *HScroll1 = nullptr;
    RecordNavigator *m_navigator = nullptr;
    FramePane *m_pane = nullptr;
    QScrollArea *m_body = nullptr;
    QVBoxLayout *m_all = nullptr;

private:
    void HScroll1_Change();
    QString m_select, m_lastName, m_firstName;
};

} // namespace vardelin
