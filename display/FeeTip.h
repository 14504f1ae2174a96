#pragma once
// The fee that a Display window tells of, as a function of values.

#include <QString>
#include <optional>

namespace vardelin {

// "Fee for services is $" and rate times duration as currency in its default form; nullopt if either is
// empty. Exact decimals; a text that is no number is RunTimeError 13.
std::optional<QString> feeTip(const QString &rate, const QString &duration);

} // namespace vardelin
