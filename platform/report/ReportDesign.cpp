#include "platform/report/ReportDesign.h"

#include "platform/base/RunTimeError.h"

#include <algorithm>

namespace vardelin {

namespace {

constexpr int kSubscriptOutOfRange = 9;

template <class Item>
Item &named(std::vector<Item> &items, const QString &name)
{
    const auto found = std::ranges::find(items, name, &Item::Name);
    if (found == items.end())
        throw RunTimeError(kSubscriptOutOfRange, QStringLiteral("Subscript out of range"));
    return *found;
}

ReportControl made(ReportControl::Kind kind, const QString &name, ReportBox box)
{
    ReportControl control;
    control.kind = kind;
    control.Name = name;
    control.box = box;
    return control;
}

ReportControl bound(ReportControl::Kind kind, const QString &name, ReportBox box, const QString &column,
                    const QString &format)
{
    ReportControl control = made(kind, name, box);
    control.DataField = column;
    control.DataFormat = format;
    return control;
}

} // namespace

ReportControl ReportControl::grows() &&
{
    CanGrow = true;
    return std::move(*this);
}

ReportControl ReportControl::centered() &&
{
    Alignment = ReportAlignment::Center;
    return std::move(*this);
}

ReportControl ReportControl::right() &&
{
    Alignment = ReportAlignment::Right;
    return std::move(*this);
}

ReportControl ReportControl::in(const ReportFont &font) &&
{
    Font = font;
    return std::move(*this);
}

ReportControl label(const QString &name, ReportBox box, const QString &caption)
{
    ReportControl control = made(ReportControl::Kind::Label, name, box);
    control.Caption = caption;
    return control;
}

ReportControl text(const QString &name, ReportBox box, const QString &column, const QString &format)
{
    return bound(ReportControl::Kind::Text, name, box, column, format);
}

ReportControl sum(const QString &name, ReportBox box, const QString &column, const QString &format)
{
    return bound(ReportControl::Kind::Sum, name, box, column, format);
}

ReportControl line(const QString &name, ReportBox box)
{
    return made(ReportControl::Kind::Line, name, box);
}

ReportControl &ReportSection::Controls(const QString &name)
{
    return named(controls, name);
}

void ReportSection::setFont(const QString &name, double size)
{
    for (ReportControl &control : controls) {
        control.Font.Name = name;
        control.Font.Size = size;
    }
}

ReportSection &ReportDesign::Sections(const QString &name)
{
    return named(sections, name);
}

const ReportSection *ReportDesign::section(ReportSection::Kind kind) const
{
    const auto found = std::ranges::find(sections, kind, &ReportSection::kind);
    return found == sections.end() ? nullptr : &*found;
}

} // namespace vardelin
