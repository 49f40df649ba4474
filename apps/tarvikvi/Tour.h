#pragma once

#include <QString>

namespace tarvik {

/// Walks through a session on the instruments that are there, as a user would with mouse and keyboard: lists them,
/// opens the first one, reads it, edits, uploads, spoils the edit, downloads and shows what came back. Prints each
/// step and writes pictures of the pages into the folder. Returns 0 when every step showed what it should.
int RunTour(const QString &folder);

}  // namespace tarvik
