#include "Orvi/OrvObjectDialog.h"

#include "OrvCore/Project/OrvGeoEntity.h"

#include "OrvDdi/Image/OrvUdimLayout.h"

#include <QtWidgets/QComboBox>
#include <QtWidgets/QDialogButtonBox>
#include <QtWidgets/QFormLayout>
#include <QtWidgets/QLabel>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QStackedWidget>

namespace {

constexpr int FirstTile = 1001, LastTile = 9999;
constexpr int MostTiles = 1000; // more are a slip of the finger
constexpr int SmallestFace = 64, LargestFace = 8192; // pixels
constexpr int EditWidth = 220;

} // namespace

OrvObjectDialog::OrvObjectDialog(
    const QString& Name, const std::function<bool(const QString&)>& IsTaken, QWidget* pParent)
    : QDialog(pParent)
    , m_IsTaken(IsTaken)
    , m_pName(new QLineEdit(Name))
    , m_pTiles(new QLineEdit(QString::number(FirstTile)))
    , m_pSurface(new QComboBox)
    , m_pResolution(new QComboBox)
    , m_pDetails(new QStackedWidget)
    , m_pTrouble(new QLabel)
{
    setWindowTitle(tr("Add Object"));
    m_pName->setMinimumWidth(EditWidth);
    m_pName->selectAll();
    m_pSurface->addItem(tr("UDIM tiles"), false);
    m_pSurface->addItem(tr("Ptex (faces carry their resolution)"), true);
    m_pTiles->setToolTip(tr("Numbers and ranges: 1001-1003, 1011"));
    for (int Edge = SmallestFace; Edge <= LargestFace; Edge *= 2)
        m_pResolution->addItem(tr("%1 x %1").arg(Edge), QSize(Edge, Edge));
    m_pResolution->setCurrentIndex(m_pResolution->findData(OrvGeoEntity(QString()).faceResolution()));
    m_pTrouble->setWordWrap(true);
    m_pDetails->addWidget(m_pTiles);
    m_pDetails->addWidget(m_pResolution);
    m_pDetails->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);

    auto* pButtons = new QDialogButtonBox(QDialogButtonBox::Cancel);
    m_pAdd = pButtons->addButton(tr("Add"), QDialogButtonBox::AcceptRole);
    m_pAdd->setDefault(true);
    pButtons->button(QDialogButtonBox::Cancel)->setAutoDefault(false);
    auto* pDetailsLabel = new QLabel;
    auto* pForm = new QFormLayout(this);
    pForm->addRow(tr("Name"), m_pName);
    pForm->addRow(tr("Surface"), m_pSurface);
    pForm->addRow(pDetailsLabel, m_pDetails);
    pForm->addRow(m_pTrouble);
    pForm->addRow(pButtons);

    const auto showDetails = [this, pDetailsLabel] {
        m_pDetails->setCurrentIndex(isPtex() ? 1 : 0);
        pDetailsLabel->setText(isPtex() ? tr("Faces") : tr("Tiles"));
        updateState();
    };
    connect(m_pName, &QLineEdit::textChanged, this, &OrvObjectDialog::updateState);
    connect(m_pTiles, &QLineEdit::textChanged, this, &OrvObjectDialog::updateState);
    connect(m_pSurface, QOverload<int>::of(&QComboBox::currentIndexChanged), this, showDetails);
    connect(pButtons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(pButtons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    showDetails();
}

bool OrvObjectDialog::isPtex() const
{
    return m_pSurface->currentData().toBool();
}

QString OrvObjectDialog::trouble() const
{
    const QString Name = m_pName->text().trimmed();
    if (Name.isEmpty())
        return tr("An object needs a name");
    if (m_IsTaken(Name))
        return tr("There is an object \"%1\" already").arg(Name);
    if (!isPtex() && tilesOf(m_pTiles->text()).isEmpty())
        return tr("Tiles are numbers from %1 to %2, and ranges of them").arg(FirstTile).arg(LastTile);
    return QString();
}

void OrvObjectDialog::updateState()
{
    const QString Trouble = trouble();
    m_pTrouble->setText(Trouble);
    m_pAdd->setEnabled(Trouble.isEmpty());
}

std::unique_ptr<OrvGeoEntity> OrvObjectDialog::makeObject() const
{
    auto pObject = std::make_unique<OrvGeoEntity>(m_pName->text().trimmed());
    pObject->setPtex(isPtex());
    if (isPtex())
        pObject->setFaceResolution(m_pResolution->currentData().toSize());
    else
        pObject->setUdimTiles(tilesOf(m_pTiles->text()));
    return pObject;
}

QVector<int> OrvObjectDialog::tilesOf(const QString& Text)
{
    QVector<int> Tiles;
    for (const QString& Part : Text.split(QLatin1Char(','))) {
        const QStringList Ends = Part.split(QLatin1Char('-'));
        bool IsFirst = false, IsLast = false;
        const int First = Ends.first().trimmed().toInt(&IsFirst), Last = Ends.last().trimmed().toInt(&IsLast);
        if (Ends.size() > 2 || !IsFirst || !IsLast || First < FirstTile || Last > LastTile || Last < First
            || Tiles.size() + Last - First >= MostTiles)
            return {};
        for (int Tile = First; Tile <= Last; ++Tile)
            Tiles.append(Tile);
    }
    return OrvUdimLayout(QSize(1, 1), Tiles).tiles();
}

#include "moc_OrvObjectDialog.cpp"
