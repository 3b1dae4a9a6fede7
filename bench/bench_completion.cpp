// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
// Types words, letter by letter, into statements on a database of 100,000 tables, and prints what
// the candidates cost beside a bare search of a sorted list. See README.md here.

#include "editing/DXCompletionCache.h"
#include "editing/DXCompletionNames.h"
#include "editing/DXSQLCompletion.h"
#include "support/FakeCompletion.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QTest>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <vector>

namespace
{

constexpr int objects = 100'000;
constexpr int rounds = 25;

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

QStringList makeNames(FakeAutocompleteHelper &helper)
{
    const QStringList words = {u"customer"_qs, u"Order"_qs,   u"invoice"_qs, u"item"_qs,
                               u"payment"_qs,  u"product"_qs, u"stock"_qs,   u"movement"_qs};
    QStringList names;
    for (int number = 0; number < objects; ++number) {
        const QString name =
            words[number % 8] + u'_' + words[number / 8 % 7] + u'_' + QString::number(number);
        const QString schema = number % 3 == 0 ? u"public"_qs : u"schema_%1"_qs.arg(number % 20);
        helper.add(schema, name, {u"id integer"_qs, u"name_%1 text"_qs.arg(number)});
        names += name.toCaseFolded();
    }
    std::sort(names.begin(), names.end());
    return names;
}

// The first names that begin with typed, found and copied, as a list that is shown needs them.
QStringList search(const QStringList &names, const QString &typed)
{
    QStringList found;
    for (auto name = std::lower_bound(names.begin(), names.end(), typed);
         name != names.end() && found.size() < DXSQLCompletion::maximum && name->startsWith(typed);
         ++name)
        found += *name;
    return found;
}

} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    const auto details = std::make_shared<FakeCompletionDBC>();
    const QStringList names = makeNames(*details->helper);
    const DXSQLCompletion completion(details);
    const auto cache = DXCompletionCache::of(details);
    QElapsedTimer preparing;
    preparing.start();
    details->helper->publish(details->description());
    if (!QTest::qWaitFor([&] { return cache->names() != nullptr; }, 60'000))
        return 1;
    const auto prepared = preparing.elapsed();

    double slowest = 0;
    double sum = 0;
    double floor = 0;
    for (const QString &before : {u"select * from customer_customer_0 c join "_qs,
                                  u"select c.id from customer_customer_0 c "
                                  "where "_qs}) {
        for (const QString &word :
             {u"customer_item"_qs, u"stock"_qs, u"item_p"_qs, u"pi"_qs, u"zz"_qs}) {
            for (qsizetype length = 1; length <= word.size(); ++length) {
                const QString typed = word.first(length);
                const QString text = before + typed;
                qsizetype found = 0;
                floor += median([&] { found = search(names, typed).size(); });
                qsizetype offered = 0;
                const double time = median(
                    [&] { offered = completion.complete(text, text.size()).candidates.size(); });
                sum += time;
                slowest = std::max(slowest, time);
                if (offered < found) {
                    std::fprintf(stderr, "\"%s\" offers %lld, not %lld\n", qPrintable(text),
                                 static_cast<long long>(offered), static_cast<long long>(found));
                    return 1;
                }
            }
        }
    }
    std::printf("completion among %d tables: slowest keystroke %.2f ms, all %.1f times a bare "
                "search of a sorted list; names prepared in %lld ms\n",
                objects, slowest, sum / floor, static_cast<long long>(prepared));
    return 0;
}
