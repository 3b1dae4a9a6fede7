// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/DXGlobal.h"
#include "query/DXScriptRun.h"
#include "ui/query/DXQueryPreviewViewController.h"

#include <QDialog>
#include <QTimer>

#include <memory>

class DXFailureView;
class DXSQLEditor;
class QLabel;
class QPushButton;
class QStackedWidget;

/// The window of DXQueryPreviewViewController, which tells what it does. [main]
class DXSHARED_EXPORT DXQueryPreviewSheet final : public QDialog
{
    Q_OBJECT

public:
    using Settings = DXQueryPreviewViewController::Settings;
    DXQueryPreviewSheet(const Settings &settings, QWidget *window);
    ~DXQueryPreviewSheet() override;

    /// Shows what loads after a moment, and begins loading.
    void open() override;
    /// Cancels what runs, and breaks its connection the second time; else closes the sheet.
    void reject() override;

private:
    class Receiver;
    enum class State { Loading, Unavailable, Ready, Running, Cancelling };

    QWidget *createQuestion();
    QWidget *createScript();
    QWidget *createProgress();
    QLayout *createButtons();
    void setState(State state);
    void showProgress();
    void loaded(const QString &script);
    void run();
    void ended(const DXScriptRun::Outcome &outcome);
    QString headlineFor(const DXScriptRun::Outcome &outcome) const;
    void copyScript();
    void openInQueryTab();

    const Settings m_settings;
    State m_state = State::Loading;
    QString m_script;
    QList<DXQueryDetails> m_statements;
    std::shared_ptr<Receiver> m_receiver;
    std::shared_ptr<DXScriptRun> m_run;
    // What takes no time shows no progress.
    QTimer m_patience;
    QStackedWidget *m_scriptPlace = nullptr;
    DXSQLEditor *m_editor = nullptr;
    QLabel *m_loadingText = nullptr;
    DXFailureView *m_failure = nullptr;
    QWidget *m_progress = nullptr;
    QLabel *m_progressText = nullptr;
    QPushButton *m_copy = nullptr;
    QPushButton *m_openInTab = nullptr;
    QPushButton *m_cancel = nullptr;
    QPushButton *m_accept = nullptr;
};
