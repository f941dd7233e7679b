#pragma once

#include <QAbstractButton>
#include <QApplication>
#include <QDialog>
#include <QElapsedTimer>
#include <QFileDialog>
#include <QInputDialog>
#include <QLineEdit>
#include <QMessageBox>
#include <QPointer>
#include <QPushButton>
#include <QTest>
#include <QTimer>

#include <functional>

/// Answers the next modal widget, which runs its own event loop inside the code under test.
/// Make it before the call that shows the dialog, and look at wasAsked() afterwards. A dialog
/// that the answer leaves open is closed after three seconds, so that no test hangs.
class DialogAnswer
{
public:
    /// Gets the dialog once it is shown, and returns true when it has answered it.
    using Answer = std::function<bool(QWidget *)>;

    explicit DialogAnswer(Answer answer) : answer(std::move(answer))
    {
        QObject::connect(&timer, &QTimer::timeout, &timer, [this] { look(); });
        timer.start(10);
    }

    bool wasAsked() const { return asked; }

private:
    void look()
    {
        QPointer<QWidget> widget = QApplication::activePopupWidget();
        if (!widget)
            widget = QApplication::activeModalWidget();
        if (!widget)
            return;
        if (!age.isValid())
            age.start();
        if (age.elapsed() > 3000) {
            widget->close();
        } else if (!busy) {
            busy = true; // the answer may run another dialog and delete this one
            asked = answer(widget);
            busy = false;
            if (asked)
                timer.stop();
        }
    }

    Answer answer;
    QTimer timer;
    QElapsedTimer age;
    bool asked = false;
    bool busy = false;
};

/// Presses a button of the next message box and keeps what the box said.
class BoxAnswer : public DialogAnswer
{
public:
    explicit BoxAnswer(QMessageBox::StandardButton button)
        : BoxAnswer([button](QMessageBox *box) { return box->button(button); })
    {
    }

    /// By the text of a button of the box's own.
    explicit BoxAnswer(const QString &buttonText)
        : BoxAnswer([buttonText](QMessageBox *box) -> QAbstractButton * {
              for (QAbstractButton *button : box->buttons()) {
                  if (button->text().remove('&') == buttonText)
                      return button;
              }
              return nullptr;
          })
    {
    }

    QString title;
    QString text;
    QString defaultButton; ///< its text, without the mark of the mnemonic

private:
    explicit BoxAnswer(std::function<QAbstractButton *(QMessageBox *)> choose)
        : DialogAnswer([this, choose](QWidget *widget) {
              auto *box = qobject_cast<QMessageBox *>(widget);
              QAbstractButton *button = box ? choose(box) : nullptr;
              if (!button)
                  return false;
              title = box->windowTitle();
              text = box->text();
              if (box->defaultButton())
                  defaultButton = box->defaultButton()->text().remove('&');
              button->click();
              return true;
          })
    {
    }
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
    return [](QWidget *widget) {
        auto *dialog = qobject_cast<QDialog *>(widget);
        if (dialog)
            dialog->reject();
        else
            widget->close();
        return true;
    };
}
