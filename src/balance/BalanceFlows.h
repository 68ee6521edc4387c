// The two balance flows of the main window, callable without it: Balance Ship
// (pick a profile for the ship line, show the balance dialog, give back the
// rewritten line) and Manage Balance Profiles. The window's slots only gather
// what the flows need and take back what they return.
#pragma once

#include "balance/BalanceProfile.h"
#include "language/GameText.h"

#include <QList>
#include <QString>
#include <QStringList>

#include <functional>
#include <optional>

class Prompter;
class QDialog;
class QWidget;

// How a flow shows one of its own modal dialogs; the result is the dialog's
// QDialog::DialogCode. The real one runs the dialog's event loop; tests hand
// in a function that works the dialog and returns, so that nothing waits.
using DialogRunner = std::function<int(QDialog&)>;
int ExecDialog(QDialog& dialog);

struct BalanceContext
{
    QWidget* parent = nullptr;
    Prompter& prompter;  // every standard dialog goes through it
    QStringList uiText;  // the main window's interface texts
    QString profilesDir; // <program directory>/Profiles
    QString tempDir;     // <program directory>/temp, for the work file of an import
    DialogRunner runDialog = ExecDialog;
};

// The profile to balance the ship line against: of all profiles that load,
// those of the ship's class and variation, else those of its class for any
// variation; with several, the user chooses by name. Nothing when none fits
// (then `cancelled` is false) or the user cancels the choice (then true).
std::optional<BalanceProfile> SelectBalanceProfile(const BalanceContext& context, const QString& shipLine,
                                                   bool* cancelled = nullptr);

// Balance Ship: warns when the line is empty or no profile fits, else shows
// the balance dialog for the ship. The rewritten line when the user chose
// Done; nothing when nothing is to change.
std::optional<QString> BalanceShip(const BalanceContext& context, const QString& shipLine);

// Manage Balance Profiles: the list of the profiles with their editor.
// `classNames` and `variantNames` are the names to show, one for each entry of
// the window's class and variant lists (see DisplayNames).
void ManageProfiles(const BalanceContext& context, const QStringList& classNames,
                    const QStringList& variantNames);

// The names of a class or variant list as the dialogs show them: the game's
// name of each entry, or the list's own name where the game has none.
QStringList DisplayNames(const QList<IdName>& list, const QStringList& gameNames);
