#pragma once
// Menus from tables of name, caption, shortcut and handler.

#include "platform/ui/ErrorFrame.h"

#include <QAction>
#include <QKeySequence>
#include <QMenu>
#include <functional>
#include <vector>

namespace vardelin {

struct MenuEntry
{
    QString name;    // objectName of the action: "mnuCopy", "mnuFileName(0)"
    QString caption; // "&Copy"; "-" is a separator
    QKeySequence shortcut = {};
    std::function<void()> handler = {}; // none, with entries: a submenu; none, without: no action
    std::vector<MenuEntry> entries = {};
};

// Makes the actions of a bar as children of `owner`: an entry with entries becomes a QMenu's menuAction(),
// another one a command. Handlers run inside `frame`. Names are found with owner->findChild<QAction *>(name);
// a menu itself is named like its entry too.
QList<QAction *> makeBar(QWidget *owner, const std::vector<MenuEntry> &entries, ErrorFrame &frame);

} // namespace vardelin
