// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/DXError.h"
#include "core/DXGlobal.h"

#include <QMap>
#include <QString>

#include <functional>
#include <optional>

/// Texts under keys in one encrypted file, for desktops without a secret service. The file's key
/// lies beside it and only its owner may read either: this keeps secrets out of backups, searches
/// and careless copies of the file alone, not from the user's own programs. Any number of programs
/// may use it at a time. It blocks for as long as a small file takes. [any]
class DXSHARED_EXPORT DXSealedFile final
{
public:
    /// The files are made in folder, which is made when something is first written.
    explicit DXSealedFile(const QString &folder);

    /// Null when nothing is stored under key. *Slot decides*: error is filled when there is a file
    /// that cannot be read.
    QString read(const QString &key, DXError *error) const;
    /// Stores text, or removes what is there when text is null. *Result decides*: after a failure
    /// everything is as it was, and a file that cannot be read is never replaced.
    bool write(const QString &key, const QString &text, DXError *error) const;
    /// Makes of a text, which is null for none, the one to store in its place; called while no
    /// other program can write.
    using Change = std::function<QString(const QString &text)>;
    /// As write(), with what change makes of the text that is there.
    bool update(const QString &key, const Change &change, DXError *error) const;

private:
    using Texts = QMap<QString, QString>;

    QByteArray loadKey(DXError *error) const;
    QByteArray loadOrCreateKey(DXError *error) const;
    QByteArray readKey() const;
    std::optional<Texts> load(DXError *error) const;
    bool save(const Texts &texts, DXError *error) const;
    bool replaceFile(const QString &path, const QByteArray &bytes, DXError *error) const;

    const QString m_folder;
    const QString m_path;
    const QString m_keyPath;
    const bool m_canSeal;
};
