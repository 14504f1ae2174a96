#pragma once
// The engine's cells and errors in the program's own terms. The one place for it: expressions, record sets
// and data objects all go through here.

#include "platform/base/RunTimeError.h"
#include "platform/base/Value.h"
#include "platform/jet/Error.h"
#include "platform/jet/Types.h"

namespace vardelin {

// Byte becomes a 16-bit whole number. Binary and OLE bytes read as text of those bytes ("Latin-1"), a GUID as
// "{...}".
Value toValue(const jet::Cell &cell);

// The cell that a column of this type takes: Null and Empty become Null, everything else is converted by the
// run time's rules. Throws RunTimeError 3421 ("Data type conversion error.") where it can't be converted,
// 3163 for a text that is too long for the column.
jet::Cell toCell(const Value &value, const jet::Column &column);

QString toQString(std::u16string_view text);
std::u16string toU16(QStringView text);

[[noreturn]] void rethrow(const jet::Error &error); // as RunTimeError with the engine's number and words

// Runs `call`, with the engine's errors as RunTimeErrors.
template <class Call>
decltype(auto) engineCall(Call &&call)
{
    try {
        return call();
    } catch (const jet::Error &error) {
        rethrow(error);
    }
}

} // namespace vardelin
