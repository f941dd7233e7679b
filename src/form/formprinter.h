#pragma once

#include <QPrinter>

#include <atomic>
#include <functional>

/// Paper for the form: where there are more pages than one, each says above its text whose it is
/// and which. The page's engine knows nothing of heads; it only asks for the next page.
class FormPrinter : public QPrinter
{
public:
    /// Told which page is done and how many there are, 0 if that isn't known; false stops the
    /// document.
    using GoOn = std::function<bool(int page, int pages)>;

    /// What the next document's pages say, and how many they are.
    void setHead(const QString &newName, int newPages);
    /// Asked before each page where the engine paints in the program's own thread. Elsewhere the
    /// engine asks by askOn() while it waits.
    void setGoOn(const GoOn &newGoOn) { goOn = newGoOn; }
    bool askOn();
    /// The last document was.
    bool isStopped() const { return stopped; }
    /// Of the document that was printed last.
    int getPageCount() const { return page; }

    bool newPage() override;

private:
    void paintHead();

    QString name;
    GoOn goOn;
    int pages = 0;
    int firstPage = 1;
    std::atomic<int> page{1};
    std::atomic<bool> stopped{false};
};
