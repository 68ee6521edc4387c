#include "language/LanguageFileHandler.h"

namespace {

// The value of an attribute whose name matches `name` in lower case.
QString attributeValue(const QXmlStreamAttributes& attributes, const QString& name)
{
    for (const QXmlStreamAttribute& attribute : attributes) {
        if (attribute.name().toString().toLower() == name)
            return attribute.value().toString();
    }
    return {};
}

// A number that does not parse reads as 0, like everywhere in the program.
int attributeNumber(const QXmlStreamAttributes& attributes, const QString& name)
{
    return attributeValue(attributes, name).trimmed().toInt();
}

} // namespace

LanguageFileHandler::LanguageFileHandler(const QString& mainSection, const QString& selectedLanguage,
                                         QStringList& uiText, QStringList& uiTextExtra,
                                         QList<LanguageEntry>& languages)
    : m_mainSection(mainSection.toLower()), m_selectedLanguage(selectedLanguage.toLower()), m_uiText(uiText),
      m_uiTextExtra(uiTextExtra), m_languages(languages)
{
}

bool LanguageFileHandler::startElement(const QString& name, const QXmlStreamAttributes& attributes)
{
    const QString element = name.toLower();
    if (element == QLatin1String("language")) {
        LanguageEntry entry;
        entry.Name = attributeValue(attributes, QStringLiteral("name"));
        entry.Id = attributeNumber(attributes, QStringLiteral("id"));
        entry.Translator = attributeValue(attributes, QStringLiteral("translator"));
        if (entry.Name.toLower() == m_selectedLanguage)
            m_inLanguage = true;
        m_languages.append(entry);
        return true;
    }
    if (!m_inLanguage)
        return true;

    if (element == m_mainSection) {
        m_inMain = true;
    } else if (element == QLatin1String("shared")) {
        m_inShared = true;
    } else if (element == QLatin1String("t") && (m_inMain || m_inShared)) {
        m_current = tableIndex(attributeNumber(attributes, QStringLiteral("id")));
        // Emptied now, so that an empty element gives an empty text rather
        // than leaving the placeholder.
        if (m_current >= 0)
            (*currentTable())[m_current].clear();
    }
    return true;
}

bool LanguageFileHandler::endElement(const QString& name)
{
    const QString element = name.toLower();
    if (element == QLatin1String("language"))
        m_inLanguage = false;
    else if (element == m_mainSection)
        m_inMain = false;
    else if (element == QLatin1String("shared"))
        m_inShared = false;
    else if (element == QLatin1String("t"))
        m_current = -1;
    return true;
}

bool LanguageFileHandler::characters(const QString& text)
{
    QStringList* table = currentTable();
    if (m_current < 0 || table == nullptr || m_current >= table->size())
        return true;
    (*table)[m_current] = TransformUiMarkup(text);
    return true;
}

int LanguageFileHandler::tableIndex(int id) const
{
    // The shared flag wins when both sections are open, as in characters().
    const QStringList* table = m_inShared ? &m_uiTextExtra : (m_inMain ? &m_uiText : nullptr);
    const int limit = m_inShared ? UiTextExtraCount : UiTextCount;
    if (table == nullptr || id < 0 || id >= limit || id >= table->size())
        return -1;
    return id;
}

QStringList* LanguageFileHandler::currentTable()
{
    if (m_inShared)
        return &m_uiTextExtra;
    if (m_inMain)
        return &m_uiText;
    return nullptr;
}
