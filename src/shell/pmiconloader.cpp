#include "shell/pmiconloader.h"

QIcon PMIconLoader::loadIcon(const QString &name)
{
    QIcon icon(":/images/16/" + name + ".png");
    icon.addFile(":/images/22/" + name + ".png", QSize(22, 22), QIcon::Normal, QIcon::Off);
    icon.addFile(":/images/32/" + name + ".png", QSize(32, 32), QIcon::Normal, QIcon::Off);
    return icon;
}
