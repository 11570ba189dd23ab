#include "OrvDdi/Engine/OrvOperationRegistry.h"

#include "OrvDdi/Engine/OrvEngine.h"
#include "OrvDdi/Engine/OrvOperationMenu.h"
#include "OrvDdi/Engine/OrvOperationParameters.h"
#include "OrvDdi/Engine/OrvOperationScale.h"

#include <atomic>

namespace {

OrvOperation describe(const OrvOperationMenuEntry& Entry)
{
    OrvOperation Operation;
    Operation.Name = QString::fromLatin1(Entry.pOperation);
    Operation.MenuPath = QString::fromLatin1(Entry.pMenuPath);
    Operation.Description = QString::fromUtf8(gegl_operation_get_key(Entry.pOperation, "description"));
    Operation.Procedural = Operation.MenuPath.startsWith(QLatin1String("Procedural/"));
    guint Count = 0;
    GParamSpec** pProperties = gegl_operation_list_properties(Entry.pOperation, &Count);
    for (guint Index = 0; Index < Count; ++Index) {
        OrvOperationParameter Parameter;
        if (!OrvOperationParameters::describe(pProperties[Index], Parameter))
            continue;
        Parameter.Measured = OrvOperationScale::measureOf(Entry.pOperation, Parameter);
        Operation.Parameters.append(Parameter);
    }
    g_free(pProperties);
    return Operation;
}

bool hasSecondInput(const char* pOperation)
{
    GeglNode* pNode = gegl_node_new();
    gegl_node_set(pNode, "operation", pOperation, nullptr);
    const bool Has = gegl_node_has_pad(pNode, "aux");
    g_object_unref(pNode);
    return Has;
}

} // namespace

const OrvOperationRegistry& OrvOperationRegistry::instance()
{
    static std::atomic<const OrvOperationRegistry*> s_pRegistry{nullptr};
    if (const OrvOperationRegistry* pRegistry = s_pRegistry)
        return *pRegistry;
    // Made under the engine's lock, so that two threads cannot wait for each other here; kept until the
    // program ends.
    const OrvEngine::Lock Lock;
    if (!s_pRegistry)
        s_pRegistry = new OrvOperationRegistry;
    return *s_pRegistry;
}

QStringList OrvOperationRegistry::menuPaths()
{
    QStringList Paths;
    for (const OrvOperationMenuEntry* pEntry = OrvOperationMenu; pEntry->pOperation; ++pEntry)
        Paths.append(QString::fromLatin1(pEntry->pMenuPath));
    return Paths;
}

OrvOperationRegistry::OrvOperationRegistry()
{
    for (const OrvOperationMenuEntry* pEntry = OrvOperationMenu; pEntry->pOperation; ++pEntry) {
        if (!gegl_has_operation(pEntry->pOperation))
            continue;
        OrvOperation Operation = describe(*pEntry);
        Operation.HasSecondInput = hasSecondInput(pEntry->pOperation);
        m_ByName.insert(Operation.Name, m_Operations.size());
        m_ByMenuPath.insert(Operation.MenuPath, m_Operations.size());
        m_Operations.append(Operation);
    }
}

const OrvOperation* OrvOperationRegistry::find(const QString& Name) const
{
    const auto Found = m_ByName.find(Name);
    return Found == m_ByName.end() ? nullptr : &m_Operations[Found.value()];
}

const OrvOperation* OrvOperationRegistry::findByMenuPath(const QString& MenuPath) const
{
    const auto Found = m_ByMenuPath.find(MenuPath);
    return Found == m_ByMenuPath.end() ? nullptr : &m_Operations[Found.value()];
}
