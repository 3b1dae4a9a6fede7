// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/editor/DXSQLEditorActions.h"

#include "ui/editor/DXSQLEditor.h"

#include <Qsci/qscicommandset.h>

#include <QAction>

#include <algorithm>
#include <array>
#include <functional>

namespace
{

struct Command
{
    QString name;
    QString text;
    QList<QKeySequence> keys;
    std::function<void()> run;
};

void add(DXSQLEditor &editor, const Command &command)
{
    auto *action = new QAction(command.text, &editor);
    action->setObjectName(u"editor."_qs + command.name);
    action->setShortcuts(command.keys);
    action->setShortcutContext(Qt::WidgetShortcut);
    QObject::connect(action, &QAction::triggered, &editor, command.run);
    editor.addAction(action);
}

std::function<void()> sending(DXSQLEditor &editor, unsigned int message)
{
    return [&editor, message] { editor.SendScintilla(message); };
}

} // namespace

void DXSQLEditorActions::addTo(DXSQLEditor &editor)
{
    using Base = QsciScintillaBase;
    const auto keys = [](const char *key) {
        return QList<QKeySequence>{QKeySequence(QLatin1String(key))};
    };
    const QList<Command> commands = {
        {u"comment"_qs, DXSQLEditor::tr("Comment lines"), keys("Ctrl+/"),
         [&editor] { editor.toggleComment(); }},
        {u"moveUp"_qs, DXSQLEditor::tr("Move lines up"), keys("Ctrl+Shift+Up"),
         sending(editor, Base::SCI_MOVESELECTEDLINESUP)},
        {u"moveDown"_qs, DXSQLEditor::tr("Move lines down"), keys("Ctrl+Shift+Down"),
         sending(editor, Base::SCI_MOVESELECTEDLINESDOWN)},
        {u"duplicate"_qs, DXSQLEditor::tr("Duplicate lines"), keys("Ctrl+Shift+D"),
         [&editor] { editor.duplicateLines(); }},
        {u"deleteLine"_qs, DXSQLEditor::tr("Delete line"), keys("Ctrl+Shift+K"),
         sending(editor, Base::SCI_LINEDELETE)},
        {u"selectNext"_qs, DXSQLEditor::tr("Add next occurrence to selection"), keys("Ctrl+D"),
         [&editor] {
             editor.SendScintilla(Base::SCI_TARGETWHOLEDOCUMENT);
             editor.SendScintilla(Base::SCI_MULTIPLESELECTADDNEXT);
         }},
        {u"selectAll"_qs, DXSQLEditor::tr("Select all occurrences"), keys("Ctrl+Shift+L"),
         [&editor] {
             editor.SendScintilla(Base::SCI_TARGETWHOLEDOCUMENT);
             editor.SendScintilla(Base::SCI_MULTIPLESELECTADDEACH);
         }},
        {u"fold"_qs, DXSQLEditor::tr("Fold or unfold"), keys("Ctrl+Shift+["),
         [&editor] { editor.toggleFoldAtCaret(); }},
        {u"foldAll"_qs, DXSQLEditor::tr("Fold all"), keys("Ctrl+Alt+["),
         [&editor] { editor.foldAll(); }},
        {u"unfoldAll"_qs, DXSQLEditor::tr("Unfold all"), keys("Ctrl+Alt+]"),
         [&editor] { editor.unfoldAll(); }},
        {u"zoomIn"_qs, DXSQLEditor::tr("Larger text"), keys("Ctrl++") + keys("Ctrl+="),
         [&editor] { editor.zoomIn(); }},
        {u"zoomOut"_qs, DXSQLEditor::tr("Smaller text"), keys("Ctrl+-"),
         [&editor] { editor.zoomOut(); }},
        {u"zoomReset"_qs, DXSQLEditor::tr("Normal text size"), keys("Ctrl+0"),
         [&editor] { editor.zoomTo(0); }},
    };
    for (const Command &command : commands)
        add(editor, command);
}

void DXSQLEditorActions::freeKeys(DXSQLEditor &editor)
{
    using Command = QsciCommand;
    const std::array kept = {Command::SelectionCut, Command::SelectionCopy, Command::Paste,
                             Command::SelectAll, Command::Undo};
    const auto isPrintable = [](int key) {
        const int bare = key & ~static_cast<int>(Qt::KeyboardModifierMask);
        return (key & static_cast<int>(Qt::CTRL | Qt::ALT)) != 0 && bare < Qt::Key_Escape;
    };
    for (Command *command : editor.standardCommands()->commands()) {
        if (std::find(kept.begin(), kept.end(), command->command()) != kept.end())
            continue;
        if (isPrintable(command->key()))
            command->setKey(0);
        if (isPrintable(command->alternateKey()))
            command->setAlternateKey(0);
        if (command->command() == Command::Redo)
            command->setKey(int(Qt::CTRL) | int(Qt::SHIFT) | int(Qt::Key_Z));
    }
}
