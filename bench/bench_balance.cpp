// AutoBalance over every ship of the corpus TShips, against a profile per
// class, through the path of hwtool balance: each ship is loaded into the
// balance model of its class's profile and balanced in each of the three
// modes, and each mode's line is written (ReportBalance).
//
//     bench_balance [--reps N] [--corpus DIR]
//
// The corpus table names its classes in field 5 as text, so the ships are
// grouped by that text and each group's profile is imported from the group
// itself, for every variation that occurs in it. The reference, measured in
// the same run, is the bare text work of the same output: each line cut into
// its fields and joined again three times. Prints ships per second, the ratio
// to the reference and the most steps any ship took in any mode. Ends with 1
// when a run stopped at its step bound, which must never happen.
#include "BenchTiming.h"
#include "balance/BalanceReport.h"
#include "balance/ProfileImport.h"
#include "gamedata/ShipLine.h"
#include "gamedata/TypesFile.h"

#include <QCoreApplication>
#include <QMap>
#include <QSet>

#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace {

struct ClassShips
{
    BalanceProfile profile;
    QStringList lines;
};

// One profile for each class text of field 5, from the ships of that class.
QList<ClassShips> GroupByClass(const QStringList& records, int* leftOut)
{
    QMap<QString, QStringList> groups;
    for (const QString& line : records)
        groups[ShipField(line, ShipLineField::ShipClass)].append(line);
    QList<ClassShips> classes;
    *leftOut = 0;
    for (auto it = groups.cbegin(); it != groups.cend(); ++it) {
        QSet<int> variations;
        for (const QString& line : it.value())
            variations.insert(ShipFieldInt(line, ShipLineField::Variation));
        // Every ship of the group is of the class its field 5 reads as.
        const int shipClass = ShipFieldInt(it.value().first(), ShipLineField::ShipClass);
        std::optional<BalanceProfile> profile = ImportProfileLimits(
            it.value(), shipClass, -1, QList<int>(variations.cbegin(), variations.cend()));
        if (!profile) { // dummies only
            *leftOut += int(it.value().size());
            continue;
        }
        profile->Profile = it.key();
        classes.append({*profile, it.value()});
    }
    return classes;
}

} // namespace

int main(int argc, char* argv[])
{
    QCoreApplication app(argc, argv);
    int reps = 5;
    QString corpus = QStringLiteral(HW_CORPUS_DIR);
    for (int i = 1; i + 1 < argc; i += 2) {
        if (std::strcmp(argv[i], "--reps") == 0)
            reps = std::max(1, std::atoi(argv[i + 1]));
        else if (std::strcmp(argv[i], "--corpus") == 0)
            corpus = QString::fromLocal8Bit(argv[i + 1]);
    }
    const TypesTable table = ReadTypesFile(corpus + "/x3tc/types/TShips.txt");
    if (table.records.isEmpty()) {
        std::printf("bench_balance: no corpus TShips below %s; nothing measured\n", qPrintable(corpus));
        return 0;
    }
    int leftOut = 0;
    const QList<ClassShips> classes = GroupByClass(table.records, &leftOut);
    qsizetype ships = 0;
    for (const ClassShips& group : classes)
        ships += group.lines.size();
    std::printf(
        "corpus TShips: %lld lines, %lld classes with a profile, %lld ships balanced, %d in classes of "
        "dummies only\n",
        static_cast<long long>(table.records.size()), static_cast<long long>(classes.size()),
        static_cast<long long>(ships), leftOut);

    int worstSteps = 0;
    QString worstShip;
    const char* worstMode = "";
    int limitStops = 0;
    QMap<QString, int> stops;
    const double ours = BestSeconds(reps, [&] {
        worstSteps = 0;
        limitStops = 0;
        stops.clear();
        for (const ClassShips& group : classes)
            for (const QString& line : group.lines) {
                const BalanceReport report = ReportBalance(group.profile, line);
                for (const BalanceModeResult& mode : report.modes) {
                    ++stops[QLatin1String(BalanceStopName(mode.run.stop))];
                    limitStops += mode.run.stop == BalanceStop::StepLimit;
                    if (mode.run.steps > worstSteps) {
                        worstSteps = mode.run.steps;
                        worstShip = ShipLineId(line);
                        worstMode = BalanceModeName(mode.mode);
                    }
                }
            }
        return true;
    });
    qsizetype checksum = 0;
    const double reference = BestSeconds(reps, [&] {
        for (const ClassShips& group : classes)
            for (const QString& line : group.lines)
                for (int mode = 0; mode < 3; ++mode)
                    checksum += line.split(u';').join(u';').size();
        return checksum > 0;
    });
    if (ours <= 0 || reference <= 0) {
        std::fprintf(stderr, "bench_balance: a run failed\n");
        return 1;
    }
    std::printf(
        "balance, 3 modes: %.4f s, %.0f ships/s   reference (cut and join each line 3 times): %.4f s   "
        "ratio %.2f\n",
        ours, double(ships) / ours, reference, ours / reference);
    std::printf("worst steps: %d (%s, %s)   stops:", worstSteps, qPrintable(worstShip), worstMode);
    for (auto it = stops.cbegin(); it != stops.cend(); ++it)
        std::printf(" %s %d", qPrintable(it.key()), it.value());
    std::printf("\n");
    std::fflush(stdout);
    return limitStops == 0 ? 0 : 1;
}
