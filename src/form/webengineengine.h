#pragma once

#include "form/formengine.h"

#include <QElapsedTimer>
#include <QPointer>
#include <QTimer>
#include <QUrl>

class FormText;
class QJsonArray;
class QJsonValue;
class QStackedWidget;
class QWebEngineProfile;
class QWebEngineView;
class WebEnginePage;

/// The form's page in Qt WebEngine, that is in a process of its own. The model mirrors its fields:
/// reads are answered by it, writes change it and are passed on, what users do is told later.
class WebEngineEngine : public FormEngine
{
    Q_OBJECT

public:
    WebEngineEngine(QHelpEngine *helpEngine, const QUrl &address, FormModel *model,
                    FormBridge *bridge, QWidget *parent);
    ~WebEngineEngine() override;

    QWidget *getWidget() const override;
    bool isReady() const override;
    bool hasField(const QString &id) const override;
    QString read(const QString &id) const override;
    QStringList getTextFields() const override;
    FormValues readAll() const override;

    bool write(const QString &id, const QString &value) override;
    bool fill(const FormValues &values) override;
    void addRow(int number, const QString &guid) override;
    void removeRow(int number) override;
    void showTitleImage(const QString &dataUrl) override;
    void markFields(const QStringList &ids, const QString &current, bool lead) override;
    void share(const QString &text) override;
    void addOnChangeHandlers() override;
    void reload() override;
    bool settle() override;
    void print(FormPrinter *printer, Quality quality) override;

signals:
    /// The page has answered the key that followed all that was typed; 0 for a message it took.
    void answered(int key);
    /// There is no page to wait for any more.
    void pageGone();

private:
    void start();
    void startPage();
    void onPageDied();
    void onUrlChanged(const QUrl &url);
    void replacePage();
    void onFocusChanged(QWidget *old, QWidget *now);
    bool hasFocus() const;
    void onLoadFailed();
    void giveUp(const QString &reason);
    void showValues();
    void send(const QJsonArray &action);
    void send(int number, const QJsonArray &actions);
    void hear(const QString &message);
    void hearReady(const QJsonArray &fields, const QJsonValue &others);
    void hearEdit(const QString &id, const QJsonArray &values, int seenWrite);
    void hearFields(const QJsonArray &come, const QJsonArray &gone, const QJsonArray &values,
                    int seenWrite);
    void hearValues(const QJsonArray &values, int seenWrite);
    void chooseImage();
    void restore();
    void sendKey(int key);
    QByteArray makePdf(FormPrinter *printer);
    void printToFile(FormPrinter *printer);

    QHelpEngine *helpEngine; // not owned
    QUrl address;
    FormModel *model;      // not owned
    FormBridge *bridge;    // not owned
    QStackedWidget *stack; // of the parent widget, goes with the engine; holds text and view
    FormText *text;
    QWebEngineProfile *profile = nullptr; // from the start on, as the view is
    QWebEngineView *view = nullptr;
    WebEnginePage *page = nullptr; // goes before its profile
    QPointer<QWidget> focusTaker;  // got the focus from a view that went
    QTimer loading;                // until the page counts as one that never loads
    QList<QElapsedTimer> deaths;
    QStringList otherElements; // ids of the page's elements that are no fields
    QString picture;           // the address of the title image shown
    QString shared;            // with the page's scripts
    QString lastEdited;        // by the user; a fresh page puts the focus there
    QString editedId;          // the field whose news are being told
    int writeNumber = 0;       // of the last message to the page
    int writesOnTheWay = 0;    // messages that the page has yet to take
    int keysSent = 0;          // that ask for an answer
    bool pageIsUp = false;     // it has told its fields and its process lives
    bool gaveUp = false;
    bool valuesDue = false; // the text is about to be written anew
};
