#pragma once

#include <QString>

#include <memory>

class QLockFile;

/// Tells the windows that have one project open of each other, on this machine and on others: a
/// hidden file beside the project, held while the project is open. It bars nobody. Where nothing
/// can be written beside the project nobody can save there either, and nothing is told.
class ProjectLock
{
public:
    ProjectLock();
    ~ProjectLock();

    /// Holds the project, unless another window does; of any other project it lets go. Asked
    /// again, it takes over what the other window or a crash has left.
    void hold(const QString &project);
    void release();
    /// Where else the project is open, in the user's words; empty when it isn't.
    const QString &getOtherPlace() const { return otherPlace; }

private:
    std::unique_ptr<QLockFile> file;
    QString path;
    QString otherPlace;
};
