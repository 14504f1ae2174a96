#include "shell/state/WindowCycle.h"

#include "shell/state/Global.h"

namespace vardelin {

namespace {

int indexOf(const std::vector<CycleForm> &forms, const QString &caption)
{
    int index = 0;
    while (index < std::ssize(forms) && forms[static_cast<std::size_t>(index)].caption != caption)
        ++index;
    return index;
}

bool isChild(const std::vector<CycleForm> &forms, int index)
{
    return index >= 0 && index < std::ssize(forms) && forms[static_cast<std::size_t>(index)].isMdiChild;
}

std::vector<CycleForm> loadedForms(const WindowList &windows)
{
    std::vector<CycleForm> forms;
    for (int i = 0; i < windows.Count(); ++i) {
        const QWidget *window = windows.at(i);
        forms.push_back(window ? CycleForm{window->windowTitle(), WindowList::isMdiChild(window)}
                               : CycleForm{});
    }
    return forms;
}

bool passFocus(Global &global, const ChildWindow &from, std::optional<int> target)
{
    if (!target)
        return false;
    auto *window = qobject_cast<ChildWindow *>(global.Forms.at(*target));
    if (!window)
        return true; // gone meanwhile: errors are ignored here
    // The Tag is the caller's on purpose. The Activate of the window reached comes after it and sets its own.
    if (window->Caption().contains(u"Display")) {
        global.DisplayWindowActive = true;
        global.EntryWindowActive = false;
        global.CurrentDisplayTag = from.Tag;
    } else if (window->Caption().contains(u"Data")) {
        global.DisplayWindowActive = false;
        global.EntryWindowActive = true;
        global.CurrentEntryTag = from.Tag;
    }
    window->SetFocus();
    return true;
}

} // namespace

std::optional<int> backTarget(const std::vector<CycleForm> &forms, const QString &caption, CycleKind kind)
{
    const int count = static_cast<int>(forms.size());
    int index = indexOf(forms, caption);
    if (kind == CycleKind::Entry && index == 0)
        index = count - 1;
    if (kind == CycleKind::Display && index == 1)
        index = count;
    while (index >= 1) {
        --index;
        if (isChild(forms, index))
            return index;
    }
    return std::nullopt;
}

std::optional<int> forwardTarget(const std::vector<CycleForm> &forms, const QString &caption)
{
    int index = indexOf(forms, caption) + 1;
    if (index > static_cast<int>(forms.size()) - 1)
        index = 1;
    return isChild(forms, index) ? std::optional(index) : std::nullopt;
}

bool goBack(Global &global, const ChildWindow &from, CycleKind kind)
{
    return passFocus(global, from, backTarget(loadedForms(global.Forms), from.Caption(), kind));
}

bool goForward(Global &global, const ChildWindow &from)
{
    return passFocus(global, from, forwardTarget(loadedForms(global.Forms), from.Caption()));
}

} // namespace vardelin
