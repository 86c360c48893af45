// Finished documents on their way to a print queue.
#pragma once

#include <QString>
#include <QStringList>

namespace kel {

/// Hands a document file to a print queue of the system and returns when the queue has taken it.
/// The file is no longer needed then. `options` are the queue's: "media=A4", "landscape". Throws
/// Error 482 with the reason that the print system gives.
void SendToQueue(const QString& file, const QString& queue, const QString& title,
                 const QStringList& options);

}  // namespace kel
