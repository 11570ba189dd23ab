#include "OrvCore/Network/OrvNodeNames.h"

#include "OrvCore/Network/OrvSnBaseNode.h"

namespace {

/// Leaves room to count on.
constexpr int HighestThatCounts = 999999999;

QString numbered(const QString& Base, int Number)
{
    return Base + QLatin1Char(' ') + QString::number(Number);
}

/// "Layer 3" is "Layer" with the number 3; 0 when there is no number, or one written in another way ("03").
int numberOf(const QString& Name, QString& Base)
{
    const int Space = Name.lastIndexOf(QLatin1Char(' '));
    const int Number = Space > 0 ? Name.midRef(Space + 1).toInt() : 0;
    Base = Name.left(Space);
    if (Number > 1 && Number <= HighestThatCounts && Name == numbered(Base, Number))
        return Number;
    Base = Name;
    return 0;
}

int highestNumber(const QHash<QString, int>& Names, const QString& Base)
{
    int Highest = 1;
    for (auto Name = Names.begin(); Name != Names.end(); ++Name) {
        QString OtherBase;
        const int Number = Name.key().startsWith(Base) ? numberOf(Name.key(), OtherBase) : 0;
        if (OtherBase == Base)
            Highest = qMax(Highest, Number);
    }
    return Highest;
}

} // namespace

OrvNodeNames::OrvNodeNames(Kind IsOfKind)
    : m_IsOfKind(IsOfKind)
{
}

void OrvNodeNames::Table::count(const QString& Name)
{
    ++Count[Name];
    QString Base;
    const int Number = numberOf(Name, Base);
    int& Highest = HighestNumber[Base];
    Highest = qMax(Highest, qMax(1, Number));
}

void OrvNodeNames::Table::uncount(const QString& Name)
{
    if (--Count[Name] > 0)
        return;
    Count.remove(Name);
    // Numbers at the end are given again, so that taking back the last layer takes back its name.
    QString Base;
    numberOf(Name, Base);
    int Highest = HighestNumber.take(Base);
    int Steps = Count.size(); // numbers that are dates lie further apart
    while (Highest > 1 && !Count.contains(numbered(Base, Highest)))
        Highest = Steps-- > 0 ? Highest - 1 : highestNumber(Count, Base);
    if (Highest > 1)
        HighestNumber.insert(Base, Highest);
}

void OrvNodeNames::enter(const OrvSnBaseNode* pNode)
{
    if (!m_IsOfKind(pNode))
        return;
    Table& Names = m_Tables[pNode->network()];
    Names.NameOf.insert(pNode, pNode->name());
    Names.count(pNode->name());
}

void OrvNodeNames::leave(const OrvShaderNetwork* pNetwork, const OrvSnBaseNode* pNode)
{
    const auto Found = m_Tables.find(pNetwork);
    if (Found == m_Tables.end() || !Found->NameOf.contains(pNode))
        return;
    Found->uncount(Found->NameOf.take(pNode));
    if (Found->NameOf.isEmpty())
        m_Tables.erase(Found);
}

void OrvNodeNames::rename(const OrvSnBaseNode* pNode)
{
    leave(pNode->network(), pNode);
    enter(pNode);
}

QString OrvNodeNames::unique(const OrvShaderNetwork* pNetwork, const QString& Base) const
{
    const auto Found = m_Tables.constFind(pNetwork);
    if (Found == m_Tables.constEnd() || !Found->Count.contains(Base))
        return Base;
    int Number = qMax(1, Found->HighestNumber.value(Base));
    QString Name;
    do
        Name = numbered(Base, ++Number);
    while (Found->Count.contains(Name));
    return Name;
}
