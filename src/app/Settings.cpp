// config.dat: this program's settings in two sections, <common> and
// <hullwright>. Lines outside both sections belong to other programs and are
// kept, behind ours, when the file is written again.
#include "app/DCreateShip.h"
#include "app/GameDirSearch.h"

#include "app/core/ProgramDir.h"

#include <QFile>
#include <QFileInfo>
#include <QTextStream>

namespace {

bool IsSectionStart(const QString& line)
{
    return line == "<hullwright>" || line == "<common>";
}

bool IsSectionEnd(const QString& line)
{
    return line == "</hullwright>" || line == "</common>";
}

QString ConfigPath()
{
    return ProgramPath("/config.dat");
}

} // namespace

void DCreateShip::LoadSettings()
{
    ReadTextAtStart = true;
    ReadTextTableAtStart = true;

    QFile file(ConfigPath());
    if (file.open(QIODevice::ReadOnly | QIODevice::Text)) {
        // Keys that take everything behind the first blank.
        const std::pair<const char*, QString*> textKeys[] = {
            {"ModDir:", &ModDir},         {"ModelDir:", &ModelDir},     {"SaveDir:", &SaveDir},
            {"TypeDir:", &TypeDir},       {"TextDir:", &TextDir},       {"X2bcDir:", &X2bcDir},
            {"ScriptDir:", &ScriptDir},   {"DefAuthor:", &DefAuthor},   {"DefWeb:", &DefWeb},
            {"DefMirror1:", &DefMirror1}, {"DefMirror2:", &DefMirror2},
        };
        QTextStream stream(&file);
        bool inSection = false;
        while (!stream.atEnd()) {
            const QString line = stream.readLine();
            if (!inSection) {
                inSection = IsSectionStart(line);
                continue;
            }
            if (IsSectionEnd(line)) {
                inSection = false;
                continue;
            }
            const int blank = line.indexOf(' ');
            const QString key = blank < 0 ? line : line.left(blank);
            const QString rest = blank < 0 ? QString() : line.mid(blank + 1);
            const QString word = line.section(' ', 1, 1);

            if (key == "Dir:") {
                if (HoldsGameExecutable(rest))
                    GameDirs.append(rest);
            } else if (key == "BaseLang:") {
                BaseLang = word;
            } else if (key == "Language:") {
                Language = word;
            } else if (line == "X2BC") {
                X2BC = true;
            } else if (line == "Prefix") {
                Prefix = true;
            } else if (line == "NoText") {
                ReadTextAtStart = false;
            } else if (line == "NoTextT") {
                ReadTextTableAtStart = false;
            } else if (line == "SaveWeb") {
                SaveWeb = true;
            } else {
                for (const auto& [name, target] : textKeys)
                    if (key == QLatin1String(name))
                        *target = rest;
            }
        }
    }
    if (Language.isEmpty())
        Language = "English";
}

void DCreateShip::SaveSettings()
{
    QStringList oldLines;
    {
        QFile old(ConfigPath());
        if (old.open(QIODevice::ReadOnly | QIODevice::Text)) {
            QTextStream stream(&old);
            while (!stream.atEnd())
                oldLines.append(stream.readLine());
        }
    }

    QFile file(ConfigPath());
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate | QIODevice::Text))
        return;
    QTextStream out(&file);
    out << "<common>\n";
    out << "Version: 2\n";
    out << "Language: " << Language << "\n";
    for (const QString& dir : GameDirs)
        out << "Dir: " << dir << "\n";
    out << "</common>\n";
    out << "<hullwright>\n";
    const std::pair<const char*, const QString*> textKeys[] = {
        {"ModDir: ", &ModDir},   {"BaseLang: ", &BaseLang},     {"ModelDir: ", &ModelDir},
        {"SaveDir: ", &SaveDir}, {"TypeDir: ", &TypeDir},       {"TextDir: ", &TextDir},
        {"X2bcDir: ", &X2bcDir}, {"ScriptDir: ", &ScriptDir},   {"DefAuthor: ", &DefAuthor},
        {"DefWeb: ", &DefWeb},   {"DefMirror1: ", &DefMirror1}, {"DefMirror2: ", &DefMirror2},
    };
    for (const auto& [key, value] : textKeys)
        out << key << *value << "\n";
    const std::pair<const char*, bool> flags[] = {
        {"X2BC", X2BC},
        {"Prefix", Prefix},
        {"NoText", !ReadTextAtStart},
        {"NoTextT", !ReadTextTableAtStart},
        {"SaveWeb", SaveWeb},
    };
    for (const auto& [flag, set] : flags)
        if (set)
            out << flag << "\n";
    out << "</hullwright>\n";

    bool skipping = false;
    for (const QString& line : oldLines) {
        if (!skipping) {
            if (IsSectionStart(line))
                skipping = true;
            else
                out << line << "\n";
        } else if (IsSectionEnd(line)) {
            skipping = false;
        }
    }
}
