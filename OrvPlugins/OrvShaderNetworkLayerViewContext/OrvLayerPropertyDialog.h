#pragma once

#include <QtCore/QPointer>
#include <QtWidgets/QDialog>

class OrvImageSet;
class OrvLayer;
class OrvShaderNetwork;
class OrvSnBaseNode;
class QTabWidget;

/// The properties of one layer, of the images of its paint and its mask, and of a shader layer's inputs; the
/// Layers palette that opens it is its parent. Its editors work on the document directly; the dialog keeps no
/// value itself, and it goes when the layer goes.
class OrvLayerPropertyDialog : public QDialog {
    Q_OBJECT

public:
    OrvLayerPropertyDialog(OrvLayer* pLayer, QWidget* pParent);

private Q_SLOTS:
    /// A layer under a lock or a cache is only looked at.
    void updateEnabled();
    void onNodeDeregistered(OrvShaderNetwork* pNetwork, OrvSnBaseNode* pNode);

private:
    void addImageSet(QTabWidget* pTabs, const QString& Title, OrvImageSet* pImageSet);
    QWidget* createLayerProperties(const OrvLayer* pLayer);

    const OrvSnBaseNode* const m_BlendNode; ///< to be recognised only
    const QPointer<OrvLayer> m_Layer;
};
