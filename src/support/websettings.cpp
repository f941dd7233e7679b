#include "support/websettings.h"

#include <QFontInfo>
#include <QWebSettings>

void applyWebSettings()
{
    QWebSettings *settings = QWebSettings::globalSettings();
    // The engine passes over the system's aliases: Arial would become a serif font.
    const QString family = QFontInfo(QFont("Arial")).family();
    settings->setFontFamily(QWebSettings::StandardFont, family);
    settings->setFontFamily(QWebSettings::SansSerifFont, family);
    const QWebSettings::WebAttribute unused[] = {
        QWebSettings::JavaEnabled,
        QWebSettings::PluginsEnabled,
        QWebSettings::JavascriptCanOpenWindows,
        QWebSettings::JavascriptCanAccessClipboard,
        QWebSettings::OfflineStorageDatabaseEnabled,
        QWebSettings::OfflineWebApplicationCacheEnabled,
        QWebSettings::LocalStorageEnabled,
        QWebSettings::LocalContentCanAccessRemoteUrls,
        QWebSettings::LocalContentCanAccessFileUrls,
        QWebSettings::DnsPrefetchEnabled,
        QWebSettings::NotificationsEnabled,
    };
    for (QWebSettings::WebAttribute attribute : unused)
        settings->setAttribute(attribute, false);
}
