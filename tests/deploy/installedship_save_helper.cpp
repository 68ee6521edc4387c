// Child process of the installed-ship kill test: saves the ship Test by Kill
// in a game directory with the files of one variant, and exits.
//   installedship_save_helper <game directory> <directory of the chosen files> <variant>
// The variant's files are scene<v>.bod, cockpit<v>.bod and picture<v>.bin;
// its cockpit scene is named cockpits\k\cp_<v>. The test kills the process
// at random moments with SIGKILL.
#include "deploy/InstalledShipSave.h"
#include "gamedata/ShipLine.h"

int main(int argc, char** argv)
{
    if (argc != 4)
        return 2;
    const QString gameDir = QString::fromLocal8Bit(argv[1]);
    const QString chosen = QString::fromLocal8Bit(argv[2]) + '/';
    const QString variant = QString::fromLocal8Bit(argv[3]);
    const ShipKey key{"Kill", "Test"};

    InstalledShipsRead registry = ReadInstalledShips(gameDir);
    const qsizetype index = FindInstalledShip(registry.Registry.Ships, key);
    if (index < 0)
        return 2;
    ShipPackage edited = registry.Registry.Ships[index].Record;
    edited.Data = SetShipField(edited.Data, ShipLineField::CockpitScene, "cockpits\\k\\cp_" + variant);
    edited.Comment = "variant " + variant;
    const InstalledShipChoices choices{chosen + "picture" + variant + ".bin",
                                       chosen + "scene" + variant + ".bod",
                                       chosen + "cockpit" + variant + ".bod"};
    const InstalledShipSaveResult saved = SaveInstalledShip(gameDir, key, edited, choices, registry);
    return saved.Status == InstalledShipSaveStatus::Saved && saved.Notes.isEmpty() ? 0 : 1;
}
