#include "platform/data/RecordPlace.h"

namespace vardelin {

Place placeOf(const ado::Recordset &records)
{
    return {records.BOF(), records.EOF_(), records.AbsolutePosition(), records.RecordCount()};
}

int sliderValue(const Place &place, int maximum)
{
    if (place.bof && place.eof)
        return 0;
    if (place.eof)
        return maximum;
    if (place.bof || place.position == 1 || place.count == 0)
        return 0;
    return toLong(Value(static_cast<double>(place.position) / static_cast<double>(place.count) * maximum));
}

std::optional<int> sliderPosition(int value, int maximum, int count)
{
    const double place = static_cast<double>(value) / static_cast<double>(maximum) * count;
    if (place < 1)
        return std::nullopt;
    return toLong(Value(place));
}

} // namespace vardelin
