#pragma once
// Alt keys that stand for no command.

class QCoreApplication;

namespace vardelin {

// From here on a letter pressed with Alt types nothing into any field of the program. Qt's fields take it as
// typed if no menu of the window has it, and so an Alt key of another window would put its letter in place of
// a field's selected text.
void keepAltKeysFromText(QCoreApplication &application);

} // namespace vardelin
