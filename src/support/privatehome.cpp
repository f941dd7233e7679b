#include "support/privatehome.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSettings>
#include <QStandardPaths>

namespace
{

/// False if there is a file that can't be copied.
bool copyIfThere(const QString &source, const QString &target)
{
    QDir().mkpath(QFileInfo(target).absolutePath());
    return !QFile::exists(source) || QFile::copy(source, target);
}

QString getLogoPath()
{
    return QStandardPaths::writableLocation(QStandardPaths::AppDataLocation) + "/companylogo.png";
}

} // namespace

bool moveIntoPrivateHome(const QDir &home)
{
    const QString settings = QSettings().fileName();
    const QString logo = getLogoPath();
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, home.path());
    qputenv("XDG_DATA_HOME", QFile::encodeName(home.filePath("data")));
    return copyIfThere(settings, QSettings().fileName()) && copyIfThere(logo, getLogoPath());
}
