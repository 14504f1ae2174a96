#pragma once
// The date picker of the forms: a date in a custom format, which may be without a value.

#include "platform/base/Value.h"
#include "platform/data/Adodc.h"

#include <QWidget>
#include <functional>
#include <optional>

class QCheckBox;

namespace vardelin {

class DateTimePicker;

// With a check box: ticked, there is a value; not ticked, there is none, and no date shows. Space ticks it,
// and so does a digit typed on it or a click on the empty field. The value keeps its time of day, which the
// format doesn't show, when another date is chosen.
class DatePicker : public QWidget
{
    Q_OBJECT
public:
    enum class Kind { AlwaysADate, CheckBox };

    // format: "M/d/yyyy", "MM/dd/yyyy", also with three y's. Without setValue a picker of either kind stands
    // on the day of the system's clock.
    DatePicker(const QString &format, Kind kind, QWidget *parent = nullptr);
    // Names the field, and the check box by its words and ", given".
    void setAccessibleCaption(const QString &caption);

    std::optional<DateSerial> Value() const { return m_value; } // nullopt: Null
    // Doesn't call edited. A date is also what a tick offers from then on where there was none.
    void setValue(std::optional<DateSerial> value);
    void setReadOnly(bool readOnly); // shows dates and takes none
    std::function<void()> edited;    // the user changed, set or took away the date

    // Binds the picker to a column, Null as being without a value. Showing a record changes nothing in it.
    BoundField boundTo(const QString &column);

private:
    class Editor;
    void display(std::optional<DateSerial> value);
    void showState();
    void dateEdited();
    void ticked(bool on);
    bool eventFilter(QObject *watched, QEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;

    bool m_readOnly = false;
    QCheckBox *m_check = nullptr; // none: always a date
    Editor *m_editor;
    std::optional<DateSerial> m_value;
    DateSerial m_offered;              // what a tick begins with
    std::optional<DateSerial> m_shown; // of the record, and its text
    QString m_shownText;
};

} // namespace vardelin
