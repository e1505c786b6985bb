#pragma once

#include <optional>
#include <random>
#include <set>

#include "Captions/contracts/TextSpanAttributes.h"
#include "FormatBar.h"

// Random courses of selecting and formatting, held against a model that knows no runs: a look for each unit of a text.
namespace Captivo::Testing {

struct ModelCaption {
  using Style = zebcaptioning::TextSpanAttributes;

  std::vector<Style> units; // the one of an empty text, too
  bool isEmpty = false;
  std::optional<std::pair<std::size_t, Style>> typing;
  zebcaptioning::ParagraphStyleAttributes paragraph;

  explicit ModelCaption(const zebcaptioning::CaptionState& state)
      : isEmpty(state.text.empty()), paragraph(state.paragraph) {
    for (std::size_t i = 0; i < std::max<std::size_t>(state.text.size(), 1); ++i) {
      std::size_t run = 0;
      while (run + 1 < state.runs.size() && state.runs[run + 1].start <= i)
        ++run;
      units.push_back(*state.runs[run].attributes);
    }
    if (state.typing)
      typing = {state.typingAt, *state.typing};
  }
  std::size_t Length() const { return isEmpty ? 0 : units.size(); }
  Style TypedAt(std::size_t at) const {
    if (typing && typing->first == at)
      return typing->second;
    return units[at > 0 ? at - 1 : 0];
  }
};

// One attribute over everything selected: the first source's value, and whether all agree.
template <class Get> auto Merge(const std::vector<zebcaptioning::TextSpanAttributes>& looks, Get get) {
  bool isUniform = true;
  for (const auto& look : looks)
    isUniform = isUniform && get(look) == get(looks.front());
  return std::make_pair(get(looks.front()), isUniform);
}

// Three captions, a selection among them, and what a course does and expects at each of its steps.
class CourseTest : public FormatBarTest {
 protected:
  using Style = zebcaptioning::TextSpanAttributes;
  using ParagraphStyleAttributes = zebcaptioning::ParagraphStyleAttributes;

  // Shows new captions, and puts what is stored of them into the model.
  virtual void ShowRandomCaptions() = 0;
  virtual void FormatAtRandom() = 0;
  virtual void ExpectStored() = 0;
  virtual void ExpectBar() = 0;
  // The panel has read the selection's format into the bar.
  virtual void Published() {}

  int Random(int below) { return static_cast<int>(random() % static_cast<unsigned>(below)); }
  static double Begin(std::size_t index) { return 2.0 * static_cast<double>(index) + 1; }
  // The captions as they are stored, the first one selected.
  void BeginModel() {
    model.clear();
    for (std::size_t i = 0; i < 3; ++i)
      model.emplace_back(Stored(Begin(i)));
    Click(Begin(0));
    Pane().PublishSelectionFormat();
    part.reset();
    Select({0});
  }

  // --- Selecting

  void SelectAtRandom() {
    const auto row = static_cast<std::size_t>(Random(3));
    part.reset();
    Pane().SetFocus();
    switch (Random(6)) {
    case 0:
      if (selected.empty()) {
        Click(Begin(row)); // selecting all opens no control that was closed for want of a selection
        Select({row});
      }
      Pane().SelectAllCaptions();
      return Select({0, 1, 2});
    case 1:
      SelectNothing();
      return Select({});
    case 2:
      Click(Begin(row));
      Select({row});
      Click(Begin((row + 1) % 3), 4);
      return Select({row, (row + 1) % 3});
    case 3:
      Click(Begin(row));
      // A click on the row that was selected anyway publishes nothing, though it means the whole text from now on.
      Pane().PublishSelectionFormat();
      return Select({row});
    default:
      Click(Begin(row));
      Select({row});
      std::size_t a = static_cast<std::size_t>(Random(static_cast<int>(model[row].Length()) + 1));
      std::size_t b = static_cast<std::size_t>(Random(static_cast<int>(model[row].Length()) + 1));
      part = {std::min(a, b), std::max(a, b)};
      SelectPart(Begin(row), *part);
      Published();
    }
  }
  void Select(const std::set<std::size_t>& rows) {
    selected = rows;
    Published();
  }

  // --- The model's own formatting

  template <class Change> void ChangeLooks(Change change) {
    for (const std::size_t index : selected) {
      ModelCaption& caption = model[index];
      const TextRange range = part.value_or(TextRange(0, caption.Length()));
      if (part && range.first == range.second) {
        const Style before = caption.TypedAt(range.first);
        Style after = before;
        change(after);
        if (!(after == before))
          caption.typing = {range.first, after};
        continue;
      }
      if (caption.isEmpty)
        caption.units[0] = caption.TypedAt(0);
      caption.typing.reset();
      for (std::size_t at = range.first; at < std::max<std::size_t>(range.second, 1); ++at)
        change(caption.units[at]);
    }
  }
  std::vector<Style> SelectedLooks() const {
    if (selected.empty())
      return {Style()};
    std::vector<Style> looks;
    for (const std::size_t index : selected) {
      const ModelCaption& caption = model[index];
      const TextRange range = part.value_or(TextRange(0, caption.Length()));
      if (range.first == range.second)
        looks.push_back(caption.TypedAt(range.first));
      else
        looks.insert(looks.end(), caption.units.begin() + static_cast<std::ptrdiff_t>(range.first),
                     caption.units.begin() + static_cast<std::ptrdiff_t>(range.second));
    }
    return looks;
  }
  template <class Get> auto MergeParagraphs(Get get) const {
    const ParagraphStyleAttributes none;
    bool isUniform = true;
    const auto first = get(selected.empty() ? none : model[*selected.begin()].paragraph);
    for (const std::size_t index : selected)
      isUniform = isUniform && get(model[index].paragraph) == first;
    return std::make_pair(first, isUniform);
  }

  // --- Courses

  std::vector<zebcaptioning::CaptionStatePtr> States() {
    std::vector<zebcaptioning::CaptionStatePtr> states;
    for (std::size_t i = 0; i < model.size(); ++i)
      states.push_back(stream->FindByBegin(Seconds(Begin(i)))->GetState());
    return states;
  }
  // The style of what is typed next is no part of a step.
  void ExpectStates(const std::vector<zebcaptioning::CaptionStatePtr>& states) {
    const auto now = States();
    for (std::size_t i = 0; i < states.size(); ++i) {
      EXPECT_EQ(now[i]->runs, states[i]->runs) << "caption " << i;
      EXPECT_EQ(now[i]->paragraph, states[i]->paragraph) << "caption " << i;
    }
  }

  // Every change is undone, step by step, and done again.
  void RunCourses(int courses, int steps) {
    for (int course = 0; course < courses; ++course) {
      SCOPED_TRACE("course " + std::to_string(course));
      random.seed(static_cast<unsigned>(course));
      ShowRandomCaptions();
      const auto before = States();
      const auto undoBefore = project->GetUndoNames().size();
      std::vector<std::vector<zebcaptioning::CaptionStatePtr>> committed{before};
      for (int step = 0; step < steps; ++step) {
        SCOPED_TRACE("step " + std::to_string(step));
        if (Random(3) == 0)
          SelectAtRandom();
        else
          FormatAtRandom();
        ExpectStored();
        ExpectBar();
        if (HasFailure())
          return;
        const auto done = project->GetUndoNames().size() - undoBefore;
        if (done >= committed.size())
          committed.push_back(States());
      }
      Pane().CommitChanges();
      if (project->GetUndoNames().size() - undoBefore >= committed.size())
        committed.push_back(States());
      ASSERT_EQ(project->GetUndoNames().size() - undoBefore, committed.size() - 1);
      for (std::size_t step = committed.size() - 1; step > 0; --step) {
        ASSERT_TRUE(project->Undo());
        ExpectStates(committed[step - 1]);
      }
      for (std::size_t step = 1; step < committed.size(); ++step) {
        ASSERT_TRUE(project->Redo());
        ExpectStates(committed[step]);
      }
      if (HasFailure())
        return;
      Pane().SetFocus(); // a caret in a text would put the next clip off
    }
  }

  std::mt19937 random;
  std::vector<ModelCaption> model;
  std::set<std::size_t> selected;
  std::optional<TextRange> part; // of the only selected one's text, which has the focus
};

} // namespace Captivo::Testing
