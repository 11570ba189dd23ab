// Renders the icons that icons.json lists: OrvIconRenderer <this folder> <output folder>

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtGui/QGuiApplication>
#include <QtGui/QImage>
#include <QtGui/QPainter>
#include <QtSvg/QSvgRenderer>

#include <cstdio>

namespace {

constexpr int PlainSize = 24, SmallSize = 16, MarkSize = 12;
constexpr int ScreenScales[] = {1, 2, 3};
constexpr int ApplicationSizes[] = {16, 24, 32, 48, 64, 128, 256};

/// Turns lists of drawings into pictures. A drawing of the folder "Badges" first clears the shape named
/// "moat" around itself, so that it stands out from what lies below.
class Renderer {
public:
    Renderer(const QString& Source, const QString& Target)
        : m_Source(Source)
        , m_Target(Target)
    {
    }

    bool run();

private:
    bool renderList(const QJsonObject& List, const QList<QPair<QString, int>>& SuffixesAndSizes);
    bool render(const QStringList& Drawings, const QString& FileName, int Size, bool ForAllScreens);
    bool draw(QPainter& Painter, const QString& Drawing, int Size);
    bool copy(const QString& Drawing, const QString& FileName);
    static bool failed(const QString& What);

    QDir m_Source, m_Target;
};

bool Renderer::failed(const QString& What)
{
    fprintf(stderr, "%s\n", qUtf8Printable(What));
    return false;
}

bool Renderer::draw(QPainter& Painter, const QString& Drawing, int Size)
{
    const QString Badge = m_Source.filePath(QStringLiteral("Badges/%1.svg").arg(Drawing));
    const bool IsBadge = QFile::exists(Badge);
    QSvgRenderer Svg(IsBadge ? Badge : m_Source.filePath(QStringLiteral("Motifs/%1.svg").arg(Drawing)));
    if (!Svg.isValid())
        return failed(QStringLiteral("The drawing '%1' is missing or damaged").arg(Drawing));
    if (!IsBadge) {
        Svg.render(&Painter, QRectF(0, 0, Size, Size));
        return true;
    }
    const qreal Scale = Size / Svg.viewBoxF().width();
    for (const char* pElement : {"moat", "badge"}) {
        const QRectF Bounds = Svg.boundsOnElement(QLatin1String(pElement));
        Painter.setCompositionMode(qstrcmp(pElement, "moat") == 0 ? QPainter::CompositionMode_DestinationOut
                                                                  : QPainter::CompositionMode_SourceOver);
        Svg.render(
            &Painter, QLatin1String(pElement), QRectF(Bounds.topLeft() * Scale, Bounds.size() * Scale));
    }
    return true;
}

bool Renderer::render(const QStringList& Drawings, const QString& FileName, int Size, bool ForAllScreens)
{
    for (const int Scale : ScreenScales) {
        if (Scale > 1 && !ForAllScreens)
            break;
        QImage Picture(Size * Scale, Size * Scale, QImage::Format_ARGB32_Premultiplied);
        Picture.fill(Qt::transparent);
        QPainter Painter(&Picture);
        Painter.setRenderHint(QPainter::Antialiasing);
        for (const QString& Drawing : Drawings) {
            if (!draw(Painter, Drawing, Size * Scale))
                return false;
        }
        Painter.end();
        QString Path = m_Target.filePath(FileName);
        if (Scale > 1)
            Path.insert(Path.size() - 4, QStringLiteral("@%1x").arg(Scale));
        if (!Picture.save(Path))
            return failed(QStringLiteral("'%1' cannot be written").arg(Path));
    }
    return true;
}

bool Renderer::copy(const QString& Drawing, const QString& FileName)
{
    const QString To = m_Target.filePath(FileName);
    QFile::remove(To);
    return QFile::copy(m_Source.filePath(QStringLiteral("Motifs/%1.svg").arg(Drawing)), To)
        || failed(QStringLiteral("'%1' cannot be made from '%2'").arg(To, Drawing));
}

bool Renderer::renderList(const QJsonObject& List, const QList<QPair<QString, int>>& SuffixesAndSizes)
{
    for (auto Icon = List.begin(); Icon != List.end(); ++Icon) {
        QStringList Drawings;
        for (const QJsonValue Drawing : Icon.value().toArray())
            Drawings.append(Drawing.toString());
        for (const auto& [Suffix, Size] : SuffixesAndSizes) {
            if (!render(Drawings, Icon.key() + Suffix, Size, true))
                return false;
        }
    }
    return true;
}

bool Renderer::run()
{
    QFile File(m_Source.filePath(QStringLiteral("icons.json")));
    if (!File.open(QIODevice::ReadOnly))
        return failed(QStringLiteral("'%1' cannot be read").arg(File.fileName()));
    QJsonParseError Trouble;
    const QJsonObject Lists = QJsonDocument::fromJson(File.readAll(), &Trouble).object();
    if (Trouble.error != QJsonParseError::NoError)
        return failed(QStringLiteral("'%1': %2").arg(File.fileName(), Trouble.errorString()));
    if (!QDir().mkpath(m_Target.path()))
        return failed(QStringLiteral("'%1' cannot be made").arg(m_Target.path()));

    if (!renderList(Lists.value(QLatin1String("icons")).toObject(),
            {{QStringLiteral(".png"), PlainSize}, {QStringLiteral(".16x16.png"), SmallSize}})
        || !renderList(Lists.value(QLatin1String("rows")).toObject(), {{QString(), SmallSize}})
        || !renderList(Lists.value(QLatin1String("marks")).toObject(), {{QString(), MarkSize}}))
        return false;
    const QJsonObject Vectors = Lists.value(QLatin1String("vectors")).toObject();
    for (auto Icon = Vectors.begin(); Icon != Vectors.end(); ++Icon) {
        if (!copy(Icon.value().toString(), Icon.key()))
            return false;
    }
    const QString Application = Lists.value(QLatin1String("application")).toString();
    for (const int Size : ApplicationSizes) {
        if (!render({Application}, QStringLiteral("%1.%2x%2.png").arg(Application).arg(Size), Size, false))
            return false;
    }
    return render({Application}, Application + QLatin1String(".png"), ApplicationSizes[6], false);
}

} // namespace

int main(int argc, char** argv)
{
    // No screen is needed to paint into images.
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QGuiApplication Application(argc, argv);
    const QStringList Arguments = Application.arguments();
    if (Arguments.size() != 3) {
        fprintf(stderr, "usage: OrvIconRenderer <folder of icons.json> <output folder>\n");
        return 2;
    }
    return Renderer(Arguments.at(1), Arguments.at(2)).run() ? 0 : 1;
}
