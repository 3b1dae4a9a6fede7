// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/DXGlobal.h"

#include <QFrame>
#include <QString>

#include <functional>

class QHBoxLayout;
class QLabel;
class QPlainTextEdit;
class QPushButton;

/// What failed and what the server said about it, where it happened: text to select and to copy,
/// never markup; or a note about what the user knows already. Hidden until there is something to
/// tell. [main]
class DXSHARED_EXPORT DXFailureView final : public QFrame
{
    Q_OBJECT

public:
    /// A sheet shows one view, with all it has to say, until the sheet is closed. In a window it
    /// stays until it is put away (a button, or Esc), with the details folded in.
    enum class Place { Sheet, Window };

    explicit DXFailureView(Place place = Place::Sheet, QWidget *parent = nullptr);

    QString headline() const;
    QString text() const;
    /// Shows itself; text may be empty.
    void showFailure(const QString &headline, const QString &text);
    void showNote(const QString &headline);
    /// Offers a remedy beside the headline.
    void addRemedy(const QString &title, const std::function<void()> &apply);
    /// Gives the focus to its first button.
    void focusButtons();

Q_SIGNALS:
    /// The user has read it.
    void closeRequested();

protected:
    void changeEvent(QEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    enum class Kind { Failure, Note };

    void createButtons();
    void tell(Kind kind, const QString &headline, const QString &text);
    void applyTheme();
    void fitText();

    const Place m_place;
    Kind m_kind = Kind::Failure;
    QLabel *const m_headline;
    QHBoxLayout *const m_buttons;
    QPushButton *const m_details;
    QPushButton *const m_copy;
    QPlainTextEdit *const m_text;
};
