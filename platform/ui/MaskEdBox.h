#pragma once
// The masked edit box: a field for numbers that are written in one form, as "(212) 555-1234".

#include <QLineEdit>
#include <optional>

namespace vardelin {

// Masks: "#" is the place of a digit, everything else stands for itself.

// The digits in a mask, from the left; "_" in the places that are left over.
QString inMask(const QString &mask, const QString &digits);
// The digits of a stored number that fits a mask: digits alone, at most as many as there are places, or the
// mask filled with them, to its end or to the last of them. nullopt for any other text.
std::optional<QString> digitsOf(const QString &mask, const QString &stored);

// What is stored and what is shown:
//  - a number that was typed or changed is stored as its digits alone, complete or not: "2125551234", "212555";
//  - a number that wasn't touched stays as it is stored, "(212) 555-1234" or "2125551234"; both show the same;
//  - a text that doesn't fit the mask shows as it is and is edited without the mask, until it is emptied.
// The digits have no gaps: one that is deleted draws the others to the left. Signs between digits may be
// typed or left out. Letters, and more digits than places, are refused as a whole with a beep, typed or
// pasted; what stood in the field stays.
class MaskEdBox : public QLineEdit
{
    Q_OBJECT
public:
    explicit MaskEdBox(const QString &mask, QWidget *parent = nullptr);
    QString Text() const; // what is to be stored
    void setText(const QString &stored);

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;

private:
    class Filter;
    QString digits() const;
    qsizetype places() const;
    int caretBehind(qsizetype digitsBefore, qsizetype digitsInAll) const;
    void showDigits(const QString &digits);
    void noteEdit();
    void step(std::vector<QString> &from, std::vector<QString> &to);
    void skipSigns(int direction);

    const QString m_mask;
    QString m_stored;             // as setText was given it
    bool m_free = false;          // a text that doesn't fit the mask
    QString m_digits;             // as they stand, when not free
    QString m_storedDigits;       // of m_stored
    std::vector<QString> m_past;  // digits before each edit, for undoing: Qt's own memory of edits doesn't
    std::vector<QString> m_ahead; // outlive the mask
};

} // namespace vardelin
