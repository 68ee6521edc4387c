#include "language/UiTexts.h"

#include "language/LanguageFileHandler.h"
#include "language/SaxDriver.h"

#include <QFile>

QString TransformUiMarkup(const QString& text)
{
    QString result = text;
    result.replace(QLatin1Char('_'), QLatin1Char('&'));
    result.replace(QLatin1String("#lb"), QLatin1String("<"));
    result.replace(QLatin1String("#rb"), QLatin1String(">"));
    result.replace(QLatin1String("\\n"), QLatin1String("\n"));
    // Bold only when an opening mark is present, so a stray closing mark
    // stays visible instead of turning into a dangling tag.
    if (result.contains(QLatin1String("[b]"))) {
        result.replace(QLatin1String("[b]"), QLatin1String("<b>"));
        result.replace(QLatin1String("[/b]"), QLatin1String("</b>"));
    }
    return result;
}

QStringList PlaceholderUiTexts(int count)
{
    QStringList texts;
    texts.reserve(count);
    for (int i = 0; i < count; ++i)
        texts.append(QStringLiteral("ReadText-%1").arg(i));
    return texts;
}

bool ReadUiTexts(const QString& path, const QString& language, QStringList& uiText, QStringList& uiTextExtra,
                 QList<LanguageEntry>& languages)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return false;
    QXmlStreamReader reader(&file);
    LanguageFileHandler handler(QStringLiteral("hullwright"), language, uiText, uiTextExtra, languages);
    return DriveSaxHandler(reader, handler);
}
