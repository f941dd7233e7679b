#pragma once

#include "form/formmodel.h"

/// The fields of the form's page with what stands in them at first, out of the page's text alone.
/// Empty if there is no page in the user's data folder.
QHash<QString, FormField> readPageFields();

/// The same for a page's text. Templates of rows hold no fields.
QHash<QString, FormField> readPageFields(QString html);
