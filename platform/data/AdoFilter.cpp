// The filter of a static record set.

#include "platform/data/AdoState.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace vardelin::ado {

using data::fail;
namespace Number = data::Number;

void Recordset::SetFilter(const QString &condition)
{
    State &s = state();
    if (!s.rows->updatable())
        fail(Number::NotSupported);
    Update();
    const data::Selection &whole = s.unfiltered ? *s.unfiltered : *s.rows;
    std::optional<data::Selection> part;
    if (!condition.trimmed().isEmpty()) {
        try {
            part.emplace(
                s.opened->file(),
                u"Select * From [%1] Where ("_s.arg(QString::fromStdU16String(whole.table().name())) +
                    condition + u')'); // in brackets no clause can follow it
        } catch (const RunTimeError &) {
            fail(Number::InvalidArgument);
        } catch (const jet::Error &) {
            fail(Number::InvalidArgument);
        }
        part->keepOnly(whole.places());
    }
    if (!s.unfiltered && part)
        s.unfiltered = std::move(s.rows);
    if (part) {
        s.rows = std::move(part);
    } else if (s.unfiltered) {
        s.rows = std::move(s.unfiltered);
        s.unfiltered.reset();
    }
    s.filter = condition;
    s.standAt(0);
}

const QString &Recordset::Filter() const
{
    return state().filter;
}

void Recordset::State::eraseRow()
{
    if (unfiltered) {
        const auto &places = unfiltered->places();
        const auto found = std::ranges::find(places, place().row, &data::RowPlace::row);
        if (found != places.end())
            unfiltered->erase(static_cast<std::size_t>(found - places.begin()));
    }
    rows->erase(static_cast<std::size_t>(at));
    image.clear();
    deleted = true;
}

} // namespace vardelin::ado
