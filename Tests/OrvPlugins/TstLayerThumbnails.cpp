#include "LayersFixture.h"
#include "LayersPaletteFixture.h"
#include "SettingsDirectory.h"

#include "OrvCore/Object/OrvSettings.h"
#include "OrvDdi/Color/OrvColorManager.h"
#include "OrvDdi/Image/OrvImageSet.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerComponentPushButton.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerThumbnail.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerThumbnailPicture.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerThumbnails.h"

#include <QtTest/QtTest>

#include <memory>
#include <new>

using namespace LayersFixture;

namespace {

const QColor Red(255, 0, 0), Green(0, 255, 0), White(255, 255, 255), Black(0, 0, 0);

void paint(OrvImageSet* pImages, const OrvColor& Color, const QRect& Region)
{
    pImages->buffer().fill(Color, Region);
    pImages->pixelsWritten(Region);
}

} // namespace

/// The small pictures in the rows of the Layers palette follow the pixels of the document.
class TstLayerThumbnails : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        QVERIFY(m_Directory.isValid());
        m_View = showLayersPalette(QSize(1000, 800));
        QVERIFY(m_View);
    }

    void init()
    {
        OrvProjectManager::instance().newProject(QStringLiteral("Test"));
        m_Channel = addChannel(QStringLiteral("Diffuse"));
        m_View->setLayerStack(m_Channel);
    }

    void cleanup()
    {
        OrvProjectManager::instance().closeProject();
        m_View->refresh();
        QTest::qWait(10);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }

    void paintFollowsPixels()
    {
        OrvLayer* pLayer = addFilled(OrvColor(0, 1, 0));
        OrvImageSet* pImages = pLayer->paintImageSet();
        showRows(m_View);
        QTRY_COMPARE(colorAt(button(pLayer), 8, 8), Green);
        QVERIFY2(pImages->isUniform(), "a plane of one colour is not read");

        const OrvImageBuffer Before = pImages->snapshot();
        paint(pImages, OrvColor(1, 0, 0), QRect(0, 0, 32, 64));
        QTRY_COMPARE(colorAt(button(pLayer), 3, 8), Red);
        QCOMPARE(colorAt(button(pLayer), 12, 8), Green);
        pImages->restore(Before, pImages->extent());
        QTRY_COMPARE(colorAt(button(pLayer), 3, 8), Green);

        pImages->replace(OrvUdimLayout({64, 32}), pImages->format(), OrvColor(1, 0, 0), {});
        QTRY_COMPARE(colorAt(button(pLayer), 8, 8), Red);
        QCOMPARE(picture(button(pLayer)).pixelColor(8, 2).alpha(), 0);
    }

    void colorsAreShownOutOfTheirSpace()
    {
        OrvLayer *pUniform = addFilled(OrvColor(0, 1, 0)), *pPainted = addFilled(OrvColor::clear());
        paint(pPainted->paintImageSet(), OrvColor(0, 1, 0), pPainted->paintImageSet()->extent());
        const auto bothShow = [&](bool IsGreen) {
            for (const OrvLayer* pLayer : {pUniform, pPainted}) {
                const QColor Shown = colorAt(button(pLayer), 8, 8);
                if ((Shown.red() < 12 && Shown.blue() < 12 && Shown.green() > 243) != IsGreen)
                    return false;
            }
            return true;
        };
        showRows(m_View);
        QTRY_VERIFY(bothShow(true));
        QVERIFY(m_Channel->convertColorSpaceTo(OrvColorManager::acesCg(), OrvShaderInput::FreeImages));
        QTest::qWait(3 * OrvLayerThumbnail::RestInterval);
        QTRY_VERIFY(bothShow(true));
        // The numbers alone are no green.
        OrvColorSpaceConfig Config = m_Channel->colorSpaceConfig();
        Config.setColorSpace(OrvColorSpaceConfig::NativeSpace, OrvColorManager::linear());
        m_Channel->setColorSpaceConfig(Config, true);
        QTRY_VERIFY(bothShow(false));
        OrvUndoManager::instance().undo();
        QTRY_VERIFY(bothShow(true));
    }

    void maskIsGreyWhileItCounts()
    {
        OrvLayer* pLayer = addLayer(m_Channel, QStringLiteral("Dirt"));
        pLayer->addMaskImageSet();
        OrvUndoManager::instance().clear();
        showRows(m_View);
        const auto shown = [&](int X) { return colorAt(button(pLayer, 1), X, 8); };
        QTRY_COMPARE(shown(8), White);
        paint(pLayer->maskImageSet(), OrvColor::black(), QRect(32, 0, 32, 64));
        QTRY_COMPARE(shown(12), Black);
        QCOMPARE(shown(3), White);
        pLayer->setMaskEnabled(false);
        QTRY_VERIFY(shown(12) != Black || shown(3) != White);
        OrvUndoManager::instance().undo();
        QTRY_COMPARE(shown(12), Black);
        QCOMPARE(shown(3), White);
    }

    void changesAreGathered()
    {
        OrvLayer* pLayer = addLayer(m_Channel, QStringLiteral("Dirt"));
        showRows(m_View);
        const auto Thumbnail = OrvLayerThumbnails::instance().thumbnail(pLayer->paintImageSet());
        QTRY_VERIFY(!Thumbnail->icon().isNull());
        QSignalSpy Changed(Thumbnail.get(), SIGNAL(changed()));
        for (int i = 0; i < 20; ++i) {
            paint(pLayer->paintImageSet(), OrvColor(1, 0, 0), QRect(i, i, 8, 8));
            QCoreApplication::processEvents();
        }
        QTRY_COMPARE(Changed.count(), 1);
        QTest::qWait(2 * OrvLayerThumbnail::RestInterval);
        QCOMPARE(Changed.count(), 1);
    }

    void nodeIsRemovedWhileItsPictureIsDue()
    {
        OrvLayer* pKept = addLayer(m_Channel, QStringLiteral("Rust"));
        OrvLayer* pLayer = addLayer(m_Channel, QStringLiteral("Dirt"));
        paint(pLayer->paintImageSet(), OrvColor(1, 0, 0), QRect(0, 0, 64, 64));
        showRows(m_View);
        paint(pLayer->paintImageSet(), OrvColor(0, 1, 0), QRect(0, 0, 64, 64));
        m_Channel->deleteLayers({pLayer});
        OrvUndoManager::instance().clear();
        paint(pKept->paintImageSet(), OrvColor(0, 1, 0), QRect(0, 0, 64, 64));
        showRows(m_View);
        QTRY_COMPARE(colorAt(button(pKept), 8, 8), Green);

        // Gone between the reading and the showing.
        auto pImages = std::make_unique<OrvImageSet>(
            OrvUdimLayout({64, 64}), pKept->paintImageSet()->format(), OrvColor(1, 0, 0));
        pImages->buffer();
        auto Thumbnail = OrvLayerThumbnails::instance().thumbnail(pImages.get());
        OrvLayerThumbnails::instance().read(Thumbnail, pImages->buffer(), OrvColorManager::linear(), 16);
        Thumbnail.reset();
        pImages.reset();
        QTest::qWait(50);
    }

    void pictureIsSharedAndLetGo()
    {
        OrvLayer* pLayer = addLayer(m_Channel, QStringLiteral("Dirt"));
        auto& Thumbnails = OrvLayerThumbnails::instance();
        auto First = Thumbnails.thumbnail(pLayer->paintImageSet());
        QCOMPARE(Thumbnails.thumbnail(pLayer->paintImageSet()), First);
        const std::weak_ptr<OrvLayerThumbnail> Watch = First;
        First.reset();
        QVERIFY2(Watch.expired(), "nothing keeps a picture that nobody shows");

        // Held by a row that has not been told yet, while another image set takes the place.
        alignas(OrvImageSet) char Place[sizeof(OrvImageSet)];
        const OrvPixelFormat Format = pLayer->paintImageSet()->format();
        auto* pGone = new (Place) OrvImageSet(OrvUdimLayout({64, 64}), Format, OrvColor());
        auto Stale = Thumbnails.thumbnail(pGone);
        pGone->~OrvImageSet();
        auto* pNew = new (Place) OrvImageSet(OrvUdimLayout({64, 64}), Format, OrvColor());
        const auto Fresh = Thumbnails.thumbnail(pNew);
        QVERIFY(Fresh != Stale);
        Stale.reset();
        QCOMPARE(Thumbnails.thumbnail(pNew), Fresh);
        pNew->~OrvImageSet();
    }

    void settingSwitchesThemOff()
    {
        OrvLayer* pLayer = addLayer(m_Channel, QStringLiteral("Dirt"));
        OrvSettings().setValue(QStringLiteral("LayerView/Thumbnails"), false);
        showRows(m_View);
        const qint64 Icon = button(pLayer)->icon().cacheKey();
        QTest::qWait(OrvLayerThumbnail::RestInterval);
        QCOMPARE(button(pLayer)->icon().cacheKey(), Icon);
        OrvSettings().remove(QStringLiteral("LayerView/Thumbnails"));
    }

    void largePlanesAreReadInGoodTime()
    {
        const OrvPixelFormat Format{GL_UNSIGNED_BYTE, OrvPixelFormat::Rgba, OrvPixelFormat::Srgb};
        OrvImageBuffer Pixels(QRect(0, 0, 4096, 4096), Format);
        // As wide as the thinnest stroke that is surely met.
        Pixels.fill(OrvColor(1, 0, 0), QRect(1000, 1030, 200, 64));
        QElapsedTimer Timer;
        Timer.start();
        const QImage Picture = OrvLayerThumbnailPicture::ofPixels(Pixels, OrvColorManager::linear(), 16);
        qInfo("4096 x 4096: %.1f ms", double(Timer.nsecsElapsed()) / 1e6);
        QVERIFY(Timer.elapsed() < 100);
        QVERIFY(Picture.pixelColor(4, 4).red() > Picture.pixelColor(4, 4).green());
        QCOMPARE(Picture.pixelColor(12, 12).red(), Picture.pixelColor(12, 12).green());
    }

private:
    OrvLayer* addFilled(const OrvColor& Color) const
    {
        return m_Channel->createPaintableLayer(OrvLayerCreateFlags(), nullptr, "Layer", Color);
    }
    /// Behind that of a bake point: the paint's, the mask's.
    OrvLayerComponentPushButton* button(const OrvLayer* pLayer, int Index = 0) const
    {
        return rowOf(m_View, pLayer)->findChildren<OrvLayerComponentPushButton*>().at(1 + Index);
    }
    static QImage picture(const QAbstractButton* pButton)
    {
        return pButton->icon().pixmap(pButton->iconSize()).toImage();
    }
    static QColor colorAt(const QAbstractButton* pButton, int X, int Y)
    {
        return picture(pButton).pixelColor(X, Y);
    }

    SettingsDirectory m_Directory;
    OrvLayerView* m_View = nullptr;
    OrvShaderInput* m_Channel = nullptr;
};

QTEST_MAIN(TstLayerThumbnails)
#include "TstLayerThumbnails.moc"
