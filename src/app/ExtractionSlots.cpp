// The window's slots of the extraction: the menu entry, and the timer's slot
// that does the work.
#include "app/DCreateShip.h"

#include "app/ExtractionFlow.h"

void DCreateShip::Slot_ExtractShip()
{
    m_extraction->AskPackageAndTarget();
}

void DCreateShip::Slot_StartExtract()
{
    m_extraction->Start();
}
