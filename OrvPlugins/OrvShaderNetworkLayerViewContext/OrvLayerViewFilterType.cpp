#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerViewFilterType.h"

#include "OrvCore/Layers/OrvLayer.h"
#include "OrvCoreModules/Window/OrvIcon.h"
#include "OrvCoreModules/Window/OrvResourceInfo.h"

#include <QtWidgets/QPushButton>

namespace {
constexpr int ButtonSize = 24;
}

OrvLayerViewFilterType::OrvLayerViewFilterType(QWidget* pParent)
    : QObject(pParent)
{
}

QString OrvLayerViewFilterType::highlightedName(const OrvLayer* pLayer) const
{
    return matches(pLayer) ? bold(pLayer->name()) : QString();
}

QString OrvLayerViewFilterType::bold(const QString& Text)
{
    return QStringLiteral("<b>") + escaped(Text) + QStringLiteral("</b>");
}

QString OrvLayerViewFilterType::escaped(const QString& Text)
{
    // Rich text makes one blank of several.
    return Text.toHtmlEscaped().replace(QStringLiteral("  "), QStringLiteral(" &nbsp;"));
}

QWidget* OrvLayerViewFilterType::widgetParent() const
{
    return static_cast<QWidget*>(parent());
}

QPushButton* OrvLayerViewFilterType::createFlatButton(
    const QString& IconFileName, const QString& ToolTip) const
{
    auto* pButton = new QPushButton(widgetParent());
    pButton->setFlat(true);
    pButton->setFixedSize(ButtonSize, ButtonSize);
    pButton->setIcon(OrvIcon::createIconFromPath(
        OrvResourceInfo::instance().iconPath() + QLatin1Char('/') + IconFileName));
    pButton->setToolTip(ToolTip);
    return pButton;
}

QPushButton* OrvLayerViewFilterType::createButton(const QString& IconFileName, const QString& ToolTip)
{
    QPushButton* pButton = createFlatButton(IconFileName, ToolTip);
    pButton->setCheckable(true);
    connect(pButton, SIGNAL(toggled(bool)), this, SIGNAL(changed()));
    return pButton;
}

#include "moc_OrvLayerViewFilterType.cpp"
