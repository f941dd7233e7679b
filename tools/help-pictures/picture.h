#pragma once

#include <QImage>
#include <QList>
#include <QPoint>

/// One picture of the manual: fitted, numbered, framed and written with few colours.
class Picture
{
public:
    static constexpr int Width = 520; ///< what the help window has room for, in pixels

    explicit Picture(const QImage &image) : image(image.convertToFormat(QImage::Format_RGB32)) {}

    /// Shrinks it to the width, which may be its own already.
    Picture &fit(int width = Width);
    /// Draws 1, 2, 3 and so on around these points of the image as it is now.
    Picture &number(const QList<QPoint> &points);
    Picture &frame();
    /// Ends the program when it can't be written.
    void write(const QString &path) const;

private:
    QImage image;
};
