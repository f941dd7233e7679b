#pragma once

class QString;

/// Enters the project in the desktop's list of recent files, which file managers and start menus
/// show. A list that can't be read or written stays as it is.
void addToDesktopRecents(const QString &path);
