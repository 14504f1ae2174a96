#pragma once
// Page 0, the header of the file. Bytes 0x18 to 0x97 are masked: XOR with the first 128 bytes of the RC4 key
// stream under the key C7 DA 39 6B.
//
//   0x00   4    00 01 00 00
//   0x04   16   "Standard Jet DB" and a zero byte; "Standard ACE DB" in the files of later engines
//   0x14   u32  0 Jet 3, 1 Jet 4, 2 and above later engines
//   0x18   u32  row pointer of the free page map: page 1 row 0        (from here on masked)
//   0x1C   u32  row pointer of a second page map: page 1 row 1
//   0x20   4 * u32  definition pages of MSysObjects, MSysACEs, MSysQueries, MSysRelationships: 2 to 5
//   0x3C   u16  code page, 1252
//   0x3E   u32  encryption key; not 0: the pages are encrypted
//   0x42   40   password, XORed with the whole days of the creation date (i32, repeated)
//   0x6A   u32  build of the engine that made the file
//   0x6E   u16  locale of the text order, 0x0409; 0x70 u16 its version in the high byte
//   0x72   f64  creation date
//   0x98   u32  0x654; 0x9C "4.0" and a zero byte                     (no longer masked)
//   0xE00  256 * u16  commit counters of a shared file
//
// A fresh file takes one known page 0, its creation date included: the security ids in the catalog hang on it
// in a way that isn't known. The true moment of creation stands in the rows of the catalog.

#include "platform/jet/Bytes.h"

namespace vardelin::jet {

inline constexpr std::size_t kHeaderEnd = 0xA0; // behind it only commit counters change

// Throws NewerFormat (also for what isn't such a database at all), OlderFormat, Password or Damaged; needs a
// read section.
void checkHeader(Pager &pager);

// Page 0 of a fresh file.
void initHeader(std::byte *page);

} // namespace vardelin::jet
