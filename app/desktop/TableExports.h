// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ui/DXTaskLines.h"

#include <QStringList>

#include <memory>

class DabroDBC;
class TableExport;

/// The tables that a window writes into files, with a line for each. Those that are left at its end
/// are cancelled. [main]
class TableExports final : public DXTaskLines
{
    Q_OBJECT

public:
    using DXTaskLines::DXTaskLines;
    ~TableExports() override;

    /// tablePath is quoted already. A file that is at path stays as it is unless all goes well.
    void start(const QString &tablePath, const std::shared_ptr<DabroDBC> &details,
               const QString &path);
    /// The tables that are being written.
    QStringList tables() const;

Q_SIGNALS:
    /// The table is in the file path, as message says.
    void succeeded(const QString &path, const QString &message);
    void cancelled(const QString &message);
    void failed(const QString &path, const QString &headline, const QString &details);

private:
    void stop(quint64 number);
    void end(quint64 number, const QString &failure);

    QMap<quint64, std::shared_ptr<TableExport>> m_exports;
};
