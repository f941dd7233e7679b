#include "shell/shortcuttip.h"

#include <QAction>
#include <QRegularExpression>

namespace
{

QString makeTip(const QAction *action)
{
    static const QRegularExpression marks("&|\\.\\.\\.$");
    const QString text = action->text().remove(marks);
    const QString keys = action->shortcut().toString(QKeySequence::NativeText);
    return keys.isEmpty() ? text : QString("%1 (%2)").arg(text, keys);
}

} // namespace

void nameShortcutInTip(QAction *action)
{
    action->setToolTip(makeTip(action));
    QObject::connect(action, &QAction::changed, action,
                     [action] { action->setToolTip(makeTip(action)); });
}
