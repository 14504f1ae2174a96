#pragma once
// Letters in the other case, one for one: a text keeps its length ("Straße" is "STRAßE").

#include <QString>

namespace vardelin {

QString upperCase(QString text);
QString lowerCase(QString text);

} // namespace vardelin
