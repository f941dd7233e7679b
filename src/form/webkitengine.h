#pragma once

#include "form/formengine.h"

#include <QUrl>
#include <QWebElement>

class QWebFrame;
class QWebView;

/// The form's page in QtWebKit: its elements are the only model, read and written at once.
class WebKitEngine : public FormEngine
{
    Q_OBJECT

public:
    WebKitEngine(QHelpEngine *helpEngine, const QUrl &address, FormBridge *bridge, QWidget *parent);
    ~WebKitEngine() override;

    QWidget *getWidget() const override;
    bool isReady() const override { return pageStands; }
    bool hasField(const QString &id) const override { return !findField(id).isNull(); }
    QString read(const QString &id) const override;
    QString read(QWebElement &element) const;
    QStringList getTextFields() const override;
    FormValues readAll() const override;
    QWebElementCollection getAllFields(bool includeHidden) const;

    bool write(const QString &id, const QString &value) override;
    bool write(QWebElement &element, const QString &value);
    bool fill(const FormValues &values) override;
    void addRow(int number, const QString &guid) override;
    void removeRow(int number) override;
    void showTitleImage(const QString &dataUrl) override;
    void markFields(const QStringList &ids, const QString &current, bool lead) override;
    void share(const QString &) override {} // it is read when it is wanted
    void addOnChangeHandlers() override;
    void reload() override;
    bool settle() override { return true; }
    void print(FormPrinter *printer, Quality quality) override;

private:
    static bool isRadioButton(const QWebElement &element);
    static bool isTextArea(const QWebElement &element);
    static bool isTextEdit(const QWebElement &element);
    static bool isHiddenInput(const QWebElement &element);
    static bool isFileInput(const QWebElement &element);
    static bool isComboBox(const QWebElement &element);

    void onLoadFinished(bool ok);
    QWebElement findField(const QString &id) const;
    void addOnClickHandler(const QString &id, const QString &script);
    void setChecked(QWebElement &radio, const QString &value);
    void setOption(QWebElement &select, const QString &text);
    void setText(QWebElement &field, const QString &value);

    FormBridge *bridge;             // not owned, what the page's scripts see
    QWebView *webView;              // of the parent widget, goes with the engine
    QWebFrame *mainFrame = nullptr; // the page's, null until the first load has finished
    bool pageStands = false;
};
