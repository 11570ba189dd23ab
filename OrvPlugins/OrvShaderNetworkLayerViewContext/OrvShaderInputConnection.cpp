#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvShaderInputConnection.h"

#include "OrvCore/Channels/OrvShaderInput.h"
#include "OrvCore/Channels/OrvShaderInputManager.h"
#include "OrvCore/Channels/OrvShaderInputUtils.h"
#include "OrvCore/Network/OrvSnBaseNode.h"
#include "OrvCore/Network/OrvSnNames.h"
#include "OrvCore/Object/OrvDebug.h"
#include "OrvCore/Shaders/OrvLayerShader.h"
#include "OrvCore/Shaders/OrvLayerShaderUtils.h"
#include "OrvCore/Shaders/OrvShadingModel.h"
#include "OrvCore/Undo/OrvUndoManager.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerViewContextConstants.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerViewUtils.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvShaderInputDisconnectDialog.h"

#include <QtCore/QCoreApplication>

#include <algorithm>

namespace {

QString tr(const char* pText)
{
    return QCoreApplication::translate("OrvShaderInputConnection", pText);
}

bool isUsable(int Line, const OrvLayerShader* pShader)
{
    if (pShader && pShader->node() && pShader->node()->network())
        return true;
    OrvDebug("OrvShaderInputConnection", Line, QStringLiteral("Shader is NULL"), false, false);
    return false;
}

int namePosition(const QString& Name)
{
    const QVector<QRegExp>& Patterns = OrvLayerViewContext::ChannelNamePatterns;
    const auto Found = std::find_if(Patterns.begin(), Patterns.end(),
        [&Name](const QRegExp& Pattern) { return Pattern.exactMatch(Name); });
    return int(Found - Patterns.begin());
}

/// Whether the channel that feeds the input has layers that stand in several channels of the shader.
bool holdsShaderLayers(const OrvLayerShader* pShader, const QString& InputName)
{
    const OrvShaderInput* pChannel = pShader->inputShaderInput(InputName);
    return pChannel && pChannel->containsMultiChannelLayerOfShaderModel(pShader->shaderModel());
}

using Dialog = OrvShaderInputDisconnectDialog;

/// What is to become of these layers.
Dialog::Treatment askAboutLayers(const OrvLayerShader* pShader, const QString& InputName)
{
    return holdsShaderLayers(pShader, InputName) ? Dialog::ask(Dialog::Occasion::DisconnectingChannel)
                                                 : Dialog::Treatment::Convert;
}

bool freeInput(OrvLayerShader* pShader, const QString& InputName, Dialog::Treatment Treatment)
{
    return !pShader->inputShaderInput(InputName)
        || OrvLayerShaderUtils::disconnectInput(
            pShader, InputName, Treatment == Dialog::Treatment::Disconnect);
}

/// Edits as one undo step, or not at all. The step is closed before anybody is told of a failure.
template <class Edit>
bool editInOneStep(const QString& Text, Edit edit)
{
    OrvUndoManager::AutoMacro Macro(Text);
    if (edit())
        return true;
    Macro.cancel();
    return false;
}

void explainFailure(const OrvLayerShader* pShader, const QString& InputName)
{
    OrvLayerViewUtils::warn(tr("Channel Operation Failed"),
        holdsShaderLayers(pShader, InputName)
            ? tr("The multi-channel layers of the channel that feeds '%1' were not converted.").arg(InputName)
            : tr("The channel of '%1' could not be changed.").arg(InputName));
}

/// Where steps of 8 bits would show as terraces, channels are made deeper.
bool needsPrecision(const OrvShadingModel::Input& Input)
{
    return Input.Slot == OrvShadingParameters::Normal || Input.Slot == OrvShadingParameters::Height
        || OrvLayerViewContext::DisplacementInputNames.contains(Input.Name);
}

/// As the other channels of the shader, else as the channel that is worked on.
const OrvShaderInput* modelChannel(const OrvLayerShader* pShader)
{
    const QList<OrvShaderInput*> Connected = pShader->inputShaderInputs();
    return Connected.isEmpty()
        ? OrvShaderInputManager::instance().currentShaderInput(pShader->node()->network())
        : Connected.first();
}

OrvShaderInput* addChannel(const OrvLayerShader* pShader, const QString& InputName)
{
    OrvShaderNetwork* pNetwork = pShader->node()->network();
    const OrvShadingModel* pModel = pShader->shaderModel();
    const OrvShadingModel::Input* pInput = pModel ? pModel->input(InputName) : nullptr;
    const bool Precise = pInput && needsPrecision(*pInput);
    const OrvShaderInput* pLike = modelChannel(pShader);
    GLenum Depth = pLike ? pLike->imageSetDepth() : GL_UNSIGNED_BYTE;
    if (Precise && Depth == GL_UNSIGNED_BYTE)
        Depth = GL_HALF_FLOAT;
    // Directions and heights are no colours: their numbers are kept as they are.
    const bool Scalar = pShader->isInputScalar(InputName) || Precise;
    const OrvColorSpaceConfig Config(Scalar, Depth);
    OrvShaderInput* pChannel
        = OrvShaderInputUtils::create(pNetwork, OrvShaderInputUtils::generateUniqueName(pNetwork, InputName),
            pLike ? pLike->imageSetSize() : QSize(), Depth, &Config, Scalar);
    if (pChannel && pShader->isInputForMaterialsStacks(InputName))
        pChannel->node()->addTag(OrvSnNames::MaterialShaderInputTag, true);
    return pChannel;
}

} // namespace

QList<OrvShaderInput*> OrvShaderInputConnection::candidates(
    const OrvLayerShader* pShader, const QString& InputName)
{
    QList<OrvShaderInput*> Channels;
    if (!isUsable(__LINE__, pShader))
        return Channels;
    for (OrvShaderInput* pChannel :
        OrvShaderInputManager::instance().getShaderInputsFromNetwork(pShader->node()->network())) {
        if (pShader->canTakeShaderInput(InputName, pChannel))
            Channels.append(pChannel);
    }
    std::sort(
        Channels.begin(), Channels.end(), [](const OrvShaderInput* pFirst, const OrvShaderInput* pSecond) {
            const int First = namePosition(pFirst->name()), Second = namePosition(pSecond->name());
            if (First != Second)
                return First < Second;
            const int Order = QString::compare(pFirst->name(), pSecond->name(), Qt::CaseInsensitive);
            return Order != 0 ? Order < 0 : pFirst->name() < pSecond->name();
        });
    return Channels;
}

bool OrvShaderInputConnection::connectChannel(
    OrvLayerShader* pShader, const QString& InputName, OrvShaderInput* pChannel)
{
    if (!isUsable(__LINE__, pShader) || !pChannel)
        return false;
    if (pShader->inputShaderInput(InputName) == pChannel)
        return true;
    if (!pShader->canTakeShaderInput(InputName, pChannel))
        return false;
    const Dialog::Treatment Treatment = askAboutLayers(pShader, InputName);
    if (Treatment == Dialog::Treatment::GiveUp)
        return false;
    const bool Connected = editInOneStep(tr("Connect Channel : %1").arg(pChannel->name()), [&] {
        return freeInput(pShader, InputName, Treatment) && pShader->setInputShaderInput(InputName, pChannel);
    });
    if (!Connected)
        explainFailure(pShader, InputName);
    return Connected;
}

OrvShaderInput* OrvShaderInputConnection::createChannel(OrvLayerShader* pShader, const QString& InputName)
{
    if (!isUsable(__LINE__, pShader))
        return nullptr;
    const Dialog::Treatment Treatment = askAboutLayers(pShader, InputName);
    if (Treatment == Dialog::Treatment::GiveUp)
        return nullptr;
    OrvShaderInput* pChannel = nullptr;
    const QString Text
        = pShader->isInputForMaterialsStacks(InputName) ? tr("Add Material Channel") : tr("Add Channel");
    const bool Created = editInOneStep(Text, [&] {
        if (!freeInput(pShader, InputName, Treatment))
            return false;
        pChannel = addChannel(pShader, InputName);
        return pChannel && pShader->setInputShaderInput(InputName, pChannel);
    });
    if (!Created) {
        explainFailure(pShader, InputName);
        return nullptr;
    }
    OrvShaderInputManager::instance().makeShaderInputCurrent(pChannel, true);
    return pChannel;
}

bool OrvShaderInputConnection::disconnectChannel(OrvLayerShader* pShader, const QString& InputName)
{
    if (!isUsable(__LINE__, pShader))
        return false;
    const OrvShaderInput* pChannel = pShader->inputShaderInput(InputName);
    if (!pChannel)
        return true;
    const Dialog::Treatment Treatment = askAboutLayers(pShader, InputName);
    if (Treatment == Dialog::Treatment::GiveUp)
        return false;
    const bool Disconnected = editInOneStep(tr("Disconnect Channel : %1").arg(pChannel->name()),
        [&] { return freeInput(pShader, InputName, Treatment); });
    if (!Disconnected)
        explainFailure(pShader, InputName);
    return Disconnected;
}

void OrvShaderInputConnection::setEnabled(OrvLayerShader* pShader, const QString& InputName, bool Enabled)
{
    if (!isUsable(__LINE__, pShader))
        return;
    const OrvUndoManager::AutoMacro Macro(
        (Enabled ? tr("Enable Input : %1") : tr("Disable Input : %1")).arg(InputName));
    pShader->setInputEnabled(InputName, Enabled);
}

void OrvShaderInputConnection::setInverted(OrvLayerShader* pShader, const QString& InputName, bool Inverted)
{
    if (!isUsable(__LINE__, pShader))
        return;
    const OrvUndoManager::AutoMacro Macro(tr("Invert Input : %1").arg(InputName));
    pShader->setInputInverted(InputName, Inverted);
}
