#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerViewNameFilter.h"

#include "OrvCore/Layers/OrvLayer.h"

#include <QtWidgets/QLineEdit>
#include <QtWidgets/QPushButton>

namespace {

QRegExp wildcard(const QString& Text)
{
    return QRegExp(Text, Qt::CaseInsensitive, QRegExp::WildcardUnix);
}

} // namespace

OrvLayerViewNameFilter::OrvLayerViewNameFilter(QWidget* pParent)
    : OrvLayerViewFilterType(pParent)
    , m_LineEdit(new QLineEdit(pParent))
    , m_ClearButton(createFlatButton(QStringLiteral("Clear.16x16.png"), tr("Clears the entered text")))
{
    connect(m_ClearButton, SIGNAL(clicked()), m_LineEdit, SLOT(clear()));
    // Whoever hears of the change shall find the new pattern.
    connect(m_LineEdit, SIGNAL(textChanged(QString)), this, SLOT(updatePattern()));
    connect(m_LineEdit, SIGNAL(textChanged(QString)), this, SIGNAL(changed()));
}

QString OrvLayerViewNameFilter::name() const
{
    return tr("Name");
}

QList<QWidget*> OrvLayerViewNameFilter::widgets() const
{
    return {m_LineEdit, m_ClearButton};
}

void OrvLayerViewNameFilter::updatePattern()
{
    const QString Text
        = m_LineEdit->text().split(QLatin1Char(' '), Qt::SkipEmptyParts).join(QLatin1Char('*'));
    m_Pattern = Text.isEmpty() ? QRegExp() : wildcard(Text);
    // A bracket that nobody closes, or not yet, is one to look for.
    if (!m_Pattern.isValid())
        m_Pattern = wildcard(QString(Text).replace(QLatin1Char('['), QStringLiteral("\\[")));
    m_Active = !m_Pattern.isEmpty();
}

bool OrvLayerViewNameFilter::matches(const OrvLayer* pLayer) const
{
    return !isActive() || m_Pattern.indexIn(pLayer->name()) >= 0;
}

QString OrvLayerViewNameFilter::highlightedName(const OrvLayer* pLayer) const
{
    const QString Name = pLayer->name();
    if (!isActive())
        return bold(Name);
    const int Place = m_Pattern.indexIn(Name);
    if (Place < 0)
        return {};
    const int Length = m_Pattern.matchedLength();
    return escaped(Name.left(Place)) + bold(Name.mid(Place, Length)) + escaped(Name.mid(Place + Length));
}

#include "moc_OrvLayerViewNameFilter.cpp"
