#pragma once

#include "form/formbridge.h"
#include "form/formengine.h"
#include "form/formmodel.h"
#include "form/formprinter.h"

#include <QMutex>
#if QT_VERSION_MAJOR < 6
#include <QWebElement>
#endif
#include <QWidget>

class QHelpEngine;
class QPageLayout;
class QUndoGroup;
class QUndoStack;

/// The investigation form: a local page whose fields are read and written by their ids. Until
/// the page stands (before the first load, during a reload), the values last handed over stand
/// for it, so that nothing is lost on a save.
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

    /// True while there is a page whose fields are read and written.
    bool isReady() const;
    /// The title image is read afresh from its path; unreadable gives a null image.
    FormValues getAllFieldValues() const;
    /// The ids of the fields that show a text, in the page's order.
    QStringList getTextFields() const;
    /// Empty for an unknown field.
    QString getFieldValue(const QString &id) const;

    /// Marks these fields alone on the screen. With `lead` the current one, if any, comes into
    /// view.
    void markFields(const QStringList &ids, const QString &current, bool lead);
    void setSharedString(const QString &text) override;
    /// False if there is no such field. An empty value never overwrites a text.
    bool setFieldValue(const QString &id, const QString &value);

#if QT_VERSION_MAJOR < 6
    /// Every field in the order radio, text, file, hidden (if asked), textarea, select.
    QWebElementCollection getAllFields(bool includeHidden) const;
    /// Empty for a null element.
    QString getFieldValue(QWebElement &element) const;
    /// False if the element is null.
    bool setFieldValue(QWebElement &element, const QString &value);
#endif

    /// All that has been typed so far has been told and can be read when this returns. To be
    /// called first by a command that reads the form; other events may be handled meanwhile, but
    /// no keys and clicks. False if the page didn't answer in time, or is being asked already.
    bool settle();

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

    /// Asked for the file that a print is proposed to go into.
    void setFileProposal(const std::function<QString()> &propose)
    {
        proposeFile = propose;
    }

    /// All values as a file or a report takes them: the title image is the one last loaded,
    /// shown or collected where its file can't be read, as on a computer that lacks the picture.
    FormValues collectForSave();

signals:
    void formChanged();
    void formValueChanged(const QString &id, const QString &value);
    /// A stored value that is not empty was brought into the page.
    void formValueLoaded(const QString &id, const QString &value);
    void exportFormRequested();
    /// What has come of a print, in the user's words.
    void printed(const QString &outcome);
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
    /// What was done, in the user's words.
    QString printOut(FormPrinter &printer, QWidget *parent);
    /// False if it failed or was stopped.
    bool paint(FormPrinter &printer, FormEngine::Quality quality, QWidget *parent);
    int countPages(const QPageLayout &layout, const FormPrinter::GoOn &goOn);
    QString getPaperName() const;
    void loadData();
    void showTitleImage();
    QImage readTitleImage(const QString &path) const;
    /// Remembers the picture, or takes the remembered one where its file can't be read.
    void holdTitleImage(FormValue &field);

    QHelpEngine *helpEngine = nullptr; // child
    FormBridge *bridge = nullptr;      // child, what the page's scripts see
    FormEngine *engine = nullptr;      // child, shows the page
    std::function<QString()> proposeFile;
    FormModel model; // what was handed over by the project file
    QMutex loadMutex;
    QUndoStack *undoStack = nullptr; // the group's
    QString sharedString;
    bool isSettling = false;
    FormValue titleImage;       // path and picture last loaded, shown or collected
    mutable FormValue lastRead; // size, time and path of a picture file, and its picture
};
