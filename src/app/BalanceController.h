// Balance Ship and Manage Balance Profiles as the window runs them: the
// profiles of the program directory, its temp folder for imports, and the
// class and variant names the game's texts give. The flows themselves live
// in src/balance; this part only gathers what they need.
#pragma once

#include "app/WindowContext.h"
#include "balance/BalanceFlows.h"

#include <QString>

#include <optional>

class GameTextStore;

class BalanceController
{
public:
    explicit BalanceController(WindowContext context);

    // The ship line rewritten by the balance dialog, or nothing when nothing
    // is to change (no line, no profile, cancelled).
    std::optional<QString> Balance(const QString& shipLine) const;
    // The profile manager, with the names of the window's classes and variants.
    void ManageProfiles(const GameTextStore& names) const;

    // How the flows run their dialogs; tests replace the dialogs' own loop.
    void SetDialogRunner(DialogRunner runner) { m_runDialog = std::move(runner); }

private:
    BalanceContext Context() const;

    WindowContext m_context;
    DialogRunner m_runDialog = ExecDialog;
};
