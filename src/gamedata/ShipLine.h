// The ship line: one TShips row, fields separated by ";" and counted from 0.
// It is the one representation of a ship; nobody keeps a parsed copy.
#pragma once

#include <QString>

// Field `index` of the line, or an empty string when the line is shorter.
inline QString ShipField(const QString& line, int index)
{
    return line.section(';', index, index);
}
