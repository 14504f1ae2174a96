// vardelin-picture FILE.png: writes a picture of the whole screen, for machines whose screen nobody sees.

#include <QGuiApplication>
#include <QPixmap>
#include <QScreen>
#include <cstdio>

int main(int argc, char **argv)
{
    QGuiApplication app(argc, argv);
    if (argc != 2) {
        std::fputs("usage: vardelin-picture FILE.png\n", stderr);
        return 2;
    }
    return QGuiApplication::primaryScreen()->grabWindow(0).save(QString::fromLocal8Bit(argv[1])) ? 0 : 1;
}
