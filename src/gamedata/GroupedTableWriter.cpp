#include "gamedata/GroupedTableWriter.h"

namespace {

template <typename List, typename Key> auto& FindOrAppend(List& list, const Key& key, auto keyOf)
{
    for (auto& item : list)
        if (keyOf(item) == key)
            return item;
    list.append({key, {}});
    return list.last();
}

QString CountLine(const QString& name, qsizetype count)
{
    return name + ";" + QString::number(count) + ";\n";
}

} // namespace

QList<DummySection> GroupDummyRows(const QList<DummyEntry>& rows)
{
    QList<DummySection> sections;
    for (const DummyEntry& row : rows)
        FindOrAppend(sections, row.Section, [](const DummySection& s) {
            return s.Name;
        }).Lines.append(row.Data);
    return sections;
}

QList<ComponentSection> GroupComponentRows(const QList<ComponentEntry>& rows)
{
    QList<ComponentSection> sections;
    for (const ComponentEntry& row : rows) {
        ComponentSection& section =
            FindOrAppend(sections, row.Section, [](const ComponentSection& s) { return s.Name; });
        FindOrAppend(section.Groups, row.Id, [](const ComponentGroup& g) {
            return g.Id;
        }).Lines.append(row.Data);
    }
    return sections;
}

QString DummiesTableText(const QString& shipName, const QString& author, const QList<DummySection>& sections)
{
    QString text = "// Dummies.txt created by Hullwright for " + shipName + " by " + author + "\n";
    for (const DummySection& section : sections) {
        text += CountLine(section.Name, section.Lines.size());
        for (const QString& line : section.Lines)
            text += line + "\n";
        text += "\n";
    }
    return text;
}

QString ComponentsTableText(const QString& shipName, const QString& author,
                            const QList<ComponentSection>& sections)
{
    QString text = "// Components.txt created by Hullwright for " + shipName + " by " + author + "\n";
    for (const ComponentSection& section : sections) {
        text += CountLine(section.Name, section.Groups.size());
        for (const ComponentGroup& group : section.Groups) {
            text += CountLine(group.Id, group.Lines.size());
            for (const QString& line : group.Lines)
                text += line.endsWith(u';') ? line + "\n" : line + ";\n";
        }
        text += "\n";
    }
    return text;
}
