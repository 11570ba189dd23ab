#pragma once

#include <QtCore/QList>
#include <QtCore/QObject>

class OrvShaderListView;
class OrvShaderModel;
class OrvShaderNetwork;
class OrvSnBaseNode;
class QStandardItem;

/// Brings the rows of the Shaders palette in step with the shaders of the current object, for the view that
/// owns it and says when. Rows of shaders that stay are kept; nothing is remembered between two calls, and
/// the host is never changed.
class OrvShaderRowSynchronizer : public QObject {
    Q_OBJECT

public:
    OrvShaderRowSynchronizer(OrvShaderModel* pModel, OrvShaderListView* pListView, QObject* pParent);

    /// Rows, their texts, and which one is current.
    void synchronize();
    /// A last row for a shader; null for one that is not listed.
    QStandardItem* addRow(OrvSnBaseNode* pNode);
    /// Nothing is current for a shader that is not listed.
    void showCurrent(const OrvSnBaseNode* pNode);
    void clear();

Q_SIGNALS:
    /// A shader that has, or had, a row.
    void shaderRenamed();

private:
    QList<OrvSnBaseNode*> listedNodes(const OrvShaderNetwork* pNetwork) const;
    void showNodes(const QList<OrvSnBaseNode*>& Nodes);

    OrvShaderModel* m_Model;
    OrvShaderListView* m_ListView;
};
