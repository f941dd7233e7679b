#pragma once

#include "chart/sheethost.h"
#include "sheet/projectscene.h"
#include "sheet/sheetbook.h"
#include "support/formvalue.h"

#include <QObject>
#include <QUndoGroup>

#include <memory>

class ProjectFile;

/// A project without a window, for writing it to other formats. Each step that fails gives
/// false and leaves its reason in getError().
class ProjectExporter : public QObject, public SheetHost
{
    Q_OBJECT

public:
    /// Chosen instead of a factor's sheet: all sheets of a document, the main one of a picture.
    static constexpr int NoFactor = -1;

    ProjectExporter();
    ~ProjectExporter() override;

    /// In the user's words.
    const QString &getError() const { return error; }

    /// Reads the file, which may be brought up to date by that: give a copy.
    bool open(const QString &path);
    bool hasFactor(int number) const;
    /// What the program would print, or the one sheet of the causal factor with the number.
    bool writePDF(const QString &target, int factor);
    /// The entire sheet, one pixel for each scene unit.
    bool writePNG(const QString &target, int factor);
    /// The Word report.
    bool writeReport(const QString &target);

    int selectedTool() const override { return SelectTool; }
    bool isGridEnabled() const override { return false; }
    QMenu *getSceneContextMenu() override { return nullptr; }
    QMenu *getNoteContextMenu() override { return nullptr; }
    QMenu *getLineContextMenu() override { return nullptr; }
    Sticky *getNoteWithGUID(const QString &guid) const override
    {
        return book->getNoteWithGUID(guid);
    }
    ProjectScene *getSceneForParent(const QString &guid) const override
    {
        return book->getSheetForOwner(guid);
    }
    void onCausalFactorChanged(Sticky *) override {}
    QWidget *getDialogParent() override { return nullptr; }

private:
    /// The main sheet for NoFactor.
    ProjectScene *getSheet(int factor) const;
    bool end(const QString &failure);

    QUndoGroup undoGroup;
    std::unique_ptr<ProjectFile> projectFile;
    SheetBook *book = nullptr; // made when a file is opened, and deleted first
    FormValues formValues;
    QString error;
};
