#pragma once

#include <QObject>

#include <functional>

/// What the bridge passes the page's calls on to.
class FormBridgeTarget
{
public:
    virtual ~FormBridgeTarget() = default;

    virtual QString getSharedString() const = 0;
    virtual void setSharedString(const QString &text) = 0;
    virtual void onFieldChanged(const QString &id) = 0;
    virtual void addOnChangeHandlers() = 0;
    virtual void onPrintRequested() = 0;
    virtual void removeCausalFactor(int cfNumber) = 0;
    virtual void onExportFormClicked() = 0;
    virtual void onChooseImageClicked() = 0;
};

/// What the form's page sees as window.formView: the documented slots and the shared string,
/// and nothing else of the widget.
class FormBridge : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QString sharedString READ getSharedString WRITE setSharedString)

public:
    FormBridge(FormBridgeTarget *target, QObject *parent);

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

    FormBridgeTarget *target; // not owned; lives as long as the parent
};
