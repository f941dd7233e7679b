#pragma once

#include <QIcon>

class PMIconLoader
{
public:
    /// The named picture in 16, 22 and 32 pixels; a null icon for an unknown name.
    static QIcon loadIcon(const QString &name);
};
