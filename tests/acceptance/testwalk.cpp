#include "testing/dialogs.h"
#include "testing/records.h"
#include "testing/window.h"

#include <QComboBox>
#include <QMouseEvent>
#include <QPointer>
#include <QRegularExpression>
#include <QUndoStack>

#include <random>

/// Somebody who does whatever comes to mind, the same for the same seed, while the project is
/// looked at after each deed.
class TestWalk : public QObject
{
    Q_OBJECT

private slots:
    void whateverIsDoneHolds()
    {
        connect(&answers, &QTimer::timeout, this, &TestWalk::answer);
        answers.start(1);
        seed = qEnvironmentVariable("EXAMINER_WALK_FROM", "6").toInt();
        const int last = qEnvironmentVariable("EXAMINER_WALK_SEEDS", "9").toInt();
        for (; seed <= last && !QTest::currentTestFailed(); ++seed)
            walk(100);
    }

private:
    using Steps = QList<QPointer<QUndoStack>>;

    void walk(int length)
    {
        random.seed(unsigned(seed));
        path = QDir::homePath() + QString("/walk %1.epf").arg(seed);
        done.clear();
        w.empty();
        w.window.saveProject(true); // its name comes from answer()
        begin();
        for (int step = 0; step < length; ++step) {
            const int factors = w.window.getFactorScenes().size();
            const auto &[deed, act] = deeds.at(below(deeds.size()));
            if (qEnvironmentVariableIsSet("EXAMINER_WALK_TOLD"))
                qInfo("seed %d, step %d: %s", seed, step, deed);
            act();
            QCoreApplication::processEvents();
            noteSteps();
            check();
            // With a sheet go its steps: what they did is there for good.
            if (w.window.getFactorScenes().size() < factors)
                begin();
            if (QTest::currentTestFailed())
                return qWarning("   seed %d, step %d: %s", seed, step, deed);
        }
        reopen();
    }

    int below(int n) { return int(random() % unsigned(n)); }
    QPointF spot() { return QPointF(below(900), below(560)); }
    ProjectScene *sheet() const { return w.window.getCurrentScene(); }
    QList<ProjectScene *> sheets() const { return w.window.getFactorScenes() << w.chart(); }

    template<typename Item> Item *any()
    {
        QMap<QString, Item *> items; // in an order that depends on no address and no GUID
        for (ProjectItem *item : sheet()->getProjectItems()) {
            if (auto *one = qobject_cast<Item *>(item))
                items.insert(describe(item).remove(QRegularExpression("\\{[^}]*\\}")), one);
        }
        return items.isEmpty() ? nullptr : items.values().at(below(items.size()));
    }
    QPointF anyCentre()
    {
        auto *box = any<BoxItem>();
        return box ? box->getGeometry().center() : spot();
    }

    void answer()
    {
        QWidget *popup = QApplication::activePopupWidget();
        QWidget *asking = popup ? popup : QApplication::activeModalWidget();
        if (auto *box = qobject_cast<QMessageBox *>(asking))
            box->buttons().at(below(box->buttons().size()))->click();
        else if (qobject_cast<QInputDialog *>(asking))
            numberChoice(number)(asking);
        else if (asking && !fileChoice(path)(asking))
            asking->close();
    }

    void mouse(QEvent::Type type, const QPointF &place, Qt::KeyboardModifiers keys = {})
    {
        auto *view = qobject_cast<GraphWidget *>(w.tabs->currentWidget());
        const QPoint at = view->mapFromScene(place);
        QMouseEvent event(type, at, view->viewport()->mapToGlobal(at),
                          type == QEvent::MouseMove ? Qt::NoButton : Qt::LeftButton,
                          type == QEvent::MouseButtonRelease ? Qt::NoButton : Qt::LeftButton, keys);
        QApplication::sendEvent(view->viewport(), &event);
    }
    void drag(QPointF from, QPointF to, Qt::KeyboardModifiers keys = {})
    {
        mouse(QEvent::MouseButtonPress, from, keys);
        for (int i = 1; i <= 4 && from != to; ++i)
            mouse(QEvent::MouseMove, from + (to - from) * i / 4, keys);
        mouse(QEvent::MouseButtonRelease, to, keys);
    }
    void click(const QPointF &at, Qt::KeyboardModifiers keys = {}) { drag(at, at, keys); }
    void use(int tool, const QPointF &from, const QPointF &to)
    {
        for (QAction *action : w.window.findChildren<QAction *>()) {
            if (action->data().type() == QVariant::Int && action->data().toInt() == tool)
                action->trigger();
        }
        drag(from, to);
        w.window.onEscapePressed();
    }
    /// Selects it, too.
    void place(int tool)
    {
        const QPointF at = spot();
        use(tool, at, at);
        click(at);
    }
    void trigger(const QString &text)
    {
        if (w.action(text)->isEnabled())
            w.action(text)->trigger();
    }

    const std::vector<std::pair<const char *, std::function<void()>>> deeds = {
        {"event", [&] { place(EventTool); }},
        {"condition", [&] { place(ConditionTool); }},
        {"barrier", [&] { place(FailedBarrierTool); }},
        {"connector", [&] { use(ConnectorTool, anyCentre(), anyCentre()); }},
        {"arrow", [&] { use(ArrowTool, spot(), anyCentre()); }},
        {"select", [&] { click(anyCentre()); }},
        {"add to selection", [&] { click(anyCentre(), Qt::ControlModifier); }},
        {"select all", [&] { trigger("Select &All"); }},
        {"drag", [&] { drag(anyCentre(), spot()); }},
        {"drag a little",
         [&] {
             const QPointF from = anyCentre();
             drag(from, from + QPointF(below(5) - 2, below(5) - 2) * 20);
         }},
        {"resize",
         [&] {
             click(anyCentre());
             for (BoxItem *box : sheet()->getSelectedBoxes().mid(0, 1)) {
                 const QPointF corner = box->getGeometry().bottomRight() + QPointF(3, 3);
                 drag(corner, corner + QPointF(below(120) - 40, below(120) - 40));
             }
         }},
        {"arrow keys",
         [&] { QTest::keyClick(w.tabs->currentWidget(), Qt::Key(Qt::Key_Left + below(4))); }},
        {"type",
         [&] {
             auto *box = any<BoxItem>();
             if (!box)
                 return; // a double click on the header leads to the form
             const QPointF at = box->getGeometry().center();
             click(at);
             mouse(QEvent::MouseButtonDblClick, at);
             mouse(QEvent::MouseButtonRelease, at);
             QTest::keyClick(w.tabs->currentWidget(), Qt::Key(Qt::Key_A + below(26)));
             w.window.onEscapePressed();
         }},
        {"fill in a field",
         [&] {
             const QString id =
                 QStringList{"loss", "lossOfControl", "causalFactor_text_1"}.at(below(3));
             const QString value(QChar('a' + below(26)));
             if (w.form->getAllFieldValues().contains(id) && w.form->setFieldValue(id, value))
                 w.form->onFieldChanged(id);
             begin(); // no step takes it back
         }},
        {"role",
         [&] {
             if (w.window.findChild<QComboBox *>()->isEnabled())
                 w.window.onRoleComboChanged(below(11));
         }},
        {"factor",
         [&] {
             w.tabs->setCurrentIndex(1);
             for (const char *role : {"Loss", "Loss_Of_Control", "Causal_Factor"}) {
                 place(EventTool);
                 if (sheet()->getRoleRefusal(role, {}).isEmpty())
                     sheet()->setSelectedNotesRole(role);
                 QCoreApplication::processEvents();
             }
         }},
        {"arrowhead", [&] { trigger("Single Arrow"); }},
        {"dashes", [&] { trigger("Dashed Line"); }},
        {"align", [&] { trigger("Align Top"); }},
        {"mark", [&] { trigger("Mark not relevant"); }},
        {"hang on another note",
         [&] {
             if (auto *line = any<Line>()) {
                 line->setSelected(true);
                 drag(below(2) ? line->getPoints().first() : line->getPoints().last(), anyCentre());
             }
         }},
        {"delete", [&] { trigger("Delete item(s)"); }},
        {"copy", [&] { trigger("Copy"); }},
        {"paste", [&] { trigger("Paste"); }},
        {"renumber",
         [&] {
             // A swap: who moves to a free number keeps the field of the old one, too.
             const QList<Sticky *> factors = w.chart()->getAllCausalFactors();
             if (factors.size() > 1) {
                 number = factors.at(1)->getCausalFactorNumber();
                 w.chart()->onRequestCausalFactorNumberChange(factors.at(0));
                 begin();
             }
         }},
        {"undo",
         [&] {
             Steps undone = undo(below(6));
             undone.removeAll(nullptr);
             redo(undone.mid(below(undone.size() + 1)));
         }},
        {"sheet", [&] { w.tabs->setCurrentIndex(1 + below(w.tabs->count() - 1)); }},
        {"reopen", [&] { reopen(); }},
    };

    /// The last steps of all sheets, as if they shared a stack: a step of one sheet may stand on
    /// one of another. Gives the stacks back in the order of a redo; null for one that is gone.
    Steps undo(int steps)
    {
        Steps undone;
        for (; steps > 0 && done.size() > settled && done.last(); --steps) {
            undone.prepend(done.takeLast());
            undone.first()->undo();
            QCoreApplication::processEvents();
        }
        return undone;
    }
    void redo(const Steps &undone)
    {
        for (const auto &stack : undone) {
            stack->redo();
            QCoreApplication::processEvents();
        }
        done += undone;
    }
    void noteSteps()
    {
        for (const ProjectScene *scene : sheets()) {
            while (done.count(scene->getUndoStack()) < scene->getUndoStack()->index())
                done.append(scene->getUndoStack());
        }
    }

    /// Without the siblings that are gone, which a note may keep.
    QStringList describeAll() const
    {
        QStringList lines;
        for (const ProjectScene *scene : sheets()) {
            for (ProjectItem *item : scene->getProjectItems()) {
                lines.append(describe(item));
                for (const QString &id : item->getRecord().siblings) {
                    if (id.startsWith('{') && !w.window.getNoteWithGUID(id))
                        lines.last().remove('+' + id).remove(id + '+').remove(id);
                }
            }
        }
        lines.sort();
        return lines;
    }
    void compare(const QStringList &before, const char *what)
    {
        QStringList gone = before, come = describeAll();
        for (const QString &line : before) {
            if (come.removeOne(line))
                gone.removeOne(line);
        }
        // A line that a deletion let go stays free when its note comes back.
        for (const QString &is : QStringList(come)) {
            for (const QString &was : QStringList(gone)) {
                if (is.section('}', 0, 0) == was.section('}', 0, 0) &&
                    is.count(" free") > was.count(" free") && come.removeOne(is))
                    gone.removeOne(was);
            }
        }
        const QString told = what + ("\nwas " + gone.join('\n')) + "\nis " + come.join('\n');
        QVERIFY2(gone.isEmpty() && come.isEmpty(), qPrintable(told));
    }

    void begin()
    {
        noteSteps();
        settled = done.size();
        start = describeAll();
    }
    void reopen()
    {
        const QStringList before = describeAll();
        const Steps undone = undo(done.size());
        if (done.size() == settled)
            compare(start, "undo leads elsewhere than to the start");
        if (!undone.contains(nullptr)) {
            redo(undone);
            compare(before, "redo leads elsewhere than to the end");
        }
        w.window.saveProject();
        QVERIFY(!w.window.isWindowModified());
        const QStringList saved = describeAll();
        const FormValues values = w.form->getAllFieldValues();
        done.clear();
        w.window.openProject(path, false);
        w.waitForForm();
        for (auto field = values.cbegin(); field != values.cend(); ++field)
            QTRY_COMPARE(w.form->getFieldValue(field.key()), field->value);
        compare(saved, "the file holds something else");
        begin();
    }

    void check()
    {
        for (const ProjectScene *scene : sheets()) {
            checkIndex(*scene, scene->sceneRect());
            checkIndex(*scene, QRectF(spot(), QSizeF(300, 200)).translated(0.37, 0.37));
            for (ProjectItem *item : scene->getProjectItems()) {
                if (auto *line = qobject_cast<Line *>(item)) {
                    checkEnd(*scene, line->getStartConnection(), line->getPoints().first());
                    checkEnd(*scene, line->getEndConnection(), line->getPoints().last());
                } else if (auto *note = qobject_cast<Sticky *>(item)) {
                    checkTwins(*note);
                }
            }
        }
        checkNumbers();
        const QStringList before = describeAll();
        const Steps undone = undo(1 + below(3));
        if (undone.contains(nullptr))
            return begin();
        redo(undone);
        compare(before, "undo and redo change something");
    }
    void checkIndex(const ProjectScene &scene, const QRectF &area)
    {
        const QList<QGraphicsItem *> found = scene.items(area, Qt::IntersectsItemBoundingRect);
        for (QGraphicsItem *item : found)
            QVERIFY2(item->scene() == &scene, "a ghost is found on the sheet");
        const QMarginsF slack(1e-4, 1e-4, 1e-4, 1e-4);
        for (ProjectItem *item : scene.getProjectItems())
            QVERIFY2(found.contains(item) == area.intersects(item->sceneBoundingRect() + slack),
                     qPrintable("not found as it lies: " + describe(item)));
    }
    void checkEnd(const ProjectScene &scene, const ConnectionInfo &end, const QPointF &p)
    {
        if (!end.item)
            return;
        const QRectF note = end.item->getGeometry().adjusted(-3, -3, 3, 3);
        QVERIFY2(end.item->scene() == &scene, "a line hangs on a note that is gone");
        QVERIFY2(note.contains(p) && !note.adjusted(6, 6, -6, -6).contains(p),
                 qPrintable("a line's end is elsewhere than its note " + describe(end)));
    }
    void checkTwins(const Sticky &note)
    {
        const QString told = describe(note.getRecord());
        const QString role = QString(note.getRoleType()).remove('_');
        for (const QString &id : note.getSiblings()) {
            const Sticky *twin = w.window.getNoteWithGUID(id);
            QVERIFY2(!id.startsWith("loss") || !id.compare(role, Qt::CaseInsensitive),
                     qPrintable("a field of another role is tied to " + told));
            if (!twin && (id.startsWith('{') || note.getText().isEmpty()))
                continue; // gone, or a field, which keeps what it has
            const QString other = twin ? twin->getText() : w.form->getFieldValue(id);
            QVERIFY2(other == note.getText(), qPrintable(told + " differs: " + id + ' ' + other));
        }
    }
    void checkNumbers()
    {
        QStringList numbers, rows, tabs = w.tabTexts();
        for (const Sticky *factor : w.chart()->getAllCausalFactors())
            numbers.append(QString::number(factor->getCausalFactorNumber()));
        rows = QStringList(w.form->getAllFieldValues().keys()).filter("causalFactor_text_");
        rows.replaceInStrings("causalFactor_text_", "").sort();
        numbers.sort();
        tabs.replaceInStrings("Causal Factor ", "").sort();
        QCOMPARE(numbers.removeDuplicates(), 0);
        QCOMPARE(tabs, numbers);
        QCOMPARE(rows, numbers);
    }

    TestWindow w;
    QTimer answers; // whatever is asked gets some answer
    std::mt19937 random;
    int seed = 0;
    int number = 0; // for whoever asks for one
    QString path;
    QStringList start;
    Steps done;      // one entry a step, in the order of the deeds
    int settled = 0; // so many of them can't be undone to what was
};

EXAMINER_TEST_MAIN(TestWalk)

#include "testwalk.moc"
