#include "contacts/frmDatePicker.h"

#include "platform/base/Twips.h"
#include "platform/ui/MenuTable.h"
#include "shell/state/Global.h"

#include <QKeyEvent>
#include <QMenuBar>
#include <QVBoxLayout>
#include <cmath>

using namespace Qt::StringLiterals;

namespace vardelin {

frmDatePicker::frmDatePicker(Global &global, QWidget *parent)
    : QDialog(parent), m_global(global),
      DTPicker1(new DatePicker(u"M/d/yyyy"_s, DatePicker::Kind::AlwaysADate))
{
    setObjectName(u"frmDatePicker"_s);
    setWindowTitle(u"Pick a date for case closure"_s);
    DTPicker1->setObjectName(u"DTPicker1"_s);
    DTPicker1->setAccessibleCaption(u"Date of case closure"_s);
    auto *bar = new QMenuBar;
    bar->addActions(makeBar(this,
                            {{u"mnuReturn"_s, u"&Return"_s, {}, [this] { reject(); }},
                             {u"mnuDone"_s, u"&Done"_s, {}, [this] { mnuDone_Click(); }}},
                            m_global.services.errors));
    auto *all = new QVBoxLayout(this);
    all->setMenuBar(bar);
    all->setContentsMargins(24, 20, 24, 24);
    all->addWidget(DTPicker1);
    all->addStretch(1);
    setMinimumWidth(320);
    if (const QWidget *main = m_global.frmMain)
        move(main->pos() + QPoint(toPixels(500), toPixels(500)));
    DTPicker1->setValue(DateSerial{std::floor(m_global.services.clock.now().days)});
    DTPicker1->setFocus();
}

void frmDatePicker::mnuDone_Click()
{
    if (const auto date = DTPicker1->Value())
        m_global.CaseClosureDate = *date;
    accept();
}

// Enter in the field is Done, Esc is Return.
void frmDatePicker::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)
        m_global.services.errors.run([this] { mnuDone_Click(); });
    else
        QDialog::keyPressEvent(event);
}

} // namespace vardelin
