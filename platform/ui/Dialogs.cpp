#include "platform/ui/Dialogs.h"

#include "platform/base/RunTimeError.h"
#include "platform/base/Value.h"

#include <QApplication>
#include <QDialogButtonBox>
#include <QFileDialog>
#include <QFileInfo>
#include <QFontDialog>
#include <QFontInfo>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace vardelin {

namespace {

const auto kProgramTitle = u"Vardelin"_s;
constexpr int kInputWidth = 420;      // pixels; long prompts wrap at it
constexpr int kLongestMessage = 1024; // characters: the button below must stay on the screen

QList<QMessageBox::StandardButton> buttonsOf(Buttons buttons)
{
    switch (buttons) {
    case Buttons::OkCancel:
        return {QMessageBox::Ok, QMessageBox::Cancel};
    case Buttons::YesNo:
        return {QMessageBox::Yes, QMessageBox::No};
    case Buttons::YesNoCancel:
        return {QMessageBox::Yes, QMessageBox::No, QMessageBox::Cancel};
    case Buttons::Ok:
        break;
    }
    return {QMessageBox::Ok};
}

QMessageBox::Icon iconOf(Icon icon)
{
    switch (icon) {
    case Icon::Critical:
        return QMessageBox::Critical;
    case Icon::Question:
        return QMessageBox::Question;
    case Icon::Exclamation:
        return QMessageBox::Warning;
    case Icon::Information:
        return QMessageBox::Information;
    case Icon::None:
        break;
    }
    return QMessageBox::NoIcon;
}

Answer answerOf(int button)
{
    switch (button) {
    case QMessageBox::Ok:
        return Answer::Ok;
    case QMessageBox::Yes:
        return Answer::Yes;
    case QMessageBox::No:
        return Answer::No;
    default:
        return Answer::Cancel;
    }
}

// "Access files (*.mdb)|*.mdb|All files (*.*)|*.*" as the file dialog wants it: "Access files (*.mdb)",
// "All files (*)". The pattern *.* means every file, one without a dot, too.
QStringList nameFilters(const QString &filter)
{
    const QStringList parts = filter.split(u'|', Qt::SkipEmptyParts);
    QStringList filters;
    for (qsizetype i = 0; i + 1 < parts.size(); i += 2) {
        QStringList patterns = parts[i + 1].split(u';', Qt::SkipEmptyParts);
        patterns.replaceInStrings(u"*.*"_s, u"*"_s);
        filters += parts[i].section(u'(', 0, 0).trimmed() + " ("_L1 + patterns.join(u' ') + u')';
    }
    return filters;
}

void prepare(QFileDialog &box, const CommonDialog &dialog)
{
    box.setOption(QFileDialog::DontUseNativeDialog);
    box.setWindowTitle(dialog.DialogTitle.isEmpty() ? box.windowTitle() : dialog.DialogTitle);
    if (!dialog.Filter.isEmpty())
        box.setNameFilters(nameFilters(dialog.Filter));
    box.setDefaultSuffix(dialog.DefaultExt);
    if (!dialog.InitDir.isEmpty())
        box.setDirectory(dialog.InitDir);
    if (!dialog.FileName.isEmpty() && !dialog.FileName.startsWith(u'*')) // a pattern is no name
        box.selectFile(dialog.FileName);
}

// A box is there to be clicked in, also while a command has the busy pointer on.
class OrdinaryPointer
{
public:
    OrdinaryPointer() : m_laid(QGuiApplication::overrideCursor())
    {
        if (m_laid)
            QGuiApplication::setOverrideCursor(Qt::ArrowCursor);
    }
    ~OrdinaryPointer()
    {
        if (m_laid)
            QGuiApplication::restoreOverrideCursor();
    }
    OrdinaryPointer(const OrdinaryPointer &) = delete;
    OrdinaryPointer &operator=(const OrdinaryPointer &) = delete;

private:
    bool m_laid;
};

bool cancelled(const CommonDialog &dialog)
{
    if (dialog.CancelError)
        throw RunTimeError(RunTime::CommonDialogCancel);
    return false;
}

bool mayCreate(QFileDialog &box, const QString &name)
{
    const QString question = u"%1\n\nThis file doesn't exist. Do you want to create it?"_s.arg(name);
    return QMessageBox::question(&box, box.windowTitle(), question, QMessageBox::Yes | QMessageBox::No) ==
           QMessageBox::Yes;
}

bool finish(QFileDialog &box, CommonDialog &dialog)
{
    const OrdinaryPointer pointer;
    while (box.exec() == QDialog::Accepted && !box.selectedFiles().isEmpty()) {
        const QString name = box.selectedFiles().constFirst();
        if (dialog.createPrompt && !QFileInfo::exists(name) && !mayCreate(box, name))
            continue;
        dialog.FileName = name;
        return true;
    }
    return cancelled(dialog);
}

} // namespace

Dialogs::~Dialogs() = default;

Answer QtDialogs::msgBox(const MsgBox &box)
{
    const OrdinaryPointer pointer;
    QMessageBox window(QApplication::activeWindow());
    window.setWindowTitle(box.title.isEmpty() ? kProgramTitle : box.title);
    window.setTextFormat(Qt::PlainText);
    const bool fits = box.prompt.size() <= kLongestMessage;
    window.setText(fits ? box.prompt : box.prompt.left(kLongestMessage) + u'…');
    window.setIcon(iconOf(box.icon));
    const auto buttons = buttonsOf(box.buttons);
    for (const auto button : buttons)
        window.addButton(button);
    window.setDefaultButton(buttons.value(box.defaultButton - 1, buttons.first()));
    window.setEscapeButton(buttons.last());
    return answerOf(window.exec());
}

QString QtDialogs::inputBox(const QString &prompt, const QString &title)
{
    QDialog window(QApplication::activeWindow());
    window.setWindowTitle(title.isEmpty() ? kProgramTitle : title);
    auto *label = new QLabel(prompt);
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    label->setMinimumWidth(kInputWidth);
    auto *edit = new QLineEdit;
    edit->setAccessibleName(
        prompt); // not as the label's buddy, which would take an & of the prompt for its own
    auto *buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
    QObject::connect(buttons, &QDialogButtonBox::accepted, &window, &QDialog::accept);
    QObject::connect(buttons, &QDialogButtonBox::rejected, &window, &QDialog::reject);
    auto *layout = new QVBoxLayout(&window);
    layout->addWidget(label);
    layout->addWidget(edit);
    layout->addWidget(buttons);
    edit->setFocus();
    return window.exec() == QDialog::Accepted ? edit->text() : QString();
}

bool QtDialogs::showOpen(CommonDialog &dialog)
{
    QFileDialog box(QApplication::activeWindow());
    prepare(box, dialog);
    box.setFileMode(dialog.fileMustExist ? QFileDialog::ExistingFile : QFileDialog::AnyFile);
    return finish(box, dialog);
}

bool QtDialogs::showSave(CommonDialog &dialog)
{
    QFileDialog box(QApplication::activeWindow());
    box.setAcceptMode(QFileDialog::AcceptSave);
    prepare(box, dialog);
    box.setOption(QFileDialog::DontConfirmOverwrite, !dialog.overwritePrompt);
    return finish(box, dialog);
}

bool QtDialogs::showFont(CommonDialog &dialog)
{
    QFont font(dialog.FontName);
    bool isNumber = false;
    const double size = dialog.FontSize.toDouble(&isNumber);
    if (isNumber && size > 0)
        font.setPointSizeF(size);
    // A name that stands for another family isn't in the dialog's list; the family it stands for is.
    font.setFamilies({QFontInfo(font).family()});
    QFontDialog box(font, QApplication::activeWindow());
    box.setOption(QFontDialog::DontUseNativeDialog);
    if (!dialog.DialogTitle.isEmpty())
        box.setWindowTitle(dialog.DialogTitle);
    if (box.exec() != QDialog::Accepted)
        return cancelled(dialog);
    dialog.FontName = box.selectedFont().family();
    dialog.FontSize = numberText(box.selectedFont().pointSizeF());
    return true;
}

} // namespace vardelin
