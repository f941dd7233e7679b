#pragma once

class QDir;

/// From here on settings and data folder lie in this folder, with a copy of the user's settings
/// and logo, so that paper, margins and report stay those that the user has chosen. False when
/// these can't be copied. Comes before anything has read a setting.
bool moveIntoPrivateHome(const QDir &home);
