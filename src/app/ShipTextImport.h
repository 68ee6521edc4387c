// Reading a ship's name and description out of the game's language pages, in
// every language the chosen files hold.
//
// Pages are always parsed as plain files: an entry of a catalog is extracted
// to the work file textfile.txt, a packed loose page is unpacked to text.xml,
// both in the program directory, and each work file is deleted by the
// function that wrote it. Nothing of the user's files is written or replaced.
#pragma once

#include <QList>
#include <QString>
#include <QStringList>

#include <optional>

// One language's texts of the ship as the text list shows them.
struct ShipText
{
    QString language; // the first two characters of the page's file name
    QString name;
    QString description;
};

// The work files, in the program directory.
QString CatalogWorkFile();
QString UnpackWorkFile();

// The ship's texts in one language file (plain .xml, or packed .pck): the
// name of text id `nameId` and its description, the language the first two
// characters of the file name. None when the file does not name the ship.
std::optional<ShipText> ReadShipText(const QString& path, int nameId);

// The ship's texts in every language page of a catalog.
QList<ShipText> ReadShipTextsFromCatalog(const QString& catalog, int nameId);

// The page files ("0001" of "440001.xml") that the .xml and .pck files of
// `dir` hold, in the order of first appearance.
QStringList TextPagesIn(const QString& dir);

// The .xml and .pck files of `dir` of the page `page`, as paths.
QStringList PageFilesIn(const QString& dir, const QString& page);
