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

#include <algorithm>

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
    connect(projectFile.get(), &ProjectFile::loadedItem, this, &ProjectExporter::onItemLoaded);
    connect(projectFile.get(), &ProjectFile::loadedFormData, this,
            [this](const FormValues &values) { formValues = values; });
}

ProjectExporter::~ProjectExporter()
{
    factorScenes.clear();
}

bool ProjectExporter::open(const QString &path)
{
    mainScene = createScene(nullptr);
    if (!projectFile->openFile(path))
        return fail(projectFile->getLastError());
    mainScene->setPageSize(PageInfo().getPrintableArea().size());
    QCoreApplication::processEvents(); // notes lay themselves out once more
    return true;
}

std::unique_ptr<ProjectScene> ProjectExporter::createScene(Sticky *parentNote)
{
    const QSize pageSize = PageInfo().getPrintableArea().size();
    return std::make_unique<ProjectScene>(this, &undoGroup, projectFile.get(), nullptr, pageSize,
                                          parentNote);
}

void ProjectExporter::onItemLoaded(CanvasItemInfo &info)
{
    if (!info.parent.isEmpty()) {
        static_cast<ProjectScene *>(getSceneForParent(info.parent))->loadCanvasItem(info);
        return;
    }
    auto *note = qobject_cast<Sticky *>(mainScene->loadCanvasItem(info));
    if (note && note->isParentItem())
        factorScenes.push_back(createScene(note));
}

Sticky *ProjectExporter::getNoteWithGUID(const QString &guid) const
{
    if (auto *note = qobject_cast<Sticky *>(mainScene->getItemWithGUID(guid)))
        return note;
    for (const auto &scene : factorScenes) {
        if (auto *note = qobject_cast<Sticky *>(scene->getItemWithGUID(guid)))
            return note;
    }
    return nullptr;
}

ChartSheet *ProjectExporter::getSceneForParent(const QString &guid) const
{
    for (const auto &scene : factorScenes) {
        if (!guid.isEmpty() && scene->getOwnerGUID() == guid)
            return scene.get();
    }
    return mainScene.get();
}

QList<ProjectScene *> ProjectExporter::getFactorScenes() const
{
    QList<ProjectScene *> scenes;
    for (const auto &scene : factorScenes)
        scenes.append(scene.get());
    std::stable_sort(scenes.begin(), scenes.end(), [](ProjectScene *a, ProjectScene *b) {
        return a->getParentNote()->getCausalFactorNumber() <
               b->getParentNote()->getCausalFactorNumber();
    });
    return scenes;
}

ProjectScene *ProjectExporter::findFactor(int number) const
{
    for (const auto &scene : factorScenes) {
        if (scene->getParentNote()->getCausalFactorNumber() == number)
            return scene.get();
    }
    return nullptr;
}

bool ProjectExporter::hasFactor(int number) const
{
    return findFactor(number);
}

bool ProjectExporter::writePDF(const QString &target, int factor)
{
    return replaceFile(target, [this, factor](const QString &path) {
        QPrinter printer(QPrinter::ScreenResolution);
        printer.setOutputFormat(QPrinter::PdfFormat);
        printer.setOutputFileName(path);
        SheetPrinter::setUpPage(printer);
        const bool painted = factor == NoFactor
                                 ? SheetPrinter::paint(printer, mainScene.get(), getFactorScenes())
                                 : SheetPrinter::paint(printer, findFactor(factor), {});
        return painted && isWholePDF(path);
    });
}

bool ProjectExporter::writePNG(const QString &target, int factor)
{
    ProjectScene *scene = factor == NoFactor ? mainScene.get() : findFactor(factor);
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
    FormValues values = form.getAllFieldValues();
    form.fillInTitleImage(values);
    if (!WordXMLExport().writeReport(target, values))
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
