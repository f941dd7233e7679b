#pragma once

class QAction;

/// Lets the tool tip of an action name its text and its shortcut, also after either has changed.
void nameShortcutInTip(QAction *action);
