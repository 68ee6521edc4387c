// The program's own interface texts, read from hw_languages.xml in the
// program directory: one <language name=".." id=".." translator=".."> element
// per interface language, with a <hullwright> section for the main table and a
// <shared> section for the extra table, each holding <t id="N">text</t>.
#pragma once

#include <QList>
#include <QString>
#include <QStringList>

inline constexpr int UiTextCount = 420;
inline constexpr int UiTextExtraCount = 50;

// One language offered by the file.
struct LanguageEntry
{
    QString Name;
    int Id = 0;
    QString Translator;
};

// Applies the file's markup to one text: "_" -> "&", "#lb" -> "<", "#rb" -> ">",
// backslash-n -> line feed, and, when "[b]" occurs, "[b]"/"[/b]" -> "<b>"/"</b>".
QString TransformUiMarkup(const QString& text);

// Both tables filled with their "ReadText-<index>" placeholders.
QStringList PlaceholderUiTexts(int count);

// Reads `path` for the language `language` (compared without regard to case)
// into the tables, which must already hold UiTextCount and UiTextExtraCount
// entries. Every <language> element of the file is appended to `languages`.
// A missing or malformed file leaves untouched what was not reached.
// Returns false when the file could not be opened or was not well-formed.
bool ReadUiTexts(const QString& path, const QString& language, QStringList& uiText, QStringList& uiTextExtra,
                 QList<LanguageEntry>& languages);
