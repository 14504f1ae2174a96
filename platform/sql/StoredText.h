#pragma once
// Texts as they lie in the file: FF FE and one byte a character, or UTF-16LE.

#include <QString>
#include <cstddef>
#include <span>

namespace vardelin::sql {

bool isCompressed(std::span<const std::byte> stored);
// One byte a character all through behind the mark: no zero byte switches to two.
bool isNarrow(std::span<const std::byte> stored);
QString decodeStored(std::span<const std::byte> stored);
void decodeStored(std::span<const std::byte> stored, QString &text); // the same, in the room that `text` has

} // namespace vardelin::sql
