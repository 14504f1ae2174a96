#include "shell/Tips.h"

#include "platform/rich/RtfCodePage.h"

#include <QFile>
#include <QStringDecoder>

namespace vardelin {

namespace {

constexpr int kWindows = 1252;

QString textOf(const QByteArray &line)
{
    QStringDecoder utf8(QStringDecoder::Utf8);
    const QString text = utf8(line);
    return utf8.hasError() ? CodePages().decode(line, kWindows) : text;
}

} // namespace

std::optional<QStringList> loadTips(const QString &path)
{
    QFile file(path);
    if (path.isEmpty() || !file.open(QIODevice::ReadOnly))
        return std::nullopt;
    QStringList tips;
    while (!file.atEnd()) {
        QByteArray line = file.readLine();
        while (line.endsWith('\n') || line.endsWith('\r'))
            line.chop(1);
        tips += textOf(line);
    }
    return tips;
}

int nextTip(double random, int tips)
{
    return tips == 0 ? 0 : static_cast<int>(random * tips) + 1;
}

} // namespace vardelin
