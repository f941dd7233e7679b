#pragma once

/// The program's version, as the project() of CMakeLists.txt has it.
extern const double ProgramVersion;
extern const char ProgramVersionText[];
