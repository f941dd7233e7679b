#include "benchmark.h"
#include "benchsheet.h"

#include "chart/sticky.h"
#include "form/formview.h"
#include "shell/findbar.h"
#include "shell/graphwidget.h"
#include "shell/projecttabwidget.h"

#include <QApplication>
#include <QLineEdit>

// One key in the bar that finds words, with the marks that it paints. The word is in every note.

namespace
{

constexpr char Word[] = "note";

double typeKey(QLineEdit *edit)
{
    edit->setText(QString(Word).chopped(1));
    QApplication::processEvents();
    return timed([&] {
        edit->setText(Word); // marks, counts and leads to the first place
        QApplication::processEvents();
    });
}

double scan(const std::vector<Sticky *> &notes)
{
    return timed([&] {
        int found = 0;
        for (const Sticky *note : notes)
            found += note->getRecord().text.contains(Word, Qt::CaseInsensitive) ? 1 : 0;
        if (found < 0)
            qFatal("never");
    });
}

} // namespace

void benchFind()
{
    BenchTable table("find: one key, with marks on all notes");
    for (int size : BenchSizes) {
        BenchSheet sheet((BenchChart(size)));
        for (Sticky *note : sheet.notes)
            note->setText("A note with some words to look through");
        ProjectTabWidget tabs;
        FormView form(&sheet.group);
        tabs.addTab(new GraphWidget(&sheet.scene, nullptr), "Chart");
        auto *bar = new FindBar(&tabs, &form);
        tabs.setBar(bar);
        tabs.resize(1400, 900);
        tabs.show();
        QApplication::processEvents();
        bar->open();
        bar->open();
        auto *edit = bar->findChild<QLineEdit *>("findEdit");
        table.add(size, measure(
                            5, [&] { return typeKey(edit); }, [&] { return scan(sheet.notes); }));
    }
}
