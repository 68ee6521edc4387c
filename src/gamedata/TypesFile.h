// The game's semicolon-separated tables (TShips, TCockpits, TLaser, TShields,
// TMissiles, Dummies, Components) as plain text, one record a line:
//   - a line whose first character, blanks aside, is "/" is a comment; a line
//     of nothing but blanks is skipped;
//   - the first other line is the header: version and number of data lines
//     (only a marker: readers go on to the end of the file);
//   - every further line is one record, fields cut from the line as read.
#pragma once

#include <QString>
#include <QStringList>

struct TypesTable
{
    QString header;
    QStringList records;
};

// True for comment lines and lines of blanks only.
bool IsSkippedTypesLine(const QString& line);

// Reads a table file; a missing or unreadable file gives an empty table.
TypesTable ReadTypesFile(const QString& path);

// Parses table text (as read from a file).
TypesTable ParseTypesText(const QString& text);

// The catalogs 01.cat, 02.cat, ... of a game directory, contiguous from 1:
// the scan stops at the first number that is missing. At most 99.
int HighestCatalog(const QString& gameDir);
QString CatalogName(int number); // "01.cat" ... "99.cat"

// Extracts types\<table>.pck from the newest catalog that holds it into
// `target` as plain text. True when the target now holds the table.
bool FetchTypesFile(const QString& gameDir, const QString& table, const QString& target);

// Fetches, reads and deletes the work file: the table of the game, or an
// empty one.
TypesTable LoadGameTable(const QString& gameDir, const QString& table, const QString& workFile);
