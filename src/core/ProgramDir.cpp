#include "core/ProgramDir.h"

#include <QCoreApplication>
#include <QDir>

QString ProgramDir()
{
    QString home = qEnvironmentVariable("HULLWRIGHT_HOME");
    if (home.isEmpty())
        home = QCoreApplication::applicationDirPath();
    home = QDir::fromNativeSeparators(home);
    while (home.size() > 1 && home.endsWith('/'))
        home.chop(1);
    return home;
}

QString ProgramPath(const QString& relative)
{
    return ProgramDir() + relative;
}
