// The window's slots of the balance: Balance Ship rewrites the raw ship line,
// Manage Balance Profiles opens the profile manager.
#include "app/DCreateShip.h"

#include "app/BalanceController.h"

void DCreateShip::Slot_Balance()
{
    if (const std::optional<QString> line = m_balance->Balance(TextRaw->toPlainText()))
        TextRaw->setPlainText(*line);
}

void DCreateShip::Slot_ManageProfiles()
{
    m_balance->ManageProfiles(m_gameTexts);
}
