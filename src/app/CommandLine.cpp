// The command line: joining raw tokens into option entries, and acting on them.
#include "app/DCreateShip.h"

#include <QFileInfo>
#include <QStatusBar>
#include <QTimer>

QStringList SplitArguments(const QStringList& tokens)
{
    QStringList entries;
    QString current;
    auto close = [&] {
        if (!current.isEmpty())
            entries.append(QString(current).remove('"'));
        current.clear();
    };
    for (const QString& token : tokens) {
        const QString unquoted = QString(token).remove('"');
        if (unquoted.startsWith('-'))
            close();
        if (current.isEmpty())
            current = token;
        else
            current += " " + token;
    }
    close();
    return entries;
}

QStringList SplitArguments(int argc, char** argv)
{
    QStringList tokens;
    for (int i = 1; i < argc; ++i)
        tokens.append(QString::fromLocal8Bit(argv[i]));
    return SplitArguments(tokens);
}

bool DCreateShip::ParseCommandLine(const QStringList& entries)
{
    QString extractFile;
    QString extractDir;
    QString openFile;
    for (const QString& entry : entries) {
        if (!entry.startsWith('-')) {
            openFile = entry;
            continue;
        }
        const int blank = entry.indexOf(' ');
        const QString option = (blank < 0 ? entry : entry.left(blank)).toLower();
        const QString value = blank < 0 ? QString() : entry.mid(blank + 1);
        if (option == "-x" || option == "-extract") {
            extractFile = value;
        } else if (option == "-d" || option == "-dir") {
            extractDir = value;
        } else if (option == "-e" || option == "-editmode") {
            EditTarget = value;
            StartEditMode();
        }
    }

    if (!extractFile.isEmpty()) {
        if (extractDir.isEmpty())
            AskExtractTarget(extractFile, true);
        else if (extractDir == "HERE")
            ExtractTo(extractFile, QFileInfo(extractFile).path(), true);
        else
            ExtractTo(extractFile, extractDir, true);
    }
    if (!openFile.isEmpty())
        OpenPackage(openFile);

    return extractFile.isEmpty() || !openFile.isEmpty() || !EditTarget.isEmpty();
}

void DCreateShip::StartTextLoad()
{
    if (!ReadTextAtStart)
        return;
    setEnabled(false);
    repaint();
    QMainWindow::statusBar()->showMessage(UiText[350] + "...");
    QTimer::singleShot(100, this, &DCreateShip::GetText);
}

void DCreateShip::Slot_ExtractShip()
{
    const QString path = prompter().openFile(this, UiText[195], SaveDir, UiText[65] + " (*.xsp)");
    if (path.isEmpty())
        return;
    AskExtractTarget(path, false);
}

void DCreateShip::AskExtractTarget(const QString& package, bool quiet)
{
    const QString directory = prompter().directory(this, UiText[194], QFileInfo(package).path());
    if (directory.isEmpty())
        return;
    ExtractTo(package, directory, quiet);
}

void DCreateShip::ExtractTo(const QString& package, const QString& directory, bool quiet)
{
    ExtractSource = package;
    ExtractTarget = directory;
    if (!QFileInfo(directory).isDir()) {
        prompter().warning(this, UiText[199], UiText[199] + ":\n" + directory, {UiText[60]});
        return;
    }
    if (quiet) {
        Slot_StartExtract();
        return;
    }
    SetBusy(false);
    repaint();
    QMainWindow::statusBar()->showMessage(UiText[198] + " " + package + "...");
    QTimer::singleShot(100, this, &DCreateShip::Slot_StartExtract);
}
