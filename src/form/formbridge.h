#pragma once

#include <QObject>

#include <functional>

class FormView;

/// What the form's page sees as window.formView: the documented slots and the shared string,
/// and nothing else of the widget.
class FormBridge : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QString sharedString READ getSharedString WRITE setSharedString)

public:
    explicit FormBridge(FormView *view);

    QString getSharedString() const;
    void setSharedString(const QString &text);

public slots:
    void onFieldChanged(const QString &id);
    void addOnChangeHandlers();
    void onPrintRequested();
    void removeCausalFactor(int cfNumber);
    void onExportFormClicked();
    void onChooseImageClicked();
    /// Hides the one of every object: a script may not delete the bridge.
    void deleteLater() {}

private:
    /// An exception must not pass through the script engine: it is thrown again from the event
    /// loop, where the application catches it.
    void guard(const std::function<void()> &action);

    FormView *view; // the parent
};
