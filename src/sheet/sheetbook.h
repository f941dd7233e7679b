#pragma once

#include <QHash>
#include <QObject>
#include <QStringList>

class FormView;
class ProjectFile;
class ProjectItem;
class ProjectScene;
class QFont;
class QSize;
class QUndoGroup;
class SheetHost;
class Sticky;
struct CanvasItemInfo;

/// The sheets of a project: the main one and one for each causal factor on it. It makes them,
/// keeps them in step with the factors, and finds them.
class SheetBook : public QObject
{
    Q_OBJECT

public:
    /// All must outlive the book. Without a form, factors have no rows there.
    SheetBook(SheetHost *host, QUndoGroup *undoGroup, ProjectFile *projectFile, FormView *formView);
    ~SheetBook() override;

    ProjectScene *getMainSheet() const { return mainSheet; }
    /// By number.
    QList<ProjectScene *> getFactorSheets() const;
    /// The main sheet first.
    QList<ProjectScene *> getAllSheets() const;
    /// Null for a note that has no sheet.
    ProjectScene *getSheetOf(const Sticky *factor) const { return sheets.value(factor); }
    /// Null when no factor bears the number.
    ProjectScene *getSheetOf(int number) const;
    /// The main sheet for an empty or unknown owner.
    ProjectScene *getSheetForOwner(const QString &guid) const;
    /// The main sheet is asked first; null when no sheet holds such a note.
    Sticky *getNoteWithGUID(const QString &guid) const;
    /// What a save writes, sheet by sheet, each from the bottom to the top; each item's owner is
    /// among them.
    QList<ProjectItem *> getProjectItems() const;

    /// What is typed in the form reaches the notes, a text under edit its twins, the form and the
    /// undo stack. For commands of the user: other events may be handled meanwhile.
    void finishEditing();
    /// The same without the end of the editing: whoever saves types on.
    void commitEditing();
    /// The same without an undo step, too.
    void shareEditedText();
    /// Empties the main sheet and puts the others away: they live on unseen.
    void clear();
    /// The new font of all notes without one of their own.
    void setItemsFont(const QFont &font);
    /// Scene units.
    void setPageSize(QSize size);

public slots:
    /// The main sheet's records must come first.
    void onItemLoaded(CanvasItemInfo &info);
    void onCausalFactorAdded(Sticky *note);
    void onCausalFactorRemoved(Sticky *note);
    /// Keeps a snapshot first if the factor's sheet or row holds work: who agreed that the sheet
    /// goes may have forgotten the row, and take the step's undo for its return.
    void onFactorGoes(Sticky *factor);
    /// Lays the sheets aside whose factor an undo took away; a redo brings them back.
    void onStepTaken();

signals:
    /// A new one before anything stands on it.
    void sheetCame(ProjectScene *sheet);
    /// No look-up finds it any more.
    void sheetGoes(ProjectScene *sheet);

private:
    /// The sheet and the row of a factor that was undone.
    struct RestingSheet {
        ProjectScene *sheet;
        QStringList row;
    };
    struct Leave {
        int number;
        bool undone; // or redone; else it goes for good
    };

    void finishInput();
    bool isOnMainSheet(const Sticky *note) const;
    ProjectScene *createSheet(Sticky *factor);
    void enter(ProjectScene *sheet);
    void leave(ProjectScene *sheet);
    void layAside(Sticky *factor, int number);
    void bringBack(Sticky *factor);
    void takeFreeNumber(Sticky *factor);
    void keepWork(Sticky *factor);

    SheetHost *host; // not owned, like the next three
    QUndoGroup *undoGroup;
    ProjectFile *projectFile;
    FormView *formView;
    ProjectScene *mainSheet; // child, like every sheet
    QHash<const Sticky *, ProjectScene *> sheets;
    QMultiHash<QString, ProjectScene *> sheetsByOwner; // the same, by the factor's GUID
    QHash<Sticky *, RestingSheet> resting;
    QHash<Sticky *, Leave> leaving; // factors whose end is yet to be told
};
