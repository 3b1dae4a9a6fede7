// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/DXLogHelper.h"

#include <gmock/gmock.h>

#include <utility>

using testing::ElementsAre;

namespace
{

class SystemLog final
{
public:
    SystemLog() { s_previous = qInstallMessageHandler(keep); }
    ~SystemLog() { qInstallMessageHandler(s_previous); }

    static inline QStringList s_lines;

private:
    Q_DISABLE_COPY_MOVE(SystemLog)

    static void keep(QtMsgType type, const QMessageLogContext &context, const QString &message)
    {
        s_lines.append(
            QStringLiteral("%1 %2 %3")
                .arg(QString::fromUtf8(context.category),
                     type == QtWarningMsg ? QStringLiteral("warning") : QStringLiteral("info"),
                     message));
    }

    static inline QtMessageHandler s_previous = nullptr;
};

TEST(DXLogHelper, writesPlainLinesAndTellsObservers)
{
    const SystemLog log;
    QStringList lines;
    QList<std::pair<DXError, QVariantMap>> errors;
    auto &helper = DXLogHelper::sharedInstance();
    const auto lineToken = helper.observeLines([&](const QString &line) { lines.append(line); });
    const auto errorToken =
        helper.observeErrors([&](const DXError &error, const QVariantMap &details) {
            errors.append({error, details});
        });

    const QString line = QStringLiteral("Loading \"t\"\ntook 0.01 seconds");
    DXLog(line);
    const DXError error(QStringLiteral("postgres.load"), 7, QStringLiteral("no such table \"t\""));
    const QVariantMap details{{QStringLiteral("Query"), QStringLiteral("SELECT '\\'")}};
    helper.logError(error, details);

    EXPECT_THAT(SystemLog::s_lines,
                ElementsAre(QStringLiteral("org.dabro info ") + line,
                            QStringLiteral("org.dabro warning postgres.load: no such table \"t\"\n"
                                           "Query: SELECT '\\'")));
    EXPECT_EQ(lines, QStringList{line});
    ASSERT_EQ(errors.size(), 1);
    EXPECT_EQ(errors.constFirst().first, error);
    EXPECT_EQ(errors.constFirst().second, details);
}

} // namespace
