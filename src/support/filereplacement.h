#pragma once

#include <QString>

#include <functional>

/// Lets `write` make a file beside the target that takes the target's place once it is whole on
/// the disk. A failure leaves the target as it was, and so does a target that is read-only; a link
/// stays a link, and a former file's mode stays. Returns why it failed, in the user's words; empty
/// after success.
QString replaceFile(const QString &target, const std::function<bool(const QString &path)> &write);

/// For a process that is told to end: removes what replaceFile() has not finished, and lets it
/// go no further. Callable from another thread.
void abandonReplacement();
