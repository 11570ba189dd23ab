#pragma once

#include <QtCore/QList>
#include <QtCore/QObject>

class OrvShaderInputModel;
class OrvShaderInputTreeView;
class OrvShaderInputView;
class OrvShaderNetwork;
class OrvSnBaseNode;

/// Brings the rows of the Channels palette in step with the channels of the current object, for the view that
/// owns it and says when. Rows and widgets of channels that stay are kept; nothing is remembered between two
/// calls, and the host is never changed.
class OrvShaderInputRowSynchronizer : public QObject {
    Q_OBJECT

public:
    explicit OrvShaderInputRowSynchronizer(OrvShaderInputView* pView);

    /// Rows, their widgets, and which one is current.
    void synchronize();

Q_SIGNALS:
    /// A channel that has, or had, a row.
    void channelRenamed();

private:
    QList<OrvSnBaseNode*> listedNodes(const OrvShaderNetwork* pNetwork) const;
    void showNodes(const QList<OrvSnBaseNode*>& Nodes);
    void removeRowsBut(const QStringList& Uuids);
    void showRowWidget(int Row, OrvSnBaseNode* pNode);
    void showCurrent();

    OrvShaderInputView* m_View;
    OrvShaderInputModel* m_Model;
    OrvShaderInputTreeView* m_TreeView;
};
