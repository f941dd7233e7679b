#pragma once

#include <QCoreApplication>
#include <QImageReader>
#include <QLibraryInfo>

/// What the two toolkits call or do differently, outside the web seam.
namespace QtCompat
{

/// Qt 6 scales by itself, and takes the larger pictures for it.
inline void enableHighDpiScaling()
{
#if QT_VERSION_MAJOR < 6
    QCoreApplication::setAttribute(Qt::AA_EnableHighDpiScaling);
    QCoreApplication::setAttribute(Qt::AA_UseHighDpiPixmaps);
#endif
}

/// Qt 6 would refuse pictures above a size of its own; Qt 5 knows no limit.
inline void limitImages(int megabytes)
{
#if QT_VERSION_MAJOR < 6
    Q_UNUSED(megabytes)
#else
    QImageReader::setAllocationLimit(megabytes);
#endif
}

/// Of the toolkit's own texts.
inline QString getTranslationsFolder()
{
#if QT_VERSION_MAJOR < 6
    return QLibraryInfo::location(QLibraryInfo::TranslationsPath);
#else
    return QLibraryInfo::path(QLibraryInfo::TranslationsPath);
#endif
}

/// Qt 5 weighs fonts from 0 to 99, 50 is normal. Qt 6 weighs them up to 1000, 400 is normal.
constexpr bool HasWideFontWeights = QT_VERSION_MAJOR >= 6;

} // namespace QtCompat
