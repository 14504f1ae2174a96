#pragma once
// Font names that files and settings hold, and what stands for them here.

namespace vardelin {

// Once, after the application object is made. No name is changed by it; only the face it is shown in.
void installFontSubstitutions();

} // namespace vardelin
