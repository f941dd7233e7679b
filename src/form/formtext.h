#pragma once

#include <QWidget>

class FormModel;
class QLabel;
class QTextBrowser;

/// Stands in for the form's page when that cannot be shown: says why, and holds what the form
/// holds as a text to be read.
class FormText : public QWidget
{
    Q_OBJECT

public:
    explicit FormText(QWidget *parent);

    void setReason(const QString &reason);
    void setValues(const FormModel &model);

signals:
    void retryRequested();

private:
    QLabel *reasonLabel;     // child
    QTextBrowser *textField; // child
};
