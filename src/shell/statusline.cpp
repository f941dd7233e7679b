#include "shell/statusline.h"

#include "chart/toolid.h"
#include "shell/graphwidget.h"

#include <QLabel>
#include <QMainWindow>
#include <QStatusBar>
#include <QStatusTipEvent>

namespace
{

constexpr int HintIndent = 6; // as the status bar indents its messages

} // namespace

StatusLine::StatusLine(QMainWindow *window) : QObject(window), window(window), hint(new QLabel)
{
    hint->setObjectName("toolHint");
    hint->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred); // widens no window
    hint->setIndent(HintIndent);
    window->statusBar()->addWidget(hint, 1);
    window->installEventFilter(this);
}

QString StatusLine::getHint(int toolId)
{
    switch (toolId) {
    case HandTool:
        return tr("Drag the sheet to move it");
    case EventTool:
    case ConditionTool:
    case SequenceMarkerTool:
        return tr("Click where the note is to stand");
    case ImageTool:
        return tr("Click where the picture is to stand");
    case ConnectorTool:
    case ArrowTool:
    case StraightLineTool:
        return tr("Press on the first note, release on the second");
    case FailedBarrierTool:
    case NewBarrierTool:
    case ImprovedBarrierTool:
    case BarrierWorkedTool:
        return tr("Click where the barrier is to stand");
    default:
        return QString();
    }
}

void StatusLine::showHint(int toolId)
{
    hint->setText(getHint(toolId));
    if (!hint->text().isEmpty() && window->statusBar()->currentMessage() == tip)
        window->statusBar()->clearMessage();
}

// The sheet has a tip of its own, and most of the time the pointer is over it: it gives way to
// what has just been said and to the hint.
bool StatusLine::eventFilter(QObject *object, QEvent *event)
{
    if (event->type() != QEvent::StatusTip)
        return QObject::eventFilter(object, event);
    const QString newTip = static_cast<QStatusTipEvent *>(event)->tip();
    const bool isMinor = newTip.isEmpty() || newTip == GraphWidget::getZoomTip();
    const QString shown = window->statusBar()->currentMessage();
    if (isMinor && !shown.isEmpty() && shown != tip)
        return true;
    tip = newTip;
    if (newTip.isEmpty() || !isMinor || hint->text().isEmpty())
        return false;
    window->statusBar()->clearMessage();
    return true;
}
