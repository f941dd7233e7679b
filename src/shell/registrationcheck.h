#pragma once

#include <QString>

class QWidget;

/// Stands before every save. This edition needs no registration; one that does has its say
/// here.
class RegistrationCheck
{
public:
    /// A refusal tells the user why.
    bool permitsSaving() const { return true; }
    /// What the entry of the Help menu shows.
    void showInformation(QWidget *parent) const;
};
