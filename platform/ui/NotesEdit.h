#pragma once
// The rich text box of the notes: formatted text with pictures, RTF both ways.

#include <QTextEdit>
#include <functional>

namespace vardelin {

class NotesEdit : public QTextEdit
{
    Q_OBJECT
public:
    explicit NotesEdit(QWidget *parent = nullptr);

    QString Text() const;                // plain, line ends CR LF, pictures left out
    QString TextRTF() const;             // ASCII
    void setTextRTF(const QString &rtf); // text that isn't RTF is taken as plain text
    void setText(const QString &plain);
    QString SelText() const;
    void setSelText(const QString &text);      // in place of the selection, or at the caret
    std::function<bool(int qtKey)> keyPressed; // true: handled
    std::function<void()> gotFocus;

protected:
    bool canInsertFromMimeData(const QMimeData *source) const override;
    void insertFromMimeData(const QMimeData *source)
        override; // pictures pasted or dropped are kept whole, shown within the page's width
    void keyPressEvent(QKeyEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;
};

} // namespace vardelin
