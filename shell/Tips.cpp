#include "shell/Tips.h"

#include <QFile>

namespace vardelin {

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
        tips += QString::fromUtf8(line);
    }
    return tips;
}

int nextTip(double random, int tips)
{
    return tips == 0 ? 0 : static_cast<int>(random * tips) + 1;
}

} // namespace vardelin
