#pragma once

#include "Orvi/OrvDisplayTransform.h"

#include "OrvCore/Network/OrvInputStep.h"

#include "OrvDdi/Image/OrvUdimLayout.h"

#include <QtCore/QObject>
#include <QtCore/QPointer>
#include <QtCore/QTimer>

class OrvEngineNode;
class OrvImageSet;
class OrvLayerShader;
class OrvShaderInput;
class OrvSnBaseNode;

/// Which result of the document the canvas shows: what the current shader says, that is the current channel,
/// one layer, a layer and all below, the painted component, or the lit picture of a shader of the user's. It
/// follows the document and tells when another result, or a result of another size, is to be shown. The
/// canvas owns it; it computes nothing.
class OrvCanvasSource : public QObject {
    Q_OBJECT

public:
    explicit OrvCanvasSource(QObject* pParent = nullptr);

    /// The one that is current, and painted on; null without a channel.
    OrvShaderInput* channel() const;
    /// A shader's picture under the light of OrvFlatShading is shown.
    bool isLit() const { return m_IsLit; }
    const OrvUdimLayout& layout() const { return m_Layout; }
    OrvDisplayTransform::Meaning meaning() const { return m_Meaning; }
    /// In which the result's light is; always one that can be converted.
    const QString& colorSpace() const { return m_ColorSpace; }
    /// Valid until changed() is sent; null for nothing.
    OrvEngineNode* result() const { return m_Fit.pEngineNode ? m_Fit.pEngineNode.get() : m_pResult; }
    /// Name of the channel or shader that is shown.
    QString title() const;
    /// What is shown in place of the whole channel, for people; empty for the channel.
    const QString& partName() const { return m_PartName; }

Q_SIGNALS:
    /// Another picture.
    void changed();
    /// Names or other words about the picture.
    void descriptionChanged();

private:
    void requestUpdate();
    void update();
    OrvSnBaseNode* shownNode(QString& PartName) const;
    void watch(OrvImageSet* pImages);

    /// The one whose picture is shown.
    OrvLayerShader* shownShader() const;
    /// Where strokes would go to a mask: what is painted then, for people.
    static QString paintedMask();

    QTimer m_Update; ///< an edit tells many things at once
    QPointer<OrvImageSet> m_pWatched;
    QPointer<OrvSnBaseNode> m_pNode;
    OrvEngineNode* m_pResult = nullptr;
    OrvInputStep m_Fit; ///< brings an image that is shown alone to the channel's size, as layers do
    OrvUdimLayout m_Layout;
    OrvDisplayTransform::Meaning m_Meaning = OrvDisplayTransform::Light;
    QString m_ColorSpace;
    QString m_PartName;
    bool m_IsShader = false; ///< a shader's picture is shown
    bool m_IsLit = false;
    bool m_ResultGone = false;
};
