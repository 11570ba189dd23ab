#pragma once

#include <QtCore/QObject>
#include <QtCore/QPointer>
#include <QtCore/QTimer>
#include <QtGui/QIcon>

#include <memory>

class OrvImageSet;
class OrvSnBaseNode;

/// The small picture of one image set, shared by the buttons that show it and gone with the last of them.
/// Changes that follow each other closely make one new picture, and pixels are read on another thread: nobody
/// who paints or refreshes waits for it.
class OrvLayerThumbnail : public QObject, public std::enable_shared_from_this<OrvLayerThumbnail> {
    Q_OBJECT

public:
    static constexpr int Edge = 16; // logical pixels
    static constexpr int RestInterval = 150; // ms

    explicit OrvLayerThumbnail(OrvImageSet* pImageSet);

    bool isOf(const OrvImageSet* pImageSet) const;
    /// Null until the first picture is made; the last one while a new one is due.
    const QIcon& icon() const { return m_Icon; }
    void showPicture(const QImage& Picture);

Q_SIGNALS:
    void changed();

private Q_SLOTS:
    /// Of any node: what the pixels mean may have changed.
    void onNodeAttributeChanged(OrvSnBaseNode* pNode, QString Name);
    /// Once what changes has come to rest.
    void makeLater();
    void make();

private:
    QPointer<OrvImageSet> m_ImageSet;
    QIcon m_Icon;
    QTimer m_Due;
    bool m_Reading = false;
};
