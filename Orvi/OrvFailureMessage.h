#pragma once

class QString;
class QStringList;

/// Tells the user that something did not work: a message box, or a line in the log in unattended runs.
namespace OrvFailureMessage {

void show(const QString& Title, const QString& Text);
/// One message for all, however many.
void show(const QString& Title, const QStringList& Texts);

} // namespace OrvFailureMessage
