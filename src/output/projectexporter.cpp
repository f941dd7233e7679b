#include "output/projectexporter.h"

#include "chart/sticky.h"
#include "form/formview.h"
#include "output/sheetprinter.h"
#include "output/wordxmlexport.h"
#include "project/projectfile.h"
#include "sheet/projectscene.h"
#include "support/pageinfo.h"
#include "support/supportfiles.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QPrinter>
#include <QTemporaryDir>

namespace
{

constexpr int PageTimeout = 20000; // milliseconds

bool isWholePDF(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return false;
    file.seek(qMax<qint64>(0, file.size() - 16));
    return file.readAll().contains("%%EOF");
}

} // namespace

ProjectExporter::ProjectExporter() : projectFile(std::make_unique<ProjectFile>(this))
{
    connect(projectFile.get(), &ProjectFile::loadedFormData, this,
            [this](const FormValues &values) { formValues = values; });
}

ProjectExporter::~ProjectExporter()
{
    delete book;
}

bool ProjectExporter::open(const QString &path)
{
    book = new SheetBook(this, &undoGroup, projectFile.get(), nullptr);
    if (!projectFile->openFile(path))
        return fail(projectFile->getLastError());
    book->getMainSheet()->setPageSize(PageInfo().getPrintableArea().size());
    QCoreApplication::processEvents(); // notes lay themselves out once more
    return true;
}

bool ProjectExporter::hasFactor(int number) const
{
    return book->getSheetOf(number);
}

ProjectScene *ProjectExporter::getSheet(int factor) const
{
    return factor == NoFactor ? book->getMainSheet() : book->getSheetOf(factor);
}

bool ProjectExporter::writePDF(const QString &target, int factor)
{
    return replaceFile(target, [this, factor](const QString &path) {
        QPrinter printer(QPrinter::ScreenResolution);
        printer.setOutputFormat(QPrinter::PdfFormat);
        printer.setOutputFileName(path);
        SheetPrinter::setUpPage(printer);
        const QList<ProjectScene *> others =
            factor == NoFactor ? book->getFactorSheets() : QList<ProjectScene *>();
        return SheetPrinter::paint(printer, getSheet(factor), others) && isWholePDF(path);
    });
}

bool ProjectExporter::writePNG(const QString &target, int factor)
{
    ProjectScene *scene = getSheet(factor);
    const QRectF bound(0, 0, qRound(scene->width()), qRound(scene->height()));
    return replaceFile(target, [scene, &bound](const QString &path) {
        return SheetPrinter::writePNG(scene, bound, path);
    });
}

bool ProjectExporter::writeReport(const QString &target)
{
    copySupportFiles();
    FormView form(&undoGroup);
    form.onFormDataLoaded(formValues);
    QElapsedTimer waiting;
    waiting.start();
    while (form.getAllFields(true).count() == 0 && !waiting.hasExpired(PageTimeout))
        QCoreApplication::processEvents(QEventLoop::AllEvents, 50);
    if (!WordXMLExport().writeReport(target, form.collectForSave()))
        return fail("The report could not be written to " + target + ".");
    return true;
}

bool ProjectExporter::replaceFile(const QString &target,
                                  const std::function<bool(const QString &)> &write)
{
    const QFileInfo file(target);
    const QString failure = "The file " + target + " could not be written.";
    const QTemporaryDir folder(file.absolutePath() + "/.examiner-export-XXXXXX");
    const QString unfinished = folder.filePath("unfinished");
    if (!folder.isValid() || (file.exists() && !file.isFile()) || !write(unfinished))
        return fail(failure);
    QFile::remove(target);
    return QFile::rename(unfinished, target) || fail(failure);
}

bool ProjectExporter::fail(const QString &reason)
{
    error = reason;
    return false;
}
