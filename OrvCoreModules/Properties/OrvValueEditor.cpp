#include "OrvCoreModules/Properties/OrvValueEditor.h"

#include "OrvCoreModules/Properties/OrvValueBinding.h"
#include "OrvCoreModules/Widgets/OrvColorSwatch.h"
#include "OrvCoreModules/Widgets/OrvComboBox.h"
#include "OrvCoreModules/Widgets/OrvFileDialog.h"
#include "OrvCoreModules/Widgets/OrvFormLayout.h"
#include "OrvCoreModules/Widgets/OrvSliderSpinBox.h"
#include "OrvCoreModules/Window/OrvAppearance.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QHash>
#include <QtCore/QRandomGenerator>
#include <QtCore/QSize>
#include <QtGui/QKeyEvent>
#include <QtWidgets/QAction>
#include <QtWidgets/QCheckBox>
#include <QtWidgets/QHBoxLayout>
#include <QtWidgets/QLabel>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QToolButton>

#include <algorithm>
#include <functional>

namespace {

constexpr int RowHeight = 22;
constexpr int UsualPrecision = 3;
constexpr double LongestRange = 20000.0; // steps
constexpr int LargestSeed = 0x7fffffff;

QString tr(const char* pText)
{
    return QCoreApplication::translate("OrvValueEditor", pText);
}

QString textOf(const QVariant& Value)
{
    switch (Value.userType()) {
    case QMetaType::QSize:
        return QStringLiteral("%1 x %2").arg(Value.toSize().width()).arg(Value.toSize().height());
    case QMetaType::Bool:
        return Value.toBool() ? tr("Yes") : tr("No");
    case QMetaType::Double:
    case QMetaType::Float:
        return QString::number(Value.toDouble(), 'g', 6);
    case QMetaType::QStringList:
        return Value.toStringList().join(QStringLiteral(", "));
    default:
        return Value.toString();
    }
}

QString suffix(const OrvOperationParameter& Description)
{
    if (Description.Type == OrvOperationParameter::Angle || Description.Unit == QLatin1String("degree"))
        return QStringLiteral("°");
    if (Description.Unit == QLatin1String("percent"))
        return QStringLiteral(" %");
    return Description.Unit.startsWith(QLatin1String("pixel")) ? QStringLiteral(" px") : QString();
}

/// Runs the function now and whenever the value changes.
void follow(QWidget* pWidget, OrvValueBinding* pBinding, const std::function<void(const QVariant&)>& Show)
{
    const auto show = [pBinding, Show] {
        const QVariant Value = pBinding->value();
        if (Value.isValid())
            Show(Value);
    };
    QObject::connect(pBinding, &OrvValueBinding::valueChanged, pWidget, show);
    show();
}

QWidget* createNumber(OrvValueBinding* pBinding, const OrvOperationParameter& Description, QWidget* pParent)
{
    OrvSliderSpinBox* pSlider = new OrvSliderSpinBox(pParent);
    const bool Integer = Description.Type == OrvOperationParameter::Integer;
    const bool Percent = Description.Unit == QLatin1String("percent");
    pSlider->setRange(Description.Minimum, Description.Maximum);
    pSlider->setUiRange(Description.UiMinimum, Description.UiMaximum);
    pSlider->setUiGamma(Description.UiGamma);
    pSlider->setStep(Integer ? qMax(1.0, Description.Step) : Description.Step);
    // In a range without end every pixel would be a leap.
    if (Description.UiMaximum - Description.UiMinimum > LongestRange * Description.Step
        && Description.UiGamma <= 1.0)
        pSlider->setUiRange(0.0, 0.0);
    // Percent shows two decimals in front of the point. Who asks for more decimals than usual gets them
    // everywhere.
    const int Decimals = Description.Decimals + OrvAppearance::instance().sliderPrecision() - UsualPrecision
        - (Percent ? 2 : 0);
    pSlider->setDecimals(Integer ? 0 : Decimals);
    pSlider->setDisplayFactor(Percent ? 100.0 : 1.0);
    pSlider->setSuffix(suffix(Description));
    pSlider->setWrapping(Description.Type == OrvOperationParameter::Angle
        && qFuzzyCompare(Description.Maximum - Description.Minimum, 360.0));
    follow(pSlider, pBinding, [pSlider](const QVariant& Value) { pSlider->setValue(Value.toDouble()); });
    QObject::connect(pSlider, &OrvSliderSpinBox::editBegun, pBinding, &OrvValueBinding::beginGesture);
    QObject::connect(pSlider, &OrvSliderSpinBox::valueEdited, pBinding, [pBinding, Integer](double Value) {
        pBinding->edit(Integer ? QVariant(qRound(Value)) : QVariant(Value));
    });
    QObject::connect(pSlider, &OrvSliderSpinBox::editFinished, pBinding, &OrvValueBinding::finishGesture);
    return pSlider;
}

/// A number nobody cares about but for its being another: with a button that gives one.
QWidget* createSeed(OrvValueBinding* pBinding, const OrvOperationParameter& Description, QWidget* pParent)
{
    QWidget* pEditor = new QWidget(pParent);
    QToolButton* pButton = new QToolButton(pEditor);
    pButton->setText(QStringLiteral("↻"));
    pButton->setFixedSize(RowHeight, RowHeight);
    pButton->setAutoRaise(true);
    pButton->setToolTip(tr("New random seed"));
    const double Largest = qMin(Description.Maximum, double(LargestSeed));
    QObject::connect(pButton, &QToolButton::clicked, pBinding,
        [pBinding, Largest] { pBinding->edit(int(QRandomGenerator::global()->bounded(Largest))); });
    QHBoxLayout* pLayout = new QHBoxLayout(pEditor);
    pLayout->setContentsMargins(0, 0, 0, 0);
    pLayout->setSpacing(2);
    pLayout->addWidget(createNumber(pBinding, Description, pEditor), 1);
    pLayout->addWidget(pButton);
    return pEditor;
}

QWidget* createCheckBox(OrvValueBinding* pBinding, QWidget* pParent)
{
    QCheckBox* pBox = new QCheckBox(pParent);
    pBox->setFixedHeight(RowHeight);
    follow(pBox, pBinding, [pBox](const QVariant& Value) { pBox->setChecked(Value.toBool()); });
    QObject::connect(
        pBox, &QCheckBox::clicked, pBinding, [pBinding](bool Checked) { pBinding->edit(Checked); });
    return pBox;
}

QWidget* createCombo(OrvValueBinding* pBinding, const OrvOperationParameter& Description, QWidget* pParent)
{
    OrvComboBox* pCombo = new OrvComboBox(pParent);
    for (int Index = 0; Index < Description.Choices.size(); ++Index)
        pCombo->addItem(
            Description.ChoiceLabels.value(Index, Description.Choices[Index]), Description.Choices[Index]);
    // A choice that is not in the list (a newer project's) shows as nothing and stays until the user chooses.
    follow(pCombo, pBinding, [pCombo](const QVariant& Value) {
        const QSignalBlocker Blocker(pCombo);
        pCombo->setCurrentIndex(pCombo->findData(Value.toString()));
    });
    QObject::connect(
        pCombo, QOverload<int>::of(&QComboBox::currentIndexChanged), pBinding, [pBinding, pCombo](int) {
            if (pCombo->currentIndex() >= 0)
                pBinding->edit(pCombo->currentData());
        });
    return pCombo;
}

QWidget* createSwatch(OrvValueBinding* pBinding, QWidget* pParent)
{
    OrvColorSwatch* pSwatch = new OrvColorSwatch(pParent);
    pSwatch->setFixedHeight(RowHeight);
    // Operations compute in the working space.
    follow(pSwatch, pBinding, [pSwatch](const QVariant& Value) {
        pSwatch->setColor(Value.value<OrvColor>(), OrvColorSpaceDefaults::Working);
    });
    QObject::connect(pSwatch, &OrvColorSwatch::editBegun, pBinding, &OrvValueBinding::beginGesture);
    QObject::connect(pSwatch, &OrvColorSwatch::colorEdited, pBinding,
        [pBinding](const OrvColor& Color) { pBinding->edit(QVariant::fromValue(Color)); });
    QObject::connect(pSwatch, &OrvColorSwatch::editFinished, pBinding, &OrvValueBinding::finishGesture);
    return pSwatch;
}

/// Escape gives up what was typed; with nothing typed it is the window's.
class TextEdit : public QLineEdit {
public:
    TextEdit(std::function<QString()> Text, QWidget* pParent)
        : QLineEdit(pParent)
        , m_Text(std::move(Text))
    {
    }

protected:
    bool event(QEvent* pEvent) override
    {
        if (pEvent->type() == QEvent::ShortcutOverride && givesUp(pEvent))
            pEvent->accept();
        return QLineEdit::event(pEvent);
    }
    void keyPressEvent(QKeyEvent* pEvent) override
    {
        if (givesUp(pEvent))
            setText(m_Text());
        else
            QLineEdit::keyPressEvent(pEvent);
    }

private:
    bool givesUp(const QEvent* pEvent) const
    {
        return isModified() && static_cast<const QKeyEvent*>(pEvent)->key() == Qt::Key_Escape;
    }

    std::function<QString()> m_Text;
};

QLineEdit* createLineEdit(OrvValueBinding* pBinding, QWidget* pParent)
{
    TextEdit* pEdit = new TextEdit([pBinding] { return pBinding->value().toString(); }, pParent);
    pEdit->setFixedHeight(RowHeight);
    follow(pEdit, pBinding, [pEdit](const QVariant& Value) {
        if (pEdit->text() != Value.toString())
            pEdit->setText(Value.toString());
    });
    QObject::connect(pEdit, &QLineEdit::editingFinished, pBinding, [pBinding, pEdit] {
        if (!pEdit->isModified())
            return;
        pEdit->setModified(false);
        pBinding->edit(pEdit->text());
        // What did not take the text shows what it has.
        pEdit->setText(pBinding->value().toString());
    });
    return pEdit;
}

QWidget* createFilePath(OrvValueBinding* pBinding, const OrvOperationParameter& Description, QWidget* pParent)
{
    QWidget* pEditor = new QWidget(pParent);
    QToolButton* pBrowse = new QToolButton(pEditor);
    pBrowse->setText(QStringLiteral("…"));
    pBrowse->setFixedSize(RowHeight, RowHeight);
    pBrowse->setToolTip(tr("Choose a file"));
    QObject::connect(pBrowse, &QToolButton::clicked, pBinding, [pBinding, pEditor, Description] {
        const QString Path
            = OrvFileDialog::askForFile(pEditor, Description.Label, pBinding->value().toString());
        if (!Path.isEmpty())
            pBinding->edit(Path);
    });
    QHBoxLayout* pLayout = new QHBoxLayout(pEditor);
    pLayout->setContentsMargins(0, 0, 0, 0);
    pLayout->setSpacing(2);
    pLayout->addWidget(createLineEdit(pBinding, pEditor), 1);
    pLayout->addWidget(pBrowse);
    return pEditor;
}

QWidget* createText(OrvValueBinding* pBinding, QWidget* pParent)
{
    QLabel* pLabel = new QLabel(pParent);
    pLabel->setFixedHeight(RowHeight);
    pLabel->setTextInteractionFlags(Qt::TextSelectableByMouse);
    // A long text must not widen what is around it.
    pLabel->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
    follow(pLabel, pBinding, [pLabel](const QVariant& Value) { pLabel->setText(textOf(Value)); });
    return pLabel;
}

QWidget* createWritable(OrvValueBinding* pBinding, const OrvOperationParameter& Description, QWidget* pParent)
{
    switch (Description.Type) {
    case OrvOperationParameter::Integer:
        if (Description.Name == QLatin1String("seed"))
            return createSeed(pBinding, Description, pParent);
        return createNumber(pBinding, Description, pParent);
    case OrvOperationParameter::Real:
    case OrvOperationParameter::Angle:
        return createNumber(pBinding, Description, pParent);
    case OrvOperationParameter::Boolean:
        return createCheckBox(pBinding, pParent);
    case OrvOperationParameter::Enumeration:
        return createCombo(pBinding, Description, pParent);
    case OrvOperationParameter::Color:
        return createSwatch(pBinding, pParent);
    case OrvOperationParameter::Text:
        return createLineEdit(pBinding, pParent);
    case OrvOperationParameter::FilePath:
        return createFilePath(pBinding, Description, pParent);
    }
    return createText(pBinding, pParent);
}

/// Whether values of the type can be edited, and as what.
bool kindOf(int MetaType, OrvOperationParameter::Kind& Kind)
{
    if (MetaType == qMetaTypeId<OrvColor>()) {
        Kind = OrvOperationParameter::Color;
        return true;
    }
    switch (MetaType) {
    case QMetaType::Double:
    case QMetaType::Float:
        Kind = OrvOperationParameter::Real;
        return true;
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::LongLong:
        Kind = OrvOperationParameter::Integer;
        return true;
    case QMetaType::Bool:
        Kind = OrvOperationParameter::Boolean;
        return true;
    case QMetaType::QString:
        Kind = OrvOperationParameter::Text;
        return true;
    default:
        return false;
    }
}

} // namespace

QString OrvValueEditor::labelFromName(const QString& Name)
{
    static const QHash<QString, QString> OfImages{
        {QStringLiteral("imageSetSize"), tr("Size")},
        {QStringLiteral("imageSetDepthString"), tr("Depth")},
        {QStringLiteral("fileSpace"), tr("Color Space")},
        {QStringLiteral("tileCount"), tr("Tiles")},
    };
    const auto Known = OfImages.constFind(Name);
    if (Known != OfImages.cend())
        return *Known;
    QString Label;
    for (const QChar Letter : Name) {
        if (Letter == QLatin1Char('_') || Letter == QLatin1Char('-')) {
            if (!Label.isEmpty())
                Label += QLatin1Char(' ');
            continue;
        }
        const QChar Before = Label.isEmpty() ? QChar(QLatin1Char(' ')) : Label.back();
        const bool NewWord
            = (Letter.isUpper() && !Before.isUpper()) || (Letter.isDigit() && Before.isLetter());
        if (NewWord && Before != QLatin1Char(' '))
            Label += QLatin1Char(' ');
        Label += Label.isEmpty() || Label.back() == QLatin1Char(' ') ? Letter.toUpper() : Letter;
    }
    return Label;
}

OrvOperationParameter OrvValueEditor::describe(const QString& Name, const QVariant& Value)
{
    constexpr double Unlimited = 1e9;
    OrvOperationParameter Description;
    Description.Name = Name;
    Description.Label = labelFromName(Name);
    kindOf(Value.userType(), Description.Type);
    if (Description.Type == OrvOperationParameter::Real
        || Description.Type == OrvOperationParameter::Integer) {
        // Nothing is known of the range: dragging counts steps.
        Description.Minimum = Value.userType() == QMetaType::UInt ? 0.0 : -Unlimited;
        Description.Maximum = Unlimited;
        Description.UiMaximum = Description.UiMinimum;
    }
    return Description;
}

bool OrvValueEditor::canShow(const QVariant& Value)
{
    OrvOperationParameter::Kind Kind;
    return kindOf(Value.userType(), Kind) || !textOf(Value).isEmpty();
}

QWidget* OrvValueEditor::create(
    OrvValueBinding* pBinding, const OrvOperationParameter& Description, bool ReadOnly, QWidget* pParent)
{
    OrvOperationParameter::Kind Kind;
    const bool Editable = !ReadOnly && kindOf(pBinding->value().userType(), Kind);
    QWidget* pEditor
        = Editable ? createWritable(pBinding, Description, pParent) : createText(pBinding, pParent);
    pEditor->setObjectName(Description.Name);
    pEditor->setToolTip(Description.Description);
    // After the editor's parts, so that they are there when the binding ends an open gesture.
    pBinding->setParent(pEditor);
    if (Editable) {
        const auto showWritable = [pEditor, pBinding] { pEditor->setEnabled(pBinding->isWritable()); };
        QObject::connect(pBinding, &OrvValueBinding::writableChanged, pEditor, showWritable);
        showWritable();
    }
    return pEditor;
}

QWidget* OrvValueEditor::addRow(
    QFormLayout* pForm, OrvValueBinding* pBinding, const OrvOperationParameter& Description, bool ReadOnly)
{
    QWidget* pParent = pForm->parentWidget();
    QLabel* pLabel = new QLabel(Description.Label, pParent);
    pLabel->setFixedHeight(RowHeight);
    pLabel->setToolTip(Description.Description);
    QWidget* pEditor = create(pBinding, Description, ReadOnly, pParent);
    if (Description.Default.isValid() && !ReadOnly) {
        QAction* pReset = new QAction(tr("Reset to Default"), pLabel);
        QObject::connect(pReset, &QAction::triggered, pBinding,
            [pBinding, Default = Description.Default] { pBinding->edit(Default); });
        pLabel->addAction(pReset);
        pLabel->setContextMenuPolicy(Qt::ActionsContextMenu);
    }
    pForm->addRow(pLabel, pEditor);
    return pEditor;
}
