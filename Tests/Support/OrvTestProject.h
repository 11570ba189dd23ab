#pragma once

#include "OrvCore/Channels/OrvShaderInput.h"
#include "OrvCore/Channels/OrvShaderInputManager.h"
#include "OrvCore/Channels/OrvShaderInputUtils.h"
#include "OrvCore/Layers/OrvLayer.h"
#include "OrvCore/Layers/OrvLayerManager.h"
#include "OrvCore/Layers/OrvLayerStreamUtils.h"
#include "OrvCore/Network/OrvNodeDescription.h"
#include "OrvCore/Network/OrvNodeEvaluation.h"
#include "OrvCore/Network/OrvShaderNetwork.h"
#include "OrvCore/Network/OrvSnMergeNode.h"
#include "OrvCore/Project/OrvGeoEntity.h"
#include "OrvCore/Project/OrvProject.h"
#include "OrvCore/Project/OrvProjectManager.h"
#include "OrvCore/Undo/OrvUndoManager.h"

#include "OrvDdi/Engine/OrvEngineNode.h"
#include "OrvDdi/Image/OrvColor.h"
#include "OrvDdi/Image/OrvImageSet.h"

#include <QtCore/QCryptographicHash>
#include <QtCore/QJsonDocument>

#include <cmath>

/// An open project for a test: one object, one current channel "Diffuse", closed again when it goes out of
/// scope. It offers what tests do again and again: a layer in one line, a stack as one text, a pixel, the
/// whole document as bytes to compare. It stands for the user and asks no more of the host than a palette
/// would.
class OrvTestProject {
public:
    explicit OrvTestProject(const QSize& Size = QSize(32, 32), GLenum Depth = GL_FLOAT)
    {
        OrvProjectManager::instance().newProject(QStringLiteral("Test"), QStringLiteral("Head"));
        m_pChannel = addChannel(QStringLiteral("Diffuse"), Size, Depth);
        OrvShaderInputManager::instance().makeShaderInputCurrent(m_pChannel, true);
        OrvUndoManager::instance().clear();
    }
    ~OrvTestProject() { OrvProjectManager::instance().closeProject(); }
    OrvTestProject(const OrvTestProject&) = delete;
    OrvTestProject& operator=(const OrvTestProject&) = delete;

    static OrvShaderNetwork* network()
    {
        return OrvProjectManager::instance().currentProject()->currentGeoEntity()->shaderNetwork();
    }
    OrvShaderInput* channel() const { return m_pChannel; }
    static OrvShaderInput* addChannel(
        const QString& Name, const QSize& Size = QSize(32, 32), GLenum Depth = GL_FLOAT, bool Scalar = false)
    {
        return OrvShaderInputUtils::create(network(), Name, Size, Depth, nullptr, Scalar);
    }
    /// The channel of that name, also after the project was opened again.
    static OrvShaderInput* channel(const QString& Name)
    {
        for (OrvShaderInput* pChannel :
            OrvShaderInputManager::instance().getShaderInputsFromNetwork(network())) {
            if (pChannel->name() == Name)
                return pChannel;
        }
        return nullptr;
    }

    /// A paintable layer on top of a stack (the channel), in one colour of linear light.
    OrvLayer* paint(
        const QString& Name, const OrvColor& Fill = OrvColor::clear(), OrvLayerStack* pStack = nullptr)
    {
        return (pStack ? pStack : m_pChannel)->createPaintableLayer(0, nullptr, Name, Fill);
    }
    /// Groups layers where they stand.
    OrvLayer* group(const QString& Name, const QList<OrvLayer*>& Layers)
    {
        QString Error;
        return m_pChannel->groupLayers(Error, 0, Layers, nullptr, Name);
    }
    static void select(const QList<OrvLayer*>& Layers)
    {
        network()->selectNone();
        for (OrvLayer* pLayer : Layers)
            pLayer->setSelected(true);
    }
    /// The first layer of that name on any level of the stack, or null.
    static OrvLayer* layer(const QString& Name, const OrvLayerStack* pStack)
    {
        for (OrvLayer* pLayer : pStack->allLayers()) {
            if (pLayer->name() == Name)
                return pLayer;
        }
        return nullptr;
    }
    OrvLayer* layer(const QString& Name) const { return layer(Name, m_pChannel); }

    /// A stack from top to bottom: "Rust Group[Dirt Scratches] Base".
    static QString tree(const OrvLayerStack* pStack)
    {
        QStringList Names;
        for (const OrvLayer* pLayer : pStack->layerList()) {
            const OrvLayerStack* pInside = OrvLayerStreamUtils::groupStack(pLayer);
            Names.append(pInside ? pLayer->name() + QLatin1Char('[') + tree(pInside) + QLatin1Char(']')
                                 : pLayer->name());
        }
        return Names.join(QLatin1Char(' '));
    }
    QString tree() const { return tree(m_pChannel); }

    /// What a node yields at a place, straight colour in linear light.
    static OrvColor pixel(const OrvSnBaseNode* pNode, const QPoint& Place = QPoint(1, 1))
    {
        float Components[4] = {0.0f, 0.0f, 0.0f, 0.0f};
        if (OrvEngineNode* pEngine = OrvNodeEvaluation::result(pNode)) {
            pEngine->render(QRect(Place, QSize(1, 1)), 1.0,
                {GL_FLOAT, OrvPixelFormat::Rgba, OrvPixelFormat::Linear}, Components);
        }
        return {Components[0], Components[1], Components[2], Components[3]};
    }
    OrvColor pixel(const QPoint& Place = QPoint(1, 1)) const { return pixel(m_pChannel->node(), Place); }
    static bool same(const OrvColor& First, const OrvColor& Second, float Within = 0.01f)
    {
        for (int Index = 0; Index < 4; ++Index) {
            if (std::abs(First.components()[Index] - Second.components()[Index]) > Within)
                return false;
        }
        return true;
    }
    /// Writes into an image as a brush would.
    static void fill(OrvImageSet* pImages, const QRect& Region, const OrvColor& Color)
    {
        pImages->buffer().fill(Color, Region);
        pImages->pixelsWritten(Region);
    }

    static void undo() { OrvUndoManager::instance().undo(); }
    static void redo() { OrvUndoManager::instance().redo(); }

    /// All nodes of the current object with their pixels; equal bytes mean equal documents.
    static QByteArray document()
    {
        QJsonArray Json;
        QCryptographicHash Pixels(QCryptographicHash::Md5);
        for (const OrvSnBaseNode* pNode : network()->nodes()) {
            const OrvNodeDescription Node = OrvNodeSubgraph::describe(pNode);
            Json.append(Node.toJson());
            digest(Node, Pixels);
        }
        return QJsonDocument(Json).toJson() + Pixels.result().toHex();
    }

private:
    static void digest(const OrvNodeDescription& Node, QCryptographicHash& Pixels)
    {
        if (Node.HasImages && !Node.Pixels.isNull()) {
            const QRect Extent = Node.Layout.extent();
            QByteArray Bytes(Extent.width() * Extent.height() * Node.Format.bytesPerPixel(), '\0');
            Node.Pixels.read(Extent, Node.Format, Bytes.data());
            Pixels.addData(Bytes);
        }
        for (const OrvNodeDescription& Inside : Node.Nested)
            digest(Inside, Pixels);
    }

    OrvShaderInput* m_pChannel = nullptr;
};
