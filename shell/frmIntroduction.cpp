#include "shell/frmIntroduction.h"

#include "platform/base/Twips.h"
#include "platform/ui/MenuTable.h"
#include "shell/state/Global.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QMenuBar>

using namespace Qt::StringLiterals;

namespace vardelin {

QString introductionText(bool noClients, bool noEmployees)
{
    QStringList parts{u"Welcome to Vardelin."_s};
    if (noClients)
        parts += u"No clients have been entered yet.  If you want to add a client before proceeding to a "
                 u"Data entry window, click on the "
                 u"Add Client menu option above."_s;
    if (noEmployees)
        parts += u"No employees (or anyone else using this program) have been entered yet.  If you want to "
                 u"add your name to the employee "
                 u"list, click on the Add Employee menu option above."_s;
    parts +=
        u"Click on the Go to Data entry window menu option above if you do not wish to add anyone at this time."_s;
    return parts.join(u"\n\n"_s);
}

frmIntroduction::frmIntroduction(Global &global, QWidget *parent) : QDialog(parent), m_global(global)
{
    setObjectName(u"frmIntroduction"_s);
    setWindowTitle(u"Welcome to Vardelin"_s);
    auto *bar = new QMenuBar;
    bar->addActions(
        makeBar(this,
                {{u"mnuAddClient"_s, u"Add &Client"_s, {}, [this] { mnuAddClient_Click(); }},
                 {u"mnuAddEmployee"_s, u"Add &Employee"_s, {}, [this] { mnuAddEmployee_Click(); }},
                 {u"mnuDataEntry"_s, u"&Go to Data entry window"_s, {}, [this] { accept(); }}},
                m_global.services.errors));
    findChild<QAction *>(u"mnuAddClient"_s)->setEnabled(m_global.NoClients);
    findChild<QAction *>(u"mnuAddEmployee"_s)->setEnabled(m_global.NoEmployees);

    auto *Image1 = new QLabel;
    Image1->setObjectName(u"Image1"_s);
    Image1->setAccessibleName(u"Vardelin"_s);
    Image1->setPixmap(QIcon(u":/icons/vardelin.svg"_s).pixmap(64, 64));
    Image1->setAlignment(Qt::AlignTop);
    auto *Label1 = new QLabel(introductionText(m_global.NoClients, m_global.NoEmployees));
    Label1->setObjectName(u"Label1"_s);
    Label1->setWordWrap(true);
    Label1->setTextFormat(Qt::PlainText);
    Label1->setAlignment(Qt::AlignTop | Qt::AlignLeft);
    Label1->setMinimumWidth(380);

    auto *all = new QHBoxLayout(this);
    all->setMenuBar(bar);
    const int margin = toPixels(200);
    all->setContentsMargins(margin, margin, margin, margin);
    all->setSpacing(16);
    all->addWidget(Image1);
    all->addWidget(Label1, 1);
    if (const QWidget *main = m_global.frmMain)
        move(main->pos() + QPoint(toPixels(700), toPixels(1500)));
}

// "YES" stays in the variable until another command stores something there.
void frmIntroduction::mnuAddClient_Click()
{
    m_global.SearchClient = u"YES"_s;
    accept();
}

void frmIntroduction::mnuAddEmployee_Click()
{
    m_global.SearchEmployee = u"YES"_s;
    accept();
}

} // namespace vardelin
