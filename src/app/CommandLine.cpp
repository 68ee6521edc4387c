// The command line: joining raw tokens into option entries, and acting on them.
#include "app/DCreateShip.h"

#include "app/ExtractionFlow.h"
#include "app/WindowTexts.h"

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
        const qsizetype blank = entry.indexOf(' ');
        const QString option = (blank < 0 ? entry : entry.left(blank)).toLower();
        const QString value = blank < 0 ? QString() : entry.mid(blank + 1);
        if (option == "-x" || option == "-extract") {
            extractFile = value;
        } else if (option == "-d" || option == "-dir") {
            extractDir = value;
        } else if (option == "-e" || option == "-editmode") {
            m_editTarget = value;
            StartEditMode();
        }
    }

    // From the command line the extraction runs at once, not through a timer.
    if (!extractFile.isEmpty()) {
        if (extractDir.isEmpty())
            m_extraction->AskTarget(extractFile, true);
        else if (extractDir == "HERE")
            m_extraction->ExtractTo(extractFile, QFileInfo(extractFile).path(), true);
        else
            m_extraction->ExtractTo(extractFile, extractDir, true);
    }
    if (!openFile.isEmpty())
        OpenPackage(openFile);

    return extractFile.isEmpty() || !openFile.isEmpty() || !m_editTarget.isEmpty();
}

void DCreateShip::StartTextLoad()
{
    if (!m_settings.ReadTextAtStart)
        return;
    setEnabled(false);
    repaint();
    QMainWindow::statusBar()->showMessage(m_uiText[Txt::StatusReadingTexts] + "...");
    QTimer::singleShot(100, this, &DCreateShip::GetText);
}
