#include "platform/sql/StoredText.h"

#include <QByteArrayView>
#include <cstring>

namespace vardelin::sql {

bool isCompressed(std::span<const std::byte> stored)
{
    return stored.size() >= 2 && stored[0] == std::byte{0xFF} && stored[1] == std::byte{0xFE};
}

namespace {

// A zero byte switches between one byte and two bytes a character.
QString decodeMixed(std::span<const std::byte> stored)
{
    QString text;
    bool wide = false;
    for (std::size_t at = 0; at < stored.size(); ++at) {
        if (stored[at] == std::byte{0}) {
            wide = !wide;
        } else if (!wide) {
            text += QLatin1Char(static_cast<char>(stored[at]));
        } else if (at + 1 < stored.size()) {
            const auto low = std::to_integer<unsigned>(stored[at++]);
            text += QChar(static_cast<char16_t>(low | std::to_integer<unsigned>(stored[at]) << 8));
        }
    }
    return text;
}

} // namespace

bool isNarrow(std::span<const std::byte> stored)
{
    return isCompressed(stored) &&
           (stored.size() == 2 || !std::memchr(stored.data() + 2, 0, stored.size() - 2));
}

QString decodeStored(std::span<const std::byte> stored)
{
    if (isNarrow(stored))
        return QString::fromLatin1(
            QByteArrayView(stored.data() + 2, static_cast<qsizetype>(stored.size() - 2)));
    if (isCompressed(stored))
        return decodeMixed(stored.subspan(2));
    QString text(static_cast<qsizetype>(stored.size() / 2), Qt::Uninitialized);
    if (!text.isEmpty())
        std::memcpy(text.data(), stored.data(), stored.size() / 2 * 2);
    return text;
}

} // namespace vardelin::sql
