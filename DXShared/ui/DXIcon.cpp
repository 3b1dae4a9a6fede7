// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/DXIcon.h"

#include "ui/DXTheme.h"

#include <QFile>
#include <QHash>
#include <QIconEngine>
#include <QPainter>
#include <QSvgRenderer>

#include <memory>

// Outside any namespace, as the macro demands.
static void initializeIcons()
{
    Q_INIT_RESOURCE(DXSharedIcons);
}

namespace
{

/// Draws from the picture itself, so that no scale is blurred.
class SvgEngine final : public QIconEngine
{
public:
    explicit SvgEngine(const QByteArray &svg)
        : m_renderer(std::make_shared<QSvgRenderer>(svg))
    { }

    void paint(QPainter *painter, const QRect &rect, QIcon::Mode mode, QIcon::State) override
    {
        if (mode == QIcon::Disabled)
            painter->setOpacity(0.4);
        m_renderer->render(painter, rect);
    }
    QPixmap pixmap(const QSize &size, QIcon::Mode mode, QIcon::State state) override
    {
        QPixmap picture(size);
        picture.fill(Qt::transparent);
        QPainter painter(&picture);
        paint(&painter, QRect(QPoint(), size), mode, state);
        return picture;
    }
    QIconEngine *clone() const override { return new SvgEngine(*this); }

private:
    std::shared_ptr<QSvgRenderer> m_renderer;
};

QIcon load(const QString &name, const DXTheme &theme)
{
    initializeIcons();
    QFile file(QStringLiteral(":/DXSharedIcons/%1.svg").arg(name));
    if (!file.open(QFile::ReadOnly))
        return {};
    QByteArray svg = file.readAll();
    svg.replace("#STROKE", theme.secondaryText.name().toLatin1());
    svg.replace("#ACCENT", theme.accent.name().toLatin1());
    svg.replace("#DANGER", theme.danger.name().toLatin1());
    return QIcon(new SvgEngine(svg));
}

} // namespace

QIcon DXIcon::named(const QString &name, const QPalette &palette)
{
    if (name.isEmpty())
        return {};
    const DXTheme &theme = DXTheme::of(palette);
    static QHash<QString, QIcon> icons;
    const QString key = theme.accent.name() + name;
    if (const auto known = icons.constFind(key); known != icons.constEnd())
        return *known;
    return *icons.insert(key, load(name, theme));
}
