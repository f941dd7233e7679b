#include "support/helptextbrowser.h"
#include "testing/dialogs.h"
#include "testing/files.h"
#include "testing/records.h"
#include "testing/rows.h"
#include "testing/window.h"

#include <QDragEnterEvent>
#include <QFileOpenEvent>
#include <QMimeData>

/// A project between window and disk. All tests share one window, emptied before each.
class TestLifecycle : public QObject
{
    Q_OBJECT

    QString path(const QString &name) const { return folder->filePath(name); }
    QString dataFile(const QString &name) const { return makeDataFolder() + "/" + name; }
    QStringList recent() const { return QSettings().value("recentFiles").toStringList(); }
    QStringList keptCopies() const { return QDir(dataFile("kept")).entryList(QDir::Files); }
    QString copySample(const QString &name) const
    {
        QFile::copy(QCoreApplication::applicationDirPath() + "/sample.epf", path(name));
        return path(name);
    }
    void saveTo(const QString &name)
    {
        DialogAnswer answer(fileChoice(path(name)));
        w.window.saveProjectAs();
        QVERIFY(answer.wasAsked());
    }
    /// All that a user sees of the project, and what tells its state.
    QString describeProject() const
    {
        QStringList parts = {w.window.windowTitle(), w.file->getOpenFilename(),
                             w.file->isDirty() ? "dirty" : "clean", describe(*w.chart())};
        for (ProjectScene *sheet : w.window.getFactorScenes())
            parts.append(describe(*sheet));
        return parts.join('\n');
    }
    /// Types into a new note as a user does, and stays in it.
    Sticky *typeIntoANote(const QString &text)
    {
        Sticky *note = w.addNote("Event", QPointF(200, 200));
        QWidget *viewport = w.view()->viewport();
        w.window.activateWindow();
        w.view()->setFocus();
        QTest::mouseDClick(viewport, Qt::LeftButton, Qt::NoModifier,
                           w.view()->mapFromScene(260, 240));
        QTest::keyClick(viewport, Qt::Key_A, Qt::ControlModifier);
        QTest::keyClicks(viewport, text);
        return note;
    }

    TestWindow w;
    std::unique_ptr<QTemporaryDir> folder;

private slots:
    void init()
    {
        folder = std::make_unique<QTemporaryDir>();
        QDir(dataFile("kept")).removeRecursively();
        w.empty();
        w.window.show();
        w.action("&Save")->setEnabled(true);
    }

    void cancelledQuestionChangesNothing()
    {
        w.window.openProject(copySample("x.epf"));
        w.makeDirty();
        const QString before = describeProject();
        const QString other = copySample("y.epf");
        const std::function<void()> roads[] = {
            [&] { w.window.newProject(); }, [&] { w.window.openProject(other); },
            [&] { w.window.openQuickStart(); }, [&] { w.window.close(); }};
        for (const auto &road : roads) {
            const Row in(qPrintable(QString::number(&road - roads)));
            BoxAnswer cancel(QMessageBox::Cancel);
            road();
            QCOMPARE(cancel.defaultButton, QString("Save"));
            QCOMPARE(describeProject(), before);
            QVERIFY(w.window.isVisible());
        }
        BoxAnswer discard(QMessageBox::Discard);
        w.window.newProject();
        QVERIFY(discard.wasAsked() && w.file->requiresFilenamePrompt());
        QVERIFY(w.chart()->getProjectItems().isEmpty() && keptCopies().isEmpty());
        w.window.openQuickStart();
        QVERIFY(w.file->requiresFilenamePrompt() && !w.chart()->getAllNotes().isEmpty());
        QCOMPARE(recent(), QStringList(path("x.epf")));
    }

    /// The project that was refused has no name: the next save must not go over it.
    void failedOpen()
    {
        QFileOpenEvent event(copySample("good.epf"));
        QVERIFY(w.window.eventFilter(qApp, &event));
        QCOMPARE(w.view()->viewportUpdateMode(), QGraphicsView::MinimalViewportUpdate);
        DialogAnswer cancelled(cancellation());
        w.window.openProject();
        QVERIFY(cancelled.wasAsked() && !w.chart()->getProjectItems().isEmpty());
        const QByteArray content(5000, 'x');
        writeBytes(path("bad.epf"), content);
        BoxAnswer box(QMessageBox::Ok);
        w.window.openProject(path("bad.epf"));
        QVERIFY(box.wasAsked() && w.file->requiresFilenamePrompt());
        QVERIFY(w.tabs->count() == 2 && w.chart()->getProjectItems().isEmpty());
        QCOMPARE(recent(), QStringList(path("good.epf")));
        QCOMPARE(readBytes(path("bad.epf")), content);
    }

    /// The path of any other file would become words of the form.
    void droppedFiles()
    {
        const QString project = copySample("x.epf");
        QVERIFY(QDir().mkdir(path("folder.epf")));
        writeBytes(path("x.txt"), "text");
        const QPair<QStringList, bool> rows[] = {{{path("folder.epf")}, false},
                                                 {{project, project}, false},
                                                 {{path("x.txt")}, false},
                                                 {{project}, true}};
        QWidget *page = w.form->findChild<HelpTextBrowser *>();
        for (const auto &[paths, taken] : rows) {
            const Row in(qPrintable(paths.join(' ')));
            QMimeData data;
            QList<QUrl> urls;
            for (const QString &name : paths)
                urls.append(QUrl::fromLocalFile(name));
            data.setUrls(urls);
            const Qt::DropActions offered = Qt::CopyAction | Qt::MoveAction;
            QDragEnterEvent enter(QPoint(5, 5), offered, &data, Qt::LeftButton, {});
            QDropEvent drop(QPoint(5, 5), offered, &data, Qt::LeftButton, {});
            QApplication::sendEvent(page, &enter);
            QApplication::sendEvent(page, &drop);
            QCOMPARE(enter.isAccepted() && drop.isAccepted(), taken);
            QVERIFY(!taken || drop.dropAction() == Qt::CopyAction); // else the file would go
        }
        QTRY_COMPARE(w.file->getOpenFilename(), project);
        QVERIFY(!w.file->isDirty());
    }

    void endOfTheSession()
    {
        w.window.openProject(copySample("x.epf"));
        w.window.keepUnsavedWork();
        QVERIFY(keptCopies().isEmpty());
        typeIntoANote("words");
        w.window.keepUnsavedWork();
        const QString offered = dataFile("x.epf.autosave");
        for (const QString &file : {dataFile("kept/" + keptCopies().value(0)), offered})
            QCOMPARE(runSql(file, {"SELECT text FROM items WHERE text='words'"}).size(), 1);
        QVERIFY(w.file->isDirty());
        w.file->discardAutoSaveFile();
    }

    void recentFiles()
    {
        for (const char *name : {"/1", "/2", "/3", "/4", "/2", "5"})
            w.window.addRecentFile(name);
        const QString five = QDir::current().filePath("5");
        QCOMPARE(recent(), QStringList({five, "/4", "/3", "/2"}));
        BoxAnswer gone(QMessageBox::Ok);
        w.window.openProject("/3");
        QVERIFY(gone.wasAsked());
        QCOMPARE(recent(), QStringList({five, "/4", "/2"}));
    }

    void saveAsksForAName()
    {
        const std::pair<const char *, const char *> rows[] = {
            {"a.epf", "a.epf"}, {"b", "b.epf"}, {"c.EPF", "c.EPF.epf"}};
        for (const auto &[typed, written] : rows) {
            const Row in(typed);
            w.empty();
            DialogAnswer answer(fileChoice(path(typed)));
            w.action("&Save")->trigger();
            QVERIFY(QFile::exists(path(written)) && w.window.windowTitle().contains(path(written)));
            QCOMPARE(recent(), QStringList(path(written)));
        }
        w.empty();
        DialogAnswer cancelled(cancellation());
        w.action("&Save")->trigger();
        QVERIFY(!w.action("&Save")->isEnabled());
        // An ending makes another name of a free one.
        const QByteArray former = readBytes(copySample("other.epf"));
        BoxAnswer refused(QMessageBox::No);
        DialogAnswer second(
            [&](QWidget *widget) { return refused.wasAsked() && fileChoice(QString())(widget); });
        saveTo("other");
        QVERIFY(refused.wasAsked() && second.wasAsked());
        QCOMPARE(readBytes(path("other.epf")), former);
        saveTo("x.epf");
        QVERIFY(w.action("&Save")->isEnabled());
    }

    /// It goes when the new one stands and it is kept.
    void saveAsKeepsTheFormer()
    {
        const QByteArray former = readBytes(copySample("other.epf"));
        for (const bool canKeep : {false, true}) {
            QFile inTheWay(dataFile("kept"));
            QVERIFY(canKeep || inTheWay.open(QIODevice::WriteOnly));
            w.makeDirty();
            BoxAnswer overwrite(QMessageBox::Yes);
            DialogAnswer failure([&](QWidget *box) {
                return box->windowTitle() == "Save failed" && cancellation()(box);
            });
            saveTo("other");
            inTheWay.remove();
            QVERIFY(overwrite.wasAsked() && failure.wasAsked() == !canKeep);
            QCOMPARE(w.file->isDirty(), !canKeep);
            QCOMPARE(
                readBytes(canKeep ? dataFile("kept/") + keptCopies().value(0) : path("other.epf")),
                former);
        }
    }

    void failedSave()
    {
        QTemporaryDir gone;
        QVERIFY(w.file->saveFile(gone.filePath("x.epf"), {}, {}));
        QVERIFY(gone.remove());
        w.makeDirty();
        const QString before = describeProject();
        BoxAnswer box(QMessageBox::Ok);
        w.action("&Save")->trigger();
        QCOMPARE(box.text, "Saving failed.\nThe error message is: " + w.file->getLastError());
        QCOMPARE(describeProject(), before);
        QVERIFY(w.action("&Save")->isEnabled() && !QApplication::activeModalWidget());
    }

    void textUnderEditCounts()
    {
        w.window.openProject(copySample("x.epf"));
        Sticky *note = typeIntoANote("typed");
        QVERIFY(w.file->isDirty() && note->getText() == "typed");
        w.window.onAutoSaveRequested();
        QVERIFY(note->isEditing());
        QVERIFY(readBytes(dataFile("x.epf.autosave")).contains("typed"));
        emit w.file->requestSnapshot();
        QVERIFY(readBytes(dataFile("kept/") + keptCopies().last()).contains("typed"));
        BoxAnswer save(QMessageBox::Save);
        w.window.newProject();
        QVERIFY(save.wasAsked());
        QVERIFY(readBytes(path("x.epf")).contains("typed"));
    }

    void theEditEndsFirst()
    {
        saveTo("x.epf");
        Sticky *other = w.addNote("Event", QPointF(600, 200));
        const QPair<const char *, std::function<void()>> rows[] = {
            {"save", [&] { w.window.saveProject(); }},
            {"tab", [&] { w.window.onCurrentTabChanged(0); }},
            {"export", [&] { w.window.onExportClicked(); }},
            {"print", [&] { w.window.print(); }},
        };
        for (const auto &row : rows) {
            const Row in(row.first);
            QCoreApplication::processEvents();
            Sticky *note = typeIntoANote(row.first);
            note->addSibling(other);
            DialogAnswer no(inDialog<QDialog>(&QDialog::reject));
            row.second();
            QVERIFY(!note->isEditing());
            QCOMPARE(other->getText(), QString(row.first));
            delete note;
        }
    }

    /// A save counts as done, whatever became of it; then an auto-save may alone hold the work.
    void closingKeepsWhatCouldNotBeSaved()
    {
        for (const bool canKeep : {true, false}) {
            w.window.show();
            QFile inTheWay(dataFile("kept"));
            QVERIFY(canKeep || (QDir(dataFile("kept")).removeRecursively() &&
                                inTheWay.open(QIODevice::WriteOnly)));
            w.makeDirty();
            w.window.onAutoSaveRequested();
            BoxAnswer save(QMessageBox::Save);
            DialogAnswer cancelled(fileChoice(QString()));
            QVERIFY(w.window.close() && save.wasAsked() && cancelled.wasAsked());
            QCOMPARE(QFile::remove(dataFile("untitled.autosave")), !canKeep);
            QCOMPARE(keptCopies().size(), canKeep ? 1 : 0);
            inTheWay.remove();
        }
    }

    void closingKeepsWhatNobodyAskedAbout()
    {
        w.makeFactor(w.addNote("Event", QPointF(200, 200)));
        saveTo("x.epf");
        w.factorSheet()->createItemAt(QPointF(600, 600), EventTool);
        w.makeDirty();
        w.chart()->getUndoStack()->undo();
        QVERIFY(!w.window.isWindowModified());
        QVERIFY(w.window.close());
        QCOMPARE(keptCopies().size(), 1);
        w.empty();
        w.window.openProject(dataFile("kept/") + keptCopies().first());
        QCOMPARE(w.factorSheet()->getProjectItems().size(), 2);
    }

    void nothingReenters()
    {
        const QString other = copySample("other.epf");
        w.makeDirty();
        saveTo("x.epf");
        w.makeDirty();
        int calls = 0;
        const auto connection = connect(w.file, &ProjectFile::itemSaved, this, [&] {
            ++calls;
            w.window.saveProject();
            w.window.onAutoSaveRequested();
            w.window.newProject();
            w.window.openProject(other);
            QVERIFY(!w.window.close());
        });
        w.action("&Save")->trigger();
        disconnect(connection);
        QCOMPARE(calls, 2);
        QCOMPARE(w.file->getOpenFilename(), path("x.epf"));
        // The one that waited comes when the save has ended.
        QTRY_COMPARE(w.file->getOpenFilename(), other);
    }
};

EXAMINER_TEST_MAIN(TestLifecycle)
#include "testlifecycle.moc"
