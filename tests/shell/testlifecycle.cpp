#include "shell/exportdialog.h"
#include "support/pageinfo.h"
#include "testing/dialogs.h"
#include "testing/files.h"
#include "testing/records.h"
#include "testing/rows.h"
#include "testing/window.h"

#include <QComboBox>
#include <QDragEnterEvent>
#include <QFileOpenEvent>
#include <QImageReader>
#include <QMimeData>
#include <QStandardPaths>
#include <QStatusBar>
#include <QTabBar>

/// A project between window and disk, and what leaves the window otherwise. All tests share one
/// window, emptied before each.
class TestLifecycle : public QObject
{
    Q_OBJECT

    QString path(const QString &name) const { return folder->filePath(name); }
    QString dataFile(const QString &name) const { return makeDataFolder() + "/" + name; }
    QStringList exported() const { return QDir(folder->path()).entryList(QDir::Files); }
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
    void exportThroughDialog(const QString &format, const QString &area, const QString &name)
    {
        DialogAnswer choice(inDialog<ExportDialog>([&](ExportDialog *dialog) {
            dialog->findChild<QComboBox *>("formatCombo")->setCurrentText(format);
            dialog->findChild<QComboBox *>("areaCombo")->setCurrentText(area);
            dialog->accept();
        }));
        DialogAnswer answer(fileChoice(path(name)));
        w.action("Export...")->trigger();
        QVERIFY(choice.wasAsked() && answer.wasAsked());
    }

    /// All that a user sees of the chart, and what tells its state.
    QString describeProject() const
    {
        return w.window.windowTitle() + w.file->getOpenFilename() +
               (w.file->isDirty() ? " dirty" : " clean") + describe(*w.chart());
    }
    /// Types into a new note as a user does, and stays in it.
    Sticky *typeIntoANote(const QString &text)
    {
        Sticky *note = w.addNote("Event", QPointF(200, 200));
        QWidget *viewport = w.view()->viewport();
        w.window.activateWindow();
        w.view()->setFocus();
        const QPoint place = w.view()->mapFromScene(260, 240);
        QTest::mouseDClick(viewport, Qt::LeftButton, Qt::NoModifier, place);
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
        const QString before = describeProject(), other = copySample("y.epf");
        const std::pair<const char *, std::function<void()>> rows[] = {
            {"new", [&] { w.window.newProject(); }},
            {"open", [&] { w.window.openProject(other); }},
            {"Quick Start", [&] { w.window.openQuickStart(); }},
            {"close", [&] { w.window.close(); }},
        };
        for (const auto &[name, deed] : rows) {
            const Row in(name);
            BoxAnswer cancel(QMessageBox::Cancel);
            deed();
            QVERIFY(cancel.defaultButton == "Save" && w.window.isVisible());
            QCOMPARE(describeProject(), before);
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

        // The paper of a refused project stays in the settings, by which pages are printed.
        runSql(path("newer.epf"), {"CREATE TABLE items (guid)",
                                   "CREATE TABLE properties (guid TEXT, name TEXT, value TEXT)",
                                   "INSERT INTO properties VALUES('project','paperSize','9'), "
                                   "('project','dbVersion','2')"});
        BoxAnswer newer(QMessageBox::Ok);
        w.window.openProject(path("newer.epf"));
        QCOMPARE(w.chart()->getPageSize(), QSize(767, 534));
        w.chart()->setPageSize(QSize(1606, 1030));
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
        QWidget *page = w.form->findChild<QWidget *>(QString(), Qt::FindDirectChildrenOnly);
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
        const QString desktop =
            QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) +
            "/recently-used.xbel";
        writeBytes(desktop, "<xbel><bookmark href=\"file:///other\"/>");
        w.window.addRecentFile("/0"); // what is no list stays as it is
        QVERIFY(readBytes(desktop).endsWith("other\"/>"));
        writeBytes(desktop, "<xbel><bookmark href=\"file:///other\"/></xbel>");
        QSettings().clear();
        for (const char *name : {"/1", "/2", "/3", "/4", "/2", "5"})
            w.window.addRecentFile(name);
        const QString five = QDir::current().filePath("5");
        QCOMPARE(recent(), QStringList({five, "/4", "/3", "/2"}));
        const QByteArray list = readBytes(desktop);
        QVERIFY(list.contains("file:///other") && list.contains("href=\"file:///4\""));
        QCOMPARE(list.count("href=\"file:///2\""), 1);
        BoxAnswer gone(QMessageBox::Ok);
        w.window.openProject("/3");
        QVERIFY(gone.wasAsked());
        QCOMPARE(recent(), QStringList({five, "/4", "/2"}));
    }

    void tabsComeBackAsTheyWereMoved()
    {
        const QString sample = copySample("tabs.epf");
        w.window.openProject(sample);
        const QStringList usual = w.tabTexts();
        QVERIFY(usual.size() > 1);
        w.tabs->tabBar()->moveTab(3, 0);
        w.window.newProject();
        w.window.openProject(copySample("other.epf"));
        QCOMPARE(w.tabTexts(), usual);
        w.window.openProject(sample);
        QCOMPARE(w.tabs->tabText(0), usual[1]);
        QVERIFY(w.tabs->widget(1) == w.form);
        w.tabs->tabBar()->moveTab(0, 3);
        w.window.newProject();
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
        // An ending makes another name of a free one.
        const QByteArray former = readBytes(copySample("other.epf"));
        BoxAnswer refused(QMessageBox::No);
        DialogAnswer second(
            [&](QWidget *widget) { return refused.wasAsked() && fileChoice(QString())(widget); });
        saveTo("other");
        QVERIFY(refused.wasAsked() && second.wasAsked() && !w.action("&Save")->isEnabled());
        QCOMPARE(readBytes(path("other.epf")), former);
        saveTo("x.epf");
        QVERIFY(w.action("&Save")->isEnabled());
    }

    /// A former file goes when the new one stands and it is kept. Closing counts a save as done,
    /// whatever became of it; then an auto-save may alone hold the work.
    void nothingGoesBeforeItIsKept()
    {
        const QByteArray former = readBytes(copySample("other.epf"));
        for (const bool canKeep : {false, true}) {
            QFile inTheWay(dataFile("kept"));
            QVERIFY(canKeep || inTheWay.open(QIODevice::WriteOnly));
            w.makeDirty();
            w.window.onAutoSaveRequested();
            const QString before = describeProject();
            BoxAnswer save(QMessageBox::Save);
            DialogAnswer cancelled(fileChoice(QString()));
            QVERIFY(w.window.close() && save.wasAsked() && cancelled.wasAsked());
            QCOMPARE(QFile::remove(dataFile("untitled.autosave")), !canKeep);
            QCOMPARE(keptCopies().size(), canKeep ? 1 : 0);

            BoxAnswer overwrite(QMessageBox::Yes);
            DialogAnswer failure([&](QWidget *box) {
                return box->windowTitle() == "Save failed" && cancellation()(box);
            });
            saveTo("other");
            inTheWay.remove();
            QVERIFY(overwrite.wasAsked() && failure.wasAsked() == !canKeep);
            QCOMPARE(describeProject() == before, !canKeep);
            QVERIFY(w.action("&Save")->isEnabled());
            const QString kept = keptCopies().filter("other").value(0);
            QCOMPARE(readBytes(canKeep ? dataFile("kept/") + kept : path("other.epf")), former);
        }
    }

    /// Nothing waits for the text to be left, and what needs no end of the edit goes on in it.
    void textUnderEditCounts()
    {
        w.window.openProject(copySample("x.epf"));
        Sticky *twin = w.addNote("Event", QPointF(600, 200));
        const std::tuple<const char *, bool, std::function<void()>> rows[] = {
            {"auto-save", true, [&] { w.window.onAutoSaveRequested(); }},
            {"snapshot", true, [&] { emit w.file->requestSnapshot(); }},
            {"new", false, [&] { w.window.newProject(); }},
            {"save", true,
             [&] {
                 w.window.saveProject();
                 QVERIFY(!w.action("Undo change text")->isEnabled() && !w.file->isDirty());
             }},
            {"tab", false, [&] { w.window.onCurrentTabChanged(0); }},
            {"export", false, [&] { w.window.onExportClicked(); }},
            {"print", false, [&] { w.window.print(); }},
        };
        for (const auto &[text, goesOn, deed] : rows) {
            const Row in(text);
            QCoreApplication::processEvents();
            Sticky *note = typeIntoANote(text);
            QVERIFY(w.file->isDirty());
            note->addSibling(twin);
            DialogAnswer no(cancellation());
            deed();
            QCOMPARE(note->isEditing(), goesOn);
            QCOMPARE(twin->getText(), QString(text));
            if (goesOn)
                QTest::keyClicks(w.view()->viewport(), "!");
            QVERIFY(!goesOn || w.file->isDirty());
            delete note;
        }
        QVERIFY(readBytes(path("x.epf")).contains("save"));
    }

    void workWhoseFileIsGoneIsKept()
    {
        saveTo("x.epf");
        QVERIFY(QFile::remove(path("x.epf")));
        w.makeDirty();
        DialogAnswer failure(cancellation());
        w.window.onAutoSaveRequested();
        QVERIFY(failure.wasAsked());
        QCOMPARE(keptCopies().size(), 1);
    }

    void closingKeepsWhatNobodyAskedAbout()
    {
        w.makeFactor(w.addNote("Event", QPointF(200, 200)));
        saveTo("x.epf");
        w.factorSheet()->createItemAt(QPointF(600, 600), EventTool);
        w.makeDirty();
        w.chart()->getUndoStack()->undo();
        QVERIFY(!w.window.isWindowModified() && w.window.close());
        QCOMPARE(keptCopies().size(), 1);
        w.empty();
        w.window.openProject(dataFile("kept/") + keptCopies().first());
        QCOMPARE(w.factorSheet()->getProjectItems().size(), 2);
        QVERIFY(w.file->requiresFilenamePrompt()); // a copy goes one day
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

    void exportedNames()
    {
        const std::tuple<QString, const char *, const char *> rows[] = {
            {"PNG Image", "x", "x.png"},
            {"PNG Image", "x.PNG", "x.PNG"},
            {"PNG Image", "x.pdf", "x.pdf.png"},
            {"PDF Document", "x", "x.pdf"},
        };
        for (const auto &[format, typed, written] : rows) {
            const Row in(written);
            folder = std::make_unique<QTemporaryDir>();
            exportThroughDialog(format, "Entire Chart", typed);
            QCOMPARE(exported(), QStringList(written));
            QCOMPARE(readBytes(path(written)).mid(1, 3), format.left(3).toLatin1());
        }
        QCOMPARE(QSettings().value("lastExportPath").toString(), folder->path());
        DialogAnswer metafile(fileChoice(path("y")));
        w.window.onExportClicked(false, ExportDialog::EMF);
        QCOMPARE(exported(), QStringList("x.pdf")); // a metafile exists in name only
        // A page's ending is that of the dialog that never came up.
        DialogAnswer answer(fileChoice(path("x.png")));
        w.action("Save page as PNG image...")->trigger();
        QCOMPARE(QImageReader(path("x.png.pdf"), "PNG").size(), w.chart()->getPageSize());
    }

    /// The current page is that of the main view, whatever sheet is shown.
    void exportedAreas()
    {
        const QSize page = w.chart()->getPageSize();
        w.makeFactor(w.addNote("Event", QPointF(page.width() + 200, 200)));
        w.chart()->checkCanvasSize();
        QCoreApplication::processEvents();
        w.view()->centerOn(page.width() * 1.5, 200);
        w.tabs->setCurrentIndex(2);
        QTRY_COMPARE(w.window.getCurrentScene(), w.factorSheet());
        CanvasItemInfo info = noteInfo("{red}", QRectF(page.width() + 100, 100, 120, 80));
        info.backgroundColor = Qt::red;
        ProjectItem *note = w.factorSheet()->loadCanvasItem(info);
        w.factorSheet()->checkCanvasSize();
        const QSize whole(2 * page.width() + 20, page.height() + 20); // with its margin
        const QSize alone = note->sceneBoundingRect().adjusted(-2, -2, 2, 2).size().toSize();
        const QPair<const char *, QSize> rows[] = {
            {"Entire Chart", whole}, {"Current Page", page}, {"Selected Items", alone}};
        for (const auto &[area, size] : rows) {
            const Row in(area);
            note->setSelected(true);
            exportThroughDialog("PNG Image", area, area);
            QCOMPARE(QImageReader(path(area) + ".png").size(), size);
            QVERIFY(w.factorSheet()->selectedItems().isEmpty());
        }
        QCOMPARE(QImage(path("Current Page.png")).pixelColor(130, 110), QColor(Qt::red));
    }

    /// Without a box, and what stood there stays.
    void exportFailureShowsInTheStatusBar()
    {
        QVERIFY(QDir(folder->path()).mkpath("folder/x"));
        for (const bool png : {true, false}) {
            w.window.statusBar()->clearMessage();
            png ? w.window.exportPNG(path("folder"), QRectF(0, 0, 10, 10))
                : w.window.exportPDF(path("folder"), QRectF());
            QVERIFY(!w.window.statusBar()->currentMessage().isEmpty());
        }
        QVERIFY(exported().isEmpty());
    }

    void settingsReachEverySheet()
    {
        w.makeFactor(w.addNote("Event", QPointF(200, 200)));
        DialogAnswer answer(inDialog<QDialog>([](QDialog *dialog) {
            dialog->findChild<QComboBox *>("paperSizeCombo")->setCurrentText("A4");
            dialog->accept();
        }));
        w.action("&Project Settings")->trigger();
        const QSize size = PageInfo().getPrintableArea().size();
        QVERIFY(size.width() < 1200 && w.chart()->getPageSize() == size);
        QCOMPARE(w.factorSheet()->getPageSize(), size);
    }
};

EXAMINER_TEST_MAIN(TestLifecycle)
#include "testlifecycle.moc"
