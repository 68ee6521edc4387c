// Timing of the import wizard on a large mod, against listing its catalog
// once, measured in the same run.
//
//     bench_wizard [--dir DIR] [--reps N]
//
// A mod catalog of 20,000 entries is generated below DIR (default /tmp): 400
// ships, each with a scene of 20 bodies, a cockpit scene, a turret cockpit
// with its scene, models, a scene that a dummy row names, textures that the
// hull's materials name, and fillers; tables, a language page. Stored as the
// game stores them (tables, pages, scenes and models packed).
//
// "wizard" is the time from choosing a ship on the first page to the last
// page filled: leaving the ship page (the ship's parts are worked out), the
// dummy page, the models page (the dummies followed), the cockpit and
// component pages, the textures page (the models scanned) and the texts page
// (the mod's language pages read), with every list shown. Each run takes
// another ship. The reference is GameFileList of the catalog. Each time is
// the best of N runs; the target is at most 1 second for the wizard.
#include "BenchCatalog.h"
#include "BenchTiming.h"
#include "catfs/CatDriver.h"
#include "catfs/transfer/GameFile.h"
#include "forms/Prompter.h"
#include "language/UiTexts.h"
#include "wizard/DImportWizard.h"
#include "wizard/ImportShipPage.h"

#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace {

constexpr int kEntries = 20000;
constexpr int kShips = 400;
constexpr int kBodies = 20;
constexpr int kTextures = 20;
constexpr double kTargetSeconds = 1.0;

// `plain` as a packed file: the lead byte and the scrambled gzip stream.
QByteArray Packed(const QByteArray& plain)
{
    GzipWriter writer;
    uint8_t lead = 0;
    if (PckPack(reinterpret_cast<const uint8_t*>(plain.constData()), uint32_t(plain.size()), &writer, 0,
                &lead) != CatErrNone)
        return {};
    return QByteArray(1, char(lead)) +
           QByteArray(reinterpret_cast<const char*>(writer.output.data()), qsizetype(writer.output.size()));
}

QByteArray Scene(const QStringList& bodies)
{
    QByteArray text = "// generated\nVER: 6;\n\n";
    for (int i = 0; i < bodies.size(); ++i)
        text += "P " + QByteArray::number(i) + "; B " + bodies[i].toUtf8() + "; N B" + QByteArray::number(i) +
                "; b\n{ 0x2002; 0; 0; " + QByteArray::number(i * 100) +
                "; 0.0; 0.0; 0.0; 0.0; -1; 1; } // 0\n\n";
    return text;
}

QByteArray Model(const QStringList& textures)
{
    QByteArray text = "// generated model\n";
    for (int i = 0; i < textures.size(); ++i)
        text += "MATERIAL6: " + QByteArray::number(i + 1) + "; 0x2000000; 23; tex; 1; " +
                textures[i].toUtf8() + "; 0;\n";
    return text + "1000;\n-100; -100; -100;\n100; 100; 100;\n-1; -1; -1;\n1; 0; 1; 1; 0;\n-99;\n";
}

// Ship i's line: its scenes, turret slot 1 on cockpit row i + 1, one gun
// group of two entries on its part 1, its id.
QString ShipLine(int i)
{
    QStringList f(75, "0");
    f[6] = QString::number(100000 + 2 * i);
    f[16] = QString("ships\\bench\\s%1_scene").arg(i);
    f[17] = QString("cockpits\\bench\\s%1_cp").arg(i);
    f[31] = QString::number(i + 1);
    f[32] = "1";
    f[45] = QString::number(1 + i % 6);
    f[54] = "1"; // one gun group, no cockpit blocks
    f[58] = "1";
    f[61] = QString("ships\\bench\\s%1_part1").arg(i);
    f[63] = QString("weapons\\bench\\s%1_barrel").arg(i);
    f[74] = QString("SS_SH_BENCH_%1").arg(i);
    return f.join(';') + ';';
}

bool MakeMod(const QString& catalogPath)
{
    CatalogWriter catalog;
    QStringList ships, cockpits, dummies, components;
    QByteArray page = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<language id=\"44\">\n<page id=\"17\">\n";
    cockpits.append("0;10;20;0;0;0;0;0;0;45;0;0;0;0;0;-100000;0;0;SS_COCKPIT_BENCH_NONE;");
    for (int i = 0; i < kShips; ++i) {
        const QString ship = QString("s%1").arg(i);
        QStringList bodies;
        for (int b = 0; b < kBodies; ++b)
            bodies.append(QString("ships\\bench\\%1_part%2").arg(ship).arg(b));
        QStringList textures;
        for (int t = 0; t < kTextures; ++t)
            textures.append(QString("%1_tex%2.dds").arg(ship).arg(t));

        catalog.add("objects\\ships\\bench\\" + ship + "_scene.pbd", Packed(Scene(bodies)));
        catalog.add("objects\\cockpits\\bench\\" + ship + "_cp.pbd",
                    Packed(Scene({"cockpits\\bench\\" + ship + "_seat"})));
        catalog.add("objects\\cockpits\\bench\\" + ship + "_turret.pbd",
                    Packed(Scene({"cockpits\\bench\\" + ship + "_gunner"})));
        catalog.add("objects\\ships\\bench\\" + ship + "_nested.pbd",
                    Packed(Scene({"ships\\bench\\" + ship + "_dish"})));
        for (int b = 0; b < kBodies; ++b)
            catalog.add("objects\\ships\\bench\\" + ship + QString("_part%1.pbd").arg(b),
                        Packed(Model(b == 0 ? textures : QStringList())));
        for (const QString& model :
             {"ships\\bench\\" + ship + "_dish", "cockpits\\bench\\" + ship + "_seat",
              "cockpits\\bench\\" + ship + "_gunner", "weapons\\bench\\" + ship + "_barrel"})
            catalog.add("objects\\" + model + ".pbd", Packed(Model({})));
        for (const QString& texture : textures)
            catalog.add("dds\\bench\\" + texture, "texture " + texture.toUtf8());

        ships.append(ShipLine(i));
        cockpits.append(QString("0;11;20;0;0;0;0;cockpits\\bench\\%1_turret;7;90;0;0;0;0;0;-100000;0;0;"
                                "SS_COCKPIT_BENCH_%2;")
                            .arg(ship)
                            .arg(i));
        dummies.append(QString("ships\\bench\\%1_part2;1;0;360;1;ships\\bench\\%1_nested;").arg(ship));
        components.append(QString("ships\\bench\\%1_part1;1;\nweapons\\bench\\%1_barrel;0;0;0;").arg(ship));
        page += " <t id=\"" + QByteArray::number(100000 + 2 * i) + "\">Bench " + ship.toUtf8() +
                "</t>\n <t id=\"" + QByteArray::number(100001 + 2 * i) + "\">A generated ship.</t>\n";
    }
    const int tables = 5;
    for (int n = 0; catalog.count() < kEntries - tables; ++n)
        catalog.add(QString("objects\\filler\\f%1.pbd").arg(n), Packed("filler " + QByteArray::number(n)));

    auto table = [](const char* head, const QStringList& lines) {
        return Packed(QByteArray(head) + QByteArray::number(lines.size()) + ";\n" +
                      lines.join('\n').toUtf8() + '\n');
    };
    catalog.add("types\\TShips.pck", table("48;", ships));
    catalog.add("types\\TCockpits.pck", table("47;", cockpits));
    catalog.add("types\\Dummies.pck", Packed("SDTYPE_ANIMATED;" + QByteArray::number(dummies.size()) + ";\n" +
                                             dummies.join('\n').toUtf8()));
    catalog.add("types\\Components.pck", Packed("SCTYPE_LASER;" + QByteArray::number(components.size()) +
                                                ";\n" + components.join('\n').toUtf8()));
    catalog.add("t\\449999.pck", Packed(page + "</page>\n</language>\n"));
    return catalog.write(catalogPath);
}

// Answers every question with its first button.
class YesPrompter : public Prompter
{
public:
    QString openFile(QWidget*, const QString&, const QString&, const QString&) override { return {}; }
    QStringList openFiles(QWidget*, const QString&, const QString&, const QString&) override { return {}; }
    QString saveFile(QWidget*, const QString&, const QString&, const QString&) override { return {}; }
    QString directory(QWidget*, const QString&, const QString&) override { return {}; }
    std::optional<QString> text(QWidget*, const QString&, const QString&, const QString&) override
    {
        return {};
    }
    std::optional<QString> item(QWidget*, const QString&, const QString&, const QStringList&, int,
                                bool) override
    {
        return {};
    }
    int message(MessageKind, QWidget*, const QString&, const QString&, const QStringList&) override
    {
        return 0;
    }
};

// Chooses ship `ship` on the first page and goes to the last; true when
// every page was filled as expected.
bool WalkShip(DImportWizard& wizard, int ship)
{
    while (wizard.currentId() != DImportWizard::ShipPage)
        wizard.back();
    if (!wizard.ShipList()->SelectShip(QString("SS_SH_BENCH_%1").arg(ship)))
        return false;
    while (wizard.currentId() != DImportWizard::TextPage)
        wizard.next();
    const ImportSession& session = wizard.Session();
    // 20 parts, the barrel, the nested scene and its dish, the cockpit's seat,
    // the turret's scene and gunner; the hull's textures; the name.
    return session.Models().Chosen().size() == kBodies + 6 &&
           session.Textures().Chosen().size() == kTextures && session.Cockpits().Chosen().size() == 1 &&
           session.Texts().size() == 1 && session.NotFound().isEmpty();
}

} // namespace

int main(int argc, char* argv[])
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QString base = QDir::tempPath();
    int reps = 5;
    for (int i = 1; i + 1 < argc; i += 2) {
        if (std::strcmp(argv[i], "--dir") == 0)
            base = QString::fromLocal8Bit(argv[i + 1]);
        else if (std::strcmp(argv[i], "--reps") == 0)
            reps = std::max(1, std::atoi(argv[i + 1]));
    }
    QTemporaryDir dir(base + "/bench_wizard-XXXXXX");
    if (!dir.isValid()) {
        std::fprintf(stderr, "bench_wizard: cannot make a directory below %s\n", qPrintable(base));
        return 1;
    }
    QApplication app(argc, argv);
    const QString catalog = dir.filePath("BenchMod.cat");
    QElapsedTimer made;
    made.start();
    if (!MakeMod(catalog)) {
        std::fprintf(stderr, "bench_wizard: generating the mod failed\n");
        return 1;
    }
    const int entries = int(GameFileList(catalog).size());
    std::printf("generated a mod of %d entries and %d ships in %.1f s\n", entries, kShips,
                made.nsecsElapsed() / 1e9);

    const double listing = BestSeconds(reps, [&] { return GameFileList(catalog).size() == entries; });

    const QStringList uiText = PlaceholderUiTexts(UiTextCount);
    const QStringList extra = PlaceholderUiTexts(UiTextExtraCount);
    YesPrompter prompts;
    QElapsedTimer opening;
    opening.start();
    auto session = std::make_unique<ImportSession>(ImportSetup{catalog, dir.filePath("home")});
    if (!session->Open() || session->ShipRows().size() != kShips) {
        std::fprintf(stderr, "bench_wizard: the mod did not open\n");
        return 1;
    }
    ImportWizardSettings settings;
    settings.ProgramDir = dir.filePath("home");
    DImportWizard wizard(std::move(session), prompts, uiText, extra, settings);
    wizard.restart();
    const double opened = opening.nsecsElapsed() / 1e9;

    int ship = 0;
    const double walk = BestSeconds(reps, [&] { return WalkShip(wizard, (ship += 97) % kShips); });
    if (listing <= 0 || walk <= 0) {
        std::fprintf(stderr, "bench_wizard: a run failed\n");
        return 1;
    }
    std::printf(
        "wizard, choosing a ship to the last page: %.3f s (target <= %.1f s)   listing the catalog: %.4f s"
        "   ratio %.1f   (opening the mod and building the wizard: %.3f s)\n",
        walk, kTargetSeconds, listing, walk / listing, opened);
    std::fflush(stdout);
    return walk <= kTargetSeconds ? 0 : 1;
}
