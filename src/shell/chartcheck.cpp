#include "shell/chartcheck.h"

#include "chart/line.h"
#include "chart/sticky.h"
#include "sheet/projectscene.h"
#include "sheet/sheetbook.h"

#include <QSet>

#include <algorithm>

namespace
{

constexpr int Pause = 500; // milliseconds
constexpr int MostNumbers = 5;

/// A chart is a line of time.
bool standsBefore(const BoxItem *a, const BoxItem *b)
{
    return a->x() != b->x() ? a->x() < b->x() : a->y() < b->y();
}

/// What stands on a sheet, sorted once.
struct SheetItems {
    explicit SheetItems(const ProjectScene *sheet)
    {
        for (ProjectItem *item : sheet->getItemsUnsorted()) {
            if (auto *box = qobject_cast<BoxItem *>(item))
                boxes.append(box);
            else if (auto *line = qobject_cast<Line *>(item))
                connected << line->getStartConnection().item << line->getEndConnection().item;
        }
        std::sort(boxes.begin(), boxes.end(), standsBefore);
        for (BoxItem *box : qAsConst(boxes)) {
            if (auto *note = qobject_cast<Sticky *>(box))
                notes.append(note);
        }
    }

    /// More than the twins that every factor's sheet begins with.
    bool isWorked() const
    {
        return boxes.size() > notes.size() ||
               std::any_of(notes.cbegin(), notes.cend(),
                           [](const Sticky *note) { return note->getSiblings().isEmpty(); });
    }

    QList<Sticky *> notes;
    QList<BoxItem *> boxes; // the notes too
    QSet<Sticky *> connected;
};

bool needsLine(const Sticky *note)
{
    return note->getRoleType() != "Sequence_Marker" && note->getRecord().image.isNull();
}

bool isTorn(const QRectF &box, const QSize &page)
{
    const auto crosses = [](qreal from, qreal to, int size) {
        return int(from / size) != int((to - 1) / size);
    };
    return crosses(box.left(), box.right(), page.width()) ||
           crosses(box.top(), box.bottom(), page.height());
}

} // namespace

ChartCheck::ChartCheck(SheetBook *book, QWidget *parent) : QToolButton(parent), book(book)
{
    setObjectName("chartCheck");
    setAutoRaise(true);
    setFocusPolicy(Qt::TabFocus);
    setToolTip(tr("Click to go to the next of these places"));
    hide();
    pause.setSingleShot(true);
    pause.setInterval(Pause);
    connect(&pause, &QTimer::timeout, this, &ChartCheck::look);
    connect(this, &QToolButton::clicked, this, &ChartCheck::goToNext);
    connect(book, &SheetBook::sheetCame, this, &ChartCheck::lookSoon);
    connect(book, &SheetBook::sheetGoes, this, &ChartCheck::lookSoon);
    connect(book->getMainSheet(), &QGraphicsScene::sceneRectChanged, this, &ChartCheck::lookSoon);
}

void ChartCheck::look()
{
    for (QList<Place> *list : {&empty, &unconnected, &torn, &unworked, &places})
        list->clear();
    unworkedNumbers.clear();
    for (ProjectScene *sheet : book->getAllSheets())
        lookAt(sheet);
    places = empty + unconnected + torn + unworked;
    showFindings();
}

void ChartCheck::lookAt(ProjectScene *sheet)
{
    const SheetItems items(sheet);
    const Sticky *factor = sheet->getParentNote();
    if (factor && !items.isWorked()) {
        unworked.append({sheet, nullptr});
        unworkedNumbers.append(QString::number(factor->getCausalFactorNumber()));
        return;
    }
    for (Sticky *note : items.notes) {
        const bool isTwin = factor && !note->getSiblings().isEmpty(); // told on the main chart
        if (!isTwin && note->getText().isEmpty() && note->getRecord().image.isNull())
            empty.append({sheet, note});
        if (needsLine(note) && !items.connected.contains(note))
            unconnected.append({sheet, note});
    }
    for (BoxItem *box : items.boxes) {
        if (isTorn(box->getGeometry(), sheet->getPageSize()))
            torn.append({sheet, box});
    }
}

void ChartCheck::showFindings()
{
    QStringList words;
    if (!empty.isEmpty())
        words << tr("%1 empty").arg(empty.size());
    if (!unconnected.isEmpty())
        words << tr("%1 unconnected").arg(unconnected.size());
    if (!torn.isEmpty())
        words << tr("%1 across a page's edge").arg(torn.size());
    if (unworked.size() > MostNumbers)
        words << tr("%1 factors not worked").arg(unworked.size());
    else if (!unworked.isEmpty())
        words << (unworked.size() == 1 ? tr("factor %1 not worked") : tr("factors %1 not worked"))
                     .arg(unworkedNumbers.join(tr(" and ")));
    if (words.join(", ") == text())
        return; // the next click goes on where the last one led
    setText(words.join(", "));
    setVisible(!words.isEmpty());
    next = 0;
}

void ChartCheck::goToNext()
{
    if (pause.isActive()) {
        pause.stop();
        look();
    }
    for (int i = 0; i < places.size(); ++i) {
        const Place place = places.at(next++ % places.size());
        if (!place.sheet || (place.item && place.item->scene() != place.sheet))
            continue;
        emit placeWanted(place.sheet, place.item);
        return;
    }
}
