#include "platform/ui/MenuTable.h"

using namespace Qt::StringLiterals;

namespace vardelin {

namespace {

QAction *makeAction(QWidget *owner, const MenuEntry &entry, ErrorFrame &frame);

QAction *makeMenu(QWidget *owner, const MenuEntry &entry, ErrorFrame &frame)
{
    auto *menu = new QMenu(entry.caption, owner);
    menu->setObjectName(entry.name);
    for (const MenuEntry &item : entry.entries)
        menu->addAction(makeAction(owner, item, frame));
    return menu->menuAction();
}

QAction *makeCommand(QWidget *owner, const MenuEntry &entry, ErrorFrame &frame)
{
    auto *action = new QAction(entry.caption, owner);
    // A command's key works while the command hangs on a visible bar, so it is that of the active child
    // alone.
    action->setShortcut(entry.shortcut);
    if (entry.handler) {
        QObject::connect(action, &QAction::triggered, owner,
                         [handler = entry.handler, &frame] { frame.run(handler); });
    }
    return action;
}

QAction *makeAction(QWidget *owner, const MenuEntry &entry, ErrorFrame &frame)
{
    QAction *action = nullptr;
    if (entry.caption == "-"_L1) {
        action = new QAction(owner);
        action->setSeparator(true);
    } else if (!entry.entries.empty()) {
        action = makeMenu(owner, entry, frame);
    } else {
        action = makeCommand(owner, entry, frame);
    }
    action->setObjectName(entry.name);
    return action;
}

} // namespace

QList<QAction *> makeBar(QWidget *owner, const std::vector<MenuEntry> &entries, ErrorFrame &frame)
{
    QList<QAction *> bar;
    for (const MenuEntry &entry : entries)
        bar += makeAction(owner, entry, frame);
    return bar;
}

} // namespace vardelin
