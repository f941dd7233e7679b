#pragma once

#include <QString>
#include <QVector>

/// Where a viewer leads to: a sheet and its first page, from 0.
struct PdfOutlineEntry {
    QString name;
    int page;
};

/// Gives a document its outline, and lets viewers show that and the title. False when the file is
/// no whole document, or when it could not be written; then it is worth nothing any more.
bool addOutline(const QString &path, const QVector<PdfOutlineEntry> &outline);
