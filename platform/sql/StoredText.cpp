#include "platform/sql/StoredText.h"

#include <algorithm>
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
    QString text;
    decodeStored(stored, text);
    return text;
}

void decodeStored(std::span<const std::byte> stored, QString &text)
{
    if (isNarrow(stored)) {
        stored = stored.subspan(2);
        text.resize(static_cast<qsizetype>(stored.size()));
        std::ranges::transform(stored, text.begin(),
                               [](std::byte byte) { return QChar(std::to_integer<char16_t>(byte)); });
    } else if (isCompressed(stored)) {
        text = decodeMixed(stored.subspan(2));
    } else {
        text.resize(static_cast<qsizetype>(stored.size() / 2));
        if (!text.isEmpty())
            std::memcpy(text.data(), stored.data(), stored.size() / 2 * 2);
    }
}

} // namespace vardelin::sql
