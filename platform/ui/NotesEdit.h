#pragma once
// The rich text box of the notes: formatted text with pictures, RTF both ways. Tab leaves it; Ctrl+B, Ctrl+I
// and Ctrl+U turn bold, italic and underline on and off.

#include <QTextEdit>
#include <functional>

namespace vardelin {

class NotesEdit : public QTextEdit
{
    Q_OBJECT
public:
    explicit NotesEdit(QWidget *parent = nullptr);

    QString Text() const;    // plain, line ends CR LF, pictures left out
    QString TextRTF() const; // ASCII
    // Both replace everything, formats for what is typed next included, and nothing of it can be undone. Text
    // that isn't RTF is taken as plain text.
    void setTextRTF(const QString &rtf);
    void setText(const QString &plain);
    QString SelText() const;                   // plain, line ends CR LF, pictures left out
    void setSelText(const QString &text);      // in place of the selection, or at the caret
    std::function<bool(int qtKey)> keyPressed; // true: handled
    std::function<void()> gotFocus;

protected:
    // Formatted text (RTF, HTML), pictures and picture files, pasted or dropped. Pictures are kept whole,
    // bytes and size, and shown no wider than the page. Without acceptRichText words alone come in.
    bool canInsertFromMimeData(const QMimeData *source) const override;
    void insertFromMimeData(const QMimeData *source) override;
    QMimeData *createMimeDataFromSelection() const override; // with RTF, so that pictures get across
    void keyPressEvent(QKeyEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;

private:
    void clearAll();
    void insertRtf(const QByteArray &rtf);
    void insertHtmlText(const QString &html);
    void insertClipboardPicture(const QMimeData &source);
    bool insertPictureFiles(const QList<QUrl> &urls);
    void insertPicture(const QTextImageFormat &picture);
    bool formatByKey(const QKeyEvent &event);
};

} // namespace vardelin
