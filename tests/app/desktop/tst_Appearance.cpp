// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/desktop/DesktopTest.h"
#include "desktop/ActionSet.h"
#include "desktop/MainWindow.h"
#include "support/Contrast.h"
#include "support/PrintQt.h"

#include <QAction>
#include <QCheckBox>
#include <QComboBox>
#include <QPushButton>
#include <QRadioButton>
#include <QStyleOptionButton>

#include <algorithm>

namespace
{

using Id = ActionSet::Id;

/// The strongest contrast to the window at the left edge of button's indicator.
double frameContrast(QAbstractButton &button, QStyle::SubElement indicator)
{
    QStyleOptionButton option;
    option.initFrom(&button);
    const QRect rect = button.style()->subElementRect(indicator, &option, &button);
    const QImage image = button.grab().toImage();
    double strongest = 1;
    for (int x = rect.left(); x < rect.left() + 3; ++x)
        strongest = std::max(strongest, contrast(image.pixelColor(x, rect.center().y()),
                                                 option.palette.color(QPalette::Window)));
    return strongest;
}

QColor edgeOf(QWidget &widget)
{
    const QImage image = widget.grab().toImage();
    return image.pixelColor(0, image.height() / 2);
}

class AppearanceTest : public DesktopTest
{ };

TEST_F(AppearanceTest, drawsFramesThatAreSeen)
{
    open();
    for (const Id id : {Id::AppearanceLight, Id::AppearanceDark}) {
        window().actions()[id]->trigger();
        for (const bool isChecked : {false, true}) {
            QCheckBox box(QStringLiteral("Box"), &window());
            QRadioButton radio(QStringLiteral("Radio"), &window());
            box.setChecked(isChecked);
            radio.setChecked(isChecked);
            EXPECT_GE(frameContrast(box, QStyle::SE_CheckBoxIndicator), 2.9) << isChecked;
            // A round line shares its pixels with what lies behind.
            EXPECT_GE(frameContrast(radio, QStyle::SE_RadioButtonIndicator), 2.4) << isChecked;
            QComboBox choice(&window());
            choice.setEditable(isChecked);
            EXPECT_GE(contrast(edgeOf(choice), window().palette().color(QPalette::Window)), 2.9);
            QPushButton button(QStringLiteral("Button"), &window());
            EXPECT_GE(contrast(edgeOf(button), window().palette().color(QPalette::Window)), 2.9);
            box.setEnabled(false);
            EXPECT_GE(frameContrast(box, QStyle::SE_CheckBoxIndicator), 1.5) << isChecked;
        }
    }
    window().actions()[Id::AppearanceSystem]->trigger();
}

} // namespace
