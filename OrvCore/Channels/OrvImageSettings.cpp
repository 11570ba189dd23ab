#include "OrvCore/Channels/OrvImageSettings.h"

#include "OrvCore/Channels/OrvChannelSpace.h"
#include "OrvCore/Channels/OrvShaderInput.h"
#include "OrvCore/Channels/OrvShaderInputUtils.h"
#include "OrvCore/Layers/OrvChainTargets.h"

OrvImageSettings OrvImageSettings::ofChannel(const OrvShaderInput* pChannel)
{
    OrvImageSettings Settings;
    Settings.Layout = pChannel ? pChannel->layout() : OrvUdimLayout(QSize(2048, 2048));
    Settings.Paint = pChannel ? pChannel->paintFormat()
                              : OrvPixelFormat{GL_UNSIGNED_BYTE, OrvPixelFormat::Rgba, OrvPixelFormat::Srgb};
    Settings.Mask = pChannel
        ? pChannel->maskFormat()
        : OrvPixelFormat{GL_UNSIGNED_BYTE, OrvPixelFormat::Scalar, OrvPixelFormat::Linear};
    if (Settings.Paint.Curve == OrvPixelFormat::Linear)
        Settings.PaintSpace = OrvChannelSpace::storedIn(pChannel);
    return Settings;
}

OrvImageSettings OrvImageSettings::ofLayer(const OrvSnBaseNode* pNode)
{
    const QList<OrvShaderInput*> Parents = OrvShaderInputUtils::findParents(pNode, QString());
    OrvImageSettings Settings = ofChannel(Parents.isEmpty() ? nullptr : Parents.first());
    const QVector<OrvChainTargets::Target>& Targets = OrvChainTargets::of(pNode).Targets;
    if (!Targets.isEmpty()) {
        const OrvLayerStack* pStack
            = OrvLayerStack::getLayerStack(Targets.first().pNode, Targets.first().InputName);
        if (pStack && pStack->isWithinMask())
            Settings.takeDataAsPaint();
    }
    return Settings;
}

OrvImageSettings OrvImageSettings::ofStack(const OrvLayerStack* pStack)
{
    OrvImageSettings Settings = ofChannel(pStack->ownerShaderInput());
    if (pStack->isWithinMask())
        Settings.takeDataAsPaint();
    return Settings;
}

void OrvImageSettings::takeDataAsPaint()
{
    Paint.Curve = OrvPixelFormat::Linear;
    PaintSpace.clear();
}
