#pragma once

#include <QPointer>
#include <QTimer>
#include <QVector>
#include <QWidget>

class FormView;
class ProjectItem;
class ProjectScene;
class ProjectTabWidget;
class QLabel;
class QLineEdit;
class QToolButton;
class Sticky;

/// The bar under the tabs that finds words in the notes of all sheets and in the fields of the
/// form, in the order of the tabs. Case and the kind of white space make no difference.
class FindBar : public QWidget
{
    Q_OBJECT

public:
    /// The tabs show the form and the sheets; both outlive the bar.
    FindBar(ProjectTabWidget *tabs, FormView *form);

    bool eventFilter(QObject *object, QEvent *event) override;

public slots:
    /// Takes the focus, and gives it back when the bar is closed.
    void open();
    void goToNext() { go(1); }
    void goToPrevious() { go(-1); }
    void dismiss();
    /// Some text is no longer as it was.
    void lookAgainSoon();

signals:
    void noteWanted(ProjectScene *sheet, ProjectItem *note);

private:
    /// What stands in one note or one field, ready to be searched.
    struct Text {
        QString text;
        QPointer<QWidget> tab;
        QPointer<Sticky> note; // null in the form
        QString field;
    };

    QToolButton *addButton(const QString &text, const QString &toolTip);
    void readTexts();
    void readSheet(QWidget *tab, const ProjectScene *sheet);
    void readForm();
    void search();
    int getStart() const;
    void onTyped();
    void lookAgain();
    void go(int step);
    void showMarks(bool lead);
    void showCount();
    void leadToCurrent();
    bool isCurrent(const Text &text) const;

    ProjectTabWidget *tabs;
    FormView *form;
    QLineEdit *edit;
    QLabel *count;
    QPointer<QWidget> focusBefore;
    QTimer pause;
    QVector<Text> texts;
    QVector<int> found; // of the texts
    int current = -1;   // of what was found
    QPointer<Sticky> currentNote;
    QString currentField;
};
