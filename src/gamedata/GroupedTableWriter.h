// Writing the grouped tables, Dummies and Components, for the rows one ship
// brings along. The layout is the one GroupedTables.h reads:
//
//   // Dummies.txt created by Hullwright for <ship> by <author>
//   <section>;<count>;
//   <count> data lines, as they stand
//   (one empty line behind each section)
//
//   // Components.txt created by Hullwright for <ship> by <author>
//   <section>;<groups>;
//   <id>;<lines>;          for each group
//   <lines> data lines, each ending in ";"
//   (one empty line behind the last group of each section)
//
// The empty lines and the comment are skipped again when a table is read.
#pragma once

#include "gamedata/GroupedTables.h"
#include "package/ShipPackage.h" // the row records only; plain data

#include <QList>
#include <QString>

// Groups a ship's rows by section in the order in which each section first
// appears; the lines of a section keep their order, and equal rows stay two
// lines.
QList<DummySection> GroupDummyRows(const QList<DummyEntry>& rows);
// Groups rows by section, and within a section by id, each in order of first
// appearance.
QList<ComponentSection> GroupComponentRows(const QList<ComponentEntry>& rows);

QString DummiesTableText(const QString& shipName, const QString& author, const QList<DummySection>& sections);
QString ComponentsTableText(const QString& shipName, const QString& author,
                            const QList<ComponentSection>& sections);
