#pragma once
// The face of a report's font, as it is measured and as it is drawn.

#include "platform/report/ReportDesign.h"

#include <QFont>

namespace vardelin {

// Without hints and kerning, so that each character takes its outline's width at every size.
QFont outlineFont(const ReportFont &font, int pixelSize);

} // namespace vardelin
