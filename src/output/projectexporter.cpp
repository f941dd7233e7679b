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

namespace
{

constexpr int PageTimeout = 20000; // milliseconds

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
    if (!projectFile->openFile(path)) {
        error = projectFile->getLastError();
        return false;
    }
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
    const QList<ProjectScene *> others =
        factor == NoFactor ? book->getFactorSheets() : QList<ProjectScene *>();
    const QString title = SheetPrinter::makeTitle(formValues.value("incidentTitle").value,
                                                  projectFile->getOpenProjectName());
    return end(SheetPrinter::writePDF(getSheet(factor), others, title, target));
}

bool ProjectExporter::writePNG(const QString &target, int factor)
{
    ProjectScene *scene = getSheet(factor);
    const QRectF bound(0, 0, qRound(scene->width()), qRound(scene->height()));
    return end(SheetPrinter::writePNG(scene, bound, target));
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
    return end(WordXMLExport().writeReport(target, form.collectForSave()));
}

bool ProjectExporter::end(const QString &failure)
{
    error = failure;
    return failure.isEmpty();
}
