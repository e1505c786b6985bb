#pragma once

#include <memory>

#include <SQLiteCpp/SQLiteCpp.h>

#include "BE/ProjectFile.h"

namespace BE {

// The statements of the file that a key press runs, prepared once.
struct ProjectFile::Statements {
  std::unique_ptr<SQLite::Statement> putCaption;
  std::unique_ptr<SQLite::Statement> eraseCaption;
  std::unique_ptr<SQLite::Statement> putStep;
  std::unique_ptr<SQLite::Statement> putDelta;
  std::unique_ptr<SQLite::Statement> eraseDelta;
};

} // namespace BE
