#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QHash>
#include <QString>

/// Copies of files as they were before the program removed, replaced or first wrote into
/// them. They lie in a folder of their own, the newest 20 stay, and their names begin with
/// the time in UTC. A copy that fails is told to the debug output and never stops the work.
class KeptCopies
{
public:
    static constexpr int MaximumCount = 20;

    /// `folder` is made with the first copy, for the user alone.
    explicit KeptCopies(const QString &folder);

    /// Whether it is among the copies, which go as newer ones come.
    bool holds(const QString &path) const;
    /// Whether the file still is as this process left it.
    bool isOwn(const QString &path) const;

    /// Remembers the file as one that this process has just written.
    void noteWritten(const QString &path);
    /// Copies a file that this process did not write last. A file that is not there, that is
    /// empty or that is no regular one has nothing to keep. False when a copy was due and failed.
    bool keepCopy(const QString &path);
    /// Takes a file away: one that this process wrote last is removed, any other moved in among
    /// the copies, which takes no room. Of a link the link goes. False when it still stands there.
    bool takeAway(const QString &path);
    /// Puts a finished file in the place of another, which is kept at first. False, with both as
    /// they were, when that fails.
    bool replace(const QString &path, const QString &finishedPath);
    /// Where to build a file that adopt() takes, empty at first; null when it can't be made.
    QString getTemporaryPath();
    /// Moves a finished file in under the name of a project; false when that fails.
    bool adopt(const QString &temporaryPath, const QString &projectName);

private:
    /// Null when the folder can't be made.
    QString makeTarget(const QString &name) const;
    /// Whether a copy has the file as it stands: one save after the other may fail.
    bool isKept(const QString &path) const;
    bool keepForReplacing(const QString &path);
    void prune();

    QString folder;                      // without a "/" at its end
    QHash<QString, QByteArray> ownFiles; // how this process left them, by canonical path
    QHash<QString, QPair<QByteArray, QString>> latestCopies; // state and copy, by the same
};

/// What tells one state of a file from another without reading all of it: its size, its
/// time and its first bytes, which hold the change counter of a database. Empty for a file
/// that can't be read.
QByteArray getFileStamp(const QString &path);
