#pragma once

#include <map>
#include <optional>

#include "BE/StreamObject.h"

namespace BE {

class OpenChangeObject : public OpenChange {
 public:
  explicit OpenChangeObject(const InterfaceRef<StreamObject>& stream);
  ~OpenChangeObject() override;

  void Apply(const std::vector<CaptionDelta>& deltas, const UString& stepName) override;
  void Add(const boost::intrusive_ptr<zebcaptioning::Caption>& caption, const UString& stepName) override;
  bool IsEmpty() const override { return mDeltas.empty(); }
  void Commit() override;
  void Revert() override;

  const InterfaceRef<StreamObject>& GetStream() const { return mStream; }
  // The name of the step that committing would make now; nothing if it would make none.
  std::optional<UString> GetStepName() const;
  // A measure was written to a caption that the change holds.
  void TakeMeasure(const CaptioningStream::Measure& measure);
  void Detach() { mProject = nullptr; }

 private:
  void Take(const std::vector<CaptionDelta>& deltas, const UString& stepName,
            const boost::intrusive_ptr<zebcaptioning::Caption>& made);
  void MakeStep();
  void TakeName(const UString& stepName);
  void Merge(const CaptionDelta& delta);

  InterfaceRef<StreamObject> mStream;
  ProjectObject* mProject;
  std::map<ICaptioningStream::CaptionKey, CaptionDelta> mDeltas;
  UString mName;
  ObjectNumber mStep = 0; // its number in the journal
};

} // namespace BE
