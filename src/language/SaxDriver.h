// Drives a handler written in the style of a SAX parser's callbacks from a
// QXmlStreamReader: the one XML reading loop of the language readers.
#pragma once

#include <QString>
#include <QXmlStreamReader>

// Feeds the reader's tokens to a handler with the callbacks startElement,
// endElement and characters. The stream reader may hand one run of text over
// in several tokens (around entity references such as &amp;, CDATA or buffer
// ends); they are joined and passed on as one piece when the next element
// starts or ends, so that no text is cut short. Text parsed before an error
// is kept, as a SAX parser would have delivered it already. False when the
// document was not well-formed.
template <class Handler> bool DriveSaxHandler(QXmlStreamReader& reader, Handler& handler)
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
    flushText();
    return !reader.hasError();
}
