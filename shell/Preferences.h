#pragma once

namespace vardelin {

struct Global;

// Reads what the program remembers between runs into the shared variables: recent files, the file to open,
// fonts, default employee, captions, in the order that start-up has always had. Writes nothing. Returns
// whether the tip of the day is due.
bool loadPreferences(Global &global);

} // namespace vardelin
