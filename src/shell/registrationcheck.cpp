#include "shell/registrationcheck.h"

#include <QMessageBox>

void RegistrationCheck::showInformation(QWidget *parent) const
{
    QMessageBox::information(parent, "Registration",
                             "This edition of TRAC/Ex Examiner needs no registration.\n"
                             "Projects can be saved without limit.");
}
