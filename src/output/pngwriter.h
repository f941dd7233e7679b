#pragma once

#include <QFile>
#include <QImage>

struct png_info_def;
struct png_struct_def;

/// Writes a picture band by band, so that a large one never stands in memory whole.
class PngWriter
{
public:
    explicit PngWriter(const QString &path);
    ~PngWriter();

    /// False when the file can't be written or PNG can't hold the size.
    bool begin(const QSize &size);
    /// The next rows, from the top; as wide as the picture, any format. Alpha is dropped.
    bool writeRows(const QImage &band);
    /// After the last row; false when any of it didn't reach the file.
    bool end();

private:
    Q_DISABLE_COPY(PngWriter)

    bool writeHeader(int width, int height);
    bool writeImageRows(const QImage &rows);
    bool writeEnd();

    QFile file;
    png_struct_def *png = nullptr;
    png_info_def *info = nullptr;
};
