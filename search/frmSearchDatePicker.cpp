#include "search/frmSearchDatePicker.h"

#include "platform/base/Twips.h"
#include "platform/ui/Controls.h"
#include "platform/ui/MenuTable.h"
#include "shell/state/Global.h"

#include <QKeyEvent>
#include <QMenuBar>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace vardelin {

namespace {

constexpr int kDaysAtFirst = 138;
constexpr int kDaysAfterRefusal = 183;

} // namespace

frmSearchDatePicker::frmSearchDatePicker(Global &global, QWidget *parent)
    : QDialog(parent), m_global(global), DTPicker1(new DateTimePicker), DTPicker2(new DateTimePicker)
{
    setObjectName(u"frmSearchDatePicker"_s);
    setWindowTitle(u"Select beginning and ending dates"_s);
    layOut();
    setPickers(kDaysAtFirst);
    if (const QWidget *main = m_global.frmMain)
        move(main->pos() + QPoint(toPixels(500), toPixels(500)));
}

void frmSearchDatePicker::layOut()
{
    auto *bar = new QMenuBar;
    bar->addActions(makeBar(this,
                            {{u"mnuReturn"_s, u"&Return"_s, {}, [this] { mnuReturn_Click(); }},
                             {u"mnuContinue"_s, u"&Continue"_s, {}, [this] { mnuContinue_Click(); }}},
                            m_global.services.errors));
    auto *all = new QVBoxLayout(this);
    all->setMenuBar(bar);
    const auto addFrame = [all](const QString &name, const QString &caption, DateTimePicker *picker,
                                const QString &pickerName) {
        picker->setObjectName(pickerName);
        picker->setAccessibleName(caption);
        auto *frame = new QGroupBox(caption);
        frame->setObjectName(name);
        (new QVBoxLayout(frame))->addWidget(picker);
        all->addWidget(frame);
    };
    addFrame(u"Frame1"_s, u"Start date"_s, DTPicker1, u"DTPicker1"_s);
    addFrame(u"Frame2"_s, u"End date"_s, DTPicker2, u"DTPicker2"_s);
    all->addStretch();
    // Wide enough for its title, which window managers write larger.
    setMinimumWidth(fontMetrics().horizontalAdvance(windowTitle()) * 3 / 2 + 120);
}

void frmSearchDatePicker::setPickers(int daysBack)
{
    const DateSerial now = m_global.services.clock.now();
    DTPicker1->setValue(DateSerial{now.days - daysBack});
    DTPicker2->setValue(now);
}

void frmSearchDatePicker::mnuReturn_Click()
{
    reject();
}

void frmSearchDatePicker::mnuContinue_Click()
{
    const DateSerial start = DTPicker1->Value(), end = DTPicker2->Value();
    m_global.RangeStart = start;
    m_global.RangeEnd = end;
    if (end.days > start.days) {
        accept();
        return;
    }
    m_global.services.dialogs.msgBox(
        {u"The beginning time must be earlier than the ending time.  Please try again."_s});
    setPickers(kDaysAfterRefusal);
}

void frmSearchDatePicker::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)
        m_global.services.errors.run([this] { mnuContinue_Click(); });
    else
        QDialog::keyPressEvent(event);
}

} // namespace vardelin
