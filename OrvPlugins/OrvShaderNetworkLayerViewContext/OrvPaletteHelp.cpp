#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvPaletteHelp.h"

#include "OrvCoreModules/Window/OrvContextHelp.h"

#include <QtCore/QCoreApplication>

namespace {

QString tr(const char* pText)
{
    return QCoreApplication::translate("OrvPaletteHelp", pText);
}

QString page(const QString& Title, const QStringList& Paragraphs)
{
    return QStringLiteral("<b>%1</b><p>%2</p>").arg(Title, Paragraphs.join(QStringLiteral("</p><p>")));
}

} // namespace

void OrvPaletteHelp::registerTexts()
{
    OrvContextHelp::registerText(QStringLiteral("layers_palette"),
        page(tr("Layers"),
            {tr("The layers of the current channel, the topmost first. The buttons below the list add "
                "layers; Tab over the list finds an adjustment or procedural by its name. Blend mode and "
                "amount stand above the list, the current layer's settings below the buttons."),
                tr("<b>Rows:</b> a click on the brush or mask button chooses what is painted on. A click "
                   "on the eye hides a layer, a sweep over several eyes hides them all, Alt shows a layer "
                   "alone, Shift hides a layer of several channels in this channel only. F2 renames, Space "
                   "hides, L locks."),
                tr("<b>Drag</b> rows to move them, with Alt to copy and with Shift to share them: shared "
                   "layers show the same content in both places. Alt and the arrow keys move layers, too."),
                tr("<b>The bar</b> at the end of a row says what the layer costs, green to red; it is blue "
                   "where a cache saves it.")}));
    OrvContextHelp::registerText(QStringLiteral("channels_palette"),
        page(tr("Channels"),
            {tr("The channels of the current object; the current one is painted on, and the Layers palette "
                "shows its layers. A swatch of \"Quick Channel\" makes a channel with that fill at once."),
                tr("<b>Drag</b> a channel onto an input in the Shaders palette to feed it, with Alt within "
                   "the list to copy it, with Shift into the layers of another channel to share it there. "
                   "F2 renames."),
                tr("Depth and color spaces are changed by Channels > Convert Channel, the size by Channels "
                   "> Resize. Cut, copy and paste take whole channels, also to other projects.")}));
    OrvContextHelp::registerText(QStringLiteral("shaders_palette"),
        page(tr("Shaders"),
            {tr("What the canvas shows: the first rows show parts of the document alone, such as the "
                "current channel or layer; the rows below them are shaders of your own, which show several "
                "channels together under a light."),
                tr("<b>Inputs:</b> the arrow behind an input chooses, makes or disconnects its channel; "
                   "its name leads to the channel's layers. An input that no channel feeds has a value of "
                   "its own."),
                tr("Shaders > Add New Shader makes a shader. The inputs of a layered material take "
                   "material channels, whose shader layers have a tab of their own here.")}));
}
