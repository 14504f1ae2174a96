#pragma once
// Property blobs: the properties of an object and of its columns, in the catalog's column LvProp.
//
//   "MR2" and a zero byte, then chunks: u32 length with these 4 bytes, u16 kind, body.
//   Kind 0x80, once and first: the names used, each u16 length in bytes and UTF-16LE.
//   Kind 0 (the object) and 1 (a column): u32 length of this part with its 4 bytes, u16 length and name of the
//     owner, then values:
//       0 u16 length with these 2 bytes, 2 u8 1 = belongs to the definition language, 3 u8 type,
//       4 u16 number of the name, 6 u16 length of the data, 8 data
//     Boolean data is one byte; other writers store four; all but 0 is true.
//
// Invariants:
//   1. Required and AllowZeroLength live here alone. Missing: not required, zero length allowed. New tables
//      say both.
//   2. Blobs of other programs are kept byte for byte: nothing here rewrites one.

#include "platform/jet/Bytes.h"

namespace vardelin::jet {

// Sets `required` and `allowZeroLength` of the columns that the blob names; tells the names of those that
// aren't there. A blob of another kind changes nothing.
bool isPropertyBlob(std::span<const std::byte> blob);
std::vector<std::u16string> applyProperties(std::span<const std::byte> blob, Place place,
                                            std::vector<Column> &columns);

// The blob of a new table, columns in order.
Bytes propertiesOf(std::span<const Column> columns);

} // namespace vardelin::jet
