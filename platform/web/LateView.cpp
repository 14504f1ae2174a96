#include "platform/web/WebView.h"

#include <QCoreApplication>
#include <QLibrary>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace vardelin {

namespace {

void setDefault(const char *name, const QByteArray &value)
{
    if (!qEnvironmentVariableIsSet(name))
        qputenv(name, value);
}

} // namespace

// The help needs no graphics card: drawing by the processor is the same on every machine, and one without
// OpenGL would end the program.
void prepareWebView()
{
    QCoreApplication::setAttribute(
        Qt::AA_ShareOpenGLContexts); // Qt WebEngine crashes without, even if it comes later
    setDefault("QT_XCB_GL_INTEGRATION", "none");
    setDefault("QT_QUICK_BACKEND", "software");
    // Chromium's sandbox doesn't start as root and then ends the whole program; everybody else keeps it.
    QByteArray flags = "--disable-gpu --force-renderer-accessibility --disable-logging";
    if (geteuid() == 0)
        flags += " --no-sandbox";
    setDefault("QTWEBENGINE_CHROMIUM_FLAGS", flags);
}

std::unique_ptr<WebView> makeWebView(const HelpBook &book, const QString &folder)
{
    using Maker = WebView *(*)(const HelpBook &);
    QLibrary library(folder +
                     u"/libvardelin-web.so"_s); // stays loaded: Qt WebEngine can't be taken out again
    if (const auto maker = reinterpret_cast<Maker>(library.resolve("vardelinMakeWebView")))
        return std::unique_ptr<WebView>(maker(book));
    return makeTextView(book);
}

} // namespace vardelin
