#include "package/ShipPackage.h"

namespace {

std::unique_ptr<FileEntry> CopyEntry(const std::unique_ptr<FileEntry>& entry)
{
    return entry ? std::make_unique<FileEntry>(*entry) : nullptr;
}

} // namespace

ShipPackage::ShipPackage(const ShipPackage& other)
    : Name(other.Name), Author(other.Author), Version(other.Version), ID(other.ID), Data(other.Data),
      Web(other.Web), Mirror1(other.Mirror1), Mirror2(other.Mirror2), Texts(other.Texts),
      SceneFile(CopyEntry(other.SceneFile)), CockpitFile(CopyEntry(other.CockpitFile)), Models(other.Models),
      Files(other.Files), Dummies(other.Dummies), Components(other.Components), Scripts(other.Scripts),
      Cockpits(other.Cockpits), Comment(other.Comment), ScreenShot(other.ScreenShot),
      LanguageText(other.LanguageText), Enabled(other.Enabled), GlobalEnabled(other.GlobalEnabled),
      Shipyards(other.Shipyards), NotChecked(other.NotChecked), SaveWeb(other.SaveWeb),
      ExistingShip(other.ExistingShip), Deleted(other.Deleted), OriginalDesc(other.OriginalDesc),
      FileSystem(other.FileSystem)
{
}

ShipPackage& ShipPackage::operator=(const ShipPackage& other)
{
    if (this != &other) {
        ShipPackage copy(other);
        *this = std::move(copy);
    }
    return *this;
}
