// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "query/DXQuerySplitter.h"

#include <QDirIterator>
#include <QFile>
#include <QString>

#include <algorithm>
#include <chrono>
#include <cstdio>

namespace
{

constexpr qsizetype TextSize = 10'000'000;
constexpr int Rounds = 15;

// The scripts that PostgreSQL's packages install, over and over.
QString realText()
{
    QString once;
    QDirIterator files(QStringLiteral("/usr/share/postgresql"), {QStringLiteral("*.sql")},
                       QDir::Files, QDirIterator::Subdirectories);
    while (files.hasNext()) {
        QFile file(files.next());
        if (file.open(QFile::ReadOnly))
            once += QString::fromUtf8(file.readAll()) + QStringLiteral("\n;\n");
    }
    QString text;
    text.reserve(TextSize + once.size());
    while (!once.isEmpty() && text.size() < TextSize)
        text += once;
    return text;
}

// The seconds of the fastest of some runs, so that a busy machine counts little.
template<typename Run>
double fastest(Run &&run)
{
    double best = 1e9;
    for (int round = 0; round < Rounds; ++round) {
        const auto begin = std::chrono::steady_clock::now();
        run();
        const std::chrono::duration<double> took = std::chrono::steady_clock::now() - begin;
        best = std::min(best, took.count());
    }
    return best;
}

} // namespace

int main()
{
    const QString text = realText();
    if (text.isEmpty()) {
        std::fputs("No *.sql in /usr/share/postgresql: install PostgreSQL's server.\n", stderr);
        return 1;
    }
    qsizetype marks = 0;
    QString copy;
    const double floor = fastest([&] {
        marks = 0;
        for (const QChar c : text)
            marks += (c == u';' || c == u'\n') ? 1 : 0;
        copy = QString(text.constData(), text.size());
    });
    qsizetype pieces = 0;
    const DXQuerySplitter splitter{SQLMetadataTokenizerOptions()};
    const double split = fastest([&] { pieces = splitter.split(text).size(); });
    const double megabytes = double(text.size()) * sizeof(QChar) / 1e6;
    std::printf(
        "splitter: %.1f MB of UTF-16, %lld statements: %.1f ms, %.0f MB/s, %.2f times a pass "
        "that counts ; and line feeds (%lld) and copies (%.1f ms)\n",
        megabytes, static_cast<long long>(pieces), split * 1e3, megabytes / split, split / floor,
        static_cast<long long>(marks), floor * 1e3);
    return copy == text ? 0 : 1;
}
