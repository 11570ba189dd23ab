#pragma once

class QAction;
class QObject;

/// Menu actions that carry the name of a method instead of a slot of their own: the data of such an action is a name,
/// or a list of a name and its arguments, and the method is called on whatever is current.
namespace OrvMethodRelay {

constexpr int MaximumArgumentCount = 10;

/// Calls the method on the target. A missing target is reported as "<TargetName> is NULL"; nothing else happens then.
void invoke(QObject* pTarget, const char* pTargetName, const QAction* pAction, const char* pFile);

} // namespace OrvMethodRelay
