#pragma once
// Where a slider or scroll bar stands for a place in a record set, and the way back.

#include "platform/data/Ado.h"

#include <optional>

namespace vardelin {

// position: from 1, or what a record set says of itself at its ends.
struct Place
{
    bool bof = false;
    bool eof = false;
    int position = 0;
    int count = 0;
};
Place placeOf(const ado::Recordset &records);

// 0 to maximum.
int sliderValue(const Place &place, int maximum);

// The record that a moved slider asks for, from 1, halves to even; nullopt where the point works out below
// the first record.
std::optional<int> sliderPosition(int value, int maximum, int count);

} // namespace vardelin
