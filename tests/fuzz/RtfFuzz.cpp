// Any bytes at all: reading must not fail, both ways to the plain text must agree, and what is written must
// be stable ASCII.
#include "platform/rich/Rtf.h"

#include <QGuiApplication>
#include <QTextDocument>
#include <cstdint>
#include <cstdlib>

namespace {

void ignoreMessage(QtMsgType, const QMessageLogContext &, const QString &) {}

void startQt()
{
    static int argc = 1;
    static char name[] = "rtf_fuzz";
    static char *argv[] = {name, nullptr};
    qputenv("QT_QPA_PLATFORM", "offscreen");
    static QGuiApplication app(argc, argv);
    qInstallMessageHandler(ignoreMessage);
}

void require(bool holds)
{
    if (!holds)
        std::abort();
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int *, char ***)
{
    startQt();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    using namespace vardelin;
    // Mostly RTF: an input that doesn't begin as RTF gets the beginning put before it, unless its first byte
    // says otherwise.
    QByteArray rtf(reinterpret_cast<const char *>(data), qsizetype(size));
    if (!looksLikeRtf(rtf) && !rtf.startsWith('!'))
        rtf.prepend("{\\rtf1 ");
    QTextDocument document, again;
    fromRtf(rtf, document);
    const QString text = plainText(document);
    require(plainTextOf(rtf) == text);
    const QByteArray written = toRtf(document);
    for (const char c : written)
        require(uchar(c) < 0x80);
    fromRtf(written, again);
    require(plainText(again) == text);
    require(toRtf(again) == written);
    return 0;
}
