// A catalog pair written in one go in the game's format, for benchmarks that
// need tens of thousands of entries: adding them one by one through the
// driver would commit each to disk. The .cat is the .dat's name and a
// "<name> <size>" line per entry, byte i XORed with (0x5A + i); the .dat
// holds the entries one behind the other, every byte XORed with 0xA7.
#pragma once

#include "catfs/CatDriver.h"

#include <QByteArray>
#include <QFile>
#include <QFileInfo>
#include <QString>

class CatalogWriter
{
public:
    void add(QString name, const QByteArray& bytes)
    {
        name.replace('\\', '/');
        m_text += name.toUtf8() + ' ' + QByteArray::number(bytes.size()) + '\n';
        m_data += bytes;
        ++m_count;
    }
    int count() const { return m_count; }

    bool write(const QString& catalogPath) const
    {
        const QString dataPath = catalogPath.left(catalogPath.size() - 3) + "dat";
        QByteArray text = QFileInfo(dataPath).fileName().toUtf8() + '\n' + m_text;
        for (qsizetype i = 0; i < text.size(); ++i)
            text[i] = char(uint8_t(text[i]) ^ uint8_t(CatCatalogKey + i));
        QByteArray data = m_data;
        for (char& byte : data)
            byte = char(uint8_t(byte) ^ CatDataKey);
        QFile cat(catalogPath);
        QFile dat(dataPath);
        return cat.open(QIODevice::WriteOnly) && cat.write(text) == text.size() &&
               dat.open(QIODevice::WriteOnly) && dat.write(data) == data.size();
    }

private:
    QByteArray m_text;
    QByteArray m_data;
    int m_count = 0;
};
