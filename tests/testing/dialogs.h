#pragma once

#include <QApplication>
#include <QFileDialog>
#include <QInputDialog>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QTest>
#include <QTimer>

#include <functional>

/// Answers the next modal widget, which runs its own event loop inside the code under test.
/// Make it before the call that shows the dialog, and look at wasAsked() afterwards. A dialog
/// that is refused for three seconds is closed, so that no test hangs.
class DialogAnswer
{
public:
    /// Gets the dialog once it is shown, and returns true when it has answered it.
    using Answer = std::function<bool(QWidget *)>;

    explicit DialogAnswer(Answer answer) : answer(std::move(answer))
    {
        timer.callOnTimeout([this] { look(); });
        timer.start(10);
    }

    bool wasAsked() const { return asked; }

private:
    void look()
    {
        QWidget *popup = QApplication::activePopupWidget();
        QWidget *widget = popup ? popup : QApplication::activeModalWidget();
        if (!widget)
            return;
        timer.stop(); // the answer may run another dialog
        asked = answer(widget);
        if (asked)
            return;
        timer.start();
        if (++refusals > 300)
            widget->close();
    }

    Answer answer;
    QTimer timer;
    int refusals = 0;
    bool asked = false;
};

/// Presses a button of the next message box, by its text when it is the box's own, and keeps what
/// the box said.
class BoxAnswer : public DialogAnswer
{
public:
    explicit BoxAnswer(QMessageBox::StandardButton button, const QString &itsText = QString())
        : DialogAnswer([=](QWidget *widget) {
              auto *box = qobject_cast<QMessageBox *>(widget);
              for (QAbstractButton *each : box ? box->buttons() : QList<QAbstractButton *>()) {
                  if (box->standardButton(each) != button || !each->text().contains(itsText))
                      continue;
                  title = box->windowTitle();
                  text = box->text();
                  defaultButton = box->defaultButton() ? box->defaultButton()->text() : QString();
                  each->click();
                  return true;
              }
              return false;
          })
    {
    }

    QString title;
    QString text;
    QString defaultButton; ///< its text
};

/// Answers the next dialog of a type and passes by those that stand before it.
template<typename Dialog> DialogAnswer::Answer inDialog(std::function<void(Dialog *)> answer)
{
    return [answer](QWidget *widget) {
        auto *dialog = qobject_cast<Dialog *>(widget);
        if (dialog)
            answer(dialog);
        return dialog != nullptr;
    };
}

/// Types a path into the next file dialog and presses Return; an empty path cancels it.
inline DialogAnswer::Answer fileChoice(const QString &path)
{
    return inDialog<QFileDialog>([path](QFileDialog *dialog) {
        if (path.isEmpty())
            return dialog->reject();
        auto *edit = dialog->findChild<QLineEdit *>("fileNameEdit");
        edit->setText(path);
        QTest::keyClick(edit, Qt::Key_Return);
    });
}

/// Sets the number in the next input dialog and accepts it.
inline DialogAnswer::Answer numberChoice(int number)
{
    return inDialog<QInputDialog>([number](QInputDialog *dialog) {
        dialog->setIntValue(number);
        dialog->accept();
    });
}

/// Rejects whatever dialog comes next.
inline DialogAnswer::Answer cancellation()
{
    return [](QWidget *widget) { return widget->close(); };
}
