#pragma once

#include <QObject>
#include <QString>

class QMimeData;
class QWidget;

/// Takes a project that is dropped anywhere on a window, and refuses all other files: their paths
/// would become words of a note or of the form. Drops without files are left to the widgets.
class ProjectDrop : public QObject
{
    Q_OBJECT

public:
    /// The window owns it.
    explicit ProjectDrop(QWidget *window);

    /// The path of the one project that the data names; null for a folder, for several files and
    /// for a file without the ending of a project.
    static QString getProject(const QMimeData *data);

    bool eventFilter(QObject *object, QEvent *event) override;

signals:
    /// From the event loop, so that who it was dragged from need not wait for questions.
    void dropped(const QString &path);

private:
    bool isOurs(const QObject *object) const;

    QWidget *window;
    bool carriesFiles = false; // the drag over the window
};
