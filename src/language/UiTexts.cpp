#include "language/UiTexts.h"

#include "language/LanguageFileHandler.h"

#include <QFile>
#include <QXmlStreamReader>

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

namespace {

// Feeds the reader's tokens to the handler. The stream reader may hand one
// run of text over in several tokens (around entity references, CDATA or
// buffer ends); they are joined and passed on as one piece when the next
// element starts or ends, so that no text is cut short.
bool DriveHandler(QXmlStreamReader& reader, LanguageFileHandler& handler)
{
    QString pendingText;
    bool hasPendingText = false;
    auto flushText = [&] {
        if (hasPendingText)
            handler.characters(pendingText);
        pendingText.clear();
        hasPendingText = false;
    };

    while (!reader.atEnd()) {
        switch (reader.readNext()) {
        case QXmlStreamReader::StartElement:
            flushText();
            handler.startElement(reader.name().toString(), reader.attributes());
            break;
        case QXmlStreamReader::EndElement:
            flushText();
            handler.endElement(reader.name().toString());
            break;
        case QXmlStreamReader::Characters:
            pendingText += reader.text();
            hasPendingText = true;
            break;
        default:
            break;
        }
    }
    // Text parsed before an error is kept, as a SAX parser would have
    // delivered it already.
    flushText();
    return !reader.hasError();
}

} // namespace

bool ReadUiTexts(const QString& path, const QString& language, QStringList& uiText, QStringList& uiTextExtra,
                 QList<LanguageEntry>& languages)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return false;
    QXmlStreamReader reader(&file);
    LanguageFileHandler handler(QStringLiteral("hullwright"), language, uiText, uiTextExtra, languages);
    return DriveHandler(reader, handler);
}
