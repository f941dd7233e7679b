#include "testing/dialogs.h"
#include "testing/records.h"
#include "testing/rows.h"
#include "testing/window.h"

#include <QFileOpenEvent>

/// A project between window and disk. All tests share one window, emptied before each.
class TestLifecycle : public QObject
{
    Q_OBJECT

    QString path(const QString &name) const { return folder->filePath(name); }
    QString dataFile(const QString &name) const { return makeDataFolder() + "/" + name; }
    QStringList recent() const { return QSettings().value("recentFiles").toStringList(); }
    QStringList keptCopies() const { return QDir(dataFile("kept")).entryList(QDir::Files); }
    QByteArray read(const QString &name) const
    {
        QFile file(name);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }
    QString copySample(const QString &name) const
    {
        QFile::copy(QCoreApplication::applicationDirPath() + "/sample.epf", path(name));
        return path(name);
    }
    void saveTo(const QString &name)
    {
        DialogAnswer answer(fileChoice(path(name)));
        tw->window.saveProjectAs();
        QVERIFY(answer.wasAsked());
    }
    /// All that a user sees of the project, and what tells its state.
    QString describeProject() const
    {
        QStringList parts = {tw->window.windowTitle(), tw->file->getOpenFilename(),
                             tw->file->isDirty() ? "dirty" : "clean", describe(*tw->chart())};
        for (ProjectScene *sheet : tw->window.getFactorScenes())
            parts.append(describe(*sheet));
        return parts.join('\n');
    }
    /// Types into a new note as a user does, and stays in it.
    Sticky *typeIntoANote(const QString &text)
    {
        Sticky *note = tw->addNote("Event", QPointF(200, 200));
        QWidget *viewport = tw->view()->viewport();
        tw->window.activateWindow();
        tw->view()->setFocus();
        QTest::mouseDClick(viewport, Qt::LeftButton, Qt::NoModifier,
                           tw->view()->mapFromScene(260, 240));
        QTest::keyClick(viewport, Qt::Key_A, Qt::ControlModifier);
        QTest::keyClicks(viewport, text);
        return note;
    }

    std::unique_ptr<QTemporaryDir> folder;
    std::unique_ptr<TestWindow> tw;

private slots:
    void initTestCase() { tw = std::make_unique<TestWindow>(); }
    void init()
    {
        folder = std::make_unique<QTemporaryDir>();
        QSettings().clear();
        QDir(dataFile("kept")).removeRecursively();
        tw->empty();
        tw->window.show();
        tw->action("&Save")->setEnabled(true);
    }
    void cleanupTestCase() { tw.reset(); }

    void cancelledQuestionChangesNothing()
    {
        tw->window.openProject(copySample("x.epf"));
        tw->makeDirty();
        const QString before = describeProject();
        const QString other = copySample("y.epf");
        const std::function<void()> roads[] = {
            [&] { tw->window.newProject(); }, [&] { tw->window.openProject(other); },
            [&] { tw->window.openQuickStart(); }, [&] { tw->window.close(); }};
        for (const auto &road : roads) {
            const Row in(qPrintable(QString::number(&road - roads)));
            BoxAnswer cancel(QMessageBox::Cancel);
            road();
            QVERIFY(cancel.wasAsked());
            QCOMPARE(cancel.defaultButton, QString("Save"));
            QCOMPARE(describeProject(), before);
            QVERIFY(tw->window.isVisible());
        }
        BoxAnswer discard(QMessageBox::Discard);
        tw->window.newProject();
        QVERIFY(discard.wasAsked() && tw->chart()->getProjectItems().isEmpty());
        QVERIFY(tw->file->requiresFilenamePrompt() && keptCopies().isEmpty());
        tw->window.openQuickStart();
        QVERIFY(tw->file->requiresFilenamePrompt() && !tw->chart()->getAllNotes().isEmpty());
        QCOMPARE(recent(), QStringList(path("x.epf")));
    }

    void openedProject()
    {
        const QString name = copySample("a plant.epf");
        QFileOpenEvent event(name);
        QVERIFY(tw->window.eventFilter(qApp, &event));
        QCOMPARE(tw->window.windowTitle(), name + "[*] - TRAC/Ex Examiner");
        QVERIFY(!tw->window.isWindowModified());
        QCOMPARE(QSettings().value("lastOpenPath").toString(), folder->path());
        QCOMPARE(tw->view()->viewportUpdateMode(), QGraphicsView::MinimalViewportUpdate);

        DialogAnswer cancelled(cancellation());
        tw->action("&Open Project...")->trigger();
        QVERIFY(cancelled.wasAsked());
        QCOMPARE(tw->file->getOpenFilename(), name);
    }

    /// The project that was refused has no name: the next save must not go over it.
    void failedOpen()
    {
        for (const QByteArray &content :
             {QByteArray(5000, 'x'), QByteArray("SQLite format 3\0", 16)}) {
            tw->window.openProject(copySample("good.epf"));
            QFile file(path("bad.epf"));
            QVERIFY(file.open(QIODevice::WriteOnly) && file.write(content) == content.size());
            file.close();
            BoxAnswer box(QMessageBox::Ok);
            tw->window.openProject(path("bad.epf"));
            QCOMPARE(box.title, QString("Open failed"));
            QCOMPARE(tw->window.windowTitle(), QString("untitled[*] - TRAC/Ex Examiner"));
            QVERIFY(tw->tabs->count() == 2 && tw->chart()->getProjectItems().isEmpty());
            QCOMPARE(recent(), QStringList(path("good.epf")));
            QVERIFY(tw->file->requiresFilenamePrompt());
            QCOMPARE(read(path("bad.epf")), content);
        }
    }

    void recentFiles()
    {
        for (const char *name : {"/1", "/2", "/3", "/4", "/2", "5"})
            tw->window.addRecentFile(name);
        const QStringList expected = {QDir::current().filePath("5"), "/4", "/3", "/2"};
        QCOMPARE(recent(), expected);
        tw->window.openProject(copySample("x.epf"));
        const QString before = describeProject();
        BoxAnswer gone(QMessageBox::Ok);
        tw->window.openProject("/3");
        QVERIFY(gone.text.contains("/3"));
        QCOMPARE(recent(), QStringList({path("x.epf"), expected.at(0), "/4"}));
        QCOMPARE(describeProject(), before);
    }

    void saveAsksForAName()
    {
        const struct {
            const char *typed, *written;
        } rows[] = {{"a.epf", "a.epf"}, {"b", "b.epf"}, {"c.EPF", "c.EPF.epf"}};
        for (const auto &row : rows) {
            const Row in(row.typed);
            tw->empty();
            tw->makeDirty();
            DialogAnswer answer(fileChoice(path(row.typed)));
            tw->action("&Save")->trigger();
            QVERIFY(answer.wasAsked() && QFile::exists(path(row.written)));
            QCOMPARE(tw->window.windowTitle(), path(row.written) + "[*] - TRAC/Ex Examiner");
            QVERIFY(!tw->window.isWindowModified());
            QCOMPARE(recent().first(), path(row.written));
            QCOMPARE(QSettings().value("lastSavePath").toString(), folder->path());
        }
        tw->empty();
        DialogAnswer cancelled(cancellation());
        tw->action("&Save")->trigger();
        QVERIFY(cancelled.wasAsked() && !tw->action("&Save")->isEnabled());
        saveTo("x.epf");
        QVERIFY(tw->action("&Save")->isEnabled());
    }

    /// The name that the dialog showed was free.
    void endingThatMakesAnotherNameAsks()
    {
        const QByteArray former = read(copySample("other.epf"));
        BoxAnswer refused(QMessageBox::No);
        DialogAnswer second(
            [&](QWidget *widget) { return refused.wasAsked() && fileChoice(QString())(widget); });
        saveTo("other");
        QVERIFY(refused.wasAsked() && second.wasAsked());
        QCOMPARE(read(path("other.epf")), former);
    }

    /// It goes when the new one stands and it is kept.
    void saveAsKeepsTheFormer()
    {
        const QByteArray former = read(copySample("other.epf"));
        for (const bool canKeep : {false, true}) {
            QFile inTheWay(dataFile("kept"));
            QVERIFY(canKeep || inTheWay.open(QIODevice::WriteOnly));
            tw->makeDirty();
            BoxAnswer overwrite(QMessageBox::Yes);
            DialogAnswer failure([&](QWidget *box) {
                return box->windowTitle() == "Save failed" && cancellation()(box);
            });
            saveTo("other");
            inTheWay.remove();
            QVERIFY(overwrite.wasAsked() && failure.wasAsked() == !canKeep);
            QCOMPARE(tw->file->isDirty(), !canKeep);
            QCOMPARE(read(canKeep ? dataFile("kept/") + keptCopies().value(0) : path("other.epf")),
                     former);
        }
        const QString chart = describe(*tw->chart());
        tw->window.openProject(path("other.epf"));
        QCOMPARE(describe(*tw->chart()), chart);
    }

    void failedSave()
    {
        QTemporaryDir gone;
        QVERIFY(tw->file->saveFile(gone.filePath("x.epf"), {}, {}));
        QVERIFY(gone.remove());
        tw->makeDirty();
        const QString before = describeProject();
        BoxAnswer box(QMessageBox::Ok);
        tw->action("&Save")->trigger();
        QCOMPARE(box.text, "Saving failed.\nThe error message is: " + tw->file->getLastError());
        QCOMPARE(describeProject(), before);
        QVERIFY(tw->action("&Save")->isEnabled() && !QApplication::activeModalWidget());
    }

    void textUnderEditCounts()
    {
        tw->window.openProject(copySample("x.epf"));
        Sticky *note = typeIntoANote("typed");
        QVERIFY(tw->file->isDirty() && note->getText() == "typed");
        tw->window.onAutoSaveRequested();
        QVERIFY(note->isEditing());
        QVERIFY(read(dataFile("x.epf.autosave")).contains("typed"));
        emit tw->file->requestSnapshot();
        QVERIFY(read(dataFile("kept/") + keptCopies().last()).contains("typed"));
        BoxAnswer save(QMessageBox::Save);
        tw->window.newProject();
        QVERIFY(save.wasAsked());
        QVERIFY(read(path("x.epf")).contains("typed"));
    }

    void theEditEndsFirst()
    {
        Sticky *other = tw->addNote("Event", QPointF(600, 200));
        const QPair<const char *, std::function<void()>> rows[] = {
            {"save", [&] { saveTo("x.epf"); }},
            {"tab", [&] { tw->window.onCurrentTabChanged(0); }},
            {"export",
             [&] {
                 DialogAnswer no(cancellation());
                 tw->window.onExportClicked();
             }},
            {"print",
             [&] {
                 DialogAnswer no(cancellation());
                 tw->window.print();
             }},
        };
        for (const auto &row : rows) {
            const Row in(row.first);
            QCoreApplication::processEvents();
            Sticky *note = typeIntoANote(row.first);
            note->addSibling(other);
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
            tw->window.show();
            QFile inTheWay(dataFile("kept"));
            QVERIFY(canKeep || (QDir(dataFile("kept")).removeRecursively() &&
                                inTheWay.open(QIODevice::WriteOnly)));
            tw->makeDirty();
            tw->window.onAutoSaveRequested();
            BoxAnswer save(QMessageBox::Save);
            DialogAnswer cancelled(fileChoice(QString()));
            QVERIFY(tw->window.close() && save.wasAsked() && cancelled.wasAsked());
            QCOMPARE(QFile::remove(dataFile("untitled.autosave")), !canKeep);
            QCOMPARE(keptCopies().size(), canKeep ? 1 : 0);
            inTheWay.remove();
        }
    }

    void closingKeepsWhatNobodyAskedAbout()
    {
        tw->makeFactor(tw->addNote("Event", QPointF(200, 200)));
        saveTo("x.epf");
        tw->factorSheet()->createItemAt(QPointF(600, 600), EventTool);
        tw->makeDirty();
        tw->chart()->getUndoStack()->undo();
        QVERIFY(!tw->window.isWindowModified());
        QVERIFY(tw->window.close());
        QCOMPARE(keptCopies().size(), 1);
        tw->empty();
        tw->window.openProject(dataFile("kept/") + keptCopies().first());
        QCOMPARE(tw->factorSheet()->getProjectItems().size(), 2);
    }

    void nothingReenters()
    {
        const QString other = copySample("other.epf");
        tw->makeDirty();
        saveTo("x.epf");
        tw->makeDirty();
        int calls = 0;
        const auto connection = connect(tw->file, &ProjectFile::itemSaved, this, [&] {
            ++calls;
            tw->window.saveProject();
            tw->window.onAutoSaveRequested();
            tw->window.newProject();
            tw->window.openProject(other);
            QVERIFY(!tw->window.close());
        });
        tw->action("&Save")->trigger();
        disconnect(connection);
        QCOMPARE(calls, 2);
        QCOMPARE(tw->file->getOpenFilename(), path("x.epf"));
        // The one that waited comes when the save has ended.
        QTRY_COMPARE(tw->file->getOpenFilename(), other);
    }
};

EXAMINER_TEST_MAIN(TestLifecycle)
#include "testlifecycle.moc"
