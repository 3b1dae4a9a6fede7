// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/ProgressWindowController.h"

#include "dispatch/DXDispatch.h"

#include <QDialog>
#include <QDialogButtonBox>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QTimer>
#include <QVBoxLayout>

#include <chrono>
#include <utility>

namespace
{

constexpr int edge = 16;
constexpr int gap = 8;
constexpr int sheetWidth = 400;
constexpr std::chrono::milliseconds patience(150);
// Fine enough for a bar of any width.
constexpr int steps = 1000;

} // namespace

/// The window: it never closes by itself.
class ProgressWindowController::Sheet final : public QDialog
{
public:
    Sheet(QWidget *window, const std::function<void()> &cancel);

    void display(double progress, const QString &label);
    void reject() override;
    QTimer patience;

private:
    std::function<void()> m_cancel;
    QLabel *const m_label;
    QProgressBar *const m_bar;
    QDialogButtonBox *const m_buttons;
};

ProgressWindowController::Sheet::Sheet(QWidget *window, const std::function<void()> &cancel)
    : QDialog(window)
    , m_cancel(cancel)
    , m_label(new QLabel)
    , m_bar(new QProgressBar)
    , m_buttons(new QDialogButtonBox)
{
    setWindowModality(Qt::WindowModal);
    m_label->setTextFormat(Qt::PlainText);
    m_label->setWordWrap(true);
    m_bar->setTextVisible(false);
    auto *const layout = new QVBoxLayout(this);
    layout->setContentsMargins(edge, edge, edge, edge);
    layout->setSpacing(gap);
    layout->addWidget(m_label);
    layout->addWidget(m_bar);
    if (m_cancel) {
        m_buttons->addButton(QDialogButtonBox::Cancel);
        connect(m_buttons, &QDialogButtonBox::rejected, this, &Sheet::reject);
        layout->addSpacing(gap);
        layout->addWidget(m_buttons);
    }
    setFixedWidth(sheetWidth);
    patience.setSingleShot(true);
    connect(&patience, &QTimer::timeout, this, &QDialog::open);
}

void ProgressWindowController::Sheet::display(double progress, const QString &label)
{
    setWindowTitle(label);
    m_label->setText(label);
    m_bar->setAccessibleName(label);
    m_bar->setRange(0, progress < 0 ? 0 : steps);
    m_bar->setValue(static_cast<int>(progress * steps / 100));
}

void ProgressWindowController::Sheet::reject()
{
    if (const auto cancel = std::exchange(m_cancel, {})) {
        m_buttons->setEnabled(false);
        cancel();
    }
}

ProgressWindowController::ProgressWindowController(const QString &label)
    : m_label(label)
{ }

ProgressWindowController::~ProgressWindowController()
{
    delete m_sheet;
}

void ProgressWindowController::beginSheetForWindow(QWidget *window)
{
    DX_ASSERT_MAIN();
    m_self = shared_from_this();
    m_sheet = new Sheet(window, m_cancel);
    m_sheet->display(m_progress, m_label);
    m_sheet->patience.start(patience);
}

void ProgressWindowController::setProgress(double progress, const QString &andLabel)
{
    if (DXDispatch::isMainThread()) {
        update(progress, andLabel);
        return;
    }
    DXDispatch::main([self = weak_from_this(), progress, andLabel] {
        if (const auto controller = self.lock())
            controller->update(progress, andLabel);
    });
}

void ProgressWindowController::update(double progress, const QString &label)
{
    m_progress = progress;
    if (!label.isEmpty())
        m_label = label;
    if (m_sheet)
        m_sheet->display(m_progress, m_label);
}

void ProgressWindowController::endSheet()
{
    DX_ASSERT_MAIN();
    if (m_sheet)
        m_sheet->deleteLater();
    m_sheet.clear();
    m_self.reset();
}
