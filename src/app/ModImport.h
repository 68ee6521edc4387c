// Taking a ship out of a finished mod into the form: the main window's part
// behind Slot_ImportWizard. The import wizard (src/wizard) asks for the mod,
// works out what belongs to the chosen ship and unpacks it below WorkDir;
// this part fills the new form with it: the ship line and id, the shipyard of
// its race, the name and texts, the scenes, models and textures as files of
// the package, the mod's cockpits the turrets use, dummies and components.
#pragma once

#include "app/PackageDocument.h"
#include "wizard/ImportWizardFlow.h"

#include <functional>

class GameTextStore;

class ModImport
{
public:
    // `setBusy(false, status)` makes the window busy once a mod is chosen,
    // `setBusy(true, {})` ends it.
    ModImport(DocumentParts parts, PackageDocument& document, WindowContext context,
              const GameTextStore& gameTexts, std::function<void(bool ready, const QString& status)> setBusy);

    // Replaces the modal run of the wizard, for tests that drive its pages.
    void SetRunner(ImportWizardRunner runner) { m_runner = std::move(runner); }

    // Runs the wizard on a mod the user chooses and fills the form, which the
    // caller has cleared, from its result. True when a ship came in.
    bool Run();

private:
    void Apply(const ImportResult& result);

    DocumentParts m_parts;
    PackageDocument& m_document;
    WindowContext m_context;
    const GameTextStore& m_gameTexts;
    std::function<void(bool, const QString&)> m_setBusy;
    ImportWizardRunner m_runner;
};
