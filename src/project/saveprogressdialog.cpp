#include "project/saveprogressdialog.h"

#include <QCloseEvent>
#include <QCoreApplication>
#include <QProgressBar>

namespace
{

constexpr int EventInterval = 50; // milliseconds

} // namespace

SaveProgressDialog::SaveProgressDialog(const QString &labelText, int maximum, QWidget *parent)
    : QProgressDialog(labelText, QString(), 0, maximum, parent), bar(new QProgressBar)
{
    bar->setRange(0, maximum);
    bar->setValue(0);
    setBar(bar);
    setWindowModality(Qt::WindowModal);
    sinceEvents.start();
}

void SaveProgressDialog::keepAlive()
{
    if (sinceEvents.elapsed() < EventInterval)
        return;
    QCoreApplication::processEvents();
    sinceEvents.restart();
}

void SaveProgressDialog::incrementProgress()
{
    // A modal dialog's own setValue() handles events at each call; the bar's doesn't.
    ++done;
    const int step = qMax(1, maximum() / 100); // no eye sees smaller ones
    if (done % step == 0 || done == maximum())
        bar->setValue(done);
    keepAlive();
}

void SaveProgressDialog::reject()
{
    // Escape would give the window back to the user in the middle of the work.
}

void SaveProgressDialog::closeEvent(QCloseEvent *event)
{
    event->ignore();
}
