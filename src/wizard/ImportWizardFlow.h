// The whole run of the import wizard as the main window starts it: ask for a
// mod catalog, make sure it has a ship table, run the wizard, and hand back
// what Finish carries into the form. The window only has to deal with its
// open document first and fill its form from the result afterwards.
#pragma once

#include "language/GameText.h"
#include "wizard/ImportResult.h"

#include <QString>
#include <QStringList>

#include <functional>
#include <optional>

class DImportWizard;
class Prompter;
class QWidget;

struct ImportWizardRequest
{
    QWidget* Parent = nullptr;
    Prompter* Prompts = nullptr;              // every standard dialog
    const QStringList* UiText = nullptr;      // the interface texts
    const QStringList* UiTextExtra = nullptr; // and the extra ones
    QString ProgramDir;                       // work files, ShipInstall and Icons lie below it
    QString ModDir;                           // where the catalog dialog starts
    QString TextDir;                          // where a text import starts
    QString GameDir;                          // the game directory in use
    QString X2bcPath;                         // for the texture scan of binary models
    QString BaseLang = QStringLiteral("44");
    const QList<GameText>* GameShipNames = nullptr;
    const QList<IdName>* Variants = nullptr;
    const QStringList* VariantNames = nullptr;
    // Called with false once the catalog is chosen (the window shows its
    // wait state and `status`), and with true when the wizard has closed.
    std::function<void(bool ready, const QString& status)> SetBusy;
};

// Runs the wizard and returns its result code (QDialog::Accepted on Finish).
// The default runs it modally; tests drive the pages instead.
using ImportWizardRunner = std::function<int(DImportWizard&)>;

// Nothing when the user chose no catalog, the catalog holds no ship table
// (after a warning), or the wizard was cancelled. The wizard's work files
// are gone when this returns; on Finish the ship's files lie unpacked below
// <ProgramDir>/ShipInstall.
std::optional<ImportResult> RunImportWizard(const ImportWizardRequest& request,
                                            const ImportWizardRunner& run = {});
