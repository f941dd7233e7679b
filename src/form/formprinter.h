#pragma once

#include <QPrinter>

/// Paper for the form: where there are more pages than one, each says above its text whose it is
/// and which. The page's engine knows nothing of heads; it only asks for the next page.
class FormPrinter : public QPrinter
{
public:
    /// What the next document's pages say, and how many they are.
    void setHead(const QString &newName, int newPages);
    /// Of the document that was printed last.
    int getPageCount() const { return page; }

    bool newPage() override;

private:
    void paintHead();

    QString name;
    int pages = 0;
    int page = 1;
};
