// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/DXGlobal.h"

#include <QString>

#include <functional>
#include <memory>

class DXError;
class DXQueryLoader;
class DabroDBC;
class QWidget;

/// Shows the statements of a script before they are run, and runs them once the user accepts: a
/// sheet with a question, what it means, and the script. Nothing runs before; what fails is told in
/// the sheet, which then can be tried again. Set up, then shown once. [main]
class DXSHARED_EXPORT DXQueryPreviewViewController final
{
public:
    /// Runs on connectionDetails, which nobody changes any more.
    explicit DXQueryPreviewViewController(const std::shared_ptr<DabroDBC> &connectionDetails);
    ~DXQueryPreviewViewController();

    std::shared_ptr<DabroDBC> connectionDetails() const { return m_settings.connectionDetails; }
    void setConnectionDetails(const std::shared_ptr<DabroDBC> &details)
    {
        m_settings.connectionDetails = details;
    }
    /// The question, and what more there is to know before answering it.
    void setTitle(const QString &title) { m_settings.title = title; }
    void setInformativeText(const QString &text) { m_settings.informativeText = text; }
    /// The verb on the button that runs the script, which has the colour of danger: Return cancels.
    void setAcceptButtonTitle(const QString &title) { m_settings.acceptButtonTitle = title; }
    /// What is shown while it runs.
    void setProgressTitle(const QString &title) { m_settings.progressTitle = title; }
    /// Makes the script; loading begins when the sheet is shown.
    void setQueryLoader(const std::shared_ptr<DXQueryLoader> &loader)
    {
        m_settings.queryLoader = loader;
    }
    /// False for statements that a server refuses in a transaction; true otherwise.
    void setUseTransaction(bool useTransaction) { m_settings.useTransaction = useTransaction; }
    /// Done each time before the script runs. [background]
    void setPreparation(const std::function<void()> &preparation)
    {
        m_settings.preparation = preparation;
    }
    /// Told of each error that the sheet shows, with the script.
    using ErrorReport = std::function<void(const DXError &error, const QString &script)>;
    void setErrorReport(const ErrorReport &report) { m_settings.errorReport = report; }
    /// Offers to open the script in a query tab instead, which ends the sheet with result 0.
    using OpenInQueryTab = std::function<void(const QString &script)>;
    void setOpenInQueryTab(const OpenInQueryTab &open) { m_settings.openInQueryTab = open; }

    /// Shows the sheet on window and returns at once. completion is called with 1 once the script
    /// has run, with 0 when the user let it be; never when the window goes before.
    using Completion = std::function<void(int result)>;
    void beginSheetForWindow(QWidget *window, const Completion &completion) const;

    /// What a sheet shows and does.
    struct Settings
    {
        std::shared_ptr<DabroDBC> connectionDetails;
        QString title = {};
        QString informativeText = {};
        QString acceptButtonTitle = {};
        QString progressTitle = {};
        std::shared_ptr<DXQueryLoader> queryLoader = {};
        bool useTransaction = true;
        std::function<void()> preparation = {};
        ErrorReport errorReport = {};
        OpenInQueryTab openInQueryTab = {};
    };

private:
    Q_DISABLE_COPY_MOVE(DXQueryPreviewViewController)

    Settings m_settings;
};
