#pragma once

#include <QToolButton>

/// A flat button that shows whether the keyboard acts on it.
class IntroButton : public QToolButton
{
    Q_OBJECT

public:
    using QToolButton::QToolButton;

protected:
    void paintEvent(QPaintEvent *event) override;
};
