#pragma once

/// What every web view of the program shares: the font that stands in for Arial, and no
/// plugins, stores, windows or local files for scripts. Needs the application; may be repeated.
void applyWebSettings();
