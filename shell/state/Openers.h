#pragma once
// What a command may open. Forms open each other in circles, includes do not: shell/Wiring.cpp fills this
// once; tests put in their own.

#include <functional>

namespace vardelin {

class EntryWindow;
class DisplayWindow;

struct Openers
{
    // Modal: return when the window is closed.
    std::function<void()> frmClient, frmEmployee, frmProject, frmRate, frmActivity;
    std::function<void()> frmTip, frmIntroduction, frmAboutvarden;
    // Shown, not modal. The new window's file is DatabaseFileName.
    std::function<EntryWindow *()> NewEntryWindow;
    std::function<DisplayWindow *()> NewDisplayWindow;
    // Makes the window of a slot again that was closed.
    std::function<EntryWindow *(int index)> makeEntryWindow;
    std::function<void()> TileHorizontally, TileVertically, CascadeWindows;
    std::function<void()> ExitProgram;
    // Commands whose windows come later say so through this, with the command's caption.
    std::function<void(const char16_t *what)> notYet;
};

} // namespace vardelin
