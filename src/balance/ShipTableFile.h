// A TShips table read from what the user or a script names: a plain text
// table, a packed .pck, or a catalog (.cat), whose types\TShips.pck is taken.
#pragma once

#include "gamedata/TypesFile.h"

#include <QString>

enum class ShipTableStatus
{
    Read,         // the table was read (it may still hold no ships)
    NotInCatalog, // the catalog has no types\TShips.pck, or it could not be taken out
    CannotRead    // the file is missing or cannot be opened
};

struct ShipTableRead
{
    ShipTableStatus status = ShipTableStatus::CannotRead;
    TypesTable table;
};

// The entry of a catalog that holds the ship table.
inline constexpr const char* ShipTableEntry = "types\\TShips.pck";

// Reads the table at `path`, chosen by its extension (compared without regard
// to case). A catalog's entry and a packed file pass through `workFile`, whose
// directory is made when missing; the work file is deleted again in every
// case, and a plain table is read where it lies.
ShipTableRead ReadShipTable(const QString& path, const QString& workFile);
