// One main for every test program on Qt: offscreen unless told otherwise, and a home of its own, so that no
// test reads or writes anything of the person who runs it. A warning from Qt fails the test in which it
// comes.
#include <QApplication>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace {

void failOnWarning(QtMsgType type, const QMessageLogContext &, const QString &text)
{
    // The offscreen platform says this of every window that is raised; it has nothing to do with the program.
    if (text.contains(QLatin1String("This plugin does not support")))
        return;
    // Qt WebEngine on a machine without OpenGL.
    if (text.contains(QLatin1String("No suitable graphics backend")))
        return;
    if (type == QtWarningMsg || type == QtCriticalMsg || type == QtFatalMsg)
        ADD_FAILURE() << "Qt: " << text.toStdString();
}

} // namespace

int main(int argc, char **argv)
{
    testing::InitGoogleTest(&argc, argv);
    QTemporaryDir home;
    const QByteArray path = home.path().toLocal8Bit();
    for (const char *name : {"HOME", "XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_CACHE_HOME", "XDG_RUNTIME_DIR"})
        qputenv(name, path);
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QCoreApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
    QApplication::setStyle(QStringLiteral("fusion"));
    QApplication app(argc, argv);
    qInstallMessageHandler(failOnWarning);
    return RUN_ALL_TESTS();
}
