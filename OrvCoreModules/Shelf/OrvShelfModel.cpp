#include "OrvCoreModules/Shelf/OrvShelfModel.h"

#include "OrvCoreModules/Window/OrvIcon.h"

#include "OrvCore/Shelf/OrvMaterialPaintManager.h"
#include "OrvCore/Shelf/OrvProceduralDescription.h"
#include "OrvCore/Shelf/OrvShelfThumbnailer.h"

#include <QtCore/QDir>
#include <QtCore/QMimeData>
#include <QtCore/QUrl>
#include <QtGui/QPainter>

namespace {

constexpr qreal CornerRadius = 0.04;

OrvMaterialPaintManager& shelf()
{
    return OrvMaterialPaintManager::instance();
}

QString kindText(const OrvShelfEntry& Entry)
{
    if (Entry.What == OrvShelfEntry::Material)
        return OrvShelfModel::tr("Material");
    switch (Entry.ProceduralType) {
    case OrvProceduralDescription::Scalar:
        return OrvShelfModel::tr("Scalar procedural");
    case OrvProceduralDescription::Mask:
        return OrvShelfModel::tr("Mask procedural");
    default:
        return OrvShelfModel::tr("Color procedural");
    }
}

QString toolTip(const OrvShelfEntry& Entry)
{
    QString Text = QStringLiteral("<b>%1</b><br>%2").arg(Entry.Name.toHtmlEscaped(), kindText(Entry));
    if (!Entry.Description.isEmpty())
        Text += QStringLiteral("<p>%1</p>").arg(Entry.Description.toHtmlEscaped());
    if (Entry.MissesGeoChannels)
        Text += QStringLiteral("<p>%1</p>")
                    .arg(OrvShelfModel::tr("It needs geometry channels that the object does not have."));
    if (!Entry.Error.isEmpty())
        Text += QStringLiteral("<p>%1</p>").arg(Entry.Error.toHtmlEscaped());
    return Text + QStringLiteral("<p>%1</p>").arg(QDir::toNativeSeparators(Entry.Path).toHtmlEscaped());
}

/// The badge tells what the picture cannot.
QIcon thumbnailIcon(const QImage& Picture, const QIcon& Badge)
{
    QPixmap Rounded(Picture.size());
    Rounded.fill(Qt::transparent);
    QPainter Painter(&Rounded);
    Painter.setRenderHint(QPainter::Antialiasing);
    Painter.setPen(Qt::NoPen);
    Painter.setBrush(QBrush(Picture));
    const qreal Radius = CornerRadius * Picture.width();
    Painter.drawRoundedRect(Picture.rect(), Radius, Radius);
    if (!Badge.isNull()) {
        const int Edge = Picture.width() / 4;
        const int Margin = Edge / 4;
        const QRect Place(Picture.width() - Edge - Margin, Picture.height() - Edge - Margin, Edge, Edge);
        Painter.setBrush(QColor(0, 0, 0, 150));
        Painter.drawRoundedRect(
            Place.adjusted(-Margin / 2, -Margin / 2, Margin / 2, Margin / 2), Radius, Radius);
        Badge.paint(&Painter, Place);
    }
    return QIcon(Rounded);
}

} // namespace

OrvShelfModel::OrvShelfModel(QObject* pParent)
    : QAbstractListModel(pParent)
    , m_pThumbnailer(new OrvShelfThumbnailer(this))
{
    connect(m_pThumbnailer, &OrvShelfThumbnailer::ready, this, &OrvShelfModel::onThumbnailReady);
    connect(&shelf(), &OrvMaterialPaintManager::shelfChanged, this, &OrvShelfModel::onShelfChanged);
}

void OrvShelfModel::open()
{
    if (std::exchange(m_IsOpen, true))
        return;
    shelf().entries();
    onShelfChanged();
}

void OrvShelfModel::onShelfChanged()
{
    if (!m_IsOpen)
        return;
    beginResetModel();
    endResetModel();
    requestThumbnails();
}

void OrvShelfModel::requestThumbnails()
{
    m_pThumbnailer->forgetAll();
    for (const OrvShelfEntry& Entry : shelf().entries()) {
        if (!Entry.Text.isEmpty() && Entry.Error.isEmpty() && !shelf().hasThumbnail(Entry.Key))
            m_pThumbnailer->request(Entry.Key, Entry.Text, Entry.Values);
    }
}

void OrvShelfModel::onThumbnailReady(const QString& Key, const QImage& Picture)
{
    for (int Row = 0; Row < rowCount(); ++Row) {
        const OrvShelfEntry& Entry = shelf().entries()[Row];
        if (Entry.Key != Key)
            continue;
        const bool Marked = Entry.What == OrvShelfEntry::Material || Entry.MissesGeoChannels;
        const QIcon Badge = Marked ? OrvIcon::createIconFromFilename(shelf().iconFileOfKind(Entry)) : QIcon();
        shelf().setThumbnail(Key, thumbnailIcon(Picture, Badge));
        Q_EMIT dataChanged(index(Row), index(Row), {Qt::DecorationRole});
    }
}

const OrvShelfEntry* OrvShelfModel::entryAt(const QModelIndex& Index)
{
    const QVector<OrvShelfEntry>& Entries = shelf().entries();
    return Index.isValid() && Index.row() < Entries.size() ? &Entries[Index.row()] : nullptr;
}

int OrvShelfModel::rowCount(const QModelIndex& Parent) const
{
    return m_IsOpen && !Parent.isValid() ? shelf().entries().size() : 0;
}

QVariant OrvShelfModel::data(const QModelIndex& Index, int Role) const
{
    const OrvShelfEntry* pEntry = entryAt(Index);
    if (!pEntry)
        return {};
    switch (Role) {
    case Qt::DisplayRole:
        return pEntry->Name;
    case Qt::DecorationRole:
        return shelf().icon(*pEntry);
    case Qt::ToolTipRole:
        return toolTip(*pEntry);
    case KeyRole:
        return pEntry->Key;
    case MaterialRole:
        return pEntry->What == OrvShelfEntry::Material && pEntry->Error.isEmpty();
    case UsableRole:
        return pEntry->What == OrvShelfEntry::CustomProcedural && pEntry->Error.isEmpty();
    case SearchRole:
        return QStringList{pEntry->Key, pEntry->Name, pEntry->Description}.join(QLatin1Char(' '));
    default:
        return {};
    }
}

Qt::ItemFlags OrvShelfModel::flags(const QModelIndex& Index) const
{
    const OrvShelfEntry* pEntry = entryAt(Index);
    if (!pEntry)
        return Qt::NoItemFlags;
    // A damaged file can be selected, so that its menu leads to it and a double click tells what is wrong,
    // but goes nowhere.
    return Qt::ItemIsEnabled | Qt::ItemIsSelectable
        | (pEntry->Error.isEmpty() ? Qt::ItemIsDragEnabled : Qt::NoItemFlags);
}

QStringList OrvShelfModel::mimeTypes() const
{
    return {QStringLiteral("text/uri-list")};
}

QMimeData* OrvShelfModel::mimeData(const QModelIndexList& Indexes) const
{
    QList<QUrl> Urls;
    for (const QModelIndex& Index : Indexes) {
        if (const OrvShelfEntry* pEntry = entryAt(Index))
            Urls.append(QUrl::fromLocalFile(pEntry->Path));
    }
    auto* pData = new QMimeData;
    pData->setUrls(Urls);
    return pData;
}

#include "moc_OrvShelfModel.cpp"
