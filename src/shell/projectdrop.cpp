#include "shell/projectdrop.h"

#include <QApplication>
#include <QDropEvent>
#include <QFileInfo>
#include <QMimeData>
#include <QUrl>
#include <QWidget>

#include <utility>

ProjectDrop::ProjectDrop(QWidget *window) : QObject(window), window(window)
{
    window->setAcceptDrops(true);
    // Views and the form's page take drops themselves and would not let them through.
    qApp->installEventFilter(this);
}

QString ProjectDrop::getProject(const QMimeData *data)
{
    const QList<QUrl> urls = data->urls();
    if (urls.size() != 1 || !urls.first().isLocalFile())
        return QString();
    const QFileInfo file(urls.first().toLocalFile());
    const bool isProject = file.isFile() && file.fileName().endsWith(".epf", Qt::CaseInsensitive);
    return isProject ? file.filePath() : QString();
}

bool ProjectDrop::isOurs(const QObject *object) const
{
    const auto *widget = qobject_cast<const QWidget *>(object);
    return widget && widget->window() == window && !QApplication::activeModalWidget();
}

bool ProjectDrop::eventFilter(QObject *object, QEvent *event)
{
    const QEvent::Type type = event->type();
    if (type == QEvent::DragLeave && isOurs(object))
        return std::exchange(carriesFiles, false);
    if ((type != QEvent::DragEnter && type != QEvent::DragMove && type != QEvent::Drop) ||
        !isOurs(object))
        return false;
    auto *drop = static_cast<QDropEvent *>(event);
    carriesFiles = drop->mimeData()->hasUrls() && type != QEvent::Drop;
    if (!drop->mimeData()->hasUrls())
        return false;
    // Who offers but a move would remove the file.
    const bool stays = drop->possibleActions() & Qt::CopyAction;
    const QString path = stays ? getProject(drop->mimeData()) : QString();
    drop->setDropAction(path.isNull() ? Qt::IgnoreAction : Qt::CopyAction);
    drop->setAccepted(!path.isNull());
    if (type == QEvent::Drop && !path.isNull())
        QMetaObject::invokeMethod(
            this, [this, path] { emit dropped(path); }, Qt::QueuedConnection);
    return true;
}
