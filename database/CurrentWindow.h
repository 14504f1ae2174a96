#pragma once
// The Display window that a command on files came from.

#include "shell/state/Global.h"

namespace vardelin {

// By CurrentDisplayTag; RunTimeError 91 where that window is closed.
inline DisplayWindow &currentWindow(Global &global)
{
    const auto index = static_cast<std::size_t>(global.CurrentDisplayTag.toInt() - 1);
    if (index >= global.DisplayWindows.size() || !global.DisplayWindows[index])
        throw RunTimeError(RunTime::ObjectNotSet);
    return *global.DisplayWindows[index];
}

} // namespace vardelin
