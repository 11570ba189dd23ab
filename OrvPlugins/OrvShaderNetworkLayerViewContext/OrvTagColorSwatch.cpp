#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvTagColorSwatch.h"

#include "OrvCore/Layers/OrvLayerUtils.h"
#include "OrvCoreModules/Widgets/OrvBasicColorSwatch.h"

OrvBasicColorSwatch* OrvTagColorSwatch::create(QWidget* pParent, Qt::WindowFlags Flags)
{
    constexpr bool CrossedOut = true, InvalidAllowed = true;
    const QString None = QStringLiteral("none");
    const QMap<QString, QColor>& Colors = OrvLayerUtils::validLayerColors();
    auto* pSwatch = new OrvBasicColorSwatch(Colors.size(), 1, pParent, Flags);
    pSwatch->setColor(0, 0, QColor(), None, CrossedOut, InvalidAllowed);
    int Cell = 1;
    for (auto Color = Colors.cbegin(); Color != Colors.cend(); ++Color) {
        if (Color.key() != None)
            pSwatch->setColor(Cell++, 0, Color.value(), Color.key(), !CrossedOut, !InvalidAllowed);
    }
    return pSwatch;
}
