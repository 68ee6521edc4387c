#include "deploy/Extraction.h"

#include "gamedata/CockpitTable.h"
#include "gamedata/GroupedTableWriter.h"
#include "gamedata/ShipLine.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QTemporaryDir>

#include <algorithm>
#include <cstdio>

namespace {

// A table file to write below "types" in the work directory.
struct TableFile
{
    QString name; // e.g. "TShips_Dart.txt"
    QString text;
};

QList<TableFile> TablesOf(const ShipPackage& record, const QString& suffix)
{
    QList<TableFile> tables;
    QString shipLine = record.Data; // the record keeps the line as it was read
    if (!record.Cockpits.isEmpty()) {
        const CockpitTableOutput cockpits =
            BuildCockpitTable(record.Name, record.Author, record.Cockpits, shipLine);
        tables.append({"TCockpits" + suffix + ".txt", cockpits.text});
        shipLine = ReplaceCockpitIds(shipLine, record.Cockpits);
    }
    tables.append({"TShips" + suffix + ".txt", ShipTableText(record.Name, record.Author, shipLine)});
    if (!record.Dummies.isEmpty())
        tables.append({"Dummies" + suffix + ".txt",
                       DummiesTableText(record.Name, record.Author, GroupDummyRows(record.Dummies))});
    if (!record.Components.isEmpty())
        tables.append(
            {"Components" + suffix + ".txt",
             ComponentsTableText(record.Name, record.Author, GroupComponentRows(record.Components))});
    return tables;
}

// Every file below `root`, relative to it, sorted.
QStringList FilesBelow(const QString& root)
{
    QStringList files;
    QDirIterator it(root, QDir::Files | QDir::Hidden | QDir::System, QDirIterator::Subdirectories);
    while (it.hasNext())
        files.append(QDir(root).relativeFilePath(it.next()));
    files.sort();
    return files;
}

bool IsInside(const QString& canonicalPath, const QString& canonicalRoot)
{
    return canonicalPath == canonicalRoot || canonicalPath.startsWith(canonicalRoot + "/");
}

// Whether `relative` can be moved to below `root` without leaving it: each
// directory of the path that exists is a directory that resolves inside the
// root, and the destination itself is no directory. Changes nothing.
bool DestinationStaysInside(const QString& root, const QString& relative)
{
    const QStringList parts = relative.split('/', Qt::SkipEmptyParts);
    QString path = root;
    for (qsizetype i = 0; i + 1 < parts.size(); ++i) {
        path += "/" + parts[i];
        const QFileInfo directory(path);
        if (directory.isSymLink() && !directory.exists())
            return false; // a dangling link: where it would lead is anyone's guess
        if (!directory.exists())
            return true; // the rest of the path is made inside `path`
        if (!directory.isDir() || !IsInside(directory.canonicalFilePath(), root))
            return false;
    }
    return !QFileInfo(root + "/" + relative).isDir();
}

// Moves a file over whatever stands at `to`: on one file system the rename
// replaces the old file in one step.
bool MoveReplacing(const QString& from, const QString& to)
{
    return std::rename(QFile::encodeName(from).constData(), QFile::encodeName(to).constData()) == 0;
}

// Moves every file of the work directory to the same place below the target.
ExtractionResult MoveIn(const QString& work, const QString& target, ExtractionResult result)
{
    const QStringList files = FilesBelow(work);
    for (const QString& relative : files) {
        if (!DestinationStaysInside(target, relative)) {
            result.status = ExtractionStatus::WriteFailed;
            result.entry = relative;
            return result; // checked before anything moves: the target is unchanged
        }
    }
    for (const QString& relative : files) {
        const QString destination = target + "/" + relative;
        if (!QDir().mkpath(QFileInfo(destination).path()) ||
            !MoveReplacing(work + "/" + relative, destination)) {
            result.status = ExtractionStatus::WriteFailed;
            result.entry = relative;
            return result;
        }
        result.written.append(relative);
    }
    result.status = ExtractionStatus::Extracted;
    return result;
}

} // namespace

QString ExtractionTableSuffix(const QString& shipName, bool prefix)
{
    if (!prefix)
        return {};
    QString suffix = "_" + shipName;
    suffix.remove(QRegularExpression(QStringLiteral("[ /\\\\]")));
    return suffix;
}

QString ReplaceCockpitIds(const QString& shipLine, const QStringList& cockpits)
{
    struct Id
    {
        QString text;
        int row;
    };
    QList<Id> ids;
    for (qsizetype i = 0; i < cockpits.size(); ++i) {
        const QString id = ShipLineId(cockpits[i]);
        if (!id.isEmpty())
            ids.append({id, int(i) + 1});
    }
    // Longest first; among equal ids the first cockpit's row, as a replacement
    // one id after the other would give.
    std::stable_sort(ids.begin(), ids.end(),
                     [](const Id& a, const Id& b) { return a.text.size() > b.text.size(); });

    QString line;
    line.reserve(shipLine.size());
    const QStringView rest(shipLine);
    for (qsizetype at = 0; at < shipLine.size();) {
        const auto match = std::find_if(ids.cbegin(), ids.cend(),
                                        [&](const Id& id) { return rest.sliced(at).startsWith(id.text); });
        if (match == ids.cend()) {
            line += shipLine[at++];
            continue;
        }
        line += QString::number(match->row);
        at += match->text.size();
    }
    return line;
}

QString ShipTableText(const QString& shipName, const QString& author, const QString& shipLine)
{
    return "// TShips.txt created by Hullwright for " + shipName + " by " + author + "\n" + "48;1;\n" +
           shipLine + (shipLine.endsWith(u';') ? "\n" : ";\n");
}

ExtractionResult ExtractPackage(const QString& packagePath, const QString& target, bool prefix)
{
    ExtractionResult result;
    const QFileInfo targetInfo(target);
    if (!targetInfo.isDir()) {
        result.status = ExtractionStatus::TargetMissing;
        return result;
    }
    const QString root = targetInfo.canonicalFilePath();
    // Removed with everything left in it when the extraction ends.
    QTemporaryDir work(root + "/.hullwright-extract-XXXXXX");
    if (!work.isValid()) {
        result.status = ExtractionStatus::WriteFailed;
        return result;
    }

    ShipPackage record;
    QFile file(packagePath);
    result.read = ReadPackage(file, work.path(), record, "Scripts", false);
    if (result.read.failure == ReadFailure::CannotWrite) {
        result.status = ExtractionStatus::WriteFailed; // the target's disk refused, not the package
        result.entry = result.read.entry;
        return result;
    }
    if (!result.read.ok) {
        result.status = ExtractionStatus::ReadFailed;
        return result;
    }

    const QString types = work.path() + "/types";
    QDir().mkpath(types);
    for (const TableFile& table : TablesOf(record, ExtractionTableSuffix(record.Name, prefix))) {
        if (!WriteTableFile(types + "/" + table.name, table.text)) {
            result.status = ExtractionStatus::WriteFailed;
            result.entry = "types/" + table.name;
            return result;
        }
    }
    return MoveIn(work.path(), root, result);
}

QString ExtractionFailureText(const ExtractionResult& result, const QString& packagePath,
                              const QString& target)
{
    switch (result.status) {
    case ExtractionStatus::Extracted:
        return {};
    case ExtractionStatus::TargetMissing:
        return QStringLiteral("%1: no such directory").arg(target);
    case ExtractionStatus::ReadFailed:
        return QStringLiteral("%1: %2; nothing was written")
            .arg(packagePath, PackageReadFailureText(result.read));
    case ExtractionStatus::WriteFailed:
        break;
    }
    if (result.entry.isEmpty())
        return QStringLiteral("%1: cannot write into the directory; nothing was written").arg(target);
    const QString where = QStringLiteral("%1: cannot write %2").arg(target, result.entry);
    if (result.written.isEmpty())
        return where + QStringLiteral("; nothing was written");
    return where + QStringLiteral("; the extraction is incomplete (%1 files were moved in)")
                       .arg(result.written.size());
}
