#include "platform/system/AppPath.h"
#include "platform/ui/Fonts.h"
#include "shell/Wiring.h"
#include "shell/frmMain.h"
#include "shell/state/Global.h"

#include <QApplication>
#include <QIcon>
#include <QStyle>

using namespace Qt::StringLiterals;

namespace {

// The last net under every handler: no exception leaves an event.
class Application final : public QApplication
{
public:
    using QApplication::QApplication;
    vardelin::ErrorFrame *errors = nullptr;

    bool notify(QObject *receiver, QEvent *event) override
    {
        bool handled = false;
        if (errors)
            errors->run([&] { handled = QApplication::notify(receiver, event); });
        else
            handled = QApplication::notify(receiver, event);
        return handled;
    }
};

void setLook()
{
    // Without a desktop's theme Qt falls back to a style of the nineties.
    if (QApplication::style()->name() == "windows"_L1)
        QApplication::setStyle(u"fusion"_s);
    QApplication::setWindowIcon(QIcon(u":/icons/vardelin.svg"_s));
    vardelin::installFontSubstitutions();
}

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
    Application app(argc, argv);
    QCoreApplication::setApplicationName(u"Vardelin"_s);
    QGuiApplication::setApplicationDisplayName(QString()); // captions stay as they are given
    QGuiApplication::setDesktopFileName(u"vardelin"_s);
    setLook();

    vardelin::QtDialogs dialogs;
    vardelin::SystemClock clock;
    const std::unique_ptr<vardelin::Settings> settings = vardelin::userSettings();
    vardelin::dao::DBEngine engine;
    vardelin::frmMain *parent = nullptr;
    vardelin::ErrorFrame errors(dialogs, [&parent] {
        if (parent)
            parent->ExitProgram();
        QCoreApplication::exit(1);
    });
    vardelin::Services services{dialogs, clock, *settings, engine, errors, vardelin::appPath()};
    vardelin::Global global(services);
    vardelin::frmMain main(global);
    parent = &main;
    app.errors = &errors;
    vardelin::wire(global, main);
    QMetaObject::invokeMethod(
        &main, [&main] { main.Load(); }, Qt::QueuedConnection);
    const int result = QApplication::exec();
    app.errors = nullptr;
    return result;
}
