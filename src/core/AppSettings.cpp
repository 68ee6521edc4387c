#include "core/AppSettings.h"

#include <QFile>
#include <QSaveFile>
#include <QTextStream>

#include <utility>

namespace {

bool IsSectionStart(const QString& line)
{
    return line == QLatin1String("<hullwright>") || line == QLatin1String("<common>");
}

bool IsSectionEnd(const QString& line)
{
    return line == QLatin1String("</hullwright>") || line == QLatin1String("</common>");
}

// The keys whose value is everything behind the first blank, in the order
// they are written.
const std::pair<const char*, QString AppSettings::*> TextKeys[] = {
    {"ModDir:", &AppSettings::ModDir},         {"BaseLang:", &AppSettings::BaseLang},
    {"ModelDir:", &AppSettings::ModelDir},     {"SaveDir:", &AppSettings::SaveDir},
    {"TypeDir:", &AppSettings::TypeDir},       {"TextDir:", &AppSettings::TextDir},
    {"X2bcDir:", &AppSettings::X2bcDir},       {"ScriptDir:", &AppSettings::ScriptDir},
    {"DefAuthor:", &AppSettings::DefAuthor},   {"DefWeb:", &AppSettings::DefWeb},
    {"DefMirror1:", &AppSettings::DefMirror1}, {"DefMirror2:", &AppSettings::DefMirror2},
};

// Flag lines: the name and whether the line stands when the setting is on.
struct FlagKey
{
    const char* name;
    bool AppSettings::*field;
    bool writtenWhen;
};
const FlagKey FlagKeys[] = {
    {"X2BC", &AppSettings::X2BC, true},
    {"Prefix", &AppSettings::Prefix, true},
    {"NoText", &AppSettings::ReadTextAtStart, false},
    {"NoTextT", &AppSettings::ReadTextTableAtStart, false},
    {"SaveWeb", &AppSettings::SaveWeb, true},
};

void ReadSettingLine(AppSettings& settings, const QString& line, bool (*holdsGame)(const QString&))
{
    const qsizetype blank = line.indexOf(' ');
    const QString key = blank < 0 ? line : line.left(blank);
    const QString rest = blank < 0 ? QString() : line.mid(blank + 1);

    for (const FlagKey& flag : FlagKeys)
        if (line == QLatin1String(flag.name)) {
            settings.*flag.field = flag.writtenWhen;
            return;
        }
    if (key == QLatin1String("Dir:")) {
        if (holdsGame(rest))
            settings.GameDirs.append(rest);
    } else if (key == QLatin1String("Language:")) {
        settings.Language = line.section(' ', 1, 1);
    } else if (key == QLatin1String("BaseLang:")) {
        settings.BaseLang = line.section(' ', 1, 1);
    } else {
        for (const auto& [name, field] : TextKeys)
            if (key == QLatin1String(name))
                settings.*field = rest;
    }
}

QStringList ReadLines(const QString& path)
{
    QStringList lines;
    QFile file(path);
    if (file.open(QIODevice::ReadOnly | QIODevice::Text)) {
        QTextStream stream(&file);
        while (!stream.atEnd())
            lines.append(stream.readLine());
    }
    return lines;
}

} // namespace

AppSettings ReadSettingsFile(const QString& path, bool (*holdsGame)(const QString& dir))
{
    AppSettings settings;
    bool inSection = false;
    for (const QString& line : ReadLines(path)) {
        if (!inSection)
            inSection = IsSectionStart(line);
        else if (IsSectionEnd(line))
            inSection = false;
        else
            ReadSettingLine(settings, line, holdsGame);
    }
    if (settings.Language.isEmpty())
        settings.Language = QStringLiteral("English");
    return settings;
}

bool WriteSettingsFile(const AppSettings& settings, const QString& path)
{
    const QStringList oldLines = ReadLines(path);
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Text))
        return false;
    QTextStream out(&file);
    out << "<common>\nVersion: 2\nLanguage: " << settings.Language << "\n";
    for (const QString& dir : settings.GameDirs)
        out << "Dir: " << dir << "\n";
    out << "</common>\n<hullwright>\n";
    for (const auto& [name, field] : TextKeys)
        out << name << " " << settings.*field << "\n";
    for (const FlagKey& flag : FlagKeys)
        if (settings.*flag.field == flag.writtenWhen)
            out << flag.name << "\n";
    out << "</hullwright>\n";

    // The other programs' lines, without the old copies of our sections.
    bool skipping = false;
    for (const QString& line : oldLines) {
        if (skipping)
            skipping = !IsSectionEnd(line);
        else if (IsSectionStart(line))
            skipping = true;
        else
            out << line << "\n";
    }
    out.flush();
    return out.status() == QTextStream::Ok && file.commit();
}

void PutGameDirFirst(QStringList& dirs, const QString& dir)
{
    dirs.removeAll(dir);
    dirs.prepend(dir);
    while (dirs.size() > AppSettings::MaxGameDirs)
        dirs.removeLast();
}
