#pragma once

#include "OrvCore/OrvCoreExport.h"

#include <QtCore/QByteArray>
#include <QtCore/QObject>
#include <QtCore/QThreadPool>
#include <QtCore/QVariantMap>
#include <QtCore/QVector>
#include <QtGui/QImage>

#include <atomic>
#include <memory>

class OrvEngineNode;
class OrvSnCustomProceduralNode;

/// Makes small pictures of custom procedurals, one after the other, in a thread of its own, a few rows at a
/// time so that edits never wait long for the image engine. Nodes are made and destroyed on the GUI thread
/// and belong to no document. While nothing is to be done it holds nothing.
class ORVCORE_EXPORT OrvShelfThumbnailer : public QObject {
    Q_OBJECT

public:
    static constexpr int PictureEdge = 192;

    explicit OrvShelfThumbnailer(QObject* pParent = nullptr);
    ~OrvShelfThumbnailer() override;

    /// A wish with a key that waits already replaces it. The values are those of shown parameters.
    void request(const QString& Key, const QByteArray& Text, const QVariantMap& Values = {});
    void forgetAll() { m_Wishes.clear(); }
    bool isIdle() const { return m_Wishes.isEmpty() && !m_pNode; }

    /// On this thread, at once. Null, with the reason, for a text that describes no procedural.
    static QImage render(const QByteArray& Text, QString& Error);

Q_SIGNALS:
    void ready(const QString& Key, const QImage& Picture);
    void becameIdle();

private:
    struct Wish {
        QString Key;
        QByteArray Text;
        QVariantMap Values;
    };
    void startNext();
    void finish(const QImage& Picture);

    QVector<Wish> m_Wishes;
    Wish m_Present;
    std::unique_ptr<OrvSnCustomProceduralNode> m_pNode; ///< of the present wish
    std::unique_ptr<OrvEngineNode> m_pShown; ///< what the thread renders
    std::atomic<bool> m_Quit{false};
    QThreadPool m_Thread;
};
