// The balance command: a ship of a TShips table valued against a balance
// profile, and what AutoBalance would write in each mode, as JSON, through
// the same model as the balance dialog. For modders who balance a whole mod
// from scripts.
//
//     hwtool balance PROFILE.xbp TABLE ID
//
// TABLE is a plain TShips table, a packed .pck or a catalog (.cat), whose
// types\TShips.pck is read. ID is the ship's id, the last field of its line
// that has text; the first line with that id is taken.
//
// Output:
//   { "Ship": id, "Profile": name, "ProfileFile": file name,
//     "Fits": whether Balance Ship would offer this profile for the ship,
//     "Average": the ship's average as loaded,
//     "Properties": { "Speed": { "Line": the ship's value, "Min", "Max",
//                                "Percent": shown percent }, ... eight ...,
//                     "Shields": { "Type", "Count", "Position", "Steps", "Percent" } },
//     "AutoBalance": { "Equal" | "Lowest" | "Highest":
//                      { "Average", "Steps", "Stop", "Line" } } }
// "Stop" is Balanced, AlreadyBalanced, NothingCanMove or StepLimit.
#include "Commands.h"

#include "balance/BalanceMath.h"
#include "balance/BalanceReport.h"
#include "balance/ShipTableFile.h"
#include "gamedata/ShipLine.h"

#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>

#include <algorithm>
#include <cstdio>

namespace {

qint64 Percent(double fraction)
{
    return BalanceMath::TruncToInt64(fraction * 100.0);
}

QJsonObject PropertiesJson(const BalanceProfile& profile, const BalanceReport& report, const QString& line)
{
    const BalanceModel limits(profile);
    QJsonObject properties;
    for (int index = 0; index < BalanceIndex::Count; ++index)
        properties.insert(QLatin1String(BalancePropertyName(index)),
                          QJsonObject{{"Line", qint64(report.lineValues[index])},
                                      {"Min", limits.Minimum(index)},
                                      {"Max", limits.Maximum(index)},
                                      {"Percent", Percent(report.fractions[index])}});
    properties.insert("Shields", QJsonObject{{"Type", ShipFieldInt(line, ShipLineField::ShieldType)},
                                             {"Count", ShipFieldInt(line, ShipLineField::ShieldCount)},
                                             {"Position", report.shieldPosition},
                                             {"Steps", limits.ShieldSteps()},
                                             {"Percent", Percent(report.shieldFraction)}});
    return properties;
}

QJsonObject AutoBalanceJson(const BalanceReport& report)
{
    QJsonObject modes;
    for (const BalanceModeResult& result : report.modes)
        modes.insert(QLatin1String(BalanceModeName(result.mode)),
                     QJsonObject{{"Average", result.run.average},
                                 {"Steps", result.run.steps},
                                 {"Stop", QLatin1String(BalanceStopName(result.run.stop))},
                                 {"Line", result.line}});
    return modes;
}

int Balance(const Invocation& call)
{
    const QString& profilePath = call.arguments[0];
    const QString& tablePath = call.arguments[1];
    const QString& id = call.arguments[2];

    const std::optional<BalanceProfile> profile = LoadProfile(profilePath);
    if (!profile)
        return Fail(call, QStringLiteral("%1: not a balance profile (it cannot be read, or it has no "
                                         "Profile: name or no Class: line)")
                              .arg(profilePath));
    QTemporaryDir work;
    if (!work.isValid())
        return Fail(call, QStringLiteral("cannot make a temporary directory"));
    const ShipTableRead read = ReadShipTable(tablePath, work.filePath(QStringLiteral("TShips.txt")));
    if (read.status == ShipTableStatus::NotInCatalog)
        return Fail(
            call,
            QStringLiteral("%1: the catalog holds no %2").arg(tablePath, QLatin1String(ShipTableEntry)));
    if (read.status != ShipTableStatus::Read)
        return Fail(call, QStringLiteral("%1: cannot open the table").arg(tablePath));

    const auto found = std::find_if(read.table.records.cbegin(), read.table.records.cend(),
                                    [&id](const QString& record) { return ShipLineId(record) == id; });
    if (found == read.table.records.cend())
        return Fail(call, QStringLiteral("%1: no ship has the id %2").arg(tablePath, id));
    const QString& line = *found;

    const BalanceReport report = ReportBalance(*profile, line);
    const QJsonObject json{{"Ship", id},
                           {"Profile", profile->Profile},
                           {"ProfileFile", profile->FileName},
                           {"Fits", report.fits},
                           {"Average", report.display.average},
                           {"Properties", PropertiesJson(*profile, report, line)},
                           {"AutoBalance", AutoBalanceJson(report)}};
    const QByteArray text = QJsonDocument(json).toJson(QJsonDocument::Indented);
    std::fwrite(text.constData(), 1, size_t(text.size()), stdout);
    return ExitSuccess;
}

const SubCommand kBalanceCommands[] = {
    {"balance",
     "PROFILE.xbp TABLE ID",
     "print a ship's value against a balance profile and what AutoBalance would write in each mode, as JSON",
     3,
     {},
     Balance},
};

} // namespace

std::span<const SubCommand> BalanceCommands()
{
    return kBalanceCommands;
}
