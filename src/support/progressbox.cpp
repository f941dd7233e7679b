#include "support/progressbox.h"

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
    setValue(done);
    return !wasCanceled();
}
