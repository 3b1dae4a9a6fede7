// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/editor/DXSQLFolding.h"

#include "ui/DXTheme.h"
#include "ui/editor/DXSQLStyler.h"

namespace
{

using Base = QsciScintillaBase;

constexpr unsigned long margin = 1;
constexpr long marginWidth = 14;

struct Marker
{
    int number = 0;
    int drawing = 0;
};
constexpr Marker markers[] = {{Base::SC_MARKNUM_FOLDERSUB, Base::SC_MARK_EMPTY},
                              {Base::SC_MARKNUM_FOLDERTAIL, Base::SC_MARK_EMPTY},
                              {Base::SC_MARKNUM_FOLDERMIDTAIL, Base::SC_MARK_EMPTY},
                              {Base::SC_MARKNUM_FOLDER, Base::SC_MARK_ARROW},
                              {Base::SC_MARKNUM_FOLDEREND, Base::SC_MARK_ARROW},
                              {Base::SC_MARKNUM_FOLDEROPEN, Base::SC_MARK_ARROWDOWN},
                              {Base::SC_MARKNUM_FOLDEROPENMID, Base::SC_MARK_ARROWDOWN}};

} // namespace

DXSQLFolding::DXSQLFolding(QsciScintillaBase &view, DXSQLStyler &styler)
    : m_view(view)
    , m_styler(styler)
{
    view.SendScintilla(Base::SCI_SETMARGINTYPEN, margin, long(Base::SC_MARGIN_SYMBOL));
    view.SendScintilla(Base::SCI_SETMARGINWIDTHN, margin, marginWidth);
    view.SendScintilla(Base::SCI_SETMARGINSENSITIVEN, margin, 1L);
    view.SendScintilla(Base::SCI_SETMARGINMASKN, margin, long(Base::SC_MASK_FOLDERS));
    for (const auto &[number, drawing] : markers)
        view.SendScintilla(Base::SCI_MARKERDEFINE, static_cast<unsigned long>(number),
                           long(drawing));
    view.SendScintilla(Base::SCI_SETAUTOMATICFOLD,
                       long(Base::SC_AUTOMATICFOLD_SHOW | Base::SC_AUTOMATICFOLD_CHANGE));
    view.SendScintilla(Base::SCI_FOLDDISPLAYTEXTSETSTYLE, long(Base::SC_FOLDDISPLAYTEXT_BOXED));
    QObject::connect(&view, &Base::SCN_MARGINCLICK, &view, [this](int position, int, int clicked) {
        const auto line =
            static_cast<int>(m_view.SendScintilla(Base::SCI_LINEFROMPOSITION, long(position)));
        if (clicked == int(margin) && isHeader(line))
            toggle(line);
    });
}

void DXSQLFolding::applyTheme(const DXTheme &theme)
{
    m_view.SendScintilla(Base::SCI_SETFOLDMARGINCOLOUR, 1UL, theme.surface);
    m_view.SendScintilla(Base::SCI_SETFOLDMARGINHICOLOUR, 1UL, theme.surface);
    for (const Marker &marker : markers) {
        const auto number = static_cast<unsigned long>(marker.number);
        m_view.SendScintilla(Base::SCI_MARKERSETFORE, number, theme.null);
        m_view.SendScintilla(Base::SCI_MARKERSETBACK, number, theme.null);
    }
    const auto style = static_cast<unsigned long>(Base::STYLE_FOLDDISPLAYTEXT);
    m_view.SendScintilla(Base::SCI_STYLESETFORE, style, theme.secondaryText);
    m_view.SendScintilla(Base::SCI_STYLESETBACK, style, theme.alternateRow);
}

bool DXSQLFolding::isHeader(int line) const
{
    return (m_view.SendScintilla(Base::SCI_GETFOLDLEVEL, long(line)) & Base::SC_FOLDLEVELHEADERFLAG)
           != 0;
}

// Where a fold ends is known when everything up to there has been read.
void DXSQLFolding::toggle(int line)
{
    m_styler.readAll();
    const int header =
        isHeader(line)
            ? line
            : static_cast<int>(m_view.SendScintilla(Base::SCI_GETFOLDPARENT, long(line)));
    if (header < 0)
        return;
    m_view.SendScintilla(Base::SCI_TOGGLEFOLDSHOWTEXT, static_cast<unsigned long>(header), " … ");
    if (header != line)
        m_view.SendScintilla(Base::SCI_GOTOLINE, long(header));
}

void DXSQLFolding::setAll(int action)
{
    m_styler.readAll();
    m_view.SendScintilla(Base::SCI_FOLDALL, long(action));
    m_view.SendScintilla(Base::SCI_SCROLLCARET);
}

void DXSQLFolding::foldAll()
{
    setAll(Base::SC_FOLDACTION_CONTRACT);
}

void DXSQLFolding::unfoldAll()
{
    setAll(Base::SC_FOLDACTION_EXPAND);
}
