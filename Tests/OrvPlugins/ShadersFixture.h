#pragma once

#include "OrvCore/Channels/OrvShaderInput.h"
#include "OrvCore/Channels/OrvShaderInputUtils.h"
#include "OrvCore/Layers/OrvLayer.h"
#include "OrvCore/Network/OrvSnMergeNode.h"
#include "OrvCore/Shaders/OrvLayerShader.h"
#include "OrvCore/Shaders/OrvLayerShaderManager.h"
#include "OrvCore/Shaders/OrvLayerShaderUtils.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvShaderModel.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvShaderView.h"
#include "Tests/Support/OrvTestProject.h"

#include <QtCore/QTimer>
#include <QtTest/QtTest>
#include <QtWidgets/QApplication>
#include <QtWidgets/QMenu>

/// Shaders in a line or two, and what the list shows of them.
namespace ShadersFixture {

inline OrvLayerShaderManager& shaders()
{
    return OrvLayerShaderManager::instance();
}

/// A stand-alone shader that the name tells from others; it becomes current.
inline OrvLayerShader* addShader(const QString& Name, const QString& Key = QStringLiteral("Shader/Unlit"))
{
    OrvLayerShader* pShader = OrvLayerShaderUtils::createShaderFromKey(Key, true);
    pShader->node()->setName(Name);
    return pShader;
}

inline OrvShaderInput* addMaterialChannel()
{
    return OrvShaderInputUtils::createShaderInput(true);
}

/// A layer in a material stack, with a shader of its own.
inline OrvLayer* addShaderLayer(OrvShaderInput* pMaterial, const QString& Name)
{
    shaders().setLayerShaderCreating(true);
    OrvLayerShader* pShader = OrvLayerShaderUtils::createShaderFromKey(QStringLiteral("Shader/Unlit"), false);
    OrvLayer* pLayer = pMaterial->createShaderLayer(pShader, OrvLayerCreateFlags(), nullptr, Name);
    shaders().setLayerShaderCreating(false);
    return pLayer;
}

inline QStringList rowTexts(const OrvShaderView* pView)
{
    QStringList Texts;
    for (int Row = 0; Row < pView->model()->rowCount(); ++Row)
        Texts.append(pView->model()->item(Row)->text());
    return Texts;
}

/// Below the system shaders, which every object has.
inline QStringList userRows(const OrvShaderView* pView)
{
    QStringList Texts;
    for (int Row = 0; Row < pView->model()->rowCount(); ++Row) {
        if (!shaders().isSystemShaderNode(
                pView->model()->nodeFromIndex(pView->model()->index(Row, 0)), false))
            Texts.append(pView->model()->item(Row)->text());
    }
    return Texts;
}

/// Clicks that entry as soon as a menu is open; without one of that text the menu is closed.
inline void chooseFromPopup(const QString& Text)
{
    QTimer::singleShot(50, qApp, [Text] {
        auto* pMenu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
        if (!pMenu)
            return;
        for (QAction* pEntry : pMenu->actions()) {
            if (pEntry->text() == Text) {
                QTest::mouseClick(
                    pMenu, Qt::LeftButton, Qt::NoModifier, pMenu->actionGeometry(pEntry).center());
                return;
            }
        }
        pMenu->close();
    });
}

} // namespace ShadersFixture
