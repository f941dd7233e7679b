#include "output/pngwriter.h"

#include <csetjmp>
#include <png.h>

namespace
{

// Charts are flat and mostly white: a filter costs time and gains nothing.
constexpr int Compression = 3;
constexpr int Filter = PNG_FILTER_NONE;

void writeBytes(png_structp png, png_bytep bytes, png_size_t length)
{
    auto *file = static_cast<QFile *>(png_get_io_ptr(png));
    if (file->write(reinterpret_cast<const char *>(bytes), qint64(length)) != qint64(length))
        png_error(png, "write failed");
}

void flushBytes(png_structp) {}

void ignoreWarning(png_structp, png_const_charp) {}

void jumpBack(png_structp png, png_const_charp)
{
    png_longjmp(png, 1);
}

} // namespace

PngWriter::PngWriter(const QString &path) : file(path) {}

PngWriter::~PngWriter()
{
    png_destroy_write_struct(&png, &info);
}

bool PngWriter::begin(const QSize &size)
{
    if (size.isEmpty() || !file.open(QIODevice::WriteOnly))
        return false;
    png = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, jumpBack, ignoreWarning);
    info = png ? png_create_info_struct(png) : nullptr;
    return info && writeHeader(size.width(), size.height());
}

bool PngWriter::writeRows(const QImage &band)
{
    return writeImageRows(band.convertToFormat(QImage::Format_RGB888));
}

bool PngWriter::end()
{
    return writeEnd() && file.flush() && file.error() == QFileDevice::NoError;
}

// The library jumps out of its calls on an error, past every destructor, so the
// functions that it jumps back into hold nothing that needs one.

bool PngWriter::writeHeader(int width, int height)
{
    if (setjmp(png_jmpbuf(png)))
        return false;
    png_set_write_fn(png, &file, writeBytes, flushBytes);
    png_set_compression_level(png, Compression);
    png_set_filter(png, PNG_FILTER_TYPE_BASE, Filter);
    png_set_IHDR(png, info, png_uint_32(width), png_uint_32(height), 8, PNG_COLOR_TYPE_RGB,
                 PNG_INTERLACE_NONE, PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
    png_write_info(png, info);
    return true;
}

bool PngWriter::writeImageRows(const QImage &rows)
{
    if (setjmp(png_jmpbuf(png)))
        return false;
    for (int row = 0; row < rows.height(); ++row)
        png_write_row(png, rows.constScanLine(row));
    return true;
}

bool PngWriter::writeEnd()
{
    if (setjmp(png_jmpbuf(png)))
        return false;
    png_write_end(png, info);
    return true;
}
