#include "OrvEngineFixture.h"

#include "OrvDdi/Engine/OrvEngine.h"
#include "OrvDdi/Engine/OrvOperationRegistry.h"

#include <QtTest/QtTest>

#include <glib.h>

using namespace OrvEngineFixture;

namespace {

const QRect Canvas(0, 0, 96, 64);
QStringList Complaints;

void collectComplaint(const char* pDomain, GLogLevelFlags Level, const char* pMessage, void*)
{
    if (Level & (G_LOG_LEVEL_ERROR | G_LOG_LEVEL_CRITICAL | G_LOG_LEVEL_WARNING))
        Complaints.append(QString("%1: %2").arg(pDomain, pMessage));
}

void addOperations(bool Procedural)
{
    QTest::addColumn<QString>("Name");
    for (const OrvOperation& Operation : OrvOperationRegistry::instance().operations()) {
        if (Operation.Procedural == Procedural)
            QTest::newRow(qPrintable(Operation.MenuPath)) << Operation.Name;
    }
}

std::unique_ptr<OrvEngineNode> node(const QString& Name, OrvEngineNode* pInput)
{
    auto pNode = operation(Name, pInput);
    pNode->setExtent(Canvas);
    return pNode;
}

} // namespace

class TstEngineOperations : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void registry();
    void descriptions();
    void filters_data() { addOperations(false); }
    void filters();
    void procedurals_data() { addOperations(true); }
    void procedurals();
    void reducedViews_data();
    void reducedViews();
    void everyParameterTakesItsLimits_data();
    void everyParameterTakesItsLimits();
    void valuesAreConverted();
    void levels();
    void hueSaturationValue();
    void conicalGradient();
    void nothingLeaks();
};

void TstEngineOperations::initTestCase()
{
    g_log_set_default_handler(collectComplaint, nullptr);
}

void TstEngineOperations::registry()
{
    QElapsedTimer Timer;
    Timer.start();
    const OrvOperationRegistry& Registry = OrvOperationRegistry::instance();
    qDebug("%d operations listed in %lld ms", Registry.operations().size(), Timer.elapsed());
    QVERIFY(Registry.operations().size() >= 60);
    QSet<QString> Paths, Names;
    QStringList InOrder;
    for (const OrvOperation& Operation : Registry.operations()) {
        Paths.insert(Operation.MenuPath);
        InOrder.append(Operation.MenuPath);
        Names.insert(Operation.Name);
        QCOMPARE(Operation.MenuPath.count('/'), 2);
        QVERIFY(Operation.MenuPath.startsWith(Operation.Procedural ? "Procedural/" : "Filter/"));
        QCOMPARE(Registry.find(Operation.Name), &Operation);
        QCOMPARE(Registry.findByMenuPath(Operation.MenuPath), &Operation);
    }
    QCOMPARE(Paths.size(), Registry.operations().size());
    QCOMPARE(OrvOperationRegistry::menuPaths(), InOrder); // this engine has all of them
    QCOMPARE(Names.size(), Registry.operations().size());
    QVERIFY(!Registry.find("gegl:png-load") && !Registry.findByMenuPath("Filter"));
    QVERIFY(Registry.findByMenuPath("Filter/Blur/Gaussian Blur"));
    QVERIFY(Registry.findByMenuPath("Procedural/Noise/Cell Noise")->Procedural);
    QVERIFY(Registry.findByMenuPath("Filter/Math/Add")->HasSecondInput);
    QVERIFY(!Registry.findByMenuPath("Filter/Color/Sepia")->HasSecondInput);
}

/// What a property editor relies on.
void TstEngineOperations::descriptions()
{
    for (const OrvOperation& Operation : OrvOperationRegistry::instance().operations()) {
        for (const OrvOperationParameter& Parameter : Operation.Parameters) {
            const QByteArray Where = (Operation.Name + ' ' + Parameter.Name).toUtf8();
            QVERIFY2(!Parameter.Label.isEmpty(), Where);
            QVERIFY2(Parameter.Default.isValid(), Where);
            switch (Parameter.Type) {
            case OrvOperationParameter::Real:
            case OrvOperationParameter::Angle:
            case OrvOperationParameter::Integer: {
                const double Default = Parameter.Default.toDouble();
                QVERIFY2(Parameter.Minimum <= Default && Default <= Parameter.Maximum, Where);
                QVERIFY2(Parameter.Minimum <= Parameter.UiMinimum && Parameter.UiMaximum <= Parameter.Maximum,
                    Where);
                QVERIFY2(Parameter.UiMinimum < Parameter.UiMaximum, Where);
                QVERIFY2(Parameter.Step > 0.0 && Parameter.Decimals >= 0, Where);
                break;
            }
            case OrvOperationParameter::Enumeration:
                QVERIFY2(Parameter.Choices.contains(Parameter.Default.toString()), Where);
                QCOMPARE(Parameter.Choices.size(), Parameter.ChoiceLabels.size());
                break;
            case OrvOperationParameter::Color:
                QCOMPARE(Parameter.Default.userType(), qMetaTypeId<OrvColor>());
                break;
            default:
                break;
            }
        }
    }
    const OrvOperation* pLevels = OrvOperationRegistry::instance().findByMenuPath("Filter/Adjust/Levels");
    QCOMPARE(pLevels->Parameters.size(), 5);
    QCOMPARE(pLevels->Parameters[2].Default.toDouble(), 1.0);
    const OrvOperation* pHue
        = OrvOperationRegistry::instance().findByMenuPath("Filter/Color/Hue Saturation Value");
    QCOMPARE(pHue->Parameters[0].Type, OrvOperationParameter::Angle);

    // Numbers that stand for names are chosen by name; a bare number of an older document is understood.
    const auto pText = OrvEngineNode::createOperation(QStringLiteral("gegl:text"));
    for (const OrvOperationParameter& Parameter :
        OrvOperationRegistry::instance().find("gegl:text")->Parameters) {
        QVERIFY(Parameter.Name != QStringLiteral("width") && Parameter.Name != QStringLiteral("height"));
        if (!Parameter.Name.endsWith(QStringLiteral("alignment")))
            continue;
        QCOMPARE(Parameter.Type, OrvOperationParameter::Enumeration);
        QCOMPARE(Parameter.Choices.size(), 3);
        QVERIFY(pText->setParameter(Parameter.Name, Parameter.Choices.last()));
        QVERIFY(pText->setParameter(Parameter.Name, 1));
        QVERIFY(!pText->setParameter(Parameter.Name, QStringLiteral("sideways")));
    }
}

/// Every filter takes its defaults, computes without complaint, and keeps no stale pixels when its input is
/// painted on.
void TstEngineOperations::filters()
{
    QFETCH(QString, Name);
    Complaints.clear();
    OrvImageBuffer Pixels = picture(Canvas, 1);
    const auto pSource = source(Pixels), pNode = node(Name, pSource.get()),
               pTop = blend(pNode.get(), nullptr);
    for (const OrvOperationParameter& Parameter : OrvOperationRegistry::instance().find(Name)->Parameters)
        QVERIFY2(pNode->setParameter(Parameter.Name, Parameter.Default), qPrintable(Parameter.Name));
    pNode->setCached(true);
    pTop->setCached(true);
    // The same pixels, whichever region is asked for.
    const std::vector<float> Before = renderedInPieces(*pTop, Canvas);
    const auto pWhole = node(Name, pSource.get());
    QVERIFY(difference(Before, rendered(*pWhole, Canvas)) < 1e-3f);

    const QRect Dab(40, 30, 6, 5);
    Pixels.fill(OrvColor(1.0f, 0.0f, 0.2f), Dab);
    pSource->pixelsWritten(Dab);
    const std::vector<float> After = renderedInPieces(*pTop, Canvas);
    const auto pFresh = node(Name, pSource.get());
    const std::vector<float> Expected = rendered(*pFresh, Canvas);
    QVERIFY2(difference(After, Expected) < 2e-3f, qPrintable(QString::number(difference(After, Expected))));
    QVERIFY2(Complaints.isEmpty(), qPrintable(Complaints.join('\n')));
}

void TstEngineOperations::procedurals()
{
    QFETCH(QString, Name);
    Complaints.clear();
    const auto pNode = node(Name, nullptr), pTop = blend(nullptr, pNode.get());
    for (const OrvOperationParameter& Parameter : OrvOperationRegistry::instance().find(Name)->Parameters)
        QVERIFY2(pNode->setParameter(Parameter.Name, Parameter.Default), qPrintable(Parameter.Name));
    const std::vector<float> Whole = rendered(*pTop, Canvas);
    // The same pixels whatever else is asked for.
    const QRect Part(10, 20, 30, 10);
    const std::vector<float> Piece = rendered(*pTop, Part);
    for (int Row = 0; Row < Part.height(); ++Row) {
        const auto First = Whole.begin() + ((Part.top() + Row) * Canvas.width() + Part.left()) * 4;
        const auto PieceFirst = Piece.begin() + Row * Part.width() * 4;
        const std::vector<float> A(First, First + Part.width() * 4),
            B(PieceFirst, PieceFirst + Part.width() * 4);
        QVERIFY(difference(A, B) < 1e-4f);
    }
    QVERIFY2(Complaints.isEmpty(), qPrintable(Complaints.join('\n')));
}

void TstEngineOperations::reducedViews_data()
{
    everyParameterTakesItsLimits_data();
}

/// Seen at quarter scale, every operation shows what the full result looks like from further away.
void TstEngineOperations::reducedViews()
{
    QFETCH(QString, Name);
    Complaints.clear();
    // Blocks that fill whole pixels of the reduced view: no operation is given mixed colours there.
    const QRect Wide(0, 0, 256, 192), Reduced(0, 0, 64, 48);
    OrvImageBuffer Pixels(Wide, floatColor());
    QRandomGenerator Random(4);
    for (int Block = 0; Block < 16 * 12; ++Block) {
        const OrvColor Color(
            float(Random.bounded(1.0)), float(Random.bounded(1.0)), float(Random.bounded(1.0)));
        Pixels.fill(Color, QRect(Block % 16 * 16, Block / 16 * 16, 16, 16));
    }
    const auto pSource = source(Pixels), pNode = operation(Name, pSource.get()),
               pTop = blend(nullptr, pNode.get());
    pNode->setExtent(Wide);
    const std::vector<float> Full = rendered(*pTop, Wide), Quarter = rendered(*pTop, Reduced, 0.25);
    double Sum = 0.0;
    for (int Y = 0; Y < Reduced.height(); ++Y) {
        for (int X = 0; X < Reduced.width(); ++X) {
            for (int Component = 0; Component < 4; ++Component) {
                double Average = 0.0;
                for (int Part = 0; Part < 16; ++Part) {
                    const int Pixel = (Y * 4 + Part / 4) * Wide.width() + X * 4 + Part % 4;
                    Average += double(Full[size_t(Pixel * 4 + Component)]) / 16;
                }
                Sum += std::abs(Average - double(Quarter[size_t((Y * Reduced.width() + X) * 4 + Component)]));
            }
        }
    }
    Sum /= Reduced.width() * Reduced.height() * 4;
    QVERIFY2(Sum < 4e-3, qPrintable(QString::number(Sum)));
    QVERIFY2(Complaints.isEmpty(), qPrintable(Complaints.join('\n')));
}

void TstEngineOperations::everyParameterTakesItsLimits_data()
{
    QTest::addColumn<QString>("Name");
    for (const OrvOperation& Operation : OrvOperationRegistry::instance().operations())
        QTest::newRow(qPrintable(Operation.MenuPath)) << Operation.Name;
}

/// Values far outside are brought into range and values of a wrong kind are refused, without complaint.
void TstEngineOperations::everyParameterTakesItsLimits()
{
    QFETCH(QString, Name);
    Complaints.clear();
    const auto pNode = OrvEngineNode::createOperation(Name);
    for (const OrvOperationParameter& Parameter : OrvOperationRegistry::instance().find(Name)->Parameters) {
        const bool IsNumber = Parameter.Type == OrvOperationParameter::Real
            || Parameter.Type == OrvOperationParameter::Integer
            || Parameter.Type == OrvOperationParameter::Angle;
        QCOMPARE(pNode->setParameter(Parameter.Name, 1e30),
            IsNumber || Parameter.Type == OrvOperationParameter::Boolean
                || Parameter.Type == OrvOperationParameter::Text
                || Parameter.Type == OrvOperationParameter::FilePath);
        if (IsNumber) {
            QVERIFY(pNode->setParameter(Parameter.Name, -1e30));
            QVERIFY(!pNode->setParameter(Parameter.Name, qQNaN()));
            QVERIFY(!pNode->setParameter(Parameter.Name, "no number"));
        }
        QVERIFY(!pNode->setParameter(Parameter.Name, QVariant()));
    }
    QVERIFY(!pNode->setParameter("no-such-parameter", 1));
    QVERIFY2(Complaints.isEmpty(), qPrintable(Complaints.join('\n')));
}

void TstEngineOperations::valuesAreConverted()
{
    const auto pColor = node("gegl:color", nullptr);
    QVERIFY(pColor->setParameter("value", QVariant::fromValue(OrvColor(0.5f, 2.0f, 0.25f, 0.5f))));
    const OrvColor Shown = pixelOf(*pColor, 5, 5);
    QVERIFY(qAbs(Shown.red() - 0.5f) < 1e-3f && qAbs(Shown.green() - 2.0f) < 1e-3f && Shown.alpha() == 0.5f);
    QVERIFY(!pColor->setParameter("value", "red"));

    const auto pSource = uniform(OrvColor(0.25f, 0.5f, 0.75f), Canvas);
    const auto pExtract = node("gegl:component-extract", pSource.get());
    QVERIFY(pExtract->setParameter("component", "rgb-b"));
    QVERIFY(pExtract->setParameter("linear", true));
    QVERIFY(qAbs(pixelOf(*pExtract, 5, 5).red() - 0.75f) < 0.3f);
    QVERIFY(!pExtract->setParameter("component", "no-such-component"));
    const auto pAdd = node("gegl:add", pSource.get());
    QVERIFY(pAdd->setParameter("value", "0.5")); // as a settings file has it
    QVERIFY(qAbs(pixelOf(*pAdd, 5, 5).red() - 0.75f) < 1e-4f);
}

void TstEngineOperations::levels()
{
    const auto srgb = [](float Linear) { return 1.055 * std::pow(double(Linear), 1 / 2.4) - 0.055; };
    const auto pSource = uniform(OrvColor(0.25f, 0.5f, 4.0f, 0.5f), Canvas);
    const auto pLevels = node("orv:levels", pSource.get());
    const OrvColor Same = pixelOf(*pLevels, 1, 1);
    QVERIFY(qAbs(Same.red() - 0.25f) < 1e-4f && qAbs(Same.blue() - 4.0f) < 1e-3f
        && qAbs(Same.alpha() - 0.5f) < 1e-4f);
    pLevels->setParameter("in-black", 0.1);
    pLevels->setParameter("in-white", 0.9);
    pLevels->setParameter("gamma", 2.0);
    pLevels->setParameter("out-black", 0.2);
    const double Expected = 0.2 + std::sqrt((srgb(0.25f) - 0.1) / 0.8) * 0.8;
    QVERIFY(qAbs(srgb(pixelOf(*pLevels, 1, 1).red()) - Expected) < 1e-4);
    pLevels->setParameter("in-white", 0.1); // no width
    QVERIFY(!std::isnan(pixelOf(*pLevels, 1, 1).red()));
}

void TstEngineOperations::hueSaturationValue()
{
    const auto pSource = uniform(OrvColor(1, 0, 0), Canvas);
    const auto pAdjust = node("orv:hue-saturation-value", pSource.get());
    const auto isColor = [&pAdjust](const OrvColor& Expected) {
        const OrvColor Shown = pixelOf(*pAdjust, 1, 1);
        return qAbs(Shown.red() - Expected.red()) < 1e-4f && qAbs(Shown.green() - Expected.green()) < 1e-4f
            && qAbs(Shown.blue() - Expected.blue()) < 1e-4f;
    };
    QVERIFY(isColor(OrvColor(1, 0, 0)));
    pAdjust->setParameter("hue", 120.0);
    QVERIFY(isColor(OrvColor(0, 1, 0)));
    pAdjust->setParameter("hue", -60.0);
    QVERIFY(isColor(OrvColor(1, 0, 1)));
    pAdjust->setParameter("saturation", 0.0);
    QVERIFY(isColor(OrvColor(1, 1, 1)));
    pAdjust->setParameter("value", 0.0);
    QVERIFY(isColor(OrvColor(0, 0, 0)));
    // Mixed colours survive an adjustment that changes nothing.
    pAdjust->setParameter("hue", 0.0);
    pAdjust->setParameter("saturation", 1.0);
    pAdjust->setParameter("value", 1.0);
    pSource->setUniform(OrvColor(0.2f, 3.0f, 0.7f), Canvas);
    const OrvColor Shown = pixelOf(*pAdjust, 1, 1);
    QVERIFY(qAbs(Shown.red() - 0.2f) < 1e-3f && qAbs(Shown.green() - 3.0f) < 1e-3f
        && qAbs(Shown.blue() - 0.7f) < 1e-3f);
}

void TstEngineOperations::conicalGradient()
{
    const auto pGradient = node("orv:conical-gradient", nullptr);
    pGradient->setParameter("x", 48.0);
    pGradient->setParameter("y", 32.0);
    const auto share = [&pGradient](int X, int Y) { return pixelOf(*pGradient, X, Y).red(); };
    QVERIFY(share(90, 32) < 0.01f && share(90, 31) > 0.99f); // begins to the right and turns down
    QVERIFY(qAbs(share(48, 60) - 0.25f) < 0.01f);
    QVERIFY(qAbs(share(5, 32) - 0.5f) < 0.01f);
    pGradient->setParameter("repeats", 2.0);
    QVERIFY(qAbs(share(48, 60) - 0.5f) < 0.01f);
    pGradient->setParameter("angle", 90.0);
    QVERIFY(share(47, 60) < 0.01f);
}

void TstEngineOperations::nothingLeaks()
{
    QCOMPARE(OrvEngine::shutdown(), 0);
}

QTEST_GUILESS_MAIN(TstEngineOperations)

#include "TstEngineOperations.moc"
