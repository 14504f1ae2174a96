#include "platform/ui/MaskEdBox.h"

#include <QApplication>
#include <QKeyEvent>
#include <QValidator>

namespace vardelin {

namespace {

constexpr QChar kPlace = u'#';
constexpr QChar kPrompt = u'_';

bool isDigit(QChar c)
{
    return c >= u'0' && c <= u'9';
}

QString digitsIn(const QString &text)
{
    QString digits;
    for (const QChar c : text)
        if (isDigit(c))
            digits += c;
    return digits;
}

} // namespace

QString inMask(const QString &mask, const QString &digits)
{
    QString text = mask;
    qsizetype next = 0;
    for (QChar &c : text)
        if (c == kPlace)
            c = next < digits.size() ? digits[next++] : kPrompt;
    return text;
}

std::optional<QString> digitsOf(const QString &mask, const QString &stored)
{
    const QString digits = digitsIn(stored);
    if (digits.size() > mask.count(kPlace))
        return std::nullopt;
    if (stored == digits)
        return digits;
    const QString filled = inMask(mask, digits);
    const bool toTheLastDigit =
        !digits.isEmpty() && stored.size() > filled.lastIndexOf(digits.back()) && filled.startsWith(stored);
    if (stored == filled || toTheLastDigit)
        return digits;
    return std::nullopt;
}

// Sees every change that the user makes, by whatever way, before it stands: brings the digits into the mask.
class MaskEdBox::Filter final : public QValidator
{
public:
    explicit Filter(MaskEdBox &box) : QValidator(&box), m_box(box) {}
    State validate(QString &input, int &caret) const override
    {
        if (m_box.m_free)
            return Acceptable;
        for (const QChar c : input)
            if (c.isLetterOrNumber() && !isDigit(c))
                return Invalid;
        const QString digits = digitsIn(input);
        if (digits.size() > m_box.places())
            return Invalid;
        const qsizetype before = digitsIn(input.left(caret)).size();
        input = inMask(m_box.m_mask, digits);
        caret = m_box.caretBehind(before, digits.size());
        return Acceptable;
    }

private:
    MaskEdBox &m_box;
};

MaskEdBox::MaskEdBox(const QString &mask, QWidget *parent) : QLineEdit(parent), m_mask(mask)
{
    setValidator(new Filter(*this));
    connect(this, &QLineEdit::inputRejected, this, [] { QApplication::beep(); });
    connect(this, &QLineEdit::textEdited, this, [this] { noteEdit(); });
    showDigits({});
}

QString MaskEdBox::digits() const
{
    return digitsIn(text());
}

qsizetype MaskEdBox::places() const
{
    return m_mask.count(kPlace);
}

QString MaskEdBox::Text() const
{
    if (m_free)
        return text();
    return m_digits == m_storedDigits ? m_stored : m_digits;
}

void MaskEdBox::setText(const QString &stored)
{
    const std::optional<QString> fitting = digitsOf(m_mask, stored);
    m_stored = stored;
    m_storedDigits = fitting.value_or(QString());
    m_past.clear();
    m_ahead.clear();
    m_free = !fitting;
    if (fitting)
        showDigits(*fitting);
    else
        QLineEdit::setText(stored);
    setCursorPosition(0);
}

void MaskEdBox::showDigits(const QString &digits)
{
    m_digits = digits;
    QLineEdit::setText(inMask(m_mask, digits));
    setCursorPosition(caretBehind(digits.size(), digits.size()));
}

// Between two digits right behind the first; behind the last one ahead of the next place to fill.
int MaskEdBox::caretBehind(qsizetype digitsBefore, qsizetype digitsInAll) const
{
    const qsizetype last = m_mask.lastIndexOf(kPlace) + 1;
    qsizetype caret = 0;
    for (qsizetype i = 0; i < digitsBefore; ++i)
        caret = m_mask.indexOf(kPlace, caret) + 1;
    if (digitsBefore > 0 && (digitsBefore < digitsInAll || caret >= last))
        return static_cast<int>(caret);
    return static_cast<int>(m_mask.indexOf(kPlace, caret));
}

void MaskEdBox::noteEdit()
{
    if (m_free) {
        if (!text().isEmpty())
            return;
        m_free = false; // emptied: a new number comes in the mask
        m_storedDigits = m_stored = QString();
        return showDigits({});
    }
    const QString now = digits();
    if (now == m_digits)
        return;
    m_past.push_back(m_digits);
    m_ahead.clear();
    m_digits = now;
}

void MaskEdBox::step(std::vector<QString> &from, std::vector<QString> &to)
{
    if (from.empty())
        return;
    to.push_back(m_digits);
    const QString digits = from.back();
    from.pop_back();
    showDigits(digits);
}

// Backspace and Delete take a digit, not a sign between two.
void MaskEdBox::skipSigns(int direction)
{
    int caret = cursorPosition();
    const auto next = [&] { return direction < 0 ? caret - 1 : caret; };
    while (next() >= 0 && next() < text().size() && !isDigit(text()[next()]))
        caret += direction;
    if (next() >= 0 && next() < text().size())
        setCursorPosition(caret);
}

void MaskEdBox::keyPressEvent(QKeyEvent *event)
{
    if (!m_free && event->matches(QKeySequence::Undo))
        return step(m_past, m_ahead);
    if (!m_free && event->matches(QKeySequence::Redo))
        return step(m_ahead, m_past);
    const bool takes = !m_free && !hasSelectedText() && event->modifiers() == Qt::NoModifier;
    if (takes && event->key() == Qt::Key_Backspace)
        skipSigns(-1);
    else if (takes && event->key() == Qt::Key_Delete)
        skipSigns(1);
    QLineEdit::keyPressEvent(event);
}

// A click behind the digits means the next place to fill.
void MaskEdBox::mouseReleaseEvent(QMouseEvent *event)
{
    QLineEdit::mouseReleaseEvent(event);
    const qsizetype count = m_digits.size();
    if (!m_free && !hasSelectedText())
        setCursorPosition(std::min(cursorPosition(), caretBehind(count, count)));
}

} // namespace vardelin
