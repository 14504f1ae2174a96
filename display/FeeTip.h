#pragma once
// The decisions of a Display window, as functions of values.

#include "platform/base/Value.h"

#include <QString>
#include <optional>

namespace vardelin {

// "Fee for services is $" and rate times duration as currency in its default form; nullopt if either is
// empty. Exact decimals; a text that is no number is RunTimeError 13.
std::optional<QString> feeTip(const QString &rate, const QString &duration);

// Where the slider stands for a place in a record set: 0 to maximum. position: from 1, or what a record set
// says of itself at its ends.
struct Place
{
    bool bof = false;
    bool eof = false;
    int position = 0;
    int count = 0;
};
int sliderValue(const Place &place, int maximum);

// The record that a released slider asks for, from 1, halves to even; nullopt where the point works out below
// the first record.
std::optional<int> sliderPosition(int value, int maximum, int count);

} // namespace vardelin
