#include "shell/filenames.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileDialog>
#include <QFileInfo>
#include <QMessageBox>
#include <QRegularExpression>
#include <QSettings>
#include <QStandardPaths>

namespace
{

constexpr int LongestProposal = 60; // characters; a file system may count each as four bytes

bool mayReplace(QWidget *parent, const QString &caption, const QString &name)
{
    if (!QFile::exists(name))
        return true;
    const QString question = QCoreApplication::translate(
        "askSaveName", "%1 already exists.\nDo you want to replace it?");
    return QMessageBox::warning(parent, caption, question.arg(QFileInfo(name).fileName()),
                                QMessageBox::Yes | QMessageBox::No,
                                QMessageBox::No) == QMessageBox::Yes;
}

} // namespace

QString getProposal(const QString &folder, const QString &title, const QString &ending)
{
    static const QRegularExpression unfit("[\\x{00}-\\x{1f}/\\\\:*?\"<>|]+|^[\\s.]+");
    QString name = title;
    return folder + name.replace(unfit, " ").left(LongestProposal).trimmed() + ending;
}

QString askSaveName(QWidget *parent, const QString &caption, const QString &proposal,
                    const QString &filter, const QString &ending, Qt::CaseSensitivity sensitivity)
{
    for (QString start = proposal;;) {
        const QString name = QFileDialog::getSaveFileName(parent, caption, start, filter);
        if (name.isEmpty() || name.endsWith(ending, sensitivity))
            return name;
        if (mayReplace(parent, caption, name + ending))
            return name + ending;
        start = name;
    }
}

QString getStartFolder(const QString &key)
{
    const QString documents = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    const QString kept = QSettings().value(key, documents).toString();
    for (const QString &folder : {kept, documents}) {
        if (QFileInfo(folder).isDir())
            return folder + "/";
    }
    return QDir::homePath() + "/";
}

void rememberFolder(const QString &key, const QString &path)
{
    QSettings().setValue(key, QFileInfo(path).absolutePath());
}
