#pragma once

#include "OrvCoreModules/Widgets/OrvVerticalScrollArea.h"

#include <QtCore/QPointer>

class OrvEditLabel;
class OrvShaderNetwork;
class OrvSnBaseNode;
class QLabel;
class QVBoxLayout;

/// The properties of the one selected node beside the canvas: its name and kind, how a merge node blends, and
/// the editor of its kind. It follows the node, and is empty without one.
class OrvNodePropertiesPane : public OrvVerticalScrollArea {
    Q_OBJECT

public:
    explicit OrvNodePropertiesPane(QWidget* pParent = nullptr);

    OrvSnBaseNode* node() const { return m_pNode; }
    /// Null, with a text instead, when there is no one node to show.
    void showNode(OrvSnBaseNode* pNode, const QString& Text = QString());

private Q_SLOTS:
    void onNodeDeregistered(OrvShaderNetwork* pNetwork, OrvSnBaseNode* pNode);
    void onNodeStateChanged(OrvSnBaseNode* pNode);

private:
    void addBlending(QWidget* pEditors, QVBoxLayout* pLayout);

    QPointer<OrvSnBaseNode> m_pNode;
    QVBoxLayout* m_pLayout;
    OrvEditLabel* m_pName;
    QLabel* m_pKind;
    QPointer<QWidget> m_pEditors;
};
