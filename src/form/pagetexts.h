#pragma once

#include <QString>

/// A script that hands over the texts of the form's page in the user's language. It has to run
/// before those of the page do. Empty without a translation.
QString getPageTextsScript();
