// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/query/DXQueryPreviewViewController.h"

#include "dispatch/DXDispatch.h"
#include "ui/query/DXQueryPreviewSheet.h"

DXQueryPreviewViewController::DXQueryPreviewViewController(
    const std::shared_ptr<DabroDBC> &connectionDetails)
    : m_settings{.connectionDetails = connectionDetails}
{ }

DXQueryPreviewViewController::~DXQueryPreviewViewController() = default;

void DXQueryPreviewViewController::beginSheetForWindow(QWidget *window,
                                                       const Completion &completion) const
{
    DX_ASSERT_MAIN();
    auto *const sheet = new DXQueryPreviewSheet(m_settings, window);
    sheet->setAttribute(Qt::WA_DeleteOnClose);
    if (completion)
        QObject::connect(sheet, &QDialog::finished, completion);
    sheet->open();
}
