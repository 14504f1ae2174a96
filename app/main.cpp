#include "app/Program.h"
#include "platform/web/WebView.h"

int main(int argc, char **argv)
{
    QCoreApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
    vardelin::prepareWebView();
    vardelin::Application application(argc, argv);
    vardelin::Program program(application);
    program.startLater();
    return QApplication::exec();
}
