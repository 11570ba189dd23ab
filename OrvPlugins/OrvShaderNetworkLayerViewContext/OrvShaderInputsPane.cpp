#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvShaderInputsPane.h"

#include "OrvCore/Channels/OrvShaderInputManager.h"
#include "OrvCore/Network/OrvShaderNetworkManager.h"
#include "OrvCore/Network/OrvSnBaseNode.h"
#include "OrvCore/Object/OrvDebug.h"
#include "OrvCore/Shaders/OrvLayerShader.h"
#include "OrvCore/Shaders/OrvLayerShaderManager.h"
#include "OrvCore/Undo/OrvUndoManager.h"
#include "OrvCoreModules/Widgets/OrvExpandableListWidget.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerViewContextConstants.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvShaderInputConnection.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvShaderInputRow.h"

#include <QtWidgets/QApplication>
#include <QtWidgets/QCheckBox>
#include <QtWidgets/QGridLayout>
#include <QtWidgets/QLabel>
#include <QtWidgets/QScrollArea>
#include <QtWidgets/QVBoxLayout>

#include <algorithm>

namespace {

void report(int Line, const char* pMessage)
{
    OrvDebug("OrvShaderInputsPane", Line, QString::fromLatin1(pMessage), false, false);
}

/// What a shader without inputs of its own shows.
QString systemShaderText(const OrvSnBaseNode* pNode)
{
    using Manager = OrvLayerShaderManager;
    using Pane = OrvShaderInputsPane;
    if (pNode->hasTag(Manager::nodeTagCurrentChannelShader()))
        return Pane::tr("Shows the current channel as it is.");
    if (pNode->hasTag(Manager::nodeTagCurrentLayerAndBelowShader()))
        return Pane::tr("Shows the current layer and everything below it.");
    if (pNode->hasTag(Manager::nodeTagCurrentLayerShader()))
        return Pane::tr("Shows the current layer alone.");
    if (pNode->hasTag(Manager::nodeTagCurrentComponentShader()))
        return Pane::tr("Shows what you paint on: the pixels or the mask of the current layer.");
    if (pNode->hasTag(Manager::nodeTagCurrentMaterialProxyShader()))
        return Pane::tr("Shows the shader of your own that you chose last, lit.");
    return Pane::tr("Shows what is current.");
}

QLabel* createText(QWidget* pParent)
{
    QLabel* pText = new QLabel(pParent);
    pText->setWordWrap(true);
    pText->setMargin(4);
    QPalette Dim = pText->palette();
    Dim.setColor(QPalette::WindowText, Dim.color(QPalette::Disabled, QPalette::Text));
    pText->setPalette(Dim);
    pText->hide();
    return pText;
}

} // namespace

OrvShaderInputsPane::OrvShaderInputsPane(QWidget* pParent)
    : QWidget(pParent)
{
    QWidget* pHolder = new QWidget(this);
    m_pGrid = new QGridLayout(pHolder);
    m_pGrid->setContentsMargins(0, 0, 0, 0);
    m_pGrid->setSpacing(0);
    // The other columns speak for themselves.
    m_pInvertCaption = createText(pHolder);
    m_pInvertCaption->setText(tr("Invert"));
    m_pInvertCaption->setWordWrap(false);
    m_pInvertCaption->setAlignment(Qt::AlignRight);
    m_pInvertCaption->setMargin(1);
    m_pGrid->addWidget(m_pInvertCaption, 0, 0);
    m_pMessage = createText(this);
    m_pNote = createText(this);
    OrvExpandableListWidget* pGroup = new OrvExpandableListWidget(tr("Inputs"), this);
    pGroup->addChild(pHolder);
    // The texts wrap, which needs more height than the group, sized by its hint, would give them.
    QWidget* pTexts = new QWidget(this);
    QVBoxLayout* pTextsLayout = new QVBoxLayout(pTexts);
    pTextsLayout->setContentsMargins(0, 0, 0, 0);
    pTextsLayout->addWidget(m_pMessage);
    pTextsLayout->addWidget(m_pNote);
    connect(pGroup, &OrvExpandableListWidget::expandedChanged, pTexts, &QWidget::setVisible);
    QVBoxLayout* pLayout = new QVBoxLayout(this);
    pLayout->setContentsMargins(0, 0, 0, 0);
    pLayout->setSpacing(0);
    pLayout->addWidget(pGroup);
    pLayout->addWidget(pTexts);
    pLayout->addStretch(1);

    const OrvShaderInputManager* pChannels = &OrvShaderInputManager::instance();
    connect(
        pChannels, &OrvShaderInputManager::shaderInputRenamed, this, &OrvShaderInputsPane::updateConnections);
    connect(pChannels, &OrvShaderInputManager::currentShaderInputChanged, this,
        &OrvShaderInputsPane::updateConnections);
    refresh();
}

OrvLayerShader* OrvShaderInputsPane::shader() const
{
    return m_pShader;
}

OrvShaderInputRow* OrvShaderInputsPane::row(const QString& InputName) const
{
    for (OrvShaderInputRow* pRow : m_Rows) {
        if (pRow->inputName() == InputName)
            return pRow;
    }
    return nullptr;
}

QString OrvShaderInputsPane::message() const
{
    return m_pMessage->text();
}

QString OrvShaderInputsPane::note() const
{
    return m_pNote->text();
}

void OrvShaderInputsPane::refresh()
{
    const OrvShaderNetwork* pNetwork = OrvShaderNetworkManager::instance().currentShaderNetwork();
    OrvLayerShader* pShader
        = pNetwork ? OrvLayerShaderManager::instance().currentLayerShader(pNetwork) : nullptr;
    QStringList Shown;
    for (const OrvShaderInputRow* pRow : qAsConst(m_Rows))
        Shown.append(pRow->inputName());
    if (pShader != m_pShader || Shown != (pShader ? pShader->inputNames() : QStringList()))
        rebuildRows(pShader);
    else
        updateConnections();

    if (!pNetwork)
        showMessage(tr("Open a project to see the inputs of its shaders here."));
    else if (!pShader)
        showMessage(tr("Choose a shader above, or add one, to connect channels to its inputs."));
    else if (m_Rows.isEmpty())
        showMessage(systemShaderText(pShader->node()));
    else
        showMessage(QString());
}

void OrvShaderInputsPane::refreshForNewShaderInput(const QString& InputName, OrvSnBaseNode* pChannelNode)
{
    refresh();
    OrvShaderInputRow* pRow = row(InputName);
    const OrvShaderInput* pChannel = pRow && m_pShader ? m_pShader->inputShaderInput(InputName) : nullptr;
    if (!pChannel || pChannel->node() != pChannelNode)
        return;
    for (QWidget* pWidget = parentWidget(); pWidget; pWidget = pWidget->parentWidget()) {
        if (auto* pArea = qobject_cast<QScrollArea*>(pWidget)) {
            pArea->ensureWidgetVisible(pRow, 0, 0);
            return;
        }
    }
}

void OrvShaderInputsPane::clear()
{
    m_pShader = nullptr;
    removeRows();
    showMessage(QString());
    showNote();
}

void OrvShaderInputsPane::removeRows()
{
    // One of them may be what asked for it.
    for (OrvShaderInputRow* pRow : qAsConst(m_Rows)) {
        pRow->hide();
        pRow->setParent(nullptr);
        pRow->deleteLater();
    }
    m_Rows.clear();
    m_pInvertCaption->hide();
}

void OrvShaderInputsPane::rebuildRows(OrvLayerShader* pShader)
{
    removeRows();
    m_pShader = pShader;
    QWidget* pHolder = m_pGrid->parentWidget();
    int NameWidth = 0;
    for (const QString& InputName : pShader ? pShader->inputNames() : QStringList()) {
        OrvShaderInputRow* pRow = new OrvShaderInputRow(pShader, InputName, pHolder);
        connect(
            pRow->enableBox(), &QCheckBox::clicked, this, &OrvShaderInputsPane::onSwitchInputEnabledChanged);
        connect(pRow->invertBox(), &QCheckBox::clicked, this, &OrvShaderInputsPane::toggleInvert);
        connect(pRow, &OrvShaderInputRow::materialChosen, this, &OrvShaderInputsPane::materialChosen);
        NameWidth = qMax(NameWidth, pRow->nameWidthHint());
        m_Rows.append(pRow);
    }
    if (m_Rows.isEmpty()) {
        showNote();
        return;
    }
    m_pInvertCaption->show();
    for (int Row = 0; Row < m_Rows.size(); ++Row) {
        m_Rows[Row]->setNameWidth(NameWidth);
        m_pGrid->addWidget(m_Rows[Row], Row + 1, 0);
    }
    showNote();
}

void OrvShaderInputsPane::updateConnections()
{
    for (OrvShaderInputRow* pRow : qAsConst(m_Rows))
        pRow->refresh();
    showNote();
}

void OrvShaderInputsPane::showMessage(const QString& Text)
{
    m_pMessage->setText(Text);
    m_pMessage->setVisible(!Text.isEmpty());
}

void OrvShaderInputsPane::showNote()
{
    QString Note;
    for (const OrvShaderInputRow* pRow : qAsConst(m_Rows)) {
        const QString& InputName = pRow->inputName();
        const bool Displaces = OrvLayerViewContext::DisplacementInputNames.contains(InputName) && m_pShader
            && m_pShader->isInputEnabled(InputName) && m_pShader->inputShaderInput(InputName);
        if (Displaces)
            Note = tr("%1 looks at the surroundings of every pixel, which slows painting down. Switch it off "
                      "while you do not need to see it.")
                       .arg(InputName);
    }
    m_pNote->setText(Note);
    m_pNote->setVisible(!Note.isEmpty());
}

OrvShaderInputRow* OrvShaderInputsPane::rowInUse() const
{
    const QVariant InputName = sender() ? sender()->property("InputName") : QVariant();
    if (InputName.isValid())
        return row(InputName.toString());
    const QWidget* pFocus = QApplication::focusWidget();
    for (OrvShaderInputRow* pRow : m_Rows) {
        if (pFocus && pRow->isAncestorOf(pFocus))
            return pRow;
    }
    return nullptr;
}

void OrvShaderInputsPane::createChannel()
{
    createChannelOfKind(ChannelKind::Ordinary);
}

void OrvShaderInputsPane::createMaterialChannel()
{
    createChannelOfKind(ChannelKind::Material);
}

void OrvShaderInputsPane::createChannelOfKind(ChannelKind Kind)
{
    if (!m_pShader) {
        report(__LINE__, "ShaderLayer is NULL");
        return;
    }
    const auto takesIt = [this, IsMaterial = Kind == ChannelKind::Material](const OrvShaderInputRow* pRow) {
        return m_pShader->isInputForMaterialsStacks(pRow->inputName()) == IsMaterial;
    };
    OrvShaderInputRow* pRow = rowInUse();
    if (!pRow || !takesIt(pRow)) {
        const auto Free
            = std::find_if(m_Rows.cbegin(), m_Rows.cend(), [&](const OrvShaderInputRow* pCandidate) {
                  return takesIt(pCandidate) && !m_pShader->inputShaderInput(pCandidate->inputName());
              });
        pRow = Free != m_Rows.cend() ? *Free : nullptr;
    }
    if (!pRow) {
        report(__LINE__, "Shader has no free input");
        return;
    }
    OrvShaderInputConnection::createChannel(m_pShader, pRow->inputName());
    refresh();
}

void OrvShaderInputsPane::toggleInvert(bool Inverted)
{
    const OrvShaderInputRow* pRow = rowInUse();
    if (!pRow || !pRow->shader()) {
        report(__LINE__, "Shader is NULL");
        return;
    }
    const OrvUndoManager::AutoMacro Macro(tr("Invert Input : %1").arg(pRow->inputName()));
    pRow->shader()->setInputInverted(pRow->inputName(), Inverted);
}

void OrvShaderInputsPane::onSwitchInputEnabledChanged(bool Enabled)
{
    const OrvShaderInputRow* pRow = rowInUse();
    if (!pRow || !pRow->shader()) {
        report(__LINE__, "Shader is NULL");
        return;
    }
    const OrvUndoManager::AutoMacro Macro(Enabled ? tr("Enable Input : %1").arg(pRow->inputName())
                                                  : tr("Disable Input : %1").arg(pRow->inputName()));
    pRow->shader()->setInputEnabled(pRow->inputName(), Enabled);
}

#include "moc_OrvShaderInputsPane.cpp"
