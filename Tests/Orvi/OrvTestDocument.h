#pragma once

#include "OrvCore/Channels/OrvShaderInput.h"
#include "OrvCore/Channels/OrvShaderInputManager.h"
#include "OrvCore/Channels/OrvShaderInputUtils.h"
#include "OrvCore/Layers/OrvLayer.h"
#include "OrvCore/Layers/OrvLayerManager.h"
#include "OrvCore/Network/OrvShaderNetwork.h"
#include "OrvCore/Network/OrvSnChannelInputNode.h"
#include "OrvCore/Network/OrvSnMergeNode.h"
#include "OrvCore/Project/OrvGeoEntity.h"
#include "OrvCore/Project/OrvProject.h"
#include "OrvCore/Project/OrvProjectManager.h"
#include "OrvCore/Undo/OrvUndoManager.h"

#include "OrvDdi/Color/OrvColorManager.h"
#include "OrvDdi/Image/OrvImageSet.h"

#include <QtCore/QTemporaryDir>
#include <QtGui/QColor>
#include <QtGui/QImage>
#include <QtWidgets/QUndoStack>

/// Documents for tests in a line or two, and pixels as users count them. Each test program makes one;
/// settings and caches go to a directory of its own.
class OrvTestDocument {
public:
    OrvTestDocument()
    {
        qputenv("ORV_SETTINGS", m_Directory.filePath(QStringLiteral("settings.ini")).toLocal8Bit());
    }

    static constexpr int LayerFlags
        = OrvLayerAboveCurrent | OrvLayerMakeCurrent | OrvLayerUniqueName | OrvLayerSelectAlone;

    QString filePath(const QString& Name) const { return m_Directory.filePath(Name); }

    OrvShaderNetwork* newProject() const
    {
        return OrvProjectManager::instance()
            .newProject(QStringLiteral("Test"))
            ->currentGeoEntity()
            ->shaderNetwork();
    }
    OrvShaderInput* newChannel(const QSize& Size, GLenum Depth = GL_UNSIGNED_BYTE, bool Scalar = false) const
    {
        OrvShaderInput* pChannel = OrvShaderInputUtils::create(
            newProject(), QStringLiteral("Color"), Size, Depth, nullptr, Scalar);
        OrvShaderInputManager::instance().makeShaderInputCurrent(pChannel, true);
        return pChannel;
    }
    OrvLayer* newPaintLayer(OrvLayerStack* pStack, const OrvColor& Fill = OrvColor::clear()) const
    {
        OrvLayer* pLayer = pStack->createPaintableLayer(Fill, LayerFlags);
        pLayer->makeCurrent(false, true);
        OrvLayerManager::instance().setCurrentComponent(pLayer->paintNode());
        return pLayer;
    }

    /// As an 8-bit picture of straight sRGB colour.
    static QImage pixelsOf(OrvImageSet* pImages)
    {
        QImage Image(pImages->extent().size(), QImage::Format_RGBA8888);
        if (pImages->isUniform()) {
            Image.fill(pImages->fillColor().toQColor());
        } else {
            const OrvPixelFormat Format{GL_UNSIGNED_BYTE, OrvPixelFormat::Rgba, OrvPixelFormat::Srgb};
            pImages->snapshot().read(pImages->extent(), Format, Image.bits(), Image.bytesPerLine());
        }
        return Image;
    }
    static float scalarAt(OrvImageSet* pImages, const QPoint& Pixel)
    {
        float Value = 0.0f;
        const OrvPixelFormat Format{GL_FLOAT, OrvPixelFormat::Scalar, OrvPixelFormat::Linear};
        pImages->buffer().read(QRect(Pixel, QSize(1, 1)), Format, &Value);
        return Value;
    }
    static int historyLength() { return OrvUndoManager::instance().stack()->count(); }

private:
    QTemporaryDir m_Directory;
};
