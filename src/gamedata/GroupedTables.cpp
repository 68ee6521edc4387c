#include "gamedata/GroupedTables.h"

#include "gamedata/ShipLine.h"

#include <QFile>
#include <QTextStream>

namespace {

QString ReadText(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text))
        return {};
    return QTextStream(&file).readAll();
}

// The lines of the text that are not skipped, in order.
QStringList TableLines(const QString& text)
{
    QStringList lines;
    for (const QString& line : text.split('\n')) {
        QString cut = line;
        if (cut.endsWith('\r'))
            cut.chop(1);
        if (!IsSkippedGroupedLine(cut))
            lines.append(cut);
    }
    return lines;
}

} // namespace

QStringList DummySectionNames()
{
    return QStringLiteral("SDTYPE_ANIMATED:SDTYPE_DOCK:SDTYPE_DOORWAY:SDTYPE_GUN:SDTYPE_CONNECTION")
        .split(':');
}

bool IsSkippedGroupedLine(const QString& line)
{
    if (line.startsWith(QLatin1String("//")))
        return true;
    return QString(line).remove(' ').isEmpty();
}

QList<DummySection> ParseDummies(const QString& text)
{
    QList<DummySection> sections;
    int entriesLeft = 0;
    for (const QString& line : TableLines(text)) {
        if (entriesLeft <= 0) {
            sections.append({ShipField(line, 0), {}});
            entriesLeft = ReadInt(ShipField(line, 1));
        } else {
            --entriesLeft;
            sections.last().Lines.append(line);
        }
    }
    return sections;
}

QList<ComponentSection> ParseComponents(const QString& text)
{
    QList<ComponentSection> sections;
    int groupsLeft = 0;
    int linesLeft = 0;
    for (const QString& line : TableLines(text)) {
        if (linesLeft > 0) {
            --linesLeft;
            sections.last().Groups.last().Lines.append(line);
        } else if (groupsLeft <= 0) {
            sections.append({ShipField(line, 0), {}});
            groupsLeft = ReadInt(ShipField(line, 1));
        } else {
            --groupsLeft;
            sections.last().Groups.append({ShipField(line, 0), {}});
            linesLeft = ReadInt(ShipField(line, 1));
        }
    }
    return sections;
}

QList<DummySection> ReadDummiesFile(const QString& path)
{
    return ParseDummies(ReadText(path));
}

QList<ComponentSection> ReadComponentsFile(const QString& path)
{
    return ParseComponents(ReadText(path));
}

QStringList GunDummyLines(const QList<DummySection>& sections)
{
    QStringList lines;
    for (const DummySection& section : sections)
        if (section.Name == QLatin1String(GunDummySection))
            lines += section.Lines;
    return lines;
}
