#include "platform/ui/DatePicker.h"

#include "platform/base/Dates.h"
#include "platform/ui/Controls.h"

#include <QApplication>
#include <QCheckBox>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLineEdit>
#include <cmath>

using namespace Qt::StringLiterals;

namespace vardelin {

class DatePicker::Editor final : public DateTimePicker
{
public:
    using DateTimePicker::DateTimePicker;
    QString textFromDateTime(const QDateTime &moment) const override
    {
        return m_blank ? QString() : DateTimePicker::textFromDateTime(moment);
    }
    void setBlank(bool blank)
    {
        m_blank = blank;
        lineEdit()->setText(textFromDateTime(dateTime()));
        setEnabled(!blank);
    }

private:
    bool m_blank = false;
};

namespace {

// Three y's are the whole year, too.
QString qtFormat(QString format)
{
    if (format.contains("yyy"_L1) && !format.contains("yyyy"_L1))
        format.replace("yyy"_L1, "yyyy"_L1);
    return format;
}

// The day of one moment with the time of another.
DateSerial withTimeOf(DateSerial day, DateSerial moment)
{
    const DateParts date = partsOf(day), time = partsOf(moment);
    return serialOf({date.year, date.month, date.day, time.hour, time.minute, time.second});
}

} // namespace

DatePicker::DatePicker(const QString &format, Kind kind, QWidget *parent)
    : QWidget(parent),
      m_editor(new Editor), m_offered{std::floor(fromQDateTime(QDateTime::currentDateTime()).days)}
{
    auto *row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(4);
    if (kind == Kind::CheckBox) {
        m_check = new QCheckBox;
        m_check->installEventFilter(this);
        connect(m_check, &QCheckBox::clicked, this, [this](bool on) { ticked(on); });
        row->addWidget(m_check);
    }
    row->addWidget(m_editor, 1);
    m_editor->setDisplayFormat(qtFormat(format));
    m_editor->edited = [this] { dateEdited(); };
    setFocusProxy(m_check ? static_cast<QWidget *>(m_check) : m_editor);
    display(m_offered);
}

void DatePicker::setAccessibleCaption(const QString &caption)
{
    m_editor->setAccessibleName(caption);
    if (m_check)
        m_check->setAccessibleName(caption + u", given"_s);
}

void DatePicker::setValue(std::optional<DateSerial> value)
{
    m_offered = value.value_or(m_offered);
    display(value);
}

void DatePicker::setReadOnly(bool readOnly)
{
    m_readOnly = readOnly;
    m_editor->setReadOnly(readOnly);
    m_editor->setCalendarPopup(!readOnly);
    m_editor->setButtonSymbols(readOnly ? QAbstractSpinBox::NoButtons : QAbstractSpinBox::UpDownArrows);
    if (m_check)
        m_check->setEnabled(!readOnly);
}

void DatePicker::display(std::optional<DateSerial> value)
{
    m_value = value;
    if (value)
        m_editor->setValue(*value);
    showState();
}

void DatePicker::showState()
{
    m_editor->setBlank(!m_value);
    if (m_check)
        m_check->setChecked(m_value.has_value());
}

void DatePicker::dateEdited()
{
    if (!m_value)
        return;
    m_value = withTimeOf(m_editor->Value(), *m_value);
    if (edited)
        edited();
}

// Without a record's date to come back to, a tick offers the one that was set last.
void DatePicker::ticked(bool on)
{
    display(on ? std::optional(m_shown.value_or(m_offered)) : std::nullopt);
    if (edited)
        edited();
}

BoundField DatePicker::boundTo(const QString &column)
{
    return {column,
            [this](const QString &text) {
                m_shown = text.isEmpty() ? std::nullopt : dateFromText(text);
                m_shownText = text;
                display(m_shown);
            },
            [this] {
                if (m_value == m_shown)
                    return m_shownText;
                return m_value ? dateText(*m_value) : QString();
            }};
}

// A date typed while there is none: ticked first.
bool DatePicker::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == m_check && event->type() == QEvent::KeyPress) {
        auto *key = static_cast<QKeyEvent *>(event);
        if (!key->text().isEmpty() && key->text()[0].isDigit()) {
            if (!m_value)
                ticked(true);
            m_editor->setFocus();
            m_editor->setSelectedSection(QDateTimeEdit::MonthSection);
            QApplication::sendEvent(m_editor, key);
            return true;
        }
    }
    return QWidget::eventFilter(watched, event);
}

void DatePicker::mousePressEvent(QMouseEvent *event)
{
    if (m_value || m_readOnly)
        return QWidget::mousePressEvent(event);
    ticked(true);
    m_editor->setFocus();
}

} // namespace vardelin
