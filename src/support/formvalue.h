#pragma once

#include <QHash>
#include <QImage>
#include <QMetaType>
#include <QString>

/// One stored field of the investigation form.
struct FormValue {
    QString value; ///< radio buttons hold "true" or "false", selects their option's text
    QImage image;  ///< null unless the field is the title image
    QByteArray hiddenImage = {}; ///< as the file holds a picture that can't be shown in full
};

/// A field set: element id to value.
using FormValues = QHash<QString, FormValue>;

Q_DECLARE_METATYPE(FormValue)
Q_DECLARE_METATYPE(FormValues)
