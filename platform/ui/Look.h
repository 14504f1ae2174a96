#pragma once
// What the windows look like where the desktop brings no style of its own.

namespace vardelin {

// Once, after the application object is made. A style that the desktop brings stays.
void setLook();

} // namespace vardelin
