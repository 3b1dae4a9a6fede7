// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
// Searches a catalogue of 100,000 objects as a user types, and prints what matching costs beside a
// bare scan of the same bytes, and what a copy of the tree costs. See README.md here.

#include "driver/PostgresDatabaseConnectionDetails.h"
#include "tree/PostgresDatabaseTreeEntryDatabase.h"

#include <QCoreApplication>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstring>

namespace
{

constexpr int objects = 100'000;
constexpr int rounds = 25;

// The milliseconds of the middle one of some runs.
template<typename Run>
double median(const Run &run)
{
    std::vector<double> times;
    for (int round = 0; round < rounds; ++round) {
        const auto begin = std::chrono::steady_clock::now();
        run();
        const std::chrono::duration<double, std::milli> took =
            std::chrono::steady_clock::now() - begin;
        times.push_back(took.count());
    }
    std::nth_element(times.begin(), times.begin() + rounds / 2, times.end());
    return times[rounds / 2];
}

// Names as people give them; every second holds "archive", every hundredth "loyalty".
QList<PostgresSearchIndex::Entry> makeEntries()
{
    const QStringList words = {u"customer"_qs, u"Order"_qs,   u"invoice"_qs, u"item"_qs,
                               u"payment"_qs,  u"product"_qs, u"stock"_qs,   u"movement"_qs};
    QList<PostgresSearchIndex::Entry> entries;
    for (int number = 0; number < objects; ++number) {
        QStringList parts = {words[number % 8], words[number / 8 % 7]};
        if (number % 2 == 0)
            parts += u"archive"_qs;
        if (number % 100 == 0)
            parts += u"loyalty"_qs;
        const QString name = parts.join(u'_') + u'_' + QString::number(number);
        entries.append({.display = name,
                        .schema = u"schema_%1"_qs.arg(number % 20),
                        .objectName = name,
                        .type = number % 10 == 0 ? u"VIEW"_qs : u"TABLE"_qs,
                        .defaultSchema = u"public"_qs,
                        .search = name});
    }
    return entries;
}

QByteArray makeText(const QList<PostgresSearchIndex::Entry> &entries)
{
    QByteArray text;
    for (const auto &entry : entries)
        text += entry.search.toCaseFolded().toUtf8() + '\0';
    return text;
}

// Matches are counted once an entry, as a search does, but nobody asks which entry it is.
qsizetype scan(const QByteArray &text, const QByteArray &wanted)
{
    qsizetype count = 0;
    const char *const end = text.constData() + text.size();
    for (const char *at = text.constData(); at < end;) {
        at = static_cast<const char *>(::memmem(at, static_cast<std::size_t>(end - at),
                                                wanted.constData(),
                                                static_cast<std::size_t>(wanted.size())));
        if (!at)
            break;
        ++count;
        at = static_cast<const char *>(std::memchr(at, '\0', static_cast<std::size_t>(end - at)))
             + 1;
    }
    return count;
}

} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    const QList<PostgresSearchIndex::Entry> entries = makeEntries();
    const QByteArray text = makeText(entries);
    const auto index = std::make_shared<const PostgresSearchIndex>(entries);
    const auto database = std::make_shared<PostgresDatabaseTreeEntryDatabase>();
    database->setDatabaseConnectionDetails(std::make_shared<PostgresDatabaseConnectionDetails>());
    database->setSearchResults(index);

    double slowest = 0;
    double sum = 0;
    double floor = 0;
    for (const QString &word : {u"loyalty"_qs, u"archive"_qs, u"99999"_qs, u"nowhere"_qs}) {
        for (qsizetype length = 1; length <= word.size(); ++length) {
            const QString typed = word.first(length);
            qsizetype scanned = 0;
            qsizetype matched = 0;
            floor += median([&] { scanned = scan(text, typed.toUtf8()); });
            const double time = median([&] { matched = index->matches(typed).size(); });
            sum += time;
            slowest = std::max(slowest, time);
            if (scanned != matched) {
                std::fprintf(stderr, "\"%s\" matches %lld, not %lld\n", qPrintable(typed),
                             static_cast<long long>(matched), static_cast<long long>(scanned));
                return 1;
            }
        }
    }
    const double thousand = median([&] { database->copyWithSearchResults(u"loyalty"_qs); });
    const double many = median([&] { database->copyWithSearchResults(u"archive"_qs); });
    std::printf("tree search of %d objects (%.1f MB): slowest keystroke %.2f ms, all %.2f times a "
                "bare scan; copy of 1,000 hits %.2f ms, of 50,000 %.0f ms\n",
                objects, double(text.size()) / 1e6, slowest, sum / floor, thousand, many);
    return 0;
}
