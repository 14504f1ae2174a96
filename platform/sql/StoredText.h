#pragma once
// Texts as they lie in the file: FF FE and one byte a character, or UTF-16LE.

#include <QString>
#include <cstddef>
#include <span>

namespace vardelin::sql {

// The bytes behind the mark, if they are one a character all through (no zero byte switches to two).
bool isCompressed(std::span<const std::byte> stored);
bool isNarrow(std::span<const std::byte> stored);
QString decodeStored(std::span<const std::byte> stored);

} // namespace vardelin::sql
