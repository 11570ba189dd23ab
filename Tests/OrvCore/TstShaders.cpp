#include "Tests/Support/OrvTestProject.h"

#include "OrvCore/Channels/OrvSnShaderInputNode.h"
#include "OrvCore/Layers/OrvLayerUtils.h"
#include "OrvCore/Network/OrvShaderNetworkManager.h"
#include "OrvCore/Network/OrvShaderNetworkUtils.h"
#include "OrvCore/Network/OrvSnUnknownNode.h"
#include "OrvCore/Object/OrvDebug.h"
#include "OrvCore/Project/OrvProjectFile.h"
#include "OrvCore/Shaders/OrvLayerShader.h"
#include "OrvCore/Shaders/OrvLayerShaderManager.h"
#include "OrvCore/Shaders/OrvLayerShaderUtils.h"
#include "OrvCore/Shaders/OrvMultiChannelLayerUtils.h"
#include "OrvCore/Shaders/OrvShadingModel.h"
#include "OrvCore/Shaders/OrvSnShaderNode.h"

#include <QtCore/QMimeData>
#include <QtCore/QTemporaryDir>
#include <QtGui/QClipboard>
#include <QtGui/QGuiApplication>
#include <QtTest/QSignalSpy>
#include <QtTest/QtTest>
#include <QtWidgets/QUndoStack>

namespace {

const QString Unlit = QStringLiteral("Shader/Unlit");
const QString Metallic = QStringLiteral("Shader/MetallicRoughness");
const QString Specular = QStringLiteral("Shader/Specular");
const QString Layered = QStringLiteral("Shader/LayeredMaterial");

OrvLayerShaderManager& shaders()
{
    return OrvLayerShaderManager::instance();
}

OrvLayerShader* create(const QString& Key, bool MakeCurrent = true)
{
    return OrvLayerShaderUtils::createShaderFromKey(Key, MakeCurrent);
}

/// As the palette does for a new shader layer.
OrvLayer* createLayer(OrvLayerStack* pStack, const QString& Key, const QString& Name = QString())
{
    const OrvUndoManager::AutoMacro Macro("Add Shader Layer");
    shaders().setLayerShaderCreating(true);
    OrvLayer* pLayer = pStack->createShaderLayer(create(Key), 0, nullptr, Name);
    shaders().setLayerShaderCreating(false);
    return pLayer;
}

QStringList names(const QList<OrvLayerShader*>& Shaders)
{
    QStringList Names;
    for (const OrvLayerShader* pShader : Shaders)
        Names.append(pShader->name());
    return Names;
}

QList<OrvLayerShader*> listed()
{
    return shaders().getUserLayerShaders(OrvTestProject::network());
}

OrvShaderInput* addMaterialChannel(const QString& Name, const QSize& Size = QSize(32, 32))
{
    OrvShaderInput* pChannel = OrvTestProject::addChannel(Name, Size);
    pChannel->node()->addTag(OrvSnNames::MaterialShaderInputTag);
    return pChannel;
}

QStringList uuids()
{
    QStringList Uuids;
    for (const OrvSnBaseNode* pNode : shaders().getShaderNodes(OrvTestProject::network(), false))
        Uuids.append(pNode->uuidString());
    return Uuids;
}

QJsonObject readJson(const QString& Path)
{
    QFile File(Path);
    return File.open(QIODevice::ReadOnly) ? QJsonDocument::fromJson(File.readAll()).object() : QJsonObject();
}

/// The text of the manifest with something else in place of a piece of it.
bool replaceInFile(const QString& Path, const QByteArray& Before, const QByteArray& After)
{
    QFile File(Path);
    if (!File.open(QIODevice::ReadWrite))
        return false;
    const QByteArray Text = File.readAll();
    File.resize(0);
    File.seek(0);
    File.write(QByteArray(Text).replace(Before, After));
    return Text.contains(Before);
}

} // namespace

/// Shaders of a document as palettes use them: what they hold and who feeds them, alone and as layers,
/// through undo, clipboard and project file, and what their lit pictures look like.
class TstShaders : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void cleanup() { OrvProjectManager::instance().closeProject(); }

    void typesAreOfferedWithTheirInputs()
    {
        QCOMPARE(OrvShaderNetworkUtils::standaloneShaderTypes(), (QStringList{Metallic, Specular, Unlit}));
        QCOMPARE(OrvShaderNetworkUtils::layeredShaderTypes(), QStringList{Layered});
        OrvTestProject Project;
        for (const OrvShadingModel* pModel : OrvShadingModel::all()) {
            QVERIFY(OrvShaderNetworkManager::instance().nodeMenuPath(pModel->key()).startsWith("Shaders/"));
            const OrvLayerShader* pShader = create(pModel->key());
            QVERIFY(pShader);
            QCOMPARE(pShader->shaderModel(), pModel);
            QCOMPARE(pShader->inputNames(), pModel->inputNames());
            QCOMPARE(pShader->name(), pModel->label());
            // Each fills a place of its own in the picture.
            QSet<int> Slots;
            for (const OrvShadingModel::Input& Input : pModel->inputs())
                Slots.insert(Input.Slot);
            QCOMPARE(Slots.size(), pModel->inputs().size());
        }
        const OrvLayerShader* pLayered = shaders().currentLayerShader();
        QCOMPARE(pLayered->inputNames(OrvLayerShader::MaterialInputs),
            (QStringList{"Material 1", "Material 2", "Material 3", "Material 4"}));
        QCOMPARE(pLayered->inputNames(OrvLayerShader::ChannelInputs), QStringList{"Displacement"});
        QVERIFY(pLayered->isInputForMaterialsStacks("Material 2"));
        QVERIFY(!pLayered->isInputForMaterialsStacks("Displacement"));
        QVERIFY(pLayered->isInputScalar("Displacement"));
        QVERIFY(!create("Shader/Unheard"));
        QVERIFY(!create("Merge"));
    }

    void createdShaderComesBackAsTheSameOne()
    {
        OrvTestProject Project;
        OrvSnBaseNode* pChannelShader = shaders().getCurrentChannelShader();
        QCOMPARE(shaders().currentShaderNode(), pChannelShader);
        QSignalSpy Current(&shaders(), &OrvLayerShaderManager::currentLayerShaderChanged);
        QSignalSpy Added(&shaders(), &OrvLayerShaderManager::shaderAdded);
        QSignalSpy Removed(&shaders(), &OrvLayerShaderManager::shaderRemoved);

        OrvLayerShader* pShader = create(Metallic);
        const QPointer<OrvSnBaseNode> pNode = pShader->node();
        const QString Uuid = pNode->uuidString();
        QCOMPARE(shaders().currentShaderNode(), pNode.data());
        QCOMPARE(shaders().selectedUserShaderNode(), pNode.data());
        QVERIFY(pNode->hasTag("UserSelectedShader"));
        QCOMPARE(Added.size(), 1);
        QCOMPARE(Current.size(), 1);
        QCOMPARE(OrvUndoManager::instance().stack()->count(), 1);

        Project.undo();
        QVERIFY(listed().isEmpty());
        QCOMPARE(Removed.size(), 1);
        QCOMPARE(shaders().currentShaderNode(), pChannelShader);
        QVERIFY(!shaders().selectedUserShaderNode());
        Project.redo();
        QCOMPARE(listed().size(), 1);
        QCOMPARE(listed().first()->node(), pNode.data());
        QCOMPARE(pNode->uuidString(), Uuid);
        QCOMPARE(shaders().currentShaderNode(), pNode.data());
        QCOMPARE(shaders().selectedUserShaderNode(), pNode.data());

        // Looking elsewhere leaves it chosen; removing it and taking that back brings all of it back.
        shaders().setCurrentShader(shaders().getCurrentCurrentLayerShader());
        QCOMPARE(shaders().selectedUserShaderNode(), pNode.data());
        shaders().setCurrentShader(pNode);
        QVERIFY(OrvLayerShaderUtils::destroy(listed().first(), false));
        QCOMPARE(shaders().currentShaderNode(), pChannelShader);
        QVERIFY(!shaders().selectedUserShaderNode());
        Project.undo();
        QCOMPARE(shaders().currentShaderNode(), pNode.data());
        QVERIFY(pNode->hasTag("UserSelectedShader"));

        create(Metallic);
        QCOMPARE(names(listed()), (QStringList{"Metallic Roughness", "Metallic Roughness 2"}));
        QString Error;
        QVERIFY(OrvLayerShaderUtils::duplicateLayerShader(listed().last(), Error));
        QCOMPARE(listed().last()->name(), QString("Metallic Roughness 3"));
        QVERIFY(!pNode->hasTag("UserSelectedShader"));
        shaders().resetSelectedUserShaderNode();
        QVERIFY(!shaders().selectedUserShaderNode());
    }

    void systemShadersStandBesideTheDocument()
    {
        OrvTestProject Project;
        const QByteArray Before = Project.document();
        const auto visible = [] {
            QStringList Names;
            for (const OrvSnBaseNode* pNode : shaders().getShaderNodes(OrvTestProject::network(), true)) {
                if (!pNode->hasTag(OrvLayerShaderManager::nodeTagCurrentMaterialShader()))
                    Names.append(pNode->name());
            }
            return Names;
        };
        const QStringList Names{"Current Channel", "Current Layer & Below", "Current Layer",
            "Current Paint Target", "Current Material"};
        QCOMPARE(visible(), Names);
        QVERIFY(shaders().getShaderNodes(Project.network(), false).isEmpty());
        QVERIFY(!OrvUndoManager::instance().stack()->canUndo());
        for (const OrvSnBaseNode* pNode : Project.network()->nodes())
            QVERIFY(!pNode->hasTag(OrvSnNames::ShaderTag));
        QVERIFY(!shaders().getCurrentMaterialProxyShader(Project.network()));
        QVERIFY(!OrvLayerShaderUtils::destroy(shaders().currentLayerShader(), false));
        OrvShaderInput* pMaterial = addMaterialChannel("Material");
        QVERIFY(!OrvLayerUtils::createShaderLayerNodeAfter(
            pMaterial->bottomNode(), shaders().currentShaderNode(), "Layer"));
        shaders().currentShaderNode()->setName("Renamed");
        shaders().currentShaderNode()->setName("Current Channel");
        Project.undo();
        Project.undo();
        QCOMPARE(Project.document(), Before);
        QVERIFY(!OrvUndoManager::instance().stack()->canUndo());

        Project.paint("Layer");
        Project.undo();
        QCOMPARE(visible(), Names);
        shaders().setCurrentShader(shaders().getCurrentLayerAndBelowShader(Project.network()));
        const QPointer<OrvSnBaseNode> pOld = shaders().currentShaderNode();
        shaders().recreateSystemShaders();
        QCOMPARE(visible(), Names);
        QVERIFY(shaders().currentShaderNode() != pOld);
        QVERIFY(shaders().currentShaderNode()->hasTag(
            OrvLayerShaderManager::nodeTagCurrentLayerAndBelowShader()));
        QCOMPARE(Project.document(), Before);

        const OrvSnBaseNode* pUser = create(Unlit)->node();
        QVERIFY(shaders().getCurrentMaterialProxyShader(Project.network()));
        shaders().recreateSystemShaders();
        QCOMPARE(shaders().currentShaderNode(), pUser);
        QCOMPARE(shaders().materialShader()->node(), pUser);
        Project.undo(); // what was shown then is a new node by now
        QVERIFY(shaders().currentShaderNode()->hasTag(
            OrvLayerShaderManager::nodeTagCurrentLayerAndBelowShader()));
        Project.redo();
        QCOMPARE(shaders().currentShaderNode(), pUser);

        // Each object has its own, and its own current one.
        OrvGeoEntity* pOther = OrvProjectManager::instance().currentProject()->addGeoEntity("Hand");
        QVERIFY(shaders().currentLayerShader(pOther->shaderNetwork()));
        QVERIFY(shaders().currentLayerShader(pOther->shaderNetwork())->node()->hasTag("Channel"));
        QVERIFY(shaders().getCurrentChannelShader(pOther->shaderNetwork())
            != shaders().getCurrentChannelShader());
        QVERIFY(!shaders().materialShader(pOther->shaderNetwork()));
        OrvProjectManager::instance().closeProject();
        QVERIFY(!shaders().currentLayerShader());
        QVERIFY(!shaders().getCurrentChannelShader());
    }

    void onlyFittingChannelsAreConnected()
    {
        OrvTestProject Project;
        OrvShaderInput* pMaterial = addMaterialChannel("Material");
        OrvGeoEntity* pOther = OrvProjectManager::instance().currentProject()->addGeoEntity("Hand");
        OrvShaderInput* pForeign
            = OrvShaderInputUtils::create(pOther->shaderNetwork(), "Foreign", QSize(32, 32), GL_FLOAT);
        OrvLayerShader* pPlain = create(Metallic);
        OrvLayerShader* pLayered = create(Layered);
        QVERIFY(pLayered->setInputShaderInput("Material 1", pMaterial));
        const QByteArray Before = Project.document();
        const int Steps = OrvUndoManager::instance().stack()->index();
        QSignalSpy Connected(
            &OrvShaderInputManager::instance(), &OrvShaderInputManager::newShaderInputConnected);

        QVERIFY(!pPlain->setInputShaderInput("Unheard", Project.channel()));
        QVERIFY(!pPlain->setInputShaderInput("Base Color", pForeign));
        QVERIFY(!pPlain->setInputShaderInput("Base Color", pMaterial));
        QVERIFY(!pLayered->setInputShaderInput("Material 2", Project.channel()));
        QVERIFY(!pLayered->setInputShaderInput("Displacement", pMaterial));
        QCOMPARE(Project.document(), Before);
        QCOMPARE(OrvUndoManager::instance().stack()->index(), Steps);
        QVERIFY(Connected.isEmpty());

        QVERIFY(pPlain->setInputShaderInput("Base Color", Project.channel()));
        QVERIFY(pPlain->setInputShaderInput("Occlusion", Project.channel()));
        QCOMPARE(Connected.size(), 2);
        QCOMPARE(Connected[0][0].toString(), QString("Base Color"));
        QCOMPARE(pPlain->inputShaderInputs(), QList<OrvShaderInput*>{Project.channel()});
        QCOMPARE(pPlain->inputStreamName(Project.channel()), QString("Base Color"));
        QCOMPARE(pPlain->inputStreamName(pMaterial), QString());

        // A shader that stands in a material must not be fed by what that feeds.
        QVERIFY(pMaterial->createShaderLayer(pPlain, 0));
        OrvShaderInput* pMaterial2 = addMaterialChannel("Material 2");
        QVERIFY(pMaterial2->createShaderLayer(pLayered, 0));
        QVERIFY(!pMaterial->createShaderLayer(pLayered, 0));
        const QByteArray Cyclic = Project.document();
        QVERIFY(!pLayered->setInputShaderInput("Material 2", pMaterial2));
        QCOMPARE(Project.document(), Cyclic);
        QVERIFY(OrvLayerShaderUtils::disconnectInput(pPlain, "Occlusion", false));
        QVERIFY(!pPlain->inputShaderInput("Occlusion"));
        Project.undo();
        QCOMPARE(pPlain->inputShaderInput("Occlusion"), Project.channel());
    }

    void inputsAreEditedAndTold()
    {
        OrvTestProject Project;
        OrvLayerShader* pShader = create(Metallic);
        const QStringList Inputs = pShader->inputNames();
        const OrvColor Default = pShader->inputValue("Base Color");
        QVERIFY(pShader->isInputEnabled("Roughness") && !pShader->isInputInverted("Roughness"));
        QSignalSpy Switched(
            &OrvShaderNetworkManager::instance(), &OrvShaderNetworkManager::nodeInputEnabledChanged);
        OrvUndoManager::instance().clear();
        {
            const OrvUndoManager::AutoMacro Gesture("Drag");
            for (int Step = 1; Step <= 10; ++Step)
                pShader->setInputValue("Base Color", OrvColor(Step / 10.0f, 0.0f, 0.5f));
        }
        QCOMPARE(OrvUndoManager::instance().stack()->count(), 1);
        QCOMPARE(pShader->inputValue("Base Color"), OrvColor(1.0f, 0.0f, 0.5f));
        pShader->setInputValue("Roughness", OrvColor(0.25f, 0.9f, 0.9f));
        QCOMPARE(pShader->inputValue("Roughness"), OrvColor(0.25f, 0.25f, 0.25f));
        pShader->setInputInverted("Roughness", true);
        pShader->setInputEnabled("Roughness", false);
        pShader->setInputEnabled("Roughness", false);
        QCOMPARE(Switched.size(), 1);
        QCOMPARE(Switched[0][1].toString(), QString("Roughness"));
        QCOMPARE(Switched[0][2].toBool(), false);
        QCOMPARE(OrvUndoManager::instance().stack()->count(), 4);
        pShader->setInputValue("Unheard", OrvColor::white());
        pShader->setInputEnabled("Unheard", false);
        QCOMPARE(OrvUndoManager::instance().stack()->count(), 4);
        // Editors that know nothing of shaders show none of it.
        for (const OrvCustomAttribute& Attribute : pShader->node()->userAttributes())
            QVERIFY(!Attribute.isVisible());

        while (OrvUndoManager::instance().stack()->canUndo())
            Project.undo();
        QCOMPARE(Switched.size(), 2);
        QCOMPARE(Switched[1][2].toBool(), true);
        QCOMPARE(pShader->inputValue("Base Color"), Default);
        QVERIFY(pShader->isInputEnabled("Roughness") && !pShader->isInputInverted("Roughness"));

        OrvLayerShader* pLayered = create(Layered);
        pLayered->setInputValue("Material 1", OrvColor::black());
        QCOMPARE(pLayered->inputValue("Material 1"), OrvColor::grey50());
        QSignalSpy Upgraded(&OrvShaderNetworkManager::instance(), &OrvShaderNetworkManager::upgradeCompleted);
        const QByteArray Before = Project.document();
        OrvShaderNetworkManager::instance().upgradeAllNodes();
        QCOMPARE(Upgraded.size(), 1);
        QCOMPARE(Project.document(), Before);
        QCOMPARE(pShader->inputNames(), Inputs);
    }

    void duplicateHasTheSameValuesAndChannels()
    {
        OrvTestProject Project;
        OrvLayerShader* pShader = create(Specular);
        pShader->setInputValue("Roughness", OrvColor(0.1f, 0.1f, 0.1f));
        pShader->setInputEnabled("Bump", false);
        pShader->setInputShaderInput("Diffuse", Project.channel());
        QString Error;
        OrvLayerShader* pCopy = OrvLayerShaderUtils::duplicateLayerShader(pShader, Error);
        QVERIFY2(pCopy, qPrintable(Error));
        QCOMPARE(pCopy->name(), QString("Specular 2"));
        QCOMPARE(shaders().currentLayerShader(), pCopy);
        QVERIFY(!pShader->node()->hasTag("UserSelectedShader"));
        QCOMPARE(pCopy->inputValue("Roughness"), OrvColor(0.1f, 0.1f, 0.1f));
        QVERIFY(!pCopy->isInputEnabled("Bump"));
        QCOMPARE(pCopy->inputShaderInput("Diffuse"), Project.channel());
        pCopy->setInputValue("Roughness", OrvColor::white());
        QCOMPARE(pShader->inputValue("Roughness"), OrvColor(0.1f, 0.1f, 0.1f));
        Project.undo();
        Project.undo();
        QCOMPARE(listed().size(), 1);
        QCOMPARE(shaders().currentLayerShader(), pShader);
        QVERIFY(!OrvLayerShaderUtils::duplicateLayerShader(
            shaders().getLayerShader(shaders().getCurrentChannelShader()), Error));
        QVERIFY(!Error.isEmpty());
    }

    void multiChannelLayersBelongToOneShader()
    {
        OrvTestProject Project;
        OrvShaderInput* pRoughness = Project.addChannel("Roughness");
        OrvLayerShader* pShader = create(Specular);
        pShader->setInputShaderInput("Diffuse", Project.channel());
        pShader->setInputShaderInput("Roughness", pRoughness);
        QString Error;
        QVERIFY2(OrvMultiChannelLayerUtils::createMultiChannelGroupLayer(pShader, nullptr, Error),
            qPrintable(Error));
        const QByteArray Before = Project.document();
        QVERIFY(!OrvLayerShaderUtils::duplicateLayerShader(pShader, Error));
        QVERIFY(Error.contains("multi-channel"));
        QCOMPARE(Project.document(), Before);
        const auto multiChannelLayers = [&] {
            return int(OrvLayerStreamUtils::isMultiChannelMergeLayer(Project.channel()->layerList().value(0)))
                + int(OrvLayerStreamUtils::isMultiChannelMergeLayer(pRoughness->layerList().value(0)));
        };
        QCOMPARE(multiChannelLayers(), 2);

        QVERIFY(OrvLayerShaderUtils::destroy(pShader, false)); // taken apart
        QCOMPARE(multiChannelLayers(), 0);
        QCOMPARE(Project.channel()->layerList().size(), 1);
        QVERIFY(Project.channel()->layerList().first()->isGroupLayer());
        QVERIFY(listed().isEmpty());
        Project.undo();
        QCOMPARE(Project.document(), Before);
        pShader = listed().first();
        QVERIFY(OrvLayerShaderUtils::destroy(pShader, true)); // removed
        QVERIFY(Project.channel()->isEmpty() && pRoughness->isEmpty());
        Project.undo();
        QCOMPARE(Project.document(), Before);

        pShader = listed().first();
        QVERIFY(OrvLayerShaderUtils::disconnectInput(pShader, "Roughness", true));
        QVERIFY(pRoughness->isEmpty());
        QVERIFY(!pShader->inputShaderInput("Roughness"));
        Project.undo();
        QCOMPARE(Project.document(), Before);
        QCOMPARE(multiChannelLayers(), 2);
    }

    void clipboardGoesBetweenProjects()
    {
        const QTemporaryDir Folder;
        QString Error;
        {
            OrvTestProject Project;
            QGuiApplication::clipboard()->clear();
            QVERIFY(!OrvLayerShaderUtils::pasteFromClipboard(Error, Project.network()));
            QVERIFY(Error.isEmpty());
            OrvLayerShaderUtils::copyToClipboard(shaders().currentLayerShader());
            QVERIFY(!OrvLayerShaderUtils::pasteFromClipboard(Error, Project.network()));

            OrvLayerShader* pShader = create(Metallic);
            pShader->setInputValue("Metallic", OrvColor::white());
            pShader->setInputShaderInput("Base Color", Project.channel());
            const QByteArray Before = Project.document();
            QVERIFY(OrvLayerShaderUtils::cutToClipboard(pShader));
            QVERIFY(listed().isEmpty());
            Project.undo();
            QCOMPARE(Project.document(), Before);
            OrvLayerShader* pPasted = OrvLayerShaderUtils::pasteFromClipboard(Error, Project.network());
            QVERIFY2(pPasted, qPrintable(Error));
            QCOMPARE(pPasted->name(), QString("Metallic Roughness 2"));
            QCOMPARE(pPasted->inputShaderInput("Base Color"), Project.channel());
            QCOMPARE(shaders().selectedUserShaderNode(), pPasted->node());
            Project.undo();
            QCOMPARE(Project.document(), Before);
            QVERIFY2(
                OrvProjectManager::instance().saveProjectAs(Folder.filePath("P"), Error), qPrintable(Error));
        }
        {
            // Another project has another channel of that name, which is not meant.
            OrvTestProject Project;
            const OrvLayerShader* pPasted = OrvLayerShaderUtils::pasteFromClipboard(Error, Project.network());
            QVERIFY2(pPasted, qPrintable(Error));
            QCOMPARE(pPasted->name(), QString("Metallic Roughness"));
            QCOMPARE(pPasted->inputValue("Metallic"), OrvColor::white());
            QVERIFY(pPasted->inputShaderInputs().isEmpty());
            QVERIFY(!OrvLayerShaderUtils::pasteFromClipboard(Error, nullptr));
            QVERIFY(!Error.isEmpty());
        }
        QVERIFY2(OrvProjectManager::instance().openProject(Folder.filePath("P"), Error), qPrintable(Error));
        const OrvLayerShader* pPasted
            = OrvLayerShaderUtils::pasteFromClipboard(Error, OrvTestProject::network());
        QCOMPARE(pPasted->inputShaderInput("Base Color"), OrvTestProject::channel("Diffuse"));

        const QByteArray Before = OrvTestProject::document();
        for (const char* pDamaged : {"", "[", "{}", "[]", "[{}]", R"([{"id":"a","type":"Merge"}])",
                 R"([{"id":"a","type":"Shader/Unlit"},{"id":"b","type":"Shader/Unlit"}])"}) {
            auto* pData = new QMimeData;
            pData->setData("application/x-orvi-shader-clipboard", pDamaged);
            QGuiApplication::clipboard()->setMimeData(pData);
            QVERIFY2(!OrvLayerShaderUtils::pasteFromClipboard(Error, OrvTestProject::network()), pDamaged);
            QVERIFY(!Error.isEmpty());
            QCOMPARE(OrvTestProject::document(), Before);
        }
    }

    void shaderLayersStandInMaterialsOnly()
    {
        OrvTestProject Project;
        OrvShaderInput* pMaterial = addMaterialChannel("Material");
        QVERIFY(pMaterial->holdsShaders());
        QVERIFY(!Project.channel()->holdsShaders());
        OrvLayer* pPaint = Project.paint("Paint");
        OrvLayerShader* pListed = create(Unlit);
        const QByteArray Before = Project.document();
        QVERIFY(!Project.channel()->createShaderLayer(pListed, 30));
        QVERIFY(
            !pMaterial->createShaderLayer(shaders().getLayerShader(shaders().getCurrentChannelShader()), 30));
        QVERIFY(!pMaterial->createPaintableLayer(30, nullptr, "Paint", OrvColor::white()));
        QVERIFY(!pMaterial->createProceduralLayer("Procedural/Basic/Solid Color", 30));
        QVERIFY(!pMaterial->createAdjustmentLayer("Filter/Adjust/Invert Linear", 30));
        QVERIFY(!pMaterial->createBakePointLayer(30));
        QVERIFY(!OrvLayerUtils::createShaderLayerNodeAfter(pPaint->blendNode(), pListed->node(), "Shader"));
        QVERIFY(!OrvLayerStreamUtils::createLayerNodeAfter(
            pMaterial->bottomNode(), Project.channel()->node(), "Shared", QString(), true));
        QVERIFY(!pPaint->canBePlacedAt(pMaterial->bottomNode(), pMaterial));
        QVERIFY(!pPaint->addSharedLayerAfter(pMaterial->bottomNode(), QString(), true));
        QCOMPARE(Project.document(), Before);

        OrvLayer* pLayer = pMaterial->createShaderLayer(pListed, 30);
        QVERIFY(pLayer && pLayer->isShaderLayer());
        QCOMPARE(pLayer->name(), QString("Unlit"));
        QCOMPARE(pLayer->shaderNode(), pListed->node());
        QVERIFY(pLayer->isSharedShader());
        QVERIFY(!pLayer->canBePlacedAt(pPaint->blendNode(), Project.channel()));
        QVERIFY(!pLayer->canHaveAdjustmentStack());
        // Into groups too, that hold nothing else either.
        OrvLayer* pGroup = pMaterial->createGroupLayer(30);
        OrvLayerStack* pInside = OrvLayerStreamUtils::groupStack(pGroup);
        QVERIFY(pInside->holdsShaders());
        QVERIFY(!pInside->createPaintableLayer(0, nullptr, "Paint", OrvColor::white()));
        QVERIFY(pInside->createShaderLayer(pListed, 0));
        QVERIFY(!pGroup->canBePlacedAt(pPaint->blendNode(), Project.channel()));
        Project.select({pLayer, pGroup});
        QVERIFY(!pMaterial->mergeLayers());
        QVERIFY(!OrvLayerStreamUtils::flattenLayer(pGroup, pMaterial));
        // A mask of a shader layer is a stack like others.
        pLayer->addMaskImageSet();
        OrvLayerStack* pMask = pLayer->convertMaskToMaskStack();
        QVERIFY(pMask->createPaintableLayer(0, nullptr, "Spots", OrvColor::white()));
        QVERIFY(!pMask->createShaderLayer(pListed, 0));
        QString Error;
        Project.select({pLayer});
        pMaterial->copyToClipboard();
        QVERIFY(Project.channel()->pasteFromClipboard(22, Error).isEmpty());
        QVERIFY(Error.contains("material"));
    }

    void layersOwnShaderComesAndGoesWithIt()
    {
        OrvTestProject Project;
        OrvShaderInput* pMaterial = addMaterialChannel("Material");
        const QByteArray Empty = Project.document();
        OrvSnBaseNode* pWasCurrent = shaders().currentShaderNode();
        OrvLayer* pLayer = createLayer(pMaterial, Metallic, "Base");
        QVERIFY(pLayer);
        OrvSnBaseNode* pNode = pLayer->shaderNode();
        QVERIFY(pNode->hasTag("_stackShader"));
        QVERIFY(listed().isEmpty());
        QCOMPARE(shaders().currentShaderNode(), pWasCurrent);
        QVERIFY(!pLayer->isSharedShader());
        QVERIFY(pLayer->cost() > 0.0);
        Project.undo();
        QCOMPARE(Project.document(), Empty);
        Project.redo();
        QCOMPARE(pMaterial->layerList().first()->shaderNode(), pNode);

        // Copies have their own, second layers share it.
        shaders().getLayerShader(pNode)->setInputShaderInput("Base Color", Project.channel());
        shaders().getLayerShader(pNode)->setInputValue("Roughness", OrvColor::black());
        pLayer = pMaterial->layerList().first();
        Project.select({pLayer});
        const OrvLayer* pCopy = pMaterial->duplicateLayers().value(0);
        QVERIFY(pCopy && pCopy->shaderNode() != pNode);
        QVERIFY(pCopy->shaderNode()->hasTag("_stackShader"));
        QCOMPARE(
            shaders().getLayerShader(pCopy->shaderNode())->inputShaderInput("Base Color"), Project.channel());
        QCOMPARE(shaders().getLayerShader(pCopy->shaderNode())->inputValue("Roughness"), OrvColor::black());
        OrvLayer* pShared = pLayer->addSharedLayerAfter(pLayer->blendNode(), QString(), true);
        QVERIFY(pShared && pShared->isSharedShader() && pLayer->isSharedShader());
        QVERIFY(!pLayer->convertShaderLayerToShader());
        pMaterial->deleteLayers({pShared});
        QVERIFY(pNode->network() && !pLayer->isSharedShader());
        const QByteArray Before = Project.document();
        pMaterial->deleteLayers({pLayer});
        QVERIFY(!pNode->network());
        Project.undo();
        QCOMPARE(Project.document(), Before);

        // Out of the stack and into the list.
        pLayer = Project.layer("Base", pMaterial);
        pLayer->setLocked(true);
        QVERIFY(!pLayer->convertShaderLayerToShader());
        pLayer->setLocked(false);
        QSignalSpy Tagged(&shaders(), &OrvLayerShaderManager::shaderTagsChanged);
        QCOMPARE(pLayer->convertShaderLayerToShader(), pNode);
        QCOMPARE(Tagged.size(), 1);
        QCOMPARE(Tagged[0][0].toString(), QString("_stackShader"));
        QVERIFY(!Project.layer("Base", pMaterial));
        QCOMPARE(listed().size(), 1);
        QCOMPARE(listed().first()->node(), pNode);
        Project.undo();
        QVERIFY(listed().isEmpty());
        QVERIFY(Project.layer("Base", pMaterial));
    }

    void removedShaderStaysInTheLayersThatShowIt()
    {
        OrvTestProject Project;
        OrvShaderInput* pMaterial = addMaterialChannel("Material");
        OrvLayerShader* pListed = create(Unlit);
        OrvLayer* pLayer = pMaterial->createShaderLayer(pListed, 30);
        const QByteArray Before = Project.document();
        QVERIFY(OrvLayerShaderUtils::destroy(pListed, false));
        QVERIFY(listed().isEmpty());
        QVERIFY(!shaders().selectedUserShaderNode());
        QVERIFY(pLayer->shaderNode() && !pLayer->isSharedShader());
        pMaterial->deleteLayers({pLayer});
        QVERIFY(shaders().getShaderNodes(Project.network(), false).isEmpty());
        Project.undo();
        Project.undo();
        QCOMPARE(Project.document(), Before);
        QCOMPARE(shaders().selectedUserShaderNode(), listed().first()->node());

        // The layers of one that is theirs alone go with it, unless something forbids that.
        OrvLayer* pOwn = createLayer(pMaterial, Specular);
        OrvLayerShader* pOwnShader = shaders().getLayerShader(pOwn->shaderNode());
        pOwn->setLocked(true);
        const QByteArray Locked = Project.document();
        QVERIFY(!OrvLayerShaderUtils::destroy(pOwnShader, false));
        QCOMPARE(Project.document(), Locked);
        pOwn->setLocked(false);
        QVERIFY(OrvLayerShaderUtils::destroy(pOwnShader, false));
        QCOMPARE(pMaterial->layerList(), QList<OrvLayer*>{pLayer});
    }

    void projectKeepsShadersAndWhatIsCurrent()
    {
        const QTemporaryDir Folder;
        QString Error;
        QStringList Uuids;
        {
            OrvTestProject Project;
            OrvLayerShader* pFirst = create(Metallic);
            pFirst->setInputValue("Metallic", OrvColor::white());
            pFirst->setInputInverted("Roughness", true);
            pFirst->setInputEnabled("Normal", false);
            pFirst->setInputShaderInput("Base Color", Project.channel());
            create(Unlit);
            createLayer(addMaterialChannel("Material"), Specular);
            shaders().setCurrentShader(pFirst->node());
            shaders().setCurrentShader(shaders().getCurrentCurrentLayerShader());
            Uuids = uuids();
            QVERIFY2(
                OrvProjectManager::instance().saveProjectAs(Folder.filePath("P"), Error), qPrintable(Error));
        }
        const QJsonArray Objects = readJson(Folder.filePath("P/project.json")).value("entities").toArray();
        QCOMPARE(Objects.first().toObject().value("currentShader").toString(), QString("Layer"));
        QVERIFY2(OrvProjectManager::instance().openProject(Folder.filePath("P"), Error), qPrintable(Error));
        QCOMPARE(uuids(), Uuids);
        QCOMPARE(listed().size(), 2);
        QCOMPARE(shaders().currentShaderNode(), shaders().getCurrentCurrentLayerShader());
        const OrvLayerShader* pFirst = shaders().getLayerShader(shaders().selectedUserShaderNode());
        QVERIFY(pFirst);
        QCOMPARE(pFirst->node()->uuidString(), Uuids.first());
        QVERIFY(pFirst->node()->hasTag("UserSelectedShader"));
        QCOMPARE(pFirst->inputValue("Metallic"), OrvColor::white());
        QVERIFY(pFirst->isInputInverted("Roughness") && !pFirst->isInputEnabled("Normal"));
        QCOMPARE(pFirst->inputShaderInput("Base Color"), OrvTestProject::channel("Diffuse"));
        QVERIFY(!OrvUndoManager::instance().stack()->canUndo());
    }

    void strangeShadersInProjects()
    {
        const QTemporaryDir Folder;
        const QString Manifest = Folder.filePath("P/project.json");
        QString Error;
        {
            OrvTestProject Project;
            OrvLayerShader* pStrange = create(Specular);
            pStrange->setInputShaderInput("Diffuse", Project.channel());
            pStrange->setInputValue("Roughness", OrvColor::white());
            pStrange->node()->setName("Strange");
            OrvLayerShader* pOld = create(Metallic);
            pOld->setInputValue("Roughness", OrvColor::white());
            pOld->setInputEnabled("Normal", false);
            pOld->setInputShaderInput("Emissive", Project.channel());
            QVERIFY2(
                OrvProjectManager::instance().saveProjectAs(Folder.filePath("P"), Error), qPrintable(Error));
        }
        QVERIFY(replaceInFile(Manifest, "\"Shader/Specular\"", "\"Shader/FromTheFuture\""));
        QVERIFY(replaceInFile(Manifest, "\"Emissive\"", "\"Glow\""));
        QString Told;
        OrvSetDebugSink([&Told](const OrvDebugMessage& Message) { Told += Message.Text; });
        const bool Opened = OrvProjectManager::instance().openProject(Folder.filePath("P"), Error);
        OrvSetDebugSink({});
        QVERIFY2(Opened, qPrintable(Error));
        QVERIFY(Told.contains("Strange") && Told.contains("Shader/FromTheFuture"));

        const QList<OrvLayerShader*> Shaders = listed();
        QCOMPARE(Shaders.size(), 2);
        QVERIFY(qobject_cast<OrvSnUnknownNode*>(Shaders[0]->node()));
        QVERIFY(!Shaders[0]->shaderModel());
        QCOMPARE(Shaders[0]->inputNames(), QStringList{"Diffuse"});
        QCOMPARE(Shaders[0]->inputShaderInput("Diffuse"), OrvTestProject::channel("Diffuse"));
        QVERIFY(Shaders[0]->inputNames(OrvLayerShader::MaterialInputs).isEmpty());
        // An input of another version stays with what feeds it, behind those that are known.
        QCOMPARE(Shaders[1]->inputNames().last(), QString("Glow"));
        QCOMPARE(Shaders[1]->inputShaderInput("Glow"), OrvTestProject::channel("Diffuse"));
        OrvNodeEvaluation::result(Shaders[0]->node());
        OrvNodeEvaluation::result(Shaders[1]->node());

        // A copy of the strange one is another one; both are stored as they were.
        QVERIFY(OrvLayerShaderUtils::duplicateLayerShader(Shaders[0], Error));
        QVERIFY2(OrvProjectManager::instance().saveProject(Error), qPrintable(Error));
        QVERIFY2(OrvProjectManager::instance().openProject(Folder.filePath("P"), Error), qPrintable(Error));
        QCOMPARE(listed().size(), 3);
        const QByteArray Stored = QJsonDocument(readJson(Manifest)).toJson();
        QCOMPARE(Stored.count("\"Shader/FromTheFuture\""), 2);
        QCOMPARE(Stored.count("\"Value Roughness\""), 3);
    }

    void damagedAttributesAreDefaults()
    {
        OrvTestProject Project;
        OrvLayerShader* pShader = create(Metallic);
        const OrvColor Default = pShader->inputValue("Roughness");
        OrvSnBaseNode* pNode = pShader->node();
        pNode->setUserAttributeValue(OrvSnShaderNode::valueAttribute("Roughness"), "rough");
        pNode->setUserAttributeValue(OrvSnShaderNode::enabledAttribute("Roughness"), QVariantList{1, 2});
        pNode->setUserAttributeValue(OrvSnShaderNode::invertedAttribute("Roughness"), QVariantMap{{"a", 1}});
        QCOMPARE(pShader->inputValue("Roughness"), Default);
        QVERIFY(pShader->isInputEnabled("Roughness"));
        QVERIFY(!pShader->isInputInverted("Roughness"));
        OrvShaderNetworkManager::instance().upgradeAllNodes();
        QVERIFY(pNode->ownUserAttributes().isEmpty());
        Project.undo();
        QCOMPARE(pNode->ownUserAttributes().size(), 3);
    }

    void unlitShaderShowsItsColor()
    {
        OrvTestProject Project;
        Project.addChannel("Another"); // a picture needs a size
        const OrvColor Orange(0.8f, 0.4f, 0.1f);
        Project.paint("Base", Orange);
        OrvLayerShader* pShader = create(Unlit);
        OrvSnBaseNode* pNode = pShader->node();
        pShader->setInputValue("Color", OrvColor(0.2f, 0.3f, 0.4f));
        QVERIFY(Project.same(Project.pixel(pNode), OrvColor(0.2f, 0.3f, 0.4f)));
        pShader->setInputShaderInput("Color", Project.channel());
        QVERIFY(Project.same(Project.pixel(pNode), Orange));
        pShader->setInputInverted("Color", true);
        QVERIFY(Project.same(Project.pixel(pNode), OrvColor(0.2f, 0.6f, 0.9f)));
        pShader->setInputEnabled("Color", false);
        QVERIFY(Project.same(Project.pixel(pNode), OrvColor(0.5f, 0.5f, 0.5f)));
        Project.undo();
        Project.undo();
        QVERIFY(Project.same(Project.pixel(pNode), Orange));
        Project.paint("Above", OrvColor(0.0f, 0.0f, 1.0f));
        QVERIFY(Project.same(Project.pixel(pNode), OrvColor(0.0f, 0.0f, 1.0f)));
        QVERIFY(OrvShaderInputManager::instance().destroy(Project.channel(), 0));
        QVERIFY(Project.same(Project.pixel(pNode), OrvColor(0.2f, 0.3f, 0.4f)));
        Project.undo();
        QVERIFY(Project.same(Project.pixel(pNode), OrvColor(0.0f, 0.0f, 1.0f)));
    }

    void litShaderFollowsItsInputs()
    {
        OrvTestProject Project;
        OrvLayerShader* pShader = create(Metallic);
        OrvSnBaseNode* pNode = pShader->node();
        const auto brightness = [&] {
            const OrvColor Seen = Project.pixel(pNode, QPoint(16, 16));
            return Seen.red() + Seen.green() + Seen.blue();
        };
        const float Grey = brightness();
        QVERIFY(Grey > 0.1f && Grey < 3.0f);
        QCOMPARE(Project.pixel(pNode).alpha(), 1.0f);
        pShader->setInputValue("Base Color", OrvColor::white());
        QVERIFY(brightness() > Grey * 1.3f);
        pShader->setInputValue("Base Color", OrvColor::black());
        QVERIFY(brightness() < Grey * 0.5f);
        const float Dark = brightness();
        pShader->setInputValue("Emissive", OrvColor(1.0f, 0.0f, 0.0f));
        QVERIFY(qAbs(brightness() - Dark - 1.0f) < 0.01f);
        pShader->setInputEnabled("Emissive", false);
        QVERIFY(qAbs(brightness() - Dark) < 0.001f);
        // Painted on: the surface is where the color is, lit as the color says.
        pShader->setInputValue("Base Color", OrvColor::white());
        OrvLayer* pPaint = Project.paint("Spots");
        pShader->setInputShaderInput("Base Color", Project.channel());
        QCOMPARE(Project.pixel(pNode).alpha(), 0.0f);
        Project.fill(pPaint->paintImageSet(), QRect(0, 0, 32, 32), OrvColor::black());
        QCOMPARE(Project.pixel(pNode).alpha(), 1.0f);
        QVERIFY(qAbs(brightness() - Dark) < 0.01f);
    }

    void largestChannelGivesTheSize()
    {
        OrvTestProject Project(QSize(8, 8));
        OrvShaderInput* pLarge = Project.addChannel("Large", QSize(32, 32));
        Project.paint("Small", OrvColor(1.0f, 0.0f, 0.0f));
        Project.paint("Large", OrvColor(0.0f, 1.0f, 0.0f), pLarge);
        OrvLayerShader* pShader = create(Metallic);
        const auto* pNode = qobject_cast<const OrvSnShaderNode*>(pShader->node());
        pShader->setInputShaderInput("Emissive", Project.channel());
        QCOMPARE(pNode->layout().tileSize(), QSize(8, 8));
        QCOMPARE(Project.pixel(pNode, QPoint(20, 20)).alpha(), 0.0f);
        pShader->setInputShaderInput("Base Color", pLarge);
        QCOMPARE(pNode->layout().tileSize(), QSize(32, 32));
        // The small one is scaled to it, so that it glows to the far corner.
        QVERIFY(Project.pixel(pNode, QPoint(30, 1)).red() >= 0.99f);
        pShader->setInputShaderInput("Base Color", nullptr);
        QCOMPARE(Project.pixel(pNode, QPoint(20, 20)).alpha(), 0.0f);
        Project.undo();
        QVERIFY(Project.pixel(pNode, QPoint(30, 1)).red() >= 0.99f);
        pLarge->channelNode()->setLayoutOfImages(OrvUdimLayout(QSize(64, 64)));
        QCOMPARE(pNode->layout().tileSize(), QSize(64, 64));
        QVERIFY(Project.pixel(pNode, QPoint(60, 1)).red() >= 0.99f);

        // A layer brings the shader's picture to the size of its own channel.
        OrvShaderInput* pMaterial = addMaterialChannel("Material", QSize(16, 16));
        QVERIFY(pMaterial->createShaderLayer(pShader, 0));
        QVERIFY(Project.pixel(pMaterial->node(), QPoint(14, 1)).red() >= 0.99f);
        pShader->setInputShaderInput("Base Color", nullptr);
        QVERIFY(Project.pixel(pMaterial->node(), QPoint(14, 1)).red() >= 0.99f);
        QCOMPARE(Project.pixel(pMaterial->node(), QPoint(20, 1)).alpha(), 0.0f);
    }

    void aShaderOfValuesIsAsLargeAsItsPlace()
    {
        OrvTestProject Project(QSize(8, 8));
        OrvShaderInput* pSmall = addMaterialChannel("Small", QSize(16, 16));
        OrvShaderInput* pLarge = addMaterialChannel("Large", QSize(64, 64));
        const auto reaches = [&](const OrvSnBaseNode* pNode, int Edge) {
            return Project.pixel(pNode, QPoint(Edge - 2, Edge - 2)).alpha() == 1.0f
                && Project.pixel(pNode, QPoint(Edge, Edge)).alpha() == 0.0f;
        };
        OrvLayerShader* pShader = create(Unlit);
        const OrvSnBaseNode* pNode = pShader->node();
        QVERIFY(reaches(pNode, 8));
        OrvLayer* pLayer = pSmall->createShaderLayer(pShader, 0);
        QVERIFY(reaches(pNode, 16) && reaches(pSmall->node(), 16));
        QVERIFY(OrvLayerStreamUtils::insertLayerAfter(pLayer, pLarge->bottomNode(), pLarge));
        QVERIFY(reaches(pNode, 64) && reaches(pLarge->node(), 64));
        Project.undo();
        QVERIFY(reaches(pNode, 16) && reaches(pSmall->node(), 16));
        // In a group that goes elsewhere.
        OrvLayer* pGroup = pSmall->createGroupLayer(0);
        OrvLayerStack* pInside = OrvLayerStreamUtils::groupStack(pGroup);
        QVERIFY(OrvLayerStreamUtils::insertLayerAfter(pLayer, pInside->bottomNode(), pInside));
        QVERIFY(reaches(pNode, 16) && reaches(pSmall->node(), 16));
        QVERIFY(OrvLayerStreamUtils::insertLayerAfter(pGroup, pLarge->bottomNode(), pLarge));
        QVERIFY(reaches(pNode, 64) && reaches(pLarge->node(), 64));
        pLarge->deleteLayers({pGroup});
        QVERIFY(reaches(pNode, 8));
        Project.undo();
        QVERIFY(reaches(pNode, 64) && reaches(pLarge->node(), 64));

        // Alone it follows the object's first channel.
        const OrvSnBaseNode* pAlone = create(Unlit)->node();
        QVERIFY(reaches(pAlone, 8));
        QVERIFY(OrvShaderInputManager::instance().destroy(
            Project.channel(), OrvShaderInputManager::SharersAreDeleted));
        QVERIFY(reaches(pAlone, 16));
        Project.undo();
        QVERIFY(reaches(pAlone, 8));
        Project.channel()->resizeLayers(32);
        QVERIFY(reaches(pAlone, 32));
    }

    void layeredShaderCompositesItsMaterials()
    {
        OrvTestProject Project;
        OrvLayerShader* pLayered = create(Layered);
        const OrvColor Red(0.8f, 0.0f, 0.0f), Blue(0.0f, 0.0f, 0.8f), Purple(0.4f, 0.0f, 0.4f);
        QVERIFY(Project.same(Project.pixel(pLayered->node()), OrvColor::grey50()));
        OrvShaderInput* pBottom = addMaterialChannel("Bottom");
        OrvShaderInput* pTop = addMaterialChannel("Top");
        const auto addColor = [](OrvShaderInput* pStack, const OrvColor& Color) {
            OrvLayer* pLayer = createLayer(pStack, Unlit);
            shaders().getLayerShader(pLayer->shaderNode())->setInputValue("Color", Color);
            return pLayer;
        };
        pLayered->setInputShaderInput("Material 1", pBottom);
        QCOMPARE(Project.pixel(pLayered->node()).alpha(), 0.0f); // nothing in it yet
        addColor(pBottom, Red);
        QVERIFY(Project.same(Project.pixel(pLayered->node()), Red));
        OrvLayer* pBlue = addColor(pBottom, Blue);
        pBlue->blendNode()->setUserAttributeValue(OrvMergeAttributes::Amount, 0.5);
        QVERIFY(Project.same(Project.pixel(pLayered->node()), Purple));
        pLayered->setInputShaderInput("Material 3", pTop);
        QVERIFY(Project.same(Project.pixel(pLayered->node()), Purple));
        OrvLayer* pOver = addColor(pTop, Blue);
        QVERIFY(Project.same(Project.pixel(pLayered->node()), Blue));
        pOver->addMaskImageSetAndFillBlack();
        QVERIFY(Project.same(Project.pixel(pLayered->node()), Purple));
        Project.fill(pOver->maskImageSet(), QRect(0, 0, 32, 32), OrvColor::white());
        QVERIFY(Project.same(Project.pixel(pLayered->node()), Blue));
        pLayered->setInputEnabled("Material 3", false);
        QVERIFY(Project.same(Project.pixel(pLayered->node()), Purple));
        pBlue->setVisible(false);
        QVERIFY(Project.same(Project.pixel(pLayered->node()), Red));
        // The same result as a fresh evaluation.
        for (OrvSnBaseNode* pNode : Project.network()->nodes())
            OrvNodeEvaluation::removed(pNode);
        QVERIFY(Project.same(Project.pixel(pLayered->node()), Red));
    }
};

QTEST_MAIN(TstShaders)
#include "TstShaders.moc"
