#pragma once

#include <QObject>
#include <QSize>

class QWidget;

/// While the web engine has laid its page out for paper, nothing may reach the page, and the screen
/// must not show it. Timers and sockets of all but a progress box wait, none gets lost; the view
/// takes part again when this goes.
class PageHold : public QObject
{
public:
    explicit PageHold(QWidget *view);
    ~PageHold() override;

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    QWidget *view; // not owned
    QSize size;
};
