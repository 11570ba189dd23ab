#include "OrvCore/Shelf/OrvShelfThumbnailer.h"

#include "OrvCore/Network/OrvNodeEvaluation.h"
#include "OrvCore/Shelf/OrvSnCustomProceduralNode.h"

#include "OrvDdi/Engine/OrvEngineNode.h"

#include <QtCore/QRect>
#include <QtCore/QRunnable>

namespace {

/// The part of the plane that a picture shows, in pixels, halved for the picture.
constexpr int ShownEdge = 2 * OrvShelfThumbnailer::PictureEdge;
constexpr int RowsAtOnce = 32;

OrvPixelFormat pictureFormat(const OrvProceduralDescription& Procedural)
{
    // Numbers are shown as they are, colour as screens expect it.
    return {GL_UNSIGNED_BYTE, OrvPixelFormat::Rgba,
        Procedural.Type == OrvProceduralDescription::Color ? OrvPixelFormat::Srgb : OrvPixelFormat::Linear};
}

QImage renderPicture(OrvEngineNode& Shown, const OrvPixelFormat& Format, const std::atomic<bool>& Quit)
{
    constexpr int Edge = OrvShelfThumbnailer::PictureEdge;
    QImage Picture(Edge, Edge, QImage::Format_RGBA8888);
    Picture.fill(Qt::transparent);
    for (int Top = 0; Top < Edge && !Quit; Top += RowsAtOnce) {
        const QRect Band(0, Top, Edge, qMin(RowsAtOnce, Edge - Top));
        Shown.render(Band, double(Edge) / ShownEdge, Format, Picture.scanLine(Top), Picture.bytesPerLine());
    }
    return Picture;
}

std::unique_ptr<OrvSnCustomProceduralNode> makeNode(
    const QByteArray& Text, const QVariantMap& Values, QString& Error)
{
    auto pNode = OrvSnCustomProceduralNode::create(Text, QSize(ShownEdge, ShownEdge), Error);
    for (auto Value = Values.begin(); pNode && Value != Values.end(); ++Value)
        pNode->setUserAttributeValue(Value.key(), Value.value());
    return pNode;
}

std::unique_ptr<OrvEngineNode> makeShown(const OrvSnCustomProceduralNode* pNode)
{
    auto pShown = OrvEngineNode::createPass();
    pShown->connectInput(OrvEngineNode::Base, OrvNodeEvaluation::result(pNode));
    return pShown;
}

} // namespace

OrvShelfThumbnailer::OrvShelfThumbnailer(QObject* pParent)
    : QObject(pParent)
{
    m_Thread.setMaxThreadCount(1);
}

OrvShelfThumbnailer::~OrvShelfThumbnailer()
{
    m_Quit = true;
    m_Thread.waitForDone();
}

QImage OrvShelfThumbnailer::render(const QByteArray& Text, QString& Error)
{
    const std::unique_ptr<OrvSnCustomProceduralNode> pNode = makeNode(Text, {}, Error);
    if (!pNode)
        return {};
    const std::unique_ptr<OrvEngineNode> pShown = makeShown(pNode.get());
    return renderPicture(*pShown, pictureFormat(pNode->procedural()), std::atomic<bool>(false));
}

void OrvShelfThumbnailer::request(const QString& Key, const QByteArray& Text, const QVariantMap& Values)
{
    for (Wish& Waiting : m_Wishes) {
        if (Waiting.Key == Key) {
            Waiting = {Key, Text, Values};
            return;
        }
    }
    m_Wishes.append({Key, Text, Values});
    // Not at once: whoever asks may have many wishes, and each begins with work on this thread.
    if (!m_pNode && m_Wishes.size() == 1)
        QMetaObject::invokeMethod(this, &OrvShelfThumbnailer::startNext, Qt::QueuedConnection);
}

void OrvShelfThumbnailer::startNext()
{
    while (!m_pNode && !m_Wishes.isEmpty()) {
        m_Present = m_Wishes.takeFirst();
        QString Error;
        m_pNode = makeNode(m_Present.Text, m_Present.Values, Error);
    }
    if (!m_pNode) {
        Q_EMIT becameIdle();
        return;
    }
    m_pShown = makeShown(m_pNode.get());
    const OrvPixelFormat Format = pictureFormat(m_pNode->procedural());
    m_Thread.start(QRunnable::create([this, Format] {
        const QImage Picture = renderPicture(*m_pShown, Format, m_Quit);
        QMetaObject::invokeMethod(
            this, [this, Picture] { finish(Picture); }, Qt::QueuedConnection);
    }));
}

void OrvShelfThumbnailer::finish(const QImage& Picture)
{
    m_pShown.reset();
    m_pNode.reset();
    const QString Key = m_Present.Key;
    startNext();
    Q_EMIT ready(Key, Picture);
}

#include "moc_OrvShelfThumbnailer.cpp"
