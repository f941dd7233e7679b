#pragma once

#include "support/formvalue.h"

#include <QObject>
#include <QStringList>

class FormBridge;
class FormModel;
class FormPrinter;
class QHelpEngine;
class QUrl;
class QWidget;

/// What shows the form's page, and the one road to its fields. What happens in the page is told
/// through the bridge.
class FormEngine : public QObject
{
    Q_OBJECT

public:
    /// How fine a print has to be where the engine paints it in dots.
    enum Quality { Draft, Preview, Final };

    /// The engine that this toolkit has, showing a page of the collection; an empty address shows
    /// none. Help engine, model and bridge are borrowed and live longer.
    static FormEngine *create(QHelpEngine *helpEngine, const QUrl &address, FormModel *model,
                              FormBridge *bridge, QWidget *parent);

    virtual QWidget *getWidget() const = 0;
    /// False before the page is loaded and during a reload.
    virtual bool isReady() const = 0;
    virtual bool hasField(const QString &id) const = 0;
    /// Empty for an unknown id.
    virtual QString read(const QString &id) const = 0;
    /// The ids of the fields that show a text, in the page's order.
    virtual QStringList getTextFields() const = 0;
    /// Every field with its text, hidden ones too.
    virtual FormValues readAll() const = 0;

    /// Returns false if there is no such field. An empty text leaves a text field as it is.
    virtual bool write(const QString &id, const QString &value) = 0;
    /// Makes the rows that the values need, writes them all and opens the steps that were open.
    /// Returns false if there is no page yet.
    virtual bool fill(const FormValues &values) = 0;
    virtual void addRow(int number, const QString &guid) = 0;
    virtual void removeRow(int number) = 0;
    /// An address that carries the picture's bytes; empty for none.
    virtual void showTitleImage(const QString &dataUrl) = 0;
    /// Marks these fields alone on the screen, the current one, if there is one, more than the
    /// others. With `lead` it comes into view: steps up to it open, which leaves no trace in the
    /// form.
    virtual void markFields(const QStringList &ids, const QString &current, bool lead) = 0;
    /// Scripts find it as the bridge's shared string.
    virtual void share(const QString &text) = 0;
    /// Wires every field and the two buttons that have no handler of their own.
    virtual void addOnChangeHandlers() = 0;
    /// Empties the page by loading it again.
    virtual void reload() = 0;
    /// All that has been typed so far is told when this returns; false if the page didn't answer.
    virtual bool settle() = 0;
    /// Paints the page as it lies on paper. Returns when it is done, has failed or was stopped.
    virtual void print(FormPrinter *printer, Quality quality) = 0;

signals:
    void loaded(bool ok);

protected:
    using QObject::QObject;
};
