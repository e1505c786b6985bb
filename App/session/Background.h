#pragma once

#include <atomic>
#include <chrono>
#include <future>
#include <memory>
#include <optional>
#include <thread>
#include <utility>

#include "App/Session.h"

namespace App {

// What a long job and whoever waits for it tell each other.
struct JobState {
  std::atomic<double> fraction{0.0};
  std::atomic<bool> stop{false};

  // The shape in which readers and writers report: how far they are, and whether they shall go on.
  bool Report(double value) {
    fraction = value;
    return !stop;
  }
};

// Whether a job looks at JobState::stop. One that does is waited for when it is stopped, one that does not is left to
// end by itself; either way its result is dropped.
enum class Stopping { ByItself, Never };

// Runs a job on a thread of its own, which owns what the job captured, and keeps telling how far it is, so that a
// window stays alive; without anyone to tell it simply runs. Nothing when it was stopped. What the job throws comes out
// here.
template <class T, class Job>
std::optional<T> RunInBackground(Job job, const Progress& progress, const std::string& what, Stopping stopping) {
  const auto state = std::make_shared<JobState>();
  if (!progress)
    return job(*state);
  if (!progress(0.0, what))
    return std::nullopt;

  std::packaged_task<T()> task([state, job = std::move(job)]() mutable { return job(*state); });
  std::future<T> result = task.get_future();
  std::thread worker(std::move(task));
  constexpr std::chrono::milliseconds kBetweenReports{25};
  while (result.wait_for(kBetweenReports) != std::future_status::ready) {
    if (progress(state->fraction, what))
      continue;
    state->stop = true;
    if (stopping == Stopping::Never) {
      worker.detach();
      return std::nullopt;
    }
  }
  worker.join();
  if (state->stop)
    return std::nullopt;
  return result.get();
}

} // namespace App
