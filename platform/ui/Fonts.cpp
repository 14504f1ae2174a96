#include "platform/ui/Fonts.h"

#include "platform/ui/Controls.h"

#include "platform/base/RunTimeError.h"

#include <QFont>

using namespace Qt::StringLiterals;

namespace vardelin {

namespace {

constexpr int kInvalidPropertyValue = 380;
constexpr double kLargestPoints = 2160;

} // namespace

void installFontSubstitutions()
{
    for (const auto &name : {u"MS Sans Serif"_s, u"Microsoft Sans Serif"_s, u"Arial"_s, u"Tahoma"_s})
        QFont::insertSubstitution(name, u"Liberation Sans"_s);
    for (const auto &name : {u"MS Serif"_s, u"Times New Roman"_s})
        QFont::insertSubstitution(name, u"Liberation Serif"_s);
    for (const auto &name : {u"Courier"_s, u"Courier New"_s})
        QFont::insertSubstitution(name, u"Liberation Mono"_s);
}

QFont formFont(const QString &name, const QString &sizeText)
{
    const double points = toDouble(Value(sizeText));
    if (!(points > 0 && points <= kLargestPoints))
        throw RunTimeError(kInvalidPropertyValue, u"Invalid property value"_s);
    QFont font(name);
    font.setPointSizeF(points);
    return font;
}

} // namespace vardelin
