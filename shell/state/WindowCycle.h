#pragma once
// Back and Forward: the walk through the loaded windows, in their order of loading.

#include <QString>
#include <optional>
#include <vector>

namespace vardelin {

struct Global;
class ChildWindow;

// A loaded window as the walk sees it.
struct CycleForm
{
    QString caption;
    bool isMdiChild = false;
};

enum class CycleKind {
    Entry,
    Display
}; // the kind of window whose button was pressed: the wrap of Back differs

// The index of the window that gets the focus; nullopt where the walk ends without one, and the window then
// shows its file's path. `caption` is that of the window whose button was pressed.
//
// Back goes over windows that are no children. From an Entry window it wraps only when that window is the
// parent's own place, so its first child stays where it is; a Display window in the first place goes to the
// last window. Forward looks at one window only and wraps from the last to index 1, past the parent window.
std::optional<int> backTarget(const std::vector<CycleForm> &forms, const QString &caption, CycleKind kind);
std::optional<int> forwardTarget(const std::vector<CycleForm> &forms, const QString &caption);

// The buttons: find the window, note which kind is active, pass the focus. False where there was none.
bool goBack(Global &global, const ChildWindow &from, CycleKind kind);
bool goForward(Global &global, const ChildWindow &from);

} // namespace vardelin
