#pragma once

#include "form/formbridge.h"
#include "support/formvalue.h"

#include <QMutex>
#include <QWebElement>
#include <QWidget>

class HelpTextBrowser;
class QHelpEngine;
class QPrinter;
class QUndoGroup;
class QUndoStack;
class QWebFrame;

/// The investigation form: a local page whose elements are the only model. Until the page
/// stands (before the first load, during a reload), the values last handed over stand for it,
/// so that nothing is lost on a save.
class FormView : public QWidget, public FormBridgeTarget
{
    Q_OBJECT
    Q_PROPERTY(QString sharedString READ getSharedString WRITE setSharedString)

public:
    explicit FormView(QUndoGroup *group, QWidget *parent = nullptr);
    ~FormView() override;

    /// The stack that is active while the form is shown; it never receives a command.
    QUndoStack *getUndoStack() const { return undoStack; }
    QString getSharedString() const override { return sharedString; }

    /// Every field in the order radio, text, file, hidden (if asked), textarea, select.
    QWebElementCollection getAllFields(bool includeHidden) const;
    /// The title image is read afresh from its path; unreadable gives a null image.
    FormValues getAllFieldValues() const;
    /// Empty for a null or unknown element.
    QString getFieldValue(QWebElement &element) const;
    QString getFieldValue(const QString &id) const;

    void setSharedString(const QString &text) override { sharedString = text; }
    /// False if the element is null. An empty value never overwrites a text.
    bool setFieldValue(QWebElement &element, const QString &value);
    bool setFieldValue(const QString &id, const QString &value);

    /// Empties the form by loading its page again.
    void clearForm();
    /// Returns the id of the new row's text field.
    QString addCausalFactor(const QString &guid, int number, const QString &text);
    /// What stands in a row, field by field in a fixed order.
    QStringList getCausalFactorRow(int number) const;
    /// Makes a row of what stood in one. Returns the id of its text field.
    QString restoreCausalFactor(const QString &guid, int number, const QStringList &row);
    /// Moves a row to a free number, or swaps it with the row of otherGuid if that is not empty.
    /// Returns the id of the text field of newNumber.
    QString changeCausalFactorNumber(const QString &guid, int oldNumber, int newNumber,
                                     const QString &otherGuid);

    /// All values as a file or a report takes them: the title image is the one last loaded or
    /// collected where its file can't be read, as on a computer that lacks the picture.
    FormValues collectForSave();

signals:
    void formChanged();
    void formValueChanged(const QString &id, const QString &value);
    /// A stored value that is not empty was brought into the page.
    void formValueLoaded(const QString &id, const QString &value);
    void exportFormRequested();
    void chooseImageRequested();

public slots:
    void onFormDataLoaded(const QHash<QString, FormValue> &values);
    void onFieldChanged(const QString &id) override;
    /// Wires every field and the two buttons that have no handler of their own.
    void addOnChangeHandlers() override;
    void onPrintRequested() override;
    void removeCausalFactor(int cfNumber) override;
    void onExportFormClicked() override;
    void onChooseImageClicked() override;

private slots:
    void onPageLoaded(bool ok);

private:
    static bool isFieldId(const QString &id);
    static bool isRadioButton(const QWebElement &element);
    static bool isTextArea(const QWebElement &element);
    static bool isTextEdit(const QWebElement &element);
    static bool isHiddenInput(const QWebElement &element);
    static bool isFileInput(const QWebElement &element);
    static bool isComboBox(const QWebElement &element);

    int countPages(const QPrinter &printer) const;
    QString getPaperName() const;
    QWebElement findField(const QString &id) const;
    void loadData();
    void createRows();
    void applyValues();
    void restoreSteps();
    void showTitleImage();
    void addOnClickHandler(const QString &id, const QString &script);
    void setChecked(QWebElement &radio, const QString &value);
    void setOption(QWebElement &select, const QString &text);
    void setText(QWebElement &field, const QString &value);
    FormValues readPage() const;
    QImage readTitleImage(const QString &path) const;
    void fillInTitleImage(FormValue &field) const;

    QHelpEngine *helpEngine = nullptr;  // child
    HelpTextBrowser *webView = nullptr; // child
    FormBridge *bridge = nullptr;       // child, what the page's scripts see
    QWebFrame *mainFrame = nullptr;     // the page's, null until the first load has finished
    FormValues formData;                // handed over by the project file
    QMutex loadMutex;
    QUndoStack *undoStack = nullptr; // the group's
    QString sharedString;
    FormValue titleImage;       // path and picture last loaded or collected
    mutable FormValue lastRead; // size, time and path of a picture file, and its picture
    bool pageStands = false;    // false before the first load and during a reload
};
