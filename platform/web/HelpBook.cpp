#include "platform/web/WebView.h"

#include <QFileInfo>

namespace vardelin {

bool HelpBook::holds(const QUrl &address) const
{
    if (!address.isLocalFile())
        return false;
    const QString file =
        QFileInfo(address.toLocalFile()).canonicalFilePath(); // empty where there is no such file
    const QString root = QFileInfo(folder).canonicalFilePath();
    return !root.isEmpty() && (file == root || file.startsWith(root + u'/'));
}

} // namespace vardelin
