#pragma once
// Message boxes, the input box and the common dialogs. Every one blocks until it is answered; interface
// thread only.

#include <QString>

class QWidget;

namespace vardelin {

enum class Buttons { Ok, OkCancel, YesNo, YesNoCancel };
enum class Icon { None, Critical, Question, Exclamation, Information };
enum class Answer { Ok = 1, Cancel = 2, Yes = 6, No = 7 };

struct MsgBox
{
    QString prompt;
    QString title = {}; // empty: the program's name stands there
    Buttons buttons = Buttons::Ok;
    Icon icon = Icon::None;
    int defaultButton = 1; // from 1
    bool operator==(const MsgBox &) const = default;
};

// The common dialog's properties: set before, changed by an OK.
struct CommonDialog
{
    QString DialogTitle = {};
    QString FileName = {};
    QString Filter = {}; // "Access files (*.mdb)|*.mdb|All files (*.*)|*.*"
    QString DefaultExt = {};
    QString InitDir = {};
    QString FontName = {};
    QString FontSize = {};    // text, as settings hold it
    bool CancelError = false; // Cancel then throws RunTimeError 32755
    bool overwritePrompt = false;
    bool createPrompt = false; // a name that isn't there yet is taken only after a question
    bool fileMustExist = false;
};

class Dialogs
{
public:
    virtual ~Dialogs();
    virtual Answer msgBox(const MsgBox &box) = 0;
    virtual QString inputBox(const QString &prompt, const QString &title) = 0; // empty on Cancel
    virtual bool showOpen(CommonDialog &dialog) = 0; // false: Cancel, where that is no error
    virtual bool showSave(CommonDialog &dialog) = 0;
    virtual bool showFont(CommonDialog &dialog) = 0;
};

// Qt's own dialogs, over the active window.
class QtDialogs final : public Dialogs
{
public:
    Answer msgBox(const MsgBox &box) override;
    QString inputBox(const QString &prompt, const QString &title) override;
    bool showOpen(CommonDialog &dialog) override;
    bool showSave(CommonDialog &dialog) override;
    bool showFont(CommonDialog &dialog) override;
};

} // namespace vardelin
