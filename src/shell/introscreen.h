#pragma once

#include <QWidget>
#include <memory>

class QAction;
class QTableWidgetItem;
class Ui_IntroScreen;

/// The full-screen start page: new, quick start, open, and the files that
/// auto-save left behind. Deletes itself on close.
class IntroScreen : public QWidget
{
    Q_OBJECT

public:
    explicit IntroScreen(QWidget *parent);
    ~IntroScreen() override;

    /// Replaces the logo by a text where the height, in pixels, has no room for it.
    void fitLogo(int availableHeight);
    void listRecentFiles();

signals:
    /// An empty path asks the user for one.
    void openProjectClicked(QString path, bool addToRecentFiles);
    void newProjectClicked();
    void quickStartClicked();
    void updateClicked();

public slots:
    void showUpdateButton();

protected:
    /// Enter presses the button that has the focus, as Space does.
    void keyPressEvent(QKeyEvent *event) override;

private slots:
    void onUpdateClicked();
    void onRecentFileTriggered(QAction *action);
    void onOpenProjectClicked();
    void stopUpdateLoading();
    void onAutoSaveActivated(QTableWidgetItem *item);

private:
    void connectButtons();
    /// Whether there is any such file.
    bool listAutoSavedFiles();
    void addAutoSavedFile(const QString &path);
    void colorForDarkGround();

    std::unique_ptr<Ui_IntroScreen> ui;
};
