// The game's grouped tables, Dummies and Components. Unlike the flat tables
// they hold sections, and in Components the sections hold groups:
//
//   Dummies                      Components
//   <section>;<count>;           <section>;<count>;
//   <count> data lines           <count> times:
//                                  <id>;<lines>;
//                                  <lines> data lines
//
// Lines whose first two characters are "//" and lines that are empty once
// blanks are taken out are skipped. Data lines are taken whole. A count that
// is 0 or not a number gives an empty section or group, so the next line is
// read as a section line again. A count larger than what follows ends with
// the file.
#pragma once

#include <QList>
#include <QString>
#include <QStringList>

// The section of the Dummies table whose lines describe gun bodies.
inline constexpr const char* GunDummySection = "SDTYPE_GUN";

// The sections offered for a new dummy row, in order.
QStringList DummySectionNames();

struct DummySection
{
    QString Name;
    QStringList Lines; // data lines, whole
};

struct ComponentGroup
{
    QString Id;
    QStringList Lines; // data lines, whole
};

struct ComponentSection
{
    QString Name;
    QList<ComponentGroup> Groups;
};

// True for the lines both tables skip.
bool IsSkippedGroupedLine(const QString& line);

QList<DummySection> ParseDummies(const QString& text);
QList<ComponentSection> ParseComponents(const QString& text);

// Read a file; a missing or unreadable file gives no sections.
QList<DummySection> ReadDummiesFile(const QString& path);
QList<ComponentSection> ReadComponentsFile(const QString& path);

// The data lines of every SDTYPE_GUN section, in the order of the file.
QStringList GunDummyLines(const QList<DummySection>& sections);
