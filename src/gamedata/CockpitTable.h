// The game's TCockpits table. A line has at least 19 fields:
//   7  the cockpit's scene (4512 in a new line);
//   8  the mask of the lasers it can mount, with the bits of the TLaser rows;
//   18 its name, SS_COCKPIT_... by default.
// The other fields are copied and never read.
//
// A standard cockpit is a row of the game's table, named in a ship's turret
// slot by its row number (data lines counted from 0). A custom cockpit comes
// with the ship's package and is named by its name until the ship is taken
// apart, when a table of its own is written and the names become row numbers.
#pragma once

#include <QString>
#include <QStringList>

// The fields of a TCockpits line that the program reads.
namespace CockpitField {
enum : int
{
    SceneId = 7,
    Weapons = 8,
    Name = 18
};
} // namespace CockpitField

// The row that heads every table the program writes. It is no part of a ship:
// custom cockpits get row numbers from 1.
extern const char* const DefaultCockpitLine;

// The line of a new custom cockpit with the given name.
QString NewCockpitLine(const QString& name);

QString CockpitSceneId(const QString& line); // field 7
int CockpitWeapons(const QString& line);     // field 8
QString CockpitName(const QString& line);    // field 18

// The standard cockpits of a table: the lines as read and, in the same order,
// their names.
struct CockpitTable
{
    QString header;
    QStringList lines;
    QStringList names;
};

// Reads a TCockpits text file; a missing or unreadable file is an empty table.
CockpitTable ReadCockpitTable(const QString& path);

// The game's table from the newest catalog that holds it, extracted to
// `workFile`, read, and the work file deleted.
CockpitTable LoadGameCockpits(const QString& gameDir, const QString& workFile);

// A table for one ship's custom cockpits, and the ship line with each of their
// names in its turret slots replaced by the row number.
struct CockpitTableOutput
{
    QString text;
    QString shipLine;
};

// Builds the table: two comment lines, the header "47;<count + 1>;", the
// default row, then each custom line in order (a final ";" added where it is
// missing). Only whole cockpit fields of the turret slots are renumbered, so a
// name that is part of a longer name or of another field stays as it is.
CockpitTableOutput BuildCockpitTable(const QString& shipName, const QString& author,
                                     const QStringList& cockpits, const QString& shipLine);

// Writes `text` to `path` in one piece: an existing file is replaced only when
// the whole new one has been written. False when it could not be written.
bool WriteTableFile(const QString& path, const QString& text);
