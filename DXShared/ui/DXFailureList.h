// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/DXGlobal.h"

#include <QList>
#include <QPointer>
#include <QString>
#include <QWidget>

#include <functional>

class DXFailureView;

/// What failed in the part of a window below it, the newest first; each stays until it is put away
/// or settled, and none takes the focus from where somebody types. Takes no room while it is empty.
/// [main]
class DXSHARED_EXPORT DXFailureList final : public QWidget
{
    Q_OBJECT

public:
    struct Remedy
    {
        QString title;
        std::function<void()> apply;
    };

    explicit DXFailureList(QWidget *parent = nullptr);

    /// Says what failed with the thing that about names, in place of what was said about it before.
    /// details, what can be unfolded, may be empty. Choosing a remedy settles it.
    void showFailure(const QString &about, const QString &headline, const QString &details = {},
                     const QList<Remedy> &remedies = {});
    /// Says what the user has to know, and what can be done about it.
    void showNote(const QString &about, const QString &headline,
                  const QList<Remedy> &remedies = {});
    /// Takes away what was said about a thing: it works again.
    void settle(const QString &about);

    bool isEmpty() const { return m_entries.isEmpty(); }
    /// The newest first.
    QStringList headlines() const;
    /// Goes to the newest, where Tab reaches its buttons and Esc puts it away.
    void focusNewest();

private:
    struct Entry
    {
        QString about;
        DXFailureView *view;
    };

    DXFailureView &add(const QString &about, const QList<Remedy> &remedies);
    void remove(const DXFailureView *view);
    void showNewest();

    QList<Entry> m_entries;
    // Had the focus before a failure got it.
    QPointer<QWidget> m_before;
};
