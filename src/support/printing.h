#pragma once

#include <QString>

#include <functional>

class QPrintDialog;
class QPrinter;

/// Lets `paint` print on paper, or into the printer's file, where a former one stays unless the new
/// one is whole. Returns what was done or why it failed, in the user's words.
QString printWhole(QPrinter &printer, const std::function<bool()> &paint);

/// What the dialog proposes for a print into a file, in place of one in the user's home.
void proposePrintFile(QPrintDialog *dialog, const QString &file);
