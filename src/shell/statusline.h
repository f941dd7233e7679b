#pragma once

#include <QObject>

class QLabel;
class QMainWindow;

/// What the left of the status bar says: what was done just now, else the tip of what lies under
/// the pointer, else what to do next with the tool in hand.
class StatusLine : public QObject
{
    Q_OBJECT

public:
    explicit StatusLine(QMainWindow *window);

    /// What to do with a tool, in the user's words; empty for one that needs no word.
    static QString getHint(int toolId);

    /// Says what to do next as long as the tool is in hand.
    void showHint(int toolId);

    bool eventFilter(QObject *object, QEvent *event) override;

private:
    QMainWindow *window; // parent
    QLabel *hint;        // the status bar's
    QString tip;         // last shown
};
