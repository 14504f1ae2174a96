#pragma once
// The name of a client or employee as one text: last name, comma, blank, first name.

#include <QString>
#include <optional>

namespace vardelin {

struct SplitName
{
    QString last, first;
    bool operator==(const SplitName &) const = default;
};

// Splits at the first comma and blank; nullopt for a text without them, which is a project.
std::optional<SplitName> splitName(const QString &text);
QString joinName(const QString &last, const QString &first);

} // namespace vardelin
