#pragma once

#include <QString>

// The program directory: where config.dat, hw_languages.xml, data/, Icons/,
// Profiles/, log/, temp/ and ShipInstall/ lie. It is the executable's
// directory unless the environment variable HULLWRIGHT_HOME names another.
// The result has forward slashes and no trailing slash.
QString ProgramDir();

// A path below the program directory; `relative` starts with "/".
QString ProgramPath(const QString& relative);
