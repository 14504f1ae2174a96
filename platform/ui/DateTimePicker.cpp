#include "platform/base/Dates.h"
#include "platform/ui/Controls.h"

#include <QApplication>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMenuBar>
#include <QSignalBlocker>
#include <QWheelEvent>
#include <algorithm>
#include <optional>
#include <utility>

using namespace Qt::StringLiterals;

namespace vardelin {

namespace {

// The section that a key leads to from another one of so many.
std::optional<int> sectionReached(const QKeyEvent &event, int from, int sections)
{
    if ((event.modifiers() & ~Qt::KeypadModifier) != Qt::NoModifier)
        return {};
    switch (event.key()) {
    case Qt::Key_Left:
        return std::max(from - 1, 0);
    case Qt::Key_Right:
        return std::min(from + 1, sections - 1);
    case Qt::Key_Home:
        return 0;
    case Qt::Key_End:
        return sections - 1;
    default:
        return {};
    }
}

} // namespace

DateTimePicker::DateTimePicker(QWidget *parent) : QDateTimeEdit(parent)
{
    // Universal time has no changes of the clock; the hours in it are those on the user's wall.
    setTimeSpec(Qt::UTC);
    setLocale(QLocale(QLocale::English, QLocale::UnitedStates));
    setDateRange(QDate(1601, 1, 1), QDate(9999, 12, 31));
    setDisplayFormat(u"M/dd/yyyy hh:mm AP"_s);
    setCalendarPopup(true);
    setFocusPolicy(Qt::StrongFocus);
    lineEdit()->installEventFilter(this);
    connect(this, &QDateTimeEdit::dateTimeChanged, this, [this] {
        if (edited)
            edited();
    });
    connect(qApp, &QApplication::focusChanged, this, [this](QWidget *, QWidget *now) { followFocus(now); });
}

// It may have the focus, and the bare widget that is left of it would still be told that it loses it.
DateTimePicker::~DateTimePicker()
{
    disconnect(qApp, nullptr, this, nullptr);
}

DateSerial DateTimePicker::Value() const
{
    const QDate day = date();
    const QTime moment = time();
    return serialOf({.year = day.year(),
                     .month = day.month(),
                     .day = day.day(),
                     .hour = moment.hour(),
                     .minute = moment.minute(),
                     .second = moment.second()});
}

void DateTimePicker::setValue(DateSerial value)
{
    const DateParts parts = partsOf(value);
    const QSignalBlocker programmatic(this);
    setDateTime(QDateTime(QDate(parts.year, parts.month, parts.day),
                          QTime(parts.hour, parts.minute, parts.second), Qt::UTC));
}

void DateTimePicker::focusInEvent(QFocusEvent *event)
{
    m_focused = true;
    QDateTimeEdit::focusInEvent(event);
}

// What is typed replaces the section that a key or a click led to. A bare caret there would take no digit,
// for the section is full.
void DateTimePicker::selectSection(int index)
{
    setCurrentSectionIndex(index);
    setSelectedSection(currentSection());
}

bool DateTimePicker::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == lineEdit() && event->type() == QEvent::MouseButtonRelease &&
        !lineEdit()->hasSelectedText())
        selectSection(currentSectionIndex());
    return QDateTimeEdit::eventFilter(watched, event);
}

// A section that can take no more digits passes the caret on by itself. A separator typed then, as people do,
// means the place where the caret is already.
void DateTimePicker::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Shift)
        return event->ignore(); // many keyboards have the separators on top
    const QString typed = event->text();
    const bool separator = typed == "/"_L1 || typed == ":"_L1 || typed == " "_L1;
    if (separator && std::exchange(m_wentOn, false))
        return;
    const QString letter = typed.toLower();
    if (currentSection() == AmPmSection && (letter == "a"_L1 || letter == "p"_L1)) {
        const QTime now = time(); // one letter says it; Qt waits for both
        setTime(QTime(now.hour() % 12 + (letter == "p"_L1 ? 12 : 0), now.minute(), now.second()));
        setSelectedSection(AmPmSection);
        return;
    }
    if (currentSection() == AmPmSection && letter == "m"_L1)
        return; // the second letter, typed by habit
    const int section = currentSectionIndex();
    if (const auto reached = sectionReached(*event, section, sectionCount())) {
        m_wentOn = false;
        return selectSection(*reached);
    }
    QDateTimeEdit::keyPressEvent(event);
    m_wentOn = !typed.isEmpty() && typed[0].isDigit() && currentSectionIndex() != section;
}

void DateTimePicker::wheelEvent(QWheelEvent *event)
{
    if (hasFocus())
        QDateTimeEdit::wheelEvent(event);
    else
        event->ignore();
}

// Judged by who has the focus next and not by the reason of its going: a menu or a dialog may hand it to
// another control than the one it came from.
void DateTimePicker::followFocus(QWidget *now)
{
    if (!m_focused || !now || now == this || isAncestorOf(now) || now->window() != window() ||
        qobject_cast<QMenuBar *>(now))
        return;
    m_focused = false;
    if (lostFocus)
        lostFocus();
}

} // namespace vardelin
