#include "display/frmDisplay.h"

#include "shell/state/Global.h"
#include "shell/state/Trim.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QProgressBar>

using namespace Qt::StringLiterals;

namespace vardelin {

void ReleaseSlider::mousePressEvent(QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton)
        return event->ignore();
    const QPointF inGroove(event->position().x(), rect().center().y());
    QMouseEvent press(event->type(), inGroove, event->globalPosition(), event->button(), event->buttons(),
                      event->modifiers(), event->pointingDevice());
    QSlider::mousePressEvent(&press);
}

void ReleaseSlider::mouseReleaseEvent(QMouseEvent *event)
{
    QSlider::mouseReleaseEvent(event);
    if (event->button() == Qt::LeftButton && mouseReleased)
        mouseReleased();
}

void ReleaseSlider::keyPressEvent(QKeyEvent *event)
{
    const int before = value();
    QSlider::keyPressEvent(event);
    if (value() != before && keyMoved)
        keyMoved(value() > before ? 1 : -1);
}

void ReleaseSlider::wheelEvent(QWheelEvent *event)
{
    event->ignore();
}

void FocusField::focusOutEvent(QFocusEvent *event)
{
    QLineEdit::focusOutEvent(event);
    const Qt::FocusReason reason = event->reason();
    // An opened menu, a dialog or another program takes the keyboard, but the field keeps its place.
    if (lostFocus && reason != Qt::PopupFocusReason && reason != Qt::MenuBarFocusReason &&
        reason != Qt::ActiveWindowFocusReason)
        lostFocus();
}

frmDisplay::frmDisplay(Global &global, QWidget *parent) : DisplayWindow(parent), m_global(global)
{
    setObjectName(u"frmDisplay"_s);
    setCaption(u"Display"_s);
    makeFields();
    makeToolbar();
    makeMenus();
    bindFields();
    layOut();
    setHints();
    Form_Load();
}

frmDisplay::~frmDisplay() = default;

// A failure in any step ends the load quietly and leaves the window as far as it came.
void frmDisplay::Form_Load()
{
    resumeNext([this] {
        setFonts();
        showView(false);
        setFile(m_global.DatabaseFileName);
        m_global.DisplayWindowActive = true;
        m_global.CurrentSQL = u"Select * from Vardelins order by [Beginning Time]"_s;
        setSelection(m_global.CurrentSQL, QString());
        Adodc1.ConnectionString = ado::connectionText(m_global.DatabaseFileName);
        Adodc1.RecordSource = m_global.CurrentSQL;
        Adodc1.Refresh();
        ado::Recordset &records = Adodc1.Recordset();
        if (records.EOF_())
            return;
        m_global.RangeStart = records.Fields(u"Beginning Time"_s);
        m_global.FirstRecordBookmark = records.Bookmark();
        Adodc1.MoveLast();
        m_global.RangeEnd = records.Fields(u"Beginning Time"_s);
        Slider1->setValue(Slider1->maximum());
    });
    m_navigator->refreshButtons();
}

void frmDisplay::setFile(const QString &path)
{
    Label2->setText(path);
    showFile();
}

QString frmDisplay::file() const
{
    return Label2->text();
}

void frmDisplay::setSelection(const QString &statement, const QString &whereFragment)
{
    SQLWhere->setText(statement);
    SQLWhere->setToolTip(whereFragment);
}

QString frmDisplay::whereFragment() const
{
    return SQLWhere->toolTip();
}

void frmDisplay::showSelection(const QString &statement)
{
    Adodc1.RecordSource = statement;
    Adodc1.Refresh();
    m_navigator->refreshButtons();
}

int frmDisplay::recordCount()
{
    return Adodc1.Recordset().RecordCount();
}

void frmDisplay::showLast()
{
    Adodc1.MoveLast();
}

QString frmDisplay::client() const
{
    return Text1->text();
}

void frmDisplay::Form_Activate()
{
    m_global.DisplayWindowActive = true;
    m_global.CurrentDisplayTag = Tag;
}

void frmDisplay::showFile()
{
    Label1->setText(u"  "_s + Label2->text() + u"  "_s);
}

Place frmDisplay::place()
{
    return placeOf(Adodc1.Recordset());
}

void frmDisplay::Adodc1_MoveComplete(MoveReason reason)
{
    m_navigator->refreshButtons();
    resumeNext([&] {
        const Place now = place();
        m_navigator->setCaption(
            now.count == 0 || now.position < 1
                ? QString()
                : tr("%1 of %2").arg(QLocale::c().toString(now.position), QLocale::c().toString(now.count)));
        if (reason != MoveReason::Delete)
            Slider1->setValue(sliderValue(now, Slider1->maximum()));
    });
}

void frmDisplay::Slider1_MouseUp()
{
    resumeNext([this] {
        const int count = Adodc1.Recordset().RecordCount();
        if (const auto position = sliderPosition(Slider1->value(), Slider1->maximum(), count))
            goTo(*position);
        else
            Slider1->setValue(0);
    });
}

// Where a refused edit keeps the record, the slider goes back to it.
void frmDisplay::goTo(int position)
{
    if (!Adodc1.SetAbsolutePosition(position))
        Slider1->setValue(sliderValue(place(), Slider1->maximum()));
}

// A hundred steps over a handful of records would mean keys that seem dead: each moves one record at least.
void frmDisplay::Slider1_KeyMoved(int direction)
{
    resumeNext([&] {
        const Place now = place();
        if (now.count == 0)
            return Slider1->setValue(0);
        const int asked = sliderPosition(Slider1->value(), Slider1->maximum(), now.count).value_or(1);
        const int next =
            direction > 0 ? std::max(asked, now.position + 1) : std::min(asked, now.position - 1);
        goTo(std::clamp(next, 1, now.count));
    });
}

void frmDisplay::Text4_LostFocus()
{
    m_global.CurrentRate = Trim(Text4->text());
    m_global.CurrentDuration = Trim(Text8->text());
    if (const auto tip = feeTip(m_global.CurrentRate, m_global.CurrentDuration))
        Label1->setText(*tip);
}

void frmDisplay::mnuText_Click()
{
    showView(false);
    RichTextBox2->setFocus();
}

void frmDisplay::mnuGraphics_Click()
{
    showView(true);
    RichTextBox1->setFocus();
}

void frmDisplay::showView(bool graphics)
{
    findChild<QAction *>(u"mnuText"_s)->setEnabled(graphics);
    findChild<QAction *>(u"mnuGraphics"_s)->setEnabled(!graphics);
    if (graphics)
        showGraphic();
    m_views->setCurrentWidget(graphics ? RichTextBox1 : RichTextBox2);
}

// Rich text with pictures is costly to lay out; walking through the records in the text view doesn't pay for
// it.
void frmDisplay::showGraphic()
{
    if (m_graphicShown)
        return;
    RichTextBox1->setTextRTF(m_graphic);
    RichTextBox1->document()->setModified(false);
    m_graphicShown = true;
}

void frmDisplay::showProgress(int percent)
{
    m_progress->setVisible(percent < 100);
    m_progress->setValue(percent);
}

} // namespace vardelin
