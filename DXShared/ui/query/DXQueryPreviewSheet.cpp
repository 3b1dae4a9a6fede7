// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/query/DXQueryPreviewSheet.h"

#include "client/DabroDBC.h"
#include "dispatch/DXDispatch.h"
#include "query/DXQueryLoader.h"
#include "query/DXQuerySplitter.h"
#include "query/SQLTokenizer.h"
#include "ui/DXDangerButton.h"
#include "ui/DXFailureView.h"
#include "ui/DXLabels.h"
#include "ui/editor/DXSQLEditor.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QPointer>
#include <QProgressBar>
#include <QPushButton>
#include <QStackedWidget>
#include <QVBoxLayout>

#include <chrono>
#include <utility>

namespace
{

constexpr int edge = 16;
constexpr int gap = 8;
constexpr std::chrono::milliseconds patience(150);

QLabel *selectableLabel(const QString &text)
{
    QLabel *const label = DXLabels::plain(text);
    label->setTextInteractionFlags(Qt::TextSelectableByMouse);
    label->setFocusPolicy(Qt::NoFocus);
    return label;
}

/// Whether a server would have anything to do; a loader tells of its failure in a comment.
bool hasStatement(const QString &script, const SQLMetadataTokenizerOptions &options)
{
    SQLTokenizer tokenizer(options, script, {});
    while (const auto token = tokenizer.next()) {
        const bool isSemicolon =
            token->kind == SQLToken::Kind::Punctuation && script.at(token->range.location) == u';';
        if (!token->isBlankOrComment() && !isSemicolon)
            return true;
    }
    return false;
}

SQLMetadataTokenizerOptions optionsOf(const DabroDBC &details)
{
    const auto options = details.createPreParserOptions();
    return options ? *options : SQLMetadataTokenizerOptions();
}

} // namespace

/// Carries the script to the main thread. It may outlive the sheet.
class DXQueryPreviewSheet::Receiver final : public DXQueryLoaderDelegate,
                                            public std::enable_shared_from_this<Receiver>
{
public:
    explicit Receiver(DXQueryPreviewSheet *sheet)
        : m_sheet(sheet)
    { }

    void queryLoaderLoadedQuery(DXQueryLoader &loader, const QString &query) override
    {
        Q_UNUSED(loader)
        DXDispatch::main([self = shared_from_this(), query] {
            if (self->m_sheet)
                self->m_sheet->loaded(query);
        });
    }
    /// [main]
    void sheetIsGone() { m_sheet = nullptr; }

private:
    DXQueryPreviewSheet *m_sheet;
};

DXQueryPreviewSheet::DXQueryPreviewSheet(const Settings &settings, QWidget *window)
    : QDialog(window)
    , m_settings(settings)
    , m_receiver(std::make_shared<Receiver>(this))
{
    setWindowTitle(settings.title);
    setWindowModality(Qt::WindowModal);
    setSizeGripEnabled(true);
    auto *const layout = new QVBoxLayout(this);
    layout->setContentsMargins(edge, edge, edge, edge);
    layout->setSpacing(edge);
    layout->addWidget(createQuestion());
    layout->addWidget(createScript(), 1);
    m_failure = new DXFailureView;
    m_failure->hide();
    layout->addWidget(m_failure);
    layout->addWidget(createProgress());
    layout->addLayout(createButtons());
    m_patience.setSingleShot(true);
    m_patience.setInterval(patience);
    connect(&m_patience, &QTimer::timeout, this, &DXQueryPreviewSheet::showProgress);
    resize(560, 288);
    setState(State::Loading);
}

DXQueryPreviewSheet::~DXQueryPreviewSheet()
{
    m_receiver->sheetIsGone();
    if (m_run)
        m_run->cancel();
}

QWidget *DXQueryPreviewSheet::createQuestion()
{
    auto *const question = new QWidget;
    auto *const layout = new QVBoxLayout(question);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(gap);
    QLabel *const title = selectableLabel(m_settings.title);
    QFont font = title->font();
    font.setBold(true);
    title->setFont(font);
    layout->addWidget(title);
    layout->addWidget(selectableLabel(m_settings.informativeText));
    return question;
}

QWidget *DXQueryPreviewSheet::createScript()
{
    m_editor = new DXSQLEditor({.options = optionsOf(*m_settings.connectionDetails),
                                .keywords = m_settings.connectionDetails->sqlKeywords()});
    m_editor->setReadOnly(true);
    m_editor->setCaretLineVisible(false);
    m_editor->setAccessibleName(tr("The statements"));
    m_loadingText = selectableLabel(tr("Loading the statements…"));
    m_loadingText->setAlignment(Qt::AlignCenter);
    m_loadingText->hide();
    auto *const loading = new QWidget;
    (new QVBoxLayout(loading))->addWidget(m_loadingText);
    m_scriptPlace = new QStackedWidget;
    m_scriptPlace->setFrameShape(QFrame::StyledPanel);
    m_scriptPlace->setMinimumHeight(96);
    m_scriptPlace->addWidget(loading);
    m_scriptPlace->addWidget(m_editor);
    return m_scriptPlace;
}

QWidget *DXQueryPreviewSheet::createProgress()
{
    m_progress = new QWidget;
    auto *const layout = new QVBoxLayout(m_progress);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(gap);
    m_progressText = selectableLabel(m_settings.progressTitle);
    auto *const bar = new QProgressBar;
    bar->setRange(0, 0);
    bar->setTextVisible(false);
    bar->setAccessibleName(m_settings.progressTitle);
    layout->addWidget(m_progressText);
    layout->addWidget(bar);
    return m_progress;
}

QLayout *DXQueryPreviewSheet::createButtons()
{
    m_copy = new QPushButton(tr("Copy"));
    m_copy->setToolTip(tr("Copy the statements"));
    m_openInTab = new QPushButton(tr("Open in query tab"));
    m_openInTab->setVisible(bool(m_settings.openInQueryTab));
    m_cancel = new QPushButton(tr("Cancel"));
    m_accept = new DXDangerButton(m_settings.acceptButtonTitle);
    // Return means the same wherever the focus is, and never destroys anything.
    for (QPushButton *const button : {m_copy, m_openInTab, m_cancel, m_accept})
        button->setAutoDefault(false);
    m_cancel->setDefault(true);
    connect(m_copy, &QPushButton::clicked, this, &DXQueryPreviewSheet::copyScript);
    connect(m_openInTab, &QPushButton::clicked, this, &DXQueryPreviewSheet::openInQueryTab);
    connect(m_cancel, &QPushButton::clicked, this, &DXQueryPreviewSheet::reject);
    connect(m_accept, &QPushButton::clicked, this, &DXQueryPreviewSheet::run);

    auto *const layout = new QHBoxLayout;
    layout->setSpacing(gap);
    layout->addWidget(m_copy);
    layout->addWidget(m_openInTab);
    layout->addStretch(1);
    layout->addWidget(m_cancel);
    layout->addWidget(m_accept);
    return layout;
}

void DXQueryPreviewSheet::setState(State state)
{
    m_state = state;
    m_scriptPlace->setCurrentIndex(state == State::Loading ? 0 : 1);
    m_accept->setEnabled(state == State::Ready);
    m_copy->setEnabled(state != State::Loading);
    m_openInTab->setEnabled(state == State::Ready);
    if (state == State::Loading || state == State::Running) {
        m_patience.start();
    } else if (state != State::Cancelling) {
        m_patience.stop();
    }
    m_progress->setVisible(state == State::Cancelling);
    m_progressText->setText(state == State::Cancelling
                                ? tr("Cancelling… Cancel again to close the connection.")
                                : m_settings.progressTitle);
}

void DXQueryPreviewSheet::showProgress()
{
    m_loadingText->setVisible(m_state == State::Loading);
    m_progress->setVisible(m_state == State::Running || m_state == State::Cancelling);
}

void DXQueryPreviewSheet::open()
{
    // The first in the window would have it, which is the editor.
    m_cancel->setFocus();
    QDialog::open();
    m_settings.queryLoader->setDelegate(m_receiver);
    m_settings.queryLoader->beginLoadingQuery(*m_settings.connectionDetails);
}

void DXQueryPreviewSheet::loaded(const QString &script)
{
    if (m_state != State::Loading)
        return;
    m_script = script;
    m_editor->setText(script);
    const SQLMetadataTokenizerOptions options = optionsOf(*m_settings.connectionDetails);
    if (hasStatement(script, options)) {
        if (const auto splitter = m_settings.connectionDetails->createQuerySplitter())
            m_statements = splitter->split(script);
    }
    setState(m_statements.isEmpty() ? State::Unavailable : State::Ready);
    if (m_statements.isEmpty())
        m_failure->showFailure(tr("There is nothing to run: the statements could not be made."),
                               QString());
}

void DXQueryPreviewSheet::run()
{
    if (m_state != State::Ready)
        return;
    m_failure->hide();
    m_editor->clearMarks();
    // A button that is disabled hands the focus on to the next.
    m_cancel->setFocus();
    setState(State::Running);
    using Transaction = DXScriptRun::Transaction;
    m_run = std::make_shared<DXScriptRun>(DXScriptRun::Init{
        .connectionDetails = m_settings.connectionDetails,
        .statements = m_statements,
        .transaction = m_settings.useTransaction ? Transaction::Yes : Transaction::No,
        .preparation = m_settings.preparation});
    m_run->start([sheet = QPointer(this)](const DXScriptRun::Outcome &outcome) {
        if (sheet)
            sheet->ended(outcome);
    });
}

void DXQueryPreviewSheet::reject()
{
    if (m_state == State::Running) {
        if (m_run->cancel())
            ended({.isCancelled = true});
        else
            setState(State::Cancelling);
    } else if (m_state == State::Cancelling) {
        // Ends the run at once, which lets go of it here.
        const std::shared_ptr<DXScriptRun> run = m_run;
        run->cancel();
    } else {
        QDialog::reject();
    }
}

void DXQueryPreviewSheet::ended(const DXScriptRun::Outcome &outcome)
{
    m_run.reset();
    setState(State::Ready);
    if (outcome.isSuccess()) {
        accept();
        return;
    }
    if (outcome.isCancelled && outcome.changes != DXScriptRun::Changes::Unknown) {
        m_failure->showNote(headlineFor(outcome));
        return;
    }
    m_editor->markErrors(outcome.error.queryErrorRanges());
    m_failure->showFailure(headlineFor(outcome), outcome.error.description().trimmed());
    if (outcome.error && m_settings.errorReport)
        m_settings.errorReport(outcome.error, m_script);
}

QString DXQueryPreviewSheet::headlineFor(const DXScriptRun::Outcome &outcome) const
{
    using Changes = DXScriptRun::Changes;
    if (outcome.changes == Changes::Unknown)
        return tr("The connection broke, and whether the server did it is not known. Refresh the "
                  "tree to see.");
    QString what;
    if (outcome.isCancelled)
        what = tr("Cancelled");
    else if (outcome.failedStatement < 0)
        what = tr("The server could not do it");
    else if (m_statements.size() == 1)
        what = tr("The statement failed");
    else
        what = tr("Statement %1 of %2 failed")
                   .arg(outcome.failedStatement + 1)
                   .arg(m_statements.size());
    return outcome.changes == Changes::None ? tr("%1; nothing was changed.").arg(what)
                                            : tr("%1; what was done before stays done.").arg(what);
}

void DXQueryPreviewSheet::copyScript()
{
    QGuiApplication::clipboard()->setText(m_script);
}

void DXQueryPreviewSheet::openInQueryTab()
{
    m_settings.openInQueryTab(m_script);
    QDialog::reject();
}
