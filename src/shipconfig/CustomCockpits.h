// The custom cockpits of a package while the ship configuration dialog runs:
// whole TCockpits lines, named by field 18 (see gamedata/CockpitTable.h), kept
// as a plain list of lines. Free of widgets.
#pragma once

#include "gamedata/ShipLine.h"

#include <QList>
#include <QString>
#include <QStringList>

// The place of the first line named `name` (exactly), or -1.
int FindCockpit(const QStringList& lines, const QString& name);

// Replaces field `field` of the line named `name` with `value`. The changed
// line ends in ";" and moves to the end of the list. False, and nothing moves,
// when no line has the name or the field holds the value already.
bool SetCockpitField(QStringList& lines, const QString& name, int field, const QString& value);

// True when a standard name or a custom line's name, in upper case, is `name`.
bool CockpitNameTaken(const QString& name, const QStringList& standardNames, const QStringList& customLines);

// A custom copy of a standard cockpit: its fields 0 to 17, then `name`.
QString CopiedCockpitLine(const QString& standardLine, const QString& name);

// The lines that a turret names: a line stays when its name is the cockpit of
// one of `turretCockpits`. A row number other than 0, and "0", name no
// custom cockpit.
QStringList CockpitsInUse(const QStringList& lines, const QStringList& turretCockpits);

// The main window's cockpit rows brought in line with the dialog's custom
// cockpits: a row that no line names goes, a row named by a line takes the
// line and keeps its source, and a line without a row gets a new one from the
// package, appended in list order.
QList<CockpitListRow> CockpitRowsInLineWith(const QList<CockpitListRow>& rows, const QStringList& lines);
