#include "app/BalanceController.h"

#include "app/GameTextStore.h"
#include "core/ProgramDir.h"

BalanceController::BalanceController(WindowContext context) : m_context(std::move(context)) {}

BalanceContext BalanceController::Context() const
{
    return {m_context.parent,         m_context.prompter,   m_context.uiText,
            ProgramPath("/Profiles"), ProgramPath("/temp"), m_runDialog};
}

std::optional<QString> BalanceController::Balance(const QString& shipLine) const
{
    return BalanceShip(Context(), shipLine);
}

void BalanceController::ManageProfiles(const GameTextStore& names) const
{
    ::ManageProfiles(Context(), DisplayNames(names.Classes(), names.ClassNames()),
                     DisplayNames(names.Variants(), names.VariantNames()));
}
