#include "app/ModImport.h"

#include "app/FormBinding.h"
#include "app/GameTextStore.h"
#include "app/TableListControllers.h"
#include "core/AppSettings.h"
#include "core/ProgramDir.h"
#include "gamedata/ShipLine.h"

namespace {

// The record's shipyard flag for the box a race ticks, or -1 for none.
int ShipyardFlag(ShipyardBox box)
{
    switch (box) {
    case ShipyardBox::Argon:
        return ShipyardArgon;
    case ShipyardBox::Boron:
        return ShipyardBoron;
    case ShipyardBox::Split:
        return ShipyardSplit;
    case ShipyardBox::Paranid:
        return ShipyardParanid;
    case ShipyardBox::Teladi:
        return ShipyardTeladi;
    case ShipyardBox::Xenon:
        return ShipyardXenon;
    case ShipyardBox::Pirate:
        return ShipyardPirates;
    case ShipyardBox::Friend:
        return ShipyardFriendly;
    case ShipyardBox::None:
        break;
    }
    return -1;
}

// A file the wizard unpacked below WorkDir, as a record names the files of
// an opened package: by its name there.
FileEntry PackageFile(const QString& path)
{
    FileEntry entry;
    entry.LocalPath = path.mid(PackageToken.size());
    return entry;
}

QList<FileEntry> PackageFiles(const QList<ImportedFile>& files)
{
    QList<FileEntry> entries;
    for (const ImportedFile& file : files)
        entries.append(PackageFile(file.Path));
    return entries;
}

} // namespace

ModImport::ModImport(DocumentParts parts, PackageDocument& document, WindowContext context,
                     const GameTextStore& gameTexts, std::function<void(bool, const QString&)> setBusy)
    : m_parts(parts), m_document(document), m_context(std::move(context)), m_gameTexts(gameTexts),
      m_setBusy(std::move(setBusy))
{
}

bool ModImport::Run()
{
    const AppSettings& settings = m_context.settings;
    ImportWizardRequest request;
    request.Parent = m_context.parent;
    request.Prompts = &m_context.prompter;
    request.UiText = &m_context.uiText;
    request.UiTextExtra = &m_context.uiTextExtra;
    request.ProgramDir = ProgramDir();
    request.ModDir = settings.ModDir;
    request.TextDir = settings.TextDir;
    request.GameDir = settings.GameDirs.value(0);
    request.X2bcPath = settings.X2bcDir;
    request.BaseLang = settings.BaseLang;
    request.GameShipNames = &m_gameTexts.Texts();
    request.Variants = &m_gameTexts.Variants();
    request.VariantNames = &m_gameTexts.VariantNames();
    request.SetBusy = m_setBusy;
    const std::optional<ImportResult> result = RunImportWizard(request, m_runner);
    if (!result)
        return false;
    Apply(*result);
    m_context.modified();
    return true;
}

void ModImport::Apply(const ImportResult& result)
{
    // The new form's own texts (author, web address, ...) stay as they are.
    ShipPackage record;
    m_parts.form.Read(record);
    record.Data = result.ShipLine;
    record.ID = result.ShipId;
    record.Name = result.ShipName;
    const int shipyard = ShipyardFlag(ShipyardOfRace(ShipFieldInt(result.ShipLine, ShipLineField::Race)));
    if (shipyard >= 0)
        record.Shipyards[shipyard] = true;
    if (!result.ShipSceneFile.isEmpty())
        record.SceneFile = PackageFile(result.ShipSceneFile);
    if (!result.CockpitSceneFile.isEmpty())
        record.CockpitFile = PackageFile(result.CockpitSceneFile);
    record.Models = PackageFiles(result.Models);
    record.Files = PackageFiles(result.Textures);
    for (const ImportedText& text : result.Texts)
        record.Texts.append({ReadInt(text.Language), text.Name, text.Description});
    for (const ImportedDummy& dummy : result.Dummies)
        record.Dummies.append({dummy.Section, dummy.Line});
    for (const ImportedComponent& group : result.Components)
        for (const QString& line : group.Lines)
            record.Components.append({group.Section, group.Id, line});
    m_document.Show(record);

    // The mod's cockpits are rows of its table, which the turret slots count.
    QList<CockpitListRow> cockpits;
    for (const ImportedCockpit& cockpit : result.Cockpits)
        cockpits.append({cockpit.Name, QString::number(cockpit.Index), cockpit.Line});
    m_parts.cockpits.Add(cockpits);
}
