#include "output/projectexporter.h"

#include "chart/formfields.h"
#include "chart/sticky.h"
#include "form/pagefields.h"
#include "output/sheetprinter.h"
#include "output/wordxmlexport.h"
#include "project/projectfile.h"
#include "sheet/projectscene.h"
#include "support/images.h"
#include "support/pageinfo.h"
#include "support/supportfiles.h"

#include <QCoreApplication>

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
    FormModel form; // by the rules of the page, and without its engine
    form.setFields(readPageFields());
    form.fill(formValues, 0);
    FormValues values = form.getValues();
    const FormValue stored = formValues.value(FormFields::TitleImage);
    FormValue &title = values[FormFields::TitleImage];
    title.image = readImageFile(title.value);
    if (title.image.isNull() && title.value == stored.value)
        title.image = stored.image;
    return end(WordXMLExport().writeReport(target, values));
}

bool ProjectExporter::end(const QString &failure)
{
    error = failure;
    return failure.isEmpty();
}
