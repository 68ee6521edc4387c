// Reader of the interface text file: a handler with the three callbacks of a
// SAX parser, driven by a QXmlStreamReader loop in ReadUiTexts.
#pragma once

#include "language/UiTexts.h"

#include <QList>
#include <QString>
#include <QStringList>
#include <QXmlStreamAttributes>

// Fills the interface tables from the selected language of the file and lists
// every language the file offers. Element and attribute names are compared in
// lower case. Every callback returns true: the handler never stops a parse.
class LanguageFileHandler
{
public:
    // `mainSection` is the element name of the section that fills `uiText`
    // ("hullwright"); the section `shared` fills `uiTextExtra`. The tables and
    // the language list are borrowed and must outlive the handler.
    LanguageFileHandler(const QString& mainSection, const QString& selectedLanguage, QStringList& uiText,
                        QStringList& uiTextExtra, QList<LanguageEntry>& languages);

    bool startElement(const QString& name, const QXmlStreamAttributes& attributes);
    bool endElement(const QString& name);
    // Each call for a text element replaces what an earlier call left.
    bool characters(const QString& text);

private:
    // Index into the table of the current section, or -1 when `id` is out of
    // its range (or no section is open).
    int tableIndex(int id) const;
    QStringList* currentTable();

    QString m_mainSection;
    QString m_selectedLanguage;
    QStringList& m_uiText;
    QStringList& m_uiTextExtra;
    QList<LanguageEntry>& m_languages;
    bool m_inLanguage = false;
    bool m_inMain = false;
    bool m_inShared = false;
    int m_current = -1;
};
