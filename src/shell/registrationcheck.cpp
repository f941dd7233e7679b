#include "shell/registrationcheck.h"

#include <QCoreApplication>
#include <QMessageBox>

void RegistrationCheck::showInformation(QWidget *parent) const
{
    QMessageBox::information(
        parent, QCoreApplication::translate("RegistrationCheck", "Registration"),
        QCoreApplication::translate("RegistrationCheck",
                                    "This edition of TRAC/Ex Examiner needs no registration.\n"
                                    "Projects can be saved without limit."));
}
