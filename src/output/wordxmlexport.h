#pragma once

#include "support/formvalue.h"

#include <QDomDocument>
#include <QObject>

#include <functional>

/// Writes the form's values into a copy of the Word template.
class WordXMLExport : public QObject
{
    Q_OBJECT

public:
    /// Hears how far the writing is, from 0 to 6; the text is empty where it stays. False stops
    /// the writing, and from then on it stays false.
    using Progress = std::function<bool(double step, const QString &text)>;

    /// Beside the program.
    static QString getTemplatePath();

    /// The whole export: writes the document, under a box with Cancel if it takes long, and opens
    /// it on the desktop. Returns what writeReport() does; what failed is not opened.
    QString saveData(const QString &path, const FormValues &values, QWidget *parent);

    /// Writes the document and shows nothing. Returns why it failed or that it was stopped, in
    /// the user's words; a former document then stays. Empty after success.
    QString writeReport(const QString &path, FormValues values,
                        const Progress &progress = Progress(),
                        const QString &templatePath = getTemplatePath());

    /// Repeats the table rows whose fields are numbered, one row per number.
    void createDynamicElements(QDomDocument &document, const FormValues &values);
    /// The outermost row around the node; null outside of a table.
    QDomNode findTopMostTableRow(QDomNode node) const;
    void replaceDynamicRowNumbers(QDomNode &node, int number);
    /// Puts each value in place of its field; fields without a value stay.
    void replaceFields(QDomDocument &document, const FormValues &values);
    /// A text has one line for each of the value's; an empty value leaves nothing.
    void replaceFieldValue(QDomDocument &document, QDomElement &tag, const QString &value);
    /// Fits the picture into the template's box, or, with fitHeight, to the
    /// box's height whatever its width.
    void replaceImage(const QString &name, const QImage &image, QDomDocument &document,
                      bool fitHeight, const Progress &progress = Progress());

private:
    QString write(const QString &path, FormValues &values, const Progress &progress,
                  const QString &templatePath);
    void replaceImages(QDomDocument &document, const FormValues &values, const Progress &progress);
    void resizeShape(QDomElement &shape, QSize imageSize, bool fitHeight);
};
