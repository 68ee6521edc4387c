#include "wizard/ImportWizardFlow.h"

#include "forms/Prompter.h"
#include "wizard/DImportWizard.h"
#include "wizard/ImportSession.h"
#include "wizard/ImportWizardTexts.h"

namespace T = ImportWizardText;

std::optional<ImportResult> RunImportWizard(const ImportWizardRequest& request, const ImportWizardRunner& run)
{
    Prompter& prompts = *request.Prompts;
    const QStringList& uiText = *request.UiText;
    const QString catalog = prompts.openFile(request.Parent, uiText.value(T::ModCaption), request.ModDir,
                                             uiText.value(T::ModFilter) + " (*.cat)");
    if (catalog.isEmpty())
        return std::nullopt;

    auto setBusy = [&](bool ready, const QString& status) {
        if (request.SetBusy)
            request.SetBusy(ready, status);
    };
    setBusy(false, uiText.value(T::Preparing));

    ImportSetup setup;
    setup.Catalog = catalog;
    setup.ProgramDir = request.ProgramDir;
    setup.BaseLang = request.BaseLang;
    setup.GameShipNames = request.GameShipNames;
    setup.Variants = request.Variants;
    setup.VariantNames = request.VariantNames;
    auto session = std::make_unique<ImportSession>(setup);
    if (!session->Open()) {
        setBusy(true, {});
        // A catalog without a ship table is no mod for this wizard.
        prompts.warning(request.Parent, uiText.value(T::NoShipTableCaption),
                        uiText.value(T::NoShipTableText) + " '" + catalog + "'", {uiText.value(T::Ok)});
        return std::nullopt;
    }

    std::optional<ImportResult> result;
    {
        const ImportWizardSettings settings{request.ProgramDir, request.TextDir, request.GameDir,
                                            request.X2bcPath};
        DImportWizard wizard(std::move(session), prompts, uiText, *request.UiTextExtra, settings,
                             request.Parent);
        const int code = run ? run(wizard) : wizard.exec();
        if (code == QDialog::Accepted)
            result = wizard.Result();
    }
    setBusy(true, {});
    return result;
}
