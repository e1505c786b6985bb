#pragma once

#include <deque>
#include <functional>
#include <memory>
#include <optional>

#include "BE/ProjectFile.h"

namespace BE {

// Keeps a project's file up to what the project holds. An operation that cannot be written is kept, in order, with all
// that follow it, and each later one tries again; nothing is lost while the process lives.
class ProjectStorage {
 public:
  using Operation = std::function<void(ProjectFile&)>;
  using ProblemListener = std::function<void(const std::optional<Problem>&)>;

  explicit ProjectStorage(std::unique_ptr<ProjectFile> file);
  ~ProjectStorage();

  // The operation holds what it writes by value: it may run much later.
  void Write(Operation operation);
  // Nothing if the file cannot be read, or is closed.
  template <class T> std::optional<T> Read(const std::function<T(ProjectFile&)>& operation) {
    if (!mFile)
      return std::nullopt;
    try {
      return operation(*mFile);
    } catch (const std::exception& failure) {
      SetProblem(mFile->Describe(failure));
      return std::nullopt;
    }
  }
  // For reading at the start, when the file is there.
  ProjectFile& GetFile() { return *mFile; }
  std::optional<Problem> SaveAs(const std::filesystem::path& path);
  void Close();
  bool IsOpen() const { return mFile != nullptr; }

  std::filesystem::path GetPath() const;
  const std::optional<Problem>& GetProblem() const { return mProblem; }
  void SetProblemListener(ProblemListener listener) { mListener = std::move(listener); }

 private:
  bool WritePending();
  void SetProblem(std::optional<Problem> problem);

  std::unique_ptr<ProjectFile> mFile;
  std::deque<Operation> mPending;
  std::optional<Problem> mProblem;
  ProblemListener mListener;
};

} // namespace BE
