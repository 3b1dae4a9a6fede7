// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "driver/PostgresPropertyList.h"

#include <QFile>
#include <QXmlStreamReader>

// The resources are linked in from a static library, so nothing but this call registers them; the
// macro must stand outside any namespace.
static void initializeResources()
{
    Q_INIT_RESOURCE(DabroPostgres);
}

namespace
{

/// Calls element for each child of the document's outermost collection, which must be called kind.
template<class Element>
void readCollection(const QString &name, QLatin1String kind, Element element)
{
    static const bool initialized = (initializeResources(), true);
    Q_UNUSED(initialized)
    QFile file(QStringLiteral(":/DabroPostgres/%1.plist").arg(name));
    if (!file.open(QIODevice::ReadOnly))
        return;
    QXmlStreamReader reader(&file);
    if (!reader.readNextStartElement() || reader.name() != QLatin1String("plist")
        || !reader.readNextStartElement() || reader.name() != kind)
        return;
    while (reader.readNextStartElement()) {
        const QString tag = reader.name().toString();
        element(tag, reader.readElementText(QXmlStreamReader::SkipChildElements));
    }
}

} // namespace

QStringList PostgresPropertyList::array(const QString &name)
{
    QStringList texts;
    readCollection(name, QLatin1String("array"), [&](const QString &tag, const QString &text) {
        if (tag == QLatin1String("string"))
            texts.append(text);
    });
    return texts;
}

QHash<QString, QString> PostgresPropertyList::dictionary(const QString &name)
{
    QHash<QString, QString> texts;
    QString key;
    readCollection(name, QLatin1String("dict"), [&](const QString &tag, const QString &text) {
        if (tag == QLatin1String("key"))
            key = text;
        else if (tag == QLatin1String("string"))
            texts.insert(key, text);
    });
    return texts;
}
