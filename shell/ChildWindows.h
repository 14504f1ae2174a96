#pragma once
// Making, numbering and arranging the child windows.

#include "shell/Arrange.h"

namespace vardelin {

struct Global;
class EntryWindow;
class DisplayWindow;
class frmMain;

// A new window on DatabaseFileName behind the last one of its kind; its number is never used again.
EntryWindow *NewEntryWindow(Global &global, frmMain &parent);
DisplayWindow *NewDisplayWindow(Global &global, frmMain &parent);

// The window of a slot, made again if it was closed.
EntryWindow *entryWindowAt(Global &global, frmMain &parent, int index);
DisplayWindow *displayWindowAt(Global &global, frmMain &parent, int index);

void arrangeTiled(frmMain &parent, Tile direction);
void arrangeCascaded(frmMain &parent);

} // namespace vardelin
