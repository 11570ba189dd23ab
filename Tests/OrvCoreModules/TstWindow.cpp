#include "Tests/OrvPlugins/SettingsDirectory.h"

#include "OrvCore/Layers/OrvLayerRendering.h"
#include "OrvCore/Object/OrvDebug.h"
#include "OrvCoreModules/DragAndDrop/OrvDragAndDropManager.h"
#include "OrvCoreModules/Window/OrvAppearance.h"
#include "OrvCoreModules/Window/OrvApplication.h"
#include "OrvCoreModules/Window/OrvContextHelp.h"
#include "OrvCoreModules/Window/OrvCustomFusionStyle.h"
#include "OrvCoreModules/Window/OrvGui.h"
#include "OrvCoreModules/Window/OrvIcon.h"
#include "OrvCoreModules/Window/OrvLogView.h"
#include "OrvCoreModules/Window/OrvMainWindow.h"
#include "OrvCoreModules/Window/OrvPixmap.h"
#include "OrvCoreModules/Window/OrvProgressDialog.h"
#include "OrvCoreModules/Window/OrvResourceInfo.h"
#include "OrvCoreModules/Window/OrvStatusManager.h"

#include <QtCore/QMimeData>
#include <QtGui/QPainter>
#include <QtTest/QtTest>
#include <QtWidgets/QLabel>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QMessageBox>
#include <QtWidgets/QProgressBar>
#include <QtWidgets/QProgressDialog>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QScrollBar>
#include <QtWidgets/QShortcut>
#include <QtWidgets/QStatusBar>
#include <QtWidgets/QToolButton>
#include <QtWidgets/QVBoxLayout>

namespace {

QImage plainImage(int Edge, const QColor& Color)
{
    QImage Image(Edge, Edge, QImage::Format_ARGB32);
    Image.fill(Color);
    return Image;
}

QColor centerOf(const QPixmap& Pixmap)
{
    return Pixmap.toImage().pixelColor(Pixmap.width() / 2, Pixmap.height() / 2);
}

} // namespace

/// The window's services: icons, status and progress, focus, help, drops.
class TstWindow : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        QVERIFY(m_Directory.isValid());
        qputenv("ORV_RESOURCES", m_Directory.path().toLocal8Bit());
        QVERIFY(QDir(m_Directory.path()).mkpath(QStringLiteral("icons")));
        QVERIFY(QDir(m_Directory.path()).mkpath(QStringLiteral("help")));
    }
    void init()
    {
        OrvMainWindow::instance().show();
        QVERIFY(QTest::qWaitForWindowExposed(&OrvMainWindow::instance()));
    }

    void iconsOpenTheirFileWhenFirstUsed()
    {
        const QIcon Icon = OrvIcon::createIconFromFilename(QStringLiteral("Late.png"));
        const QIcon Missing = OrvIcon::createIconFromFilename(QStringLiteral("Missing.png"));
        write("Late.png", plainImage(16, Qt::red));
        QVERIFY(!Icon.isNull());
        QCOMPARE(centerOf(Icon.pixmap(16)), QColor(Qt::red));
        QVERIFY(Missing.isNull());
        QVERIFY(Missing.pixmap(16).isNull());
        QVERIFY(OrvIcon::createIconFromPath(QString()).isNull());

        const QIcon Doubled = OrvIcon::createIconFromPath(OrvResourceInfo::iconPath() + "//Late.png");
        QCOMPARE(centerOf(Doubled.pixmap(16)), QColor(Qt::red));
    }

    void iconsFitTheSizeAskedFor()
    {
        write("Sized.png", plainImage(16, Qt::red));
        write("Sized@2x.png", plainImage(32, Qt::green));
        const QIcon Icon = OrvIcon::createIconFromFilename(QStringLiteral("Sized.png"));
        QCOMPARE(Icon.pixmap(8).size(), QSize(8, 8));
        // A bitmap does not grow beyond the best that there is; the finer file is used for dense pixels only.
        QCOMPARE(centerOf(Icon.pixmap(16)), QColor(Qt::red));
        QCOMPARE(Icon.pixmap(32).size(), QSize(32, 32));
        QCOMPARE(centerOf(Icon.pixmap(32)), QColor(Qt::green));
        QCOMPARE(Icon.pixmap(64).size(), QSize(32, 32));

        QImage Dense(32, 32, QImage::Format_ARGB32_Premultiplied);
        Dense.setDevicePixelRatio(2);
        Dense.fill(Qt::black);
        QPainter Painter(&Dense);
        Icon.paint(&Painter, QRect(0, 0, 16, 16));
        Painter.end();
        QCOMPARE(Dense.pixelColor(1, 1), QColor(Qt::green));
        QCOMPARE(Dense.pixelColor(30, 30), QColor(Qt::green));
    }

    void svgIconsAndDisabledOnes()
    {
        const QString File = OrvResourceInfo::iconPath() + QStringLiteral("/Ball.svg");
        write(File,
            "<svg xmlns='http://www.w3.org/2000/svg' width='16' height='16'>"
            "<rect width='16' height='16' fill='#ff0000'/></svg>");
        const QIcon Icon = OrvIcon::createIconFromFilename(QStringLiteral("Ball.svg"));
        QCOMPARE(Icon.pixmap(48).size(), QSize(48, 48));
        QCOMPARE(centerOf(Icon.pixmap(48)), QColor(Qt::red));
        const QColor Disabled = centerOf(Icon.pixmap(48, QIcon::Disabled));
        QCOMPARE(Disabled.saturation(), 0);
        QVERIFY(Disabled.alpha() < 160 && Disabled.alpha() > 40);
        QCOMPARE(OrvPixmap::createQPixmapFromPath(File).size(), QSize(16, 16));
        QVERIFY(OrvPixmap::createQPixmapFromPath(QStringLiteral("/no/such.png")).isNull());
    }

    void helpComesFromWhoeverKnows()
    {
        write(OrvResourceInfo::helpPath() + QStringLiteral("/layers_palette.html"), "<b>Layers</b>");
        QCOMPARE(OrvContextHelp::text(QStringLiteral("layers_palette")), QStringLiteral("<b>Layers</b>"));
        OrvContextHelp::registerText(QStringLiteral("layers_palette"), QStringLiteral("Registered"));
        QCOMPARE(OrvContextHelp::text(QStringLiteral("layers_palette")), QStringLiteral("Registered"));
        QVERIFY(!OrvContextHelp::show(QStringLiteral("unknown"), QPoint(), nullptr));
        QVERIFY(!OrvContextHelp::show(QString(), QPoint(), nullptr));
    }

    void statusShowsTheInnermostReport()
    {
        OrvStatusManager& Status = OrvStatusManager::instance();
        QSignalSpy Text(&Status, &OrvStatusManager::textChanged);
        Status.showMessage(QStringLiteral("Ready"));
        {
            const OrvStatusManager::AutoProgress Outer(QStringLiteral("Outer"), 100, 0, 1);
            QCOMPARE(Status.text(), QStringLiteral("Outer"));
            {
                const OrvStatusManager::AutoProgress Inner(QStringLiteral("Inner"), 100, 0, 1);
                Status.showMessage(QStringLiteral("Meanwhile"));
                QCOMPARE(Status.text(), QStringLiteral("Inner"));
            }
            QCOMPARE(Status.text(), QStringLiteral("Outer"));
        }
        QCOMPARE(Status.text(), QStringLiteral("Meanwhile"));
        QCOMPARE(Text.last().first().toString(), QStringLiteral("Meanwhile"));

        // A message's end must not take a newer message away.
        Status.showMessage(QStringLiteral("Short"), 20);
        Status.showMessage(QStringLiteral("Long"));
        QTest::qWait(60);
        QCOMPARE(Status.text(), QStringLiteral("Long"));
        Status.showMessage(QStringLiteral("Short"), 20);
        QTRY_VERIFY(Status.text().isEmpty());
    }

    void progressBarAppearsAfterTheDelayAndEvents()
    {
        const auto* pBar = OrvMainWindow::instance().statusBar()->findChild<QProgressBar*>();
        bool LoopHasRun = false;
        const QObject Waiting; // takes its call along when the test is over
        QTimer::singleShot(0, &Waiting, [&LoopHasRun] { LoopHasRun = true; });
        {
            OrvStatusManager::AutoProgress Patient(QStringLiteral("Patient"), 100, 0, 60);
            Patient.setValue(50);
            QVERIFY(!pBar->isVisible());
            OrvStatusManager::AutoProgress Hasty(QStringLiteral("Hasty"), 40, 20, 0);
            Hasty.setValue(30);
            QVERIFY(pBar->isVisible());
            QCOMPARE(pBar->minimum(), 20);
            QCOMPARE(pBar->value(), 30);
            Hasty.setValue(1000);
            QCOMPARE(pBar->value(), 40);
        }
        QVERIFY(!pBar->isVisible());
        QVERIFY(!LoopHasRun);
    }

    void workIsCancelledByTheUserAndNothingElseGetsThrough_data()
    {
        QTest::addColumn<bool>("ByButton");
        QTest::newRow("Escape") << false;
        QTest::newRow("button") << true;
    }
    void workIsCancelledByTheUserAndNothingElseGetsThrough()
    {
        QFETCH(bool, ByButton);
        OrvMainWindow& Window = OrvMainWindow::instance();
        auto* pCancel = Window.statusBar()->findChild<QToolButton*>();
        bool TimerFired = false, Typed = false;
        const QObject Waiting;
        QTimer::singleShot(1, &Waiting, [&TimerFired] { TimerFired = true; });
        QShortcut Key(QKeySequence(Qt::Key_Q), &Window);
        connect(&Key, &QShortcut::activated, this, [&Typed] { Typed = true; });
        const auto key = [&Window](int Code) {
            for (const QEvent::Type Type : {QEvent::KeyPress, QEvent::KeyRelease})
                QCoreApplication::postEvent(&Window, new QKeyEvent(Type, Code, Qt::NoModifier));
        };
        const auto click = [](QWidget* pWidget) {
            for (const QEvent::Type Type : {QEvent::MouseButtonPress, QEvent::MouseButtonRelease}) {
                QCoreApplication::postEvent(pWidget,
                    new QMouseEvent(Type, QPointF(pWidget->rect().center()), Qt::LeftButton,
                        Type == QEvent::MouseButtonPress ? Qt::LeftButton : Qt::NoButton, Qt::NoModifier));
            }
        };
        {
            const OrvStatusManager::AutoProgress Fixed(QStringLiteral("Fixed"), 10, 0, 0);
            OrvStatusManager::AutoProgress Work(QStringLiteral("Work"), 100, 0, 0);
            Work.setCancellable(true);
            Work.setValue(1);
            key(Qt::Key_Q);
            QCoreApplication::postEvent(&Window, new QCloseEvent);
            QTest::qSleep(60);
            Work.setValue(2);
            QVERIFY(!Work.isCancelled() && Window.isVisible() && pCancel->isVisible());
            if (ByButton)
                click(pCancel);
            else
                key(Qt::Key_Escape);
            QTest::qSleep(60);
            Work.setValue(3);
            QVERIFY(Work.isCancelled() && !Fixed.isCancelled());
            QVERIFY(!TimerFired && !Typed);
        }
        QVERIFY(!pCancel->isVisible());
        QTRY_VERIFY(TimerFired); // late, but not lost
        QVERIFY(!Typed);
    }

    void renderingIsCancelledAndSaysSo()
    {
        QVERIFY(OrvLayerRendering::step(0, 10));
        QTest::qSleep(1100); // until the bar is there
        QVERIFY(OrvLayerRendering::step(1, 10));
        QCoreApplication::postEvent(
            &OrvMainWindow::instance(), new QKeyEvent(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier));
        QTest::qSleep(60);
        QVERIFY(!OrvLayerRendering::step(2, 10));
        QCOMPARE(OrvStatusManager::instance().text(), QStringLiteral("Cancelled"));
        // The next work is not cancelled by that.
        QVERIFY(OrvLayerRendering::step(0, 2));
        QVERIFY(OrvLayerRendering::step(2, 2));
    }

    void progressDialogCancelsWorkAndIsSilentUnattended()
    {
        OrvApplication::State& Application = OrvApplication::appInstance();
        Application.setPopupsAllowed(false);
        {
            OrvProgressDialog Unattended(QStringLiteral("Export"));
            QTest::qSleep(600);
            QVERIFY(Unattended.step(1, 2));
            QVERIFY(!QApplication::activeModalWidget());
        }
        Application.setPopupsAllowed(true);
        OrvProgressDialog Attended(QStringLiteral("Export"));
        QVERIFY(Attended.step(1, 1000));
        QVERIFY(!QApplication::activeModalWidget());
        int Steps = 0;
        while (Attended.step(Steps, 1000) && Steps < 1000) {
            QTest::qSleep(10);
            ++Steps;
            if (auto* pDialog = qobject_cast<QProgressDialog*>(QApplication::activeModalWidget()))
                pDialog->findChild<QPushButton*>()->click();
        }
        QVERIFY(Steps < 1000);
        QVERIFY(Attended.isCancelled());
        Application.setPopupsAllowed(false);
    }

    void focusIsStolenGently()
    {
        QWidget Window;
        auto* pLayout = new QVBoxLayout(&Window);
        auto* pTree = new QWidget(&Window);
        auto* pButton = new QPushButton(&Window);
        auto* pEditor = new QLineEdit(&Window);
        for (QWidget* pWidget : std::initializer_list<QWidget*>{pTree, pButton, pEditor})
            pLayout->addWidget(pWidget);
        pTree->setFocusPolicy(Qt::StrongFocus);
        Window.show();
        Window.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&Window));
        pButton->setFocus();
        OrvGui::stealFocusGently(pTree);
        QVERIFY(pTree->hasFocus());
        pEditor->setFocus();
        OrvGui::stealFocusGently(pTree);
        QVERIFY(pEditor->hasFocus());

        pButton->setFocus();
        QWidget Other;
        Other.show();
        Other.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&Other));
        OrvGui::stealFocusGently(pTree);
        QVERIFY(!pTree->hasFocus());
        OrvGui::stealFocusGently(nullptr);
    }

    void messageBoxesHaveRoomForTheirTitleAndText()
    {
        const QString Long = QStringLiteral("Grouping Operation Failed");
        OrvCustomFusionStyle Style;
        for (const bool TitleIsLong : {true, false}) {
            QMessageBox Box(
                QMessageBox::Warning, TitleIsLong ? Long : QString(), TitleIsLong ? QString("No") : Long);
            Box.setStyle(&Style);
            Box.show();
            QVERIFY(Box.width() > Box.fontMetrics().horizontalAdvance(Long));
            const auto* pText = Box.findChild<QLabel*>(QStringLiteral("qt_msgbox_label"));
            QVERIFY(pText && pText->width() >= pText->sizeHint().width());
        }
    }

    /// Messages that came while nobody looked are read from their beginnings.
    void theLogOpensAtTheStartOfItsLastLines()
    {
        OrvLogView Log;
        Log.resize(200, 100);
        for (int Line = 0; Line < 100; ++Line)
            OrvDebug("TstWindow", Line, QStringLiteral("word ").repeated(50), false, false);
        QTRY_VERIFY(Log.blockCount() >= 100);
        Log.show();
        QVERIFY(QTest::qWaitForWindowExposed(&Log));
        QCOMPARE(Log.horizontalScrollBar()->value(), 0);
        QVERIFY(Log.horizontalScrollBar()->maximum() > 0);
        QCOMPARE(Log.verticalScrollBar()->value(), Log.verticalScrollBar()->maximum());
    }

    void precisionIsBoundedAndToldOnce()
    {
        OrvAppearance& Appearance = OrvAppearance::instance();
        QSignalSpy Changed(&Appearance, SIGNAL(sliderPrecisionChanged(int)));
        Appearance.setSliderPrecision(Appearance.sliderPrecision());
        QVERIFY(Changed.isEmpty());
        Appearance.setSliderPrecision(99);
        Appearance.setSliderPrecision(1000);
        QCOMPARE(Changed.size(), 1);
        QVERIFY(Appearance.sliderPrecision() < 10);
    }

    void dropsGoToTheHandlerOfTheirPlace()
    {
        OrvDragAndDropManager& Drops = OrvDragAndDropManager::instance();
        QVariantMap Dropped;
        OrvDragAndDropManager::Handler Images;
        Images.MimeTypes = QStringList{QStringLiteral("text/uri-list")};
        Images.Accepts = [](const QMimeData& Data) { return Data.urls().first().path().endsWith(".png"); };
        Images.Drop = [&Dropped](const QMimeData&, const QVariantMap& Parameters) {
            Dropped = Parameters;
            return true;
        };
        const int Number = Drops.registerHandler(OrvDragAndDropManager::LayerTreeTarget, Images);
        QCOMPARE(Drops.mimeTypes(3), Images.MimeTypes);
        QVERIFY(Drops.mimeTypes(1).isEmpty());

        QMimeData Image;
        Image.setUrls({QUrl::fromLocalFile(QStringLiteral("/tmp/a.png"))});
        QVERIFY(Drops.acceptDragEnter(&Image, 3));
        QVERIFY(!Drops.acceptDragEnter(&Image, 1));
        QVERIFY(!Drops.acceptDragEnter(nullptr, 3));
        QVERIFY(Drops.drop(&Image, 3, {{QStringLiteral("LayerBelow"), 5}}));
        QCOMPARE(Dropped.value(QStringLiteral("LayerBelow")).toInt(), 5);

        // The palettes' own payload is theirs, whatever else it carries.
        Image.setData(QStringLiteral("application/x-orvi-layer"), "x");
        QVERIFY(!Drops.acceptDragEnter(&Image, 3));
        QVERIFY(!Drops.drop(&Image, 3, {}));
        QMimeData Material;
        Material.setUrls({QUrl::fromLocalFile(QStringLiteral("/tmp/a.orvmat"))});
        QVERIFY(!Drops.acceptDragEnter(&Material, 3));
        Drops.unregisterHandler(Number);
        QVERIFY(Drops.mimeTypes(3).isEmpty());
    }

private:
    static void write(const QString& Path, const QByteArray& Contents)
    {
        QFile File(Path);
        QVERIFY(File.open(QIODevice::WriteOnly));
        QCOMPARE(File.write(Contents), Contents.size());
    }
    static void write(const char* pName, const QImage& Image)
    {
        QVERIFY(Image.save(OrvResourceInfo::iconPath() + QLatin1Char('/') + QLatin1String(pName)));
    }

    SettingsDirectory m_Directory;
};

QTEST_MAIN(TstWindow)
#include "TstWindow.moc"
