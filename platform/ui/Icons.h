#pragma once
// The program's own pictures.

#include <QIcon>

namespace vardelin {

// The picture of a tool bar key ("Back", "Cut", "Small Caps"...) or of a navigator button ("First",
// "Previous", "Next", "Last"): :/icons/ and the key in lower case with hyphens. Drawn in the palette's colour
// of button texts at the moment of painting, sharp at any scale.
QIcon keyIcon(const QString &key);

// The window icon.
QIcon programIcon();

} // namespace vardelin
