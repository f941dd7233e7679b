#include "support/progressbox.h"

#include <QCoreApplication>

namespace
{

constexpr int Patience = 1000; // milliseconds

} // namespace

ProgressBox::ProgressBox(const QString &labelText, QWidget *parent)
    : QProgressDialog(labelText, tr("Cancel"), 0, 1, parent)
{
    setWindowModality(Qt::WindowModal);
    setMinimumDuration(Patience);
    setAutoReset(false); // else it would forget a Cancel
    setAutoClose(false);
    setValue(0); // starts the clock
}

bool ProgressBox::goOn(int done, int total)
{
    setMaximum(total);
    if (isVisible() && value() == done)
        QCoreApplication::processEvents(); // the toolkit sees to them for a new value alone
    setValue(done);
    return !wasCanceled();
}
